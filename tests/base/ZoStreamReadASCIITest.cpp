// The text reader's rules, through a stream over bytes in memory: line breaks, long lines, the
// code page, and the end of the stream.
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadASCII.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

class MemoryTextStream : public ZoStreamReadASCII
{
public:
    explicit MemoryTextStream(std::string bytes) : m_bytes(std::move(bytes)) {}
    size_t position = 0;

protected:
    bool read(char& c) override
    {
        if (position >= m_bytes.size())
            return true;
        c = m_bytes[position++];
        return false;
    }

private:
    std::string m_bytes;
};

template <class Value>
void expectEndError(ZoStreamReadASCII& stream, Value& value, uint32_t line)
{
    zotest::ExpectThrowSite<ZoExceptionStream>([&] { stream >> value; }, "..\\base\\ZoStreamReadASCII.cpp", "ZoStreamReadASCII",
                                               "operator >>", line);
}

using Lines = std::vector<std::string>;

// Every line (as UTF-8) up to the end of the stream; checks that one more read throws.
Lines readAllLines(const std::string& bytes)
{
    MemoryTextStream stream(bytes);
    Lines lines;
    while (!stream.IsEndOfStream() && lines.size() <= bytes.size()) {
        CString line(u"stale");
        stream >> line;
        lines.push_back(line.ToUtf8());
    }
    CString afterEnd(u"stale");
    expectEndError(stream, afterEnd, 41);
    EXPECT_TRUE(afterEnd.IsEmpty());
    return lines;
}

TEST(ZoStreamReadASCIITest, LineBreaksLongLinesAndTheCodePage)
{
    const std::string x127(127, 'x'), y300(300, 'y');
    const struct
    {
        std::string bytes;
        Lines lines;
    } cases[] = {
        {"ab\r\ncd", {"ab", "cd"}},
        {"", {""}},
        // A break at the very end is followed by one more, empty line.
        {"ab\ncd\n", {"ab", "cd", ""}},
        {"\r\n\r\n", {"", "", ""}},
        // A carriage return takes the next byte with it, whatever it is.
        {"a\rb\nc", {"a", "", "c"}},
        {"a\r\rb", {"a", "b"}},
        {"a\r", {"a"}},
        // Lines longer than a chunk, and breaks right at a chunk's end.
        {x127 + "\n" + x127 + "x", {x127, x127 + "x"}},
        {y300 + "\r\n" + y300, {y300, y300}},
        // Windows-1252: 0x80 is the euro sign, 0x81 has no character and stays U+0081.
        {"\x80 \xE9\xFF\n\x81", {"\u20ac \u00e9\u00ff", "\u0081"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.bytes));
        EXPECT_EQ(readAllLines(c.bytes), c.lines);
    }
}

TEST(ZoStreamReadASCIITest, RandomTextsSplitAsTheirLinesWereJoined)
{
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
    }
}

TEST(ZoStreamReadASCIITest, CharactersUntilTheEndThenNothingMoreIsRead)
{
    MemoryTextStream stream("A\xFF\r\n");
    signed char c = 0;
    stream >> c;
    EXPECT_EQ(c, 'A');
    stream >> c;
    EXPECT_EQ(c, -1);
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
}

TEST(ZoStreamReadASCIITest, NumbersCannotBeReadFromTextAndConsumeNothing)
{
    MemoryTextStream stream("12");
    ZoStreamRead& input = stream;
    int value = 7;
    EXPECT_THROW(input >> value, ZoExceptionStream);
    EXPECT_EQ(value, 7);
    EXPECT_THROW(input.ReadAndCompareVersion(3), ZoExceptionStream);
    EXPECT_EQ(stream.position, 0u);
}

} // namespace
