// CFile, CMemFile and CArchive: short reads, seeks, growth, replaced files and the exceptions of
// misuse, on both targets.
#include "platform/CArchive.h"
#include "platform/CFile.h"
#include "platform/CMemFile.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <random>
#include <vector>

namespace {

using zotest::Bytes;

// The cause of the exception `call` throws, or `none` (with a failure) when it throws nothing.
template <class Exception, class Call>
typename Exception::ECause causeOf(Call call)
{
    try {
        call();
    } catch (const Exception& e) {
        return e.GetCause();
    }
    ADD_FAILURE() << "nothing thrown";
    return Exception::none;
}
template <class Call>
CFileException::ECause fileCause(Call call)
{
    return causeOf<CFileException>(call);
}

TEST(CFileTest, ReadsShortAtTheEndSeeksAndKeepsOrTruncates)
{
    zotest::TempFolder folder;
    const CString path = folder.CPath("data.bin");
    {
        CFile file(path, CFile::modeCreate | CFile::modeReadWrite);
        file.Write("abcdef", 6);
        EXPECT_EQ(file.GetLength(), 6u);
        EXPECT_EQ(file.Seek(-2, CFile::end), 4u);
        char buffer[8] = {};
        EXPECT_EQ(file.Read(buffer, 8), 2u) << "short at the end";
        EXPECT_EQ(std::string(buffer, 2), "ef");
        EXPECT_EQ(file.Read(buffer, 8), 0u);
        EXPECT_EQ(file.Seek(1, CFile::begin), 1u);
        EXPECT_EQ(file.Seek(2, CFile::current), 3u);
        EXPECT_EQ(file.GetPosition(), 3u);
        file.Write("XY", 2);
        EXPECT_EQ(file.SeekToEnd(), 6u);
        file.SeekToBegin();
        EXPECT_EQ(file.Read(buffer, 0), 0u);
        EXPECT_EQ(fileCause([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
        EXPECT_EQ(file.GetFilePath(), path);
        file.Close();
        EXPECT_FALSE(file.IsOpen());
        file.Close(); // a closed file stays closed
    }
    EXPECT_EQ(zotest::ReadBytes(folder.Path("data.bin")), Bytes({'a', 'b', 'c', 'X', 'Y', 'f'}));
    {
        CFile keep(path, CFile::modeCreate | CFile::modeNoTruncate | CFile::modeWrite);
        EXPECT_EQ(keep.GetLength(), 6u);
        keep.Write("Z", 1); // at the start: no-truncate does not append
    }
    EXPECT_EQ(zotest::ReadBytes(folder.Path("data.bin")), Bytes({'Z', 'b', 'c', 'X', 'Y', 'f'}));
    CFile truncated(path, CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(truncated.GetLength(), 0u);
}

TEST(CFileTest, FailuresThrowCFileExceptionWithCauseAndPath)
{
    zotest::TempFolder folder;
    const CString missing = folder.CPath("missing.bin");
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(missing, CFile::modeRead, &error));
    EXPECT_EQ(error.GetCause(), CFileException::fileNotFound);
    EXPECT_EQ(error.GetFileName(), missing);
    EXPECT_NE(error.GetOsError(), 0u);
    EXPECT_FALSE(file.Open(missing, CFile::modeWrite)) << "writing without modeCreate needs the file";
    EXPECT_FALSE(file.IsOpen());
    EXPECT_EQ(fileCause([&] { CFile thrown(missing, CFile::modeReadWrite); }), CFileException::fileNotFound);
    EXPECT_THROW(CFile(folder.CPath("no/such/folder.bin"), CFile::modeCreate | CFile::modeWrite), CFileException);

    // Used against its mode, the system refuses and the file says so.
    zotest::WriteBytes(folder.Path("data.bin"), Bytes({1, 2, 3}));
    CFile reader(folder.CPath("data.bin"), CFile::modeRead);
    EXPECT_THROW(reader.Write("x", 1), CFileException);
    CFile writer(folder.CPath("data.bin"), CFile::modeWrite | CFile::modeNoTruncate | CFile::modeCreate);
    char buffer[4];
    EXPECT_THROW(writer.Read(buffer, 4), CFileException);
    // A closed file names no handle.
    writer.Close();
    EXPECT_EQ(fileCause([&] { writer.Read(buffer, 4); }), CFileException::invalidFile);
    EXPECT_EQ(fileCause([&] { writer.GetLength(); }), CFileException::invalidFile);
    EXPECT_NO_THROW(writer.Flush()) << "flushing a closed file has nothing to do";
}

TEST(CMemFileTest, GrowsZeroFillsGapsAndReadsShort)
{
    CMemFile file(4);
    file.Write("ab", 2);
    EXPECT_EQ(file.Seek(3, CFile::current), 5u) << "a seek past the end is allowed";
    EXPECT_EQ(file.GetLength(), 2u) << "and grows nothing until the next write";
    file.Write("c", 1);
    ASSERT_EQ(file.GetLength(), 6u);
    EXPECT_EQ(std::memcmp(file.GetBuffer(), "ab\0\0\0c", 6), 0);
    EXPECT_EQ(file.Seek(-2, CFile::end), 4u);
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, 8), 2u);
    EXPECT_EQ(std::memcmp(buffer, "\0c", 2), 0);
    EXPECT_EQ(file.Read(buffer, 8), 0u);
    EXPECT_EQ(fileCause([&] { file.Seek(-7, CFile::end); }), CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 6u) << "a failed seek leaves the position";
    CFileException error;
    EXPECT_FALSE(file.Open(CString(u"x"), CFile::modeRead, &error)) << "a memory file has no path";
    EXPECT_EQ(error.GetCause(), CFileException::genericException);

    unsigned char* detached = file.Detach();
    EXPECT_EQ(std::memcmp(detached, "ab\0\0\0c", 6), 0);
    EXPECT_EQ(file.GetLength(), 0u);
    std::free(detached);
}

TEST(CMemFileTest, AttachedBuffersStayTheCallersUnlessTheFileMayGrowThem)
{
    unsigned char fixed[4] = {1, 2, 3, 4};
    {
        CMemFile file(fixed, 4);
        EXPECT_EQ(file.GetLength(), 4u) << "all of an attached buffer is readable";
        file.Seek(2, CFile::begin);
        file.Write("\x09", 1);
        EXPECT_EQ(file.GetBuffer(), fixed) << "written in place";
        EXPECT_EQ(fileCause([&] { file.Write("abc", 3); }), CFileException::diskFull);
    } // the destructor must not free the caller's buffer
    EXPECT_EQ(fixed[2], 9);

    auto* owned = static_cast<unsigned char*>(std::memcpy(std::malloc(2), "\x07\x08", 2));
    CMemFile growing(owned, 2, 16);
    growing.SeekToEnd();
    growing.Write("\x01\x02\x03", 3);
    ASSERT_EQ(growing.GetLength(), 5u);
    EXPECT_EQ(std::memcmp(growing.GetBuffer(), "\x07\x08\x01\x02\x03", 5), 0);
    // Attaching again releases the grown buffer (the leak checker sees it if not).
    unsigned char other[1] = {5};
    growing.Attach(other, 1);
    char byte = 0;
    EXPECT_EQ(growing.Read(&byte, 4), 1u);
    EXPECT_EQ(byte, 5);
}

TEST(CArchiveTest, StoringBuffersUntilFlushAndLoadingReadsShortAtTheEnd)
{
    CMemFile file;
    {
        CMemFile exact;
        CArchive filling(&exact, CArchive::store, 128);
        const std::vector<unsigned char> fill(100, 'f');
        filling.Write(fill.data(), 100);
        filling.Write(fill.data(), 28);
        EXPECT_EQ(exact.GetLength(), 0u) << "a full buffer waits for the next write";
        filling.Write("x", 1);
        EXPECT_EQ(exact.GetLength(), 128u);

        CArchive store(&file, CArchive::store, 1); // below the 128-byte floor
        store.Write("head", 4);
        EXPECT_EQ(file.GetLength(), 0u) << "still in the buffer";
        store.Flush();
        EXPECT_EQ(file.GetLength(), 4u);
        const std::vector<unsigned char> big(128, 'b');
        store.Write("x", 1);
        store.Write(big.data(), 128); // as large as the buffer: flushed first, then written through
        EXPECT_EQ(file.GetLength(), 4u + 1u + 128u);
        store.Write("tail", 4);
        char c;
        EXPECT_EQ(causeOf<CArchiveException>([&] { store.Read(&c, 1); }), CArchiveException::writeOnly);
    } // the destructor flushes
    ASSERT_EQ(file.GetLength(), 137u);
    EXPECT_EQ(std::memcmp(file.GetBuffer() + 133, "tail", 4), 0);

    file.SeekToBegin();
    CArchive load(&file, CArchive::load, 128);
    EXPECT_EQ(causeOf<CArchiveException>([&] { load.Write("x", 1); }), CArchiveException::readOnly);
    std::vector<unsigned char> all(200);
    EXPECT_EQ(load.Read(all.data(), 5), 5u);
    EXPECT_EQ(load.Read(all.data() + 5, 200), 132u) << "short at the end";
    EXPECT_EQ(std::memcmp(all.data(), "headx", 5), 0);
    EXPECT_EQ(std::memcmp(all.data() + 133, "tail", 4), 0);
    EXPECT_EQ(load.Read(all.data(), 1), 0u);
    load.Close();
    EXPECT_TRUE(load.IsClosed());
    EXPECT_EQ(causeOf<CArchiveException>([&] { load.Read(all.data(), 1); }), CArchiveException::genericException);
}

TEST(CArchiveTest, AbortAndNoFlushOnDeleteDropTheBufferAndCloseLeavesTheFileOpen)
{
    zotest::TempFolder folder;
    CFile file(folder.CPath("a.bin"), CFile::modeCreate | CFile::modeReadWrite);
    {
        CArchive dropped(&file, CArchive::store | CArchive::bNoFlushOnDelete);
        dropped.Write("lost", 4);
    }
    {
        CArchive aborted(&file, CArchive::store);
        aborted.Write("lost", 4);
        aborted.Abort();
        EXPECT_TRUE(aborted.IsClosed());
    }
    CArchive closed(&file, CArchive::store);
    closed.Write("kept", 4);
    closed.Close();
    EXPECT_TRUE(file.IsOpen()) << "the file is the caller's";
    EXPECT_EQ(file.GetLength(), 4u);
}

TEST(CArchiveTest, SetFileRedirectsAStoringArchiveAndMakesALoadingOneForgetItsBuffer)
{
    CMemFile first, second;
    CArchive store(&first, CArchive::store);
    store.Write("one", 3);
    store.Flush();
    store.SetFile(&second);
    store.Write("two", 3);
    store.Close();
    EXPECT_EQ(first.GetLength(), 3u);
    ASSERT_EQ(second.GetLength(), 3u);
    EXPECT_EQ(std::memcmp(second.GetBuffer(), "two", 3), 0);

    first.SeekToBegin();
    second.SeekToBegin();
    CArchive load(&first, CArchive::load);
    char buffer[4] = {};
    ASSERT_EQ(load.Read(buffer, 1), 1u); // the archive buffers all of "one"
    load.Flush();                          // a loading archive has nothing to write
    EXPECT_EQ(first.GetLength(), 3u);
    ASSERT_EQ(load.Read(buffer, 2), 2u);
    EXPECT_EQ(std::string(buffer, 2), "ne");
    load.SetFile(&second);
    EXPECT_EQ(load.GetFile(), &second);
    EXPECT_EQ(load.Read(buffer, 4), 3u);
    EXPECT_EQ(std::string(buffer, 3), "two") << "nothing of the old file's buffer is left";
}

// Random writes of every size through a small buffer, then random reads, against the bytes written.
TEST(CArchiveTest, RandomTransfersRoundTrip)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    std::vector<unsigned char> model;
    CMemFile file(64);
    {
        CArchive store(&file, CArchive::store, 128);
        for (int step = 0; step < 200; ++step) {
            std::vector<unsigned char> chunk(random() % 300);
            for (unsigned char& byte : chunk)
                byte = static_cast<unsigned char>(random());
            store.Write(chunk.data(), static_cast<uint32_t>(chunk.size()));
            model.insert(model.end(), chunk.begin(), chunk.end());
            if (random() % 16 == 0)
                store.Flush();
        }
    }
    ASSERT_EQ(file.GetLength(), model.size());
    file.SeekToBegin();
    CArchive load(&file, CArchive::load, 128);
    std::vector<unsigned char> read;
    for (;;) {
        std::vector<unsigned char> chunk(random() % 300 + 1);
        const uint32_t got = load.Read(chunk.data(), static_cast<uint32_t>(chunk.size()));
        ASSERT_LE(got, chunk.size());
        read.insert(read.end(), chunk.begin(), chunk.begin() + got);
        if (got < chunk.size())
            break;
    }
    EXPECT_EQ(read, model);
}

} // namespace
