// The text reader's rules through a stream over bytes in memory (line breaks, long lines, the code page, the
// end), and the text file reader over files and callers' archives.
#include "base/ZoClassSerialization.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadASCII.h"
#include "base/ZoStreamReadASCIIFile.h"
#include "platform/CArchive.h"
#include "platform/CMemFile.h"

#include "ZoTestSupport.h"

#include <functional>

namespace {

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

} // namespace
