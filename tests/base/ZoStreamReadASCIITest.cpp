// The text reader's rules through a stream over bytes in memory (line breaks, long lines, the code page, the
// end), the text file reader over files and callers' archives, and the archive factory's folders, chores and lines.
#include "base/ZoClassSerialization.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadASCII.h"
#include "base/ZoStreamReadASCIIFile.h"
#include "platform/CArchive.h"
#include "platform/CMemFile.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <cstring>
#include <filesystem>
#include <functional>

namespace {

using ZCS = ZoClassSerialization;
using zotest::Bytes;

struct MemoryTextStream : ZoStreamReadASCII
{
    explicit MemoryTextStream(std::string bytes) : bytes(std::move(bytes)) {}
    bool read(char& c) override { return position >= bytes.size() || (c = bytes[position++], false); }
    std::string bytes;
    size_t position = 0;
};

// The stream's own class is named, also where the base class throws.
template <class Value>
void expectEndError(ZoStreamReadASCII& stream, Value& value, uint32_t line, const char* className = "ZoStreamReadASCII")
{
    zotest::ExpectThrowSite<ZoExceptionStream>([&] { stream >> value; }, "..\\base\\ZoStreamReadASCII.cpp", className,
                                               "operator >>", line);
}

using Lines = std::vector<std::string>;

// Every line (as UTF-8) up to the end of the stream; checks that one more read throws.
Lines readAllLines(ZoStreamReadASCII& stream, size_t limit, const char* className = "ZoStreamReadASCII")
{
    Lines lines;
    while (!stream.IsEndOfStream() && lines.size() <= limit) {
        CString line(u"stale");
        stream >> line;
        lines.push_back(line.ToUtf8());
    }
    CString afterEnd(u"stale");
    expectEndError(stream, afterEnd, 41, className);
    EXPECT_TRUE(afterEnd.IsEmpty());
    return lines;
}

Lines readAllLines(const std::string& bytes)
{
    MemoryTextStream stream(bytes);
    return readAllLines(stream, bytes.size());
}

TEST(ZoStreamReadASCIITest, LineBreaksLongLinesAndTheCodePage)
{
    const std::string x126(126, 'x'), x127(127, 'x');
    // Nothing; a carriage return takes the next byte with it, whatever it is; lines of a chunk less one, a chunk
    // and more, breaks right at a chunk's end; Windows-1252 (0x81 has no character and stays U+0081).
    const std::pair<std::string, Lines> cases[] = {
        {"", {""}}, {"a\rb\nc", {"a", "", "c"}}, {"a\r\rb", {"a", "b"}}, {"a\r", {"a"}},
        {x126 + "\n" + x127 + "\n" + x127 + "x", {x126, x127, x127 + "x"}},
        {"\x80 \xE9\xFF\n\x81", {"\u20ac \u00e9\u00ff", "\u0081"}},
    };
    for (const auto& [bytes, lines] : cases)
        EXPECT_EQ(readAllLines(bytes), lines) << testing::PrintToString(bytes);
}

// Random lines (long ones too) joined with either break, and maybe one at the end, from memory and from a file.
TEST(ZoStreamReadASCIITest, RandomTextsSplitAsTheirLinesWereJoined)
{
    zotest::TempFolder folder;
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    for (int round = 0; round < 60; ++round) {
        Lines lines(1 + random() % 12);
        std::string bytes;
        for (size_t i = 0; i < lines.size(); ++i) {
            std::string raw(random() % 3 == 0 ? random() % 400 : random() % 8, ' ');
            for (char& c : raw)
                c = static_cast<char>(0x20 + random() % 0xE0); // anything but CR and LF
            lines[i] = CString::FromAnsi(raw.data(), raw.size()).ToUtf8();
            bytes += raw + (i + 1 == lines.size() ? "" : random() % 2 ? "\r\n" : "\n");
        }
        if (random() % 2) {
            bytes += random() % 2 ? "\r\n" : "\n";
            lines.push_back("");
        }
        EXPECT_EQ(readAllLines(bytes), lines);
        if (round % 6 == 0) {
            zotest::WriteBytes(folder.Path("text.txt"), std::vector<unsigned char>(bytes.begin(), bytes.end()));
            ZoStreamReadASCIIFile file(folder.CPath("text.txt"));
            EXPECT_EQ(readAllLines(file, bytes.size(), "ZoStreamReadASCIIFile"), lines);
        }
    }
}

TEST(ZoStreamReadASCIITest, CharactersUntilTheEndThenNothingMoreIsRead)
{
    MemoryTextStream stream("A\xFF\r\n");
    signed char c = 0, d = 0;
    stream >> c >> d;
    EXPECT_EQ(c, 'A');
    EXPECT_EQ(d, -1);
    CString line;
    stream >> line;
    EXPECT_TRUE(line.IsEmpty());
    EXPECT_FALSE(stream.IsEndOfStream());
    expectEndError(stream, c, 106);
    EXPECT_TRUE(stream.IsEndOfStream());
    const size_t position = stream.position;
    expectEndError(stream, c, 106);
    expectEndError(stream, line, 41);
    EXPECT_EQ(stream.position, position);
    MemoryTextStream numbers("12"); // numbers cannot be read from text, and consume nothing
    int value = 7;
    EXPECT_THROW(static_cast<ZoStreamRead&>(numbers) >> value, ZoExceptionStream);
    EXPECT_THROW(numbers.ReadAndCompareVersion(3), ZoExceptionStream);
    EXPECT_EQ(numbers.position, 0u);
}

TEST(ZoStreamReadASCIIFileTest, FilesItOpensAreClosedAndMissingOnesNameTheirSite)
{
    zotest::TempFolder folder;
    zotest::WriteBytes(folder.Path("text.txt"), {'a', 'b', '\r', '\n', 'c'});
    {
        zotest::ScopedSystemTemporary redirected(folder);
        ZoStreamReadASCIIFile byName(folder.CPath("text.txt"));
        ZoStreamReadASCIIFile inTemporary(ZoClassSerialization::eTemporary, u"text.txt");
        CString line;
        inTemporary >> line;
        EXPECT_EQ(line, CString(u"ab"));
        signed char c = 0;
        byName >> c;
        EXPECT_EQ(c, 'a');
        EXPECT_TRUE(zotest::IsFileOpen(folder.Path("text.txt")));
    }
    EXPECT_FALSE(zotest::IsFileOpen(folder.Path("text.txt"))) << "the stream owns the archive it opened and closes it";
    for (const std::function<void()>& open : std::initializer_list<std::function<void()>>{
             [&] { ZoStreamReadASCIIFile stream(folder.CPath("none.txt")); },
             [] { ZoStreamReadASCIIFile stream(ZoClassSerialization::eTemporary, u"zo-none/none.txt"); }})
        zotest::ExpectThrowSite<ZoExceptionStream>(open, "..\\base\\ZoStreamReadASCIIFile.cpp", "ZoStreamReadASCIIFile", "openFile", 94);
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
    CMemFile target; // a storing archive cannot be read: its exception becomes the end of the text
    CArchive storing(&target, CArchive::store);
    ZoStreamReadASCIIFile fromStoring(storing);
    EXPECT_EQ(readAllLines(fromStoring, 1, "ZoStreamReadASCIIFile"), Lines({""}));
}

TEST(ZoClassSerializationTest, SpecialDirectoriesEndInTheSeparator)
{
    zotest::TempFolder folder;
    const char16_t separator = ZoOS::GetPathSeparator();
    {
        zotest::ScopedSystemTemporary redirected(folder);
        const CString temp = ZCS::GetDirectory(ZCS::eTemporary);
        EXPECT_EQ(temp, folder.CPath() + separator);
        EXPECT_EQ(ZCS::GetDirectory(ZCS::eHalvo), temp + u"Halvo" + separator);
        EXPECT_EQ(ZCS::GetDirectory(ZCS::eTestSuite), temp + u"ZoTestSuite" + separator);
    }
    for (int directory = 0; directory <= 15; ++directory) {
        const CString path = ZCS::GetDirectory(static_cast<ZCS::ESpecialDirectory>(directory));
        ASSERT_FALSE(path.IsEmpty()) << directory;
        EXPECT_EQ(path[path.GetLength() - 1], separator) << directory;
    }
    EXPECT_EQ(ZCS::GetDirectory(ZCS::eCurrent), CString(std::filesystem::current_path().string()) + separator);
    const CString module = ZCS::GetDirectory(ZCS::eModule);
    EXPECT_TRUE(ZCS::Exists(module + u"zo-tests") || ZCS::Exists(module + u"zo-tests.exe"));
    EXPECT_EQ(module, ZCS::GetDirectory(ZCS::eApplication));
}

TEST(ZoClassSerializationTest, FileChoresAndArchivesThatCannotOpen)
{
    zotest::TempFolder folder;
    const CString deep = folder.CPath("a/b/c"), file = folder.CPath("file"), copy = folder.CPath("new/folder/copy");
    EXPECT_EQ(ZCS::CreateDirectoryW(deep), 1);
    EXPECT_EQ(ZCS::IsDirectory(deep), 1);
    EXPECT_EQ(ZCS::CreateDirectoryW(deep), 1); // already there
    zotest::WriteBytes(folder.Path("file"), Bytes({1, 2, 3}));
    EXPECT_EQ(ZCS::CreateDirectoryW(file), 0);
    EXPECT_EQ(ZCS::CreateDirectoryW(folder.CPath("file/below")), 0);
    EXPECT_EQ(ZCS::IsDirectory(file), 0);
    EXPECT_EQ(ZCS::Exists(file), 1);
    EXPECT_EQ(ZCS::GetFileSize(file), 3u);
    EXPECT_EQ(ZCS::GetFileSize(folder.CPath("missing")), 0u);
    EXPECT_EQ(ZCS::CopyFileW(folder.CPath("missing"), folder.CPath("x"), 0), 0);
    EXPECT_EQ(ZCS::CopyFileW(file, copy, 0), 1);
    EXPECT_EQ(zotest::ReadBytes(folder.Path("new/folder/copy")), Bytes({1, 2, 3}));
    EXPECT_EQ(ZCS::CopyFileW(file, copy, 1), 0);
    EXPECT_EQ(ZCS::CopyFileW(file, copy, 0), 1);
    EXPECT_EQ(ZCS::DeleteFileW(copy), 1);
    EXPECT_EQ(ZCS::DeleteFileW(copy), 0);

    EXPECT_EQ(ZCS::CreateArchive(folder.CPath("missing"), ZCS::eRead), nullptr);
    EXPECT_EQ(ZCS::CreateArchive(folder.CPath("x"), static_cast<ZCS::ESerializationMode>(3)), nullptr);
    EXPECT_EQ(ZCS::CreateArchive(folder.CPath(), ZCS::eRead), nullptr); // a folder
    // A relative path gets its folder made too, however short the folder's name.
    {
        zotest::ScopedCurrentFolder scratch;
        EXPECT_EQ(ZCS::ReleaseArchive(ZCS::CreateArchive(CString(std::u16string{u'd', ZoOS::GetPathSeparator(), u'f'}), ZCS::eWrite)), 1);
    }
    EXPECT_EQ(ZCS::ReleaseArchive(nullptr), 0);
}

TEST(ZoClassSerializationTest, LinesTokensAndStrings)
{
    zotest::TempFolder folder;
    const CString path = folder.CPath("text.txt");
    CArchive* out = ZCS::CreateArchive(path, ZCS::eWrite);
    ASSERT_NE(out, nullptr);
    ZCS::WriteLine(*out, u"first line\r");
    ZCS::WriteLine(*out, u"caf\u00e9 \u20ac\n"); // already ends with a line feed
    ZCS::WriteString(*out, u" tok\u4e16n\tlast");
    EXPECT_EQ(ZCS::ReleaseArchive(out), 1);
    EXPECT_EQ(zotest::ReadBytes(folder.Path("text.txt")),
              Bytes({'f', 'i', 'r', 's', 't', ' ', 'l', 'i', 'n', 'e', '\r', '\n', 'c', 'a', 'f', 0xE9, ' ', 0x80, '\n',
                     ' ', 't', 'o', 'k', '?', 'n', '\t', 'l', 'a', 's', 't'}));

    CArchive* in = ZCS::CreateArchive(path, ZCS::eRead);
    ASSERT_NE(in, nullptr);
    char buffer[64];
    EXPECT_EQ(ZCS::ReadLine(*in, buffer, sizeof buffer), 11u);
    EXPECT_STREQ(buffer, "first line\r"); // the carriage return is kept
    CString line;
    EXPECT_EQ(ZCS::ReadLine(*in, line), 1);
    EXPECT_EQ(line, CString(u"caf\u00e9 \u20ac"));
    buffer[0] = 'q';
    EXPECT_EQ(ZCS::ReadToken(*in, buffer, 0, 1), 0u); // no room at all: nothing read or written
    EXPECT_EQ(ZCS::ReadLine(*in, buffer, 0), 0u);
    EXPECT_EQ(buffer[0], 'q');
    const std::pair<uint32_t, const char*> tokens[] = {{1, ""}, {sizeof buffer, ""}, {3, "to"}, {sizeof buffer, "k?n"}};
    for (const auto& [size, token] : tokens) { // room for the terminator only; a leading blank; cut; whole
        EXPECT_EQ(ZCS::ReadToken(*in, buffer, size, 0), std::strlen(token));
        EXPECT_STREQ(buffer, token);
    }
    EXPECT_EQ(ZCS::ReadToken(*in, buffer, sizeof buffer, 1), 4u);
    EXPECT_STREQ(buffer, "last");
    EXPECT_EQ(ZCS::ReadLine(*in, buffer, sizeof buffer), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(ZCS::ReadLine(*in, line), 0);
    EXPECT_EQ(ZCS::ReleaseArchive(in), 1);

    zotest::WriteBytes(folder.Path("blank.txt"), Bytes({' ', 'a', ' ', 'b'})); // a leading blank is kept when asked for
    in = ZCS::CreateArchive(folder.CPath("blank.txt"), ZCS::eRead);
    EXPECT_EQ(ZCS::ReadToken(*in, buffer, sizeof buffer, 1), 2u);
    EXPECT_STREQ(buffer, " a");
    ZCS::ReleaseArchive(in);
}

} // namespace
