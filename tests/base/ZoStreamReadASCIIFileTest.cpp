// The text file reader: files by name and through a caller's archive, the errors it reports, and
// damaged or random input, which must end in lines or the library's exception, never in a crash.
#include "base/ZoClassSerialization.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadASCIIFile.h"
#include "platform/CArchive.h"
#include "platform/CMemFile.h"

#include "ZoTestSupport.h"

#include <random>

namespace {

void writeText(const std::string& path, const std::string& text)
{
    zotest::WriteBytes(path, std::vector<unsigned char>(text.begin(), text.end()));
}

template <class Action>
void expectError(Action action, const char* method, uint32_t line)
{
    // The stream's own class is named, also where its base throws.
    zotest::ExpectThrowSite<ZoExceptionStream>(action, nullptr, "ZoStreamReadASCIIFile", method, line);
}

TEST(ZoStreamReadASCIIFileTest, ReadsLinesFromAFileThenThrowsNamingItsClass)
{
    zotest::TempFolder folder;
    writeText(folder.Path("text.txt"), "ab\r\ncd");
    {
        ZoStreamReadASCIIFile owner(folder.CPath("text.txt"));
        EXPECT_TRUE(zotest::IsFileOpen(folder.Path("text.txt")));
    }
    EXPECT_FALSE(zotest::IsFileOpen(folder.Path("text.txt"))) << "the stream owns the archive it opened and closes it";
    ZoStreamReadASCIIFile stream(folder.CPath("text.txt"));
    CString first, second;
    stream >> first >> second;
    EXPECT_EQ(first, CString(u"ab"));
    EXPECT_EQ(second, CString(u"cd"));
    EXPECT_TRUE(stream.IsEndOfStream());
    expectError([&] { stream >> first; }, "operator >>", 41);
    signed char c = 0;
    expectError([&] { stream >> c; }, "operator >>", 106);

    expectError([&] { ZoStreamReadASCIIFile missing(folder.CPath("none.txt")); }, "openFile", 94);
    expectError([&] { ZoStreamReadASCIIFile missing(ZoClassSerialization::eTemporary, u"zo-none/none.txt"); },
                "openFile", 94);
}

TEST(ZoStreamReadASCIIFileTest, ACallersArchiveStaysTheCallersAndAnUnreadableOneEndsAtOnce)
{
    unsigned char bytes[] = {'o', 'n', 'e', '\n', 't', 'w', 'o'};
    CMemFile file(bytes, sizeof(bytes));
    CArchive archive(&file, CArchive::load);
    {
        ZoStreamReadASCIIFile stream(archive);
        CString line;
        stream >> line;
        EXPECT_EQ(line, CString(u"one"));
    }
    char rest[3] = {};
    EXPECT_EQ(archive.Read(rest, 3), 3u);
    EXPECT_EQ(std::string(rest, 3), "two");

    // A storing archive cannot be read: the archive's exception becomes the end of the text.
    CMemFile target;
    CArchive storing(&target, CArchive::store);
    ZoStreamReadASCIIFile fromStoring(storing);
    CString line(u"stale");
    fromStoring >> line;
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_TRUE(fromStoring.IsEndOfStream());
}

// Reads lines until the stream throws; every byte is accounted for at most once.
void readToTheEnd(const std::string& path, size_t fileSize)
{
    ZoStreamReadASCIIFile stream{CString(path)};
    size_t characters = 0, lines = 0;
    try {
        for (;;) {
            CString line;
            stream >> line;
            characters += static_cast<size_t>(line.GetLength());
            ASSERT_LE(++lines, fileSize + 1);
        }
    } catch (const ZoExceptionStream& e) {
        EXPECT_EQ(e.GetCodeLine(), 41u);
    }
    EXPECT_LE(characters + lines - 1, fileSize);
}

TEST(ZoStreamReadASCIIFileTest, RandomAndTruncatedFilesEndInLinesOrTheException)
{
    zotest::TempFolder folder;
    const std::string path = folder.Path("random.txt");
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        std::vector<unsigned char> bytes(random() % 1200);
        for (unsigned char& byte : bytes) {
            const uint32_t pick = random() % 16; // plenty of breaks among random bytes
            byte = static_cast<unsigned char>(pick == 0 ? '\r' : pick == 1 ? '\n' : random() % 256);
        }
        zotest::WriteBytes(path, bytes);
        readToTheEnd(path, bytes.size());
    }
    std::string text;
    for (int i = 0; i < 12; ++i)
        text += std::string(static_cast<size_t>(i * 23), static_cast<char>('a' + i)) + (i % 2 ? "\r\n" : "\n");
    for (size_t length = 0; length <= text.size(); length += 7) {
        SCOPED_TRACE("length " + std::to_string(length));
        writeText(path, text.substr(0, length));
        readToTheEnd(path, length);
    }
}

} // namespace
