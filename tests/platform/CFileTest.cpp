// CFile, CMemFile and CArchive: short reads, seeks, growth, replaced files and the exceptions of misuse.
#include "platform/CArchive.h"
#include "platform/CFile.h"
#include "platform/CMemFile.h"

#include "ZoTestSupport.h"

#include <cerrno>
#include <cstring>

namespace {

using zotest::Bytes;

// The cause of the exception `call` throws, or `none` (with a failure) when it throws nothing.
template <class Exception = CFileException, class Call>
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

std::string memText(const CMemFile& file) { return std::string(reinterpret_cast<const char*>(file.GetBuffer()), file.GetLength()); }

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
        file.Write("XY", 2);
        EXPECT_EQ(file.GetPosition(), 5u);
        EXPECT_EQ(file.SeekToEnd(), 6u);
        file.SeekToBegin();
        EXPECT_EQ(file.Read(buffer, 0), 0u);
        EXPECT_EQ(causeOf([&] { file.Seek(-1, CFile::begin); }), CFileException::badSeek);
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
    EXPECT_EQ(CFile(path, CFile::modeCreate | CFile::modeWrite).GetLength(), 0u);
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
    EXPECT_EQ(causeOf([&] { CFile thrown(missing, CFile::modeReadWrite); }), CFileException::fileNotFound);
    EXPECT_THROW(CFile(folder.CPath("no/such/folder.bin"), CFile::modeCreate | CFile::modeWrite), CFileException);
    zotest::WriteBytes(folder.Path("data.bin"), Bytes({1, 2, 3}));
    CFile reader(folder.CPath("data.bin"), CFile::modeRead);
    EXPECT_THROW(reader.Write("x", 1), CFileException);
    CFile writer(folder.CPath("data.bin"), CFile::modeWrite | CFile::modeNoTruncate | CFile::modeCreate);
    char buffer[4];
    EXPECT_THROW(writer.Read(buffer, 4), CFileException);
    writer.Flush(); // an open file goes to the disk without complaint
    writer.Close(); // names no handle
    EXPECT_EQ(causeOf([&] { writer.Read(buffer, 4); }), CFileException::invalidFile);
    EXPECT_EQ(causeOf([&] { writer.GetLength(); }), CFileException::invalidFile);
    EXPECT_NO_THROW(writer.Flush()) << "flushing a closed file has nothing to do";
    // No error is none; a number without a closer cause is generic (1 is a bad function on Windows).
    EXPECT_EQ(CFileException::CauseFromOsError(0), CFileException::none);
    EXPECT_EQ(CFileException::CauseFromOsError(99999), CFileException::genericException);
#if defined(_WIN32)
    EXPECT_EQ(CFileException::CauseFromOsError(1), CFileException::genericException);
#else
    EXPECT_EQ(CFileException::CauseFromOsError(ENOSPC), CFileException::diskFull);
#endif
}

TEST(CMemFileTest, GrowsZeroFillsGapsReadsShortAndKeepsACallersBuffer)
{
    CMemFile file(4);
    file.Write("ab", 2);
    EXPECT_EQ(file.Seek(3, CFile::current), 5u) << "a seek past the end is allowed";
    EXPECT_EQ(file.GetLength(), 2u) << "and grows nothing until the next write";
    file.Write("c", 1);
    EXPECT_EQ(memText(file), std::string("ab\0\0\0c", 6));
    EXPECT_EQ(file.Seek(-2, CFile::end), 4u);
    char buffer[8] = {};
    EXPECT_EQ(file.Read(buffer, 8), 2u);
    EXPECT_EQ(std::memcmp(buffer, "\0c", 2), 0);
    EXPECT_EQ(file.Read(buffer, 8), 0u);
    EXPECT_EQ(causeOf([&] { file.Seek(-7, CFile::end); }), CFileException::badSeek);
    EXPECT_EQ(file.GetPosition(), 6u) << "a failed seek leaves the position";
    CFileException error;
    EXPECT_FALSE(file.Open(CString(u"x"), CFile::modeRead, &error)) << "a memory file has no path";
    EXPECT_EQ(error.GetCause(), CFileException::genericException);
    unsigned char* detached = file.Detach();
    EXPECT_EQ(std::memcmp(detached, "ab\0\0\0c", 6), 0);
    EXPECT_EQ(file.GetLength(), 0u);
    std::free(detached);
    // The gap is zeroed even where the buffer held other bytes: growing within the allocation keeps them.
    auto* dirty = static_cast<unsigned char*>(std::memset(std::malloc(64), 0xAA, 64));
    CMemFile reused(dirty, 2, 64);
    reused.Seek(10, CFile::begin);
    reused.Write("c", 1);
    EXPECT_EQ(memText(reused), std::string("\xAA\xAA\0\0\0\0\0\0\0\0c", 11));
    // Attached buffers stay the caller's unless the file may grow them.
    unsigned char fixed[4] = {1, 2, 3, 4};
    {
        CMemFile file(fixed, 4);
        EXPECT_EQ(file.GetLength(), 4u) << "all of an attached buffer is readable";
        file.Seek(2, CFile::begin);
        file.Write("\x09", 1);
        EXPECT_EQ(file.GetBuffer(), fixed) << "written in place";
        EXPECT_EQ(causeOf([&] { file.Write("abc", 3); }), CFileException::diskFull);
    } // the destructor must not free the caller's buffer
    EXPECT_EQ(fixed[2], 9);
    auto* owned = static_cast<unsigned char*>(std::memcpy(std::malloc(2), "\x07\x08", 2));
    CMemFile growing(owned, 2, 16);
    growing.SeekToEnd();
    growing.Write("\x01\x02\x03", 3);
    EXPECT_EQ(memText(growing), "\x07\x08\x01\x02\x03");
    // Attaching again releases the grown buffer (the leak checker sees it if not).
    unsigned char other[1] = {5};
    growing.Attach(other, 1);
    char byte = 0;
    EXPECT_EQ(growing.Read(&byte, 4), 1u);
    EXPECT_EQ(byte, 5);
}

TEST(CArchiveTest, AbortAndNoFlushOnDeleteDropTheBufferAndCloseLeavesTheFileOpen)
{
    zotest::TempFolder folder;
    CFile file(folder.CPath("a.bin"), CFile::modeCreate | CFile::modeReadWrite);
    {
        CArchive dropped(&file, CArchive::store | CArchive::bNoFlushOnDelete);
        dropped.Write("lost", 4);
    }
    CArchive aborted(&file, CArchive::store);
    aborted.Write("lost", 4);
    aborted.Abort();
    EXPECT_TRUE(aborted.IsClosed());
    aborted.SetFile(&file); // starts afresh: nothing of the dropped buffer is left
    aborted.Write("kept", 4);
    aborted.Close();
    EXPECT_TRUE(file.IsOpen()) << "the file is the caller's";
    EXPECT_EQ(file.GetLength(), 4u);
}

TEST(CArchiveTest, SetFileRedirectsAStoringArchiveAndMakesALoadingOneForgetItsBufferAndMisuseThrowsItsCause)
{
    CMemFile first, second;
    CArchive store(&first, CArchive::store);
    char buffer[4] = {};
    EXPECT_EQ(causeOf<CArchiveException>([&] { store.Read(buffer, 1); }), CArchiveException::writeOnly);
    store.Write("one", 3);
    store.Flush();
    store.SetFile(&second);
    store.Write("two", 3);
    store.Close();
    EXPECT_EQ(memText(first), "one");
    EXPECT_EQ(memText(second), "two");

    first.SeekToBegin();
    second.SeekToBegin();
    CArchive load(&first, CArchive::load);
    EXPECT_EQ(causeOf<CArchiveException>([&] { load.Write("x", 1); }), CArchiveException::readOnly);
    ASSERT_EQ(load.Read(buffer, 1), 1u); // the archive buffers all of "one"
    load.Flush();                          // a loading archive has nothing to write
    EXPECT_EQ(first.GetLength(), 3u);
    ASSERT_EQ(load.Read(buffer, 2), 2u);
    EXPECT_EQ(std::string(buffer, 2), "ne");
    load.SetFile(&second);
    EXPECT_EQ(load.GetFile(), &second);
    EXPECT_EQ(load.Read(buffer, 4), 3u);
    EXPECT_EQ(std::string(buffer, 3), "two") << "nothing of the old file's buffer is left";
    load.Close();
    EXPECT_TRUE(load.IsClosed());
    EXPECT_EQ(causeOf<CArchiveException>([&] { load.Read(buffer, 1); }), CArchiveException::genericException);
    load.Flush(); // closed: nothing to do
}

// Random writes and reads against the bytes written; the buffer (asked below its 128-byte floor) is modelled:
// a write that does not fit flushes first, one of its size or more goes straight through.
TEST(CArchiveTest, RandomTransfersRoundTripAndTheFileSeesWhatTheBufferLetsThrough)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    std::vector<unsigned char> model, read;
    CMemFile file(64);
    {
        CArchive store(&file, CArchive::store, 1);
        for (size_t step = 0, pending = 0; step < 300; ++step) {
            // Often exactly what fills the buffer, else sizes around and beyond it.
            std::vector<unsigned char> chunk(random() % 4 == 0 ? 128 - pending : random() % 3 ? random() % 130 : random() % 300);
            for (unsigned char& byte : chunk)
                byte = static_cast<unsigned char>(random());
            store.Write(chunk.data(), static_cast<uint32_t>(chunk.size()));
            model.insert(model.end(), chunk.begin(), chunk.end());
            pending = chunk.size() >= 128 ? 0 : pending + chunk.size() > 128 ? chunk.size() : pending + chunk.size();
            if (random() % 16 == 0)
                store.Flush(), pending = 0;
            ASSERT_EQ(file.GetLength(), model.size() - pending) << "step " << step;
        }
    } // the destructor flushes
    ASSERT_EQ(file.GetLength(), model.size());
    file.SeekToBegin();
    CArchive load(&file, CArchive::load, 128);
    for (uint32_t got = 1; got != 0;) {
        std::vector<unsigned char> chunk(random() % 300 + 1);
        got = load.Read(chunk.data(), static_cast<uint32_t>(chunk.size()));
        ASSERT_LE(got, chunk.size());
        read.insert(read.end(), chunk.begin(), chunk.begin() + got);
    }
    EXPECT_EQ(read, model);
}

} // namespace
