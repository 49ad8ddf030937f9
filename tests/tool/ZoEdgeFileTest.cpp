#include "ZoEdgeFile.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

std::vector<ZoEdge> parse(const std::string& text) { return ParseEdgeFile(text.data(), text.size()); }

} // namespace

TEST(ZoEdgeFileTest, ReadsEdgesAcrossLineEndsCommentsAndBlanks)
{
    const std::string text = "\xEF\xBB\xBF# roads\r\n"
                             "a\tb 2.5\r\n"
                             "\n"
                             "   # indented comment\n"
                             "  _x1   42 0\n"
                             "42 a 1e3"; // no line end at the end
    const std::vector<ZoEdge> edges = parse(text);
    ASSERT_EQ(edges.size(), 3u);
    const struct
    {
        const char* from;
        const char* to;
        float weight;
        uint32_t line;
    } expected[] = {{"a", "b", 2.5f, 2}, {"_x1", "42", 0.0f, 5}, {"42", "a", 1000.0f, 6}};
    for (size_t i = 0; i < edges.size(); ++i) {
        EXPECT_EQ(edges[i].from, expected[i].from) << i;
        EXPECT_EQ(edges[i].to, expected[i].to) << i;
        EXPECT_EQ(edges[i].weight, expected[i].weight) << i;
        EXPECT_EQ(edges[i].line, expected[i].line) << i;
    }
    EXPECT_TRUE(parse("").empty());
    EXPECT_TRUE(parse("\n\r\n# only a comment").empty());
}

TEST(ZoEdgeFileTest, BadLinesNameTheirLineAndProblem)
{
    const struct
    {
        std::string text;
        const char* message;
    } cases[] = {
        {"a b\n", "line 1: expected \"from to weight\", found 2 fields"},
        {"a b 1\nc\n", "line 2: expected \"from to weight\", found 1 field"},
        {"a b 1 extra\n", "line 1: expected \"from to weight\", found 4 fields"},
        {"a b -1\n", "line 1: weight -1 is negative"},
        {"a b 1x\n", "line 1: weight \"1x\" is not a finite number"},
        {"a b inf\n", "line 1: weight \"inf\" is not a finite number"},
        {"a b nan\n", "line 1: weight \"nan\" is not a finite number"},
        {"a b 1e99\n", "line 1: weight \"1e99\" is not a finite number"},
        {"a b\t\n", "line 1: expected"},
        {"1a b 1\n", "line 1: node name \"1a\" is not"},
        {"a b-c 1\n", "line 1: node name \"b-c\" is not"},
        {std::string("a \x01\xFF 1\n", 8), "line 1: node name \"\\x01\\xff\" is not"},
        {std::string("a b\0 1\n", 7), "line 1: node name \"b\\x00\" is not"},
        {"\n\n# c\na b 1\r\nb c 1 # trailing comment\n", "line 5: expected \"from to weight\", found 6 fields"},
    };
    for (const auto& c : cases) {
        try {
            parse(c.text);
            ADD_FAILURE() << "accepted: " << c.text;
        } catch (const ZoEdgeFileError& e) {
            EXPECT_EQ(std::string(e.what()).rfind(c.message, 0), 0u) << e.what() << " for " << c.text;
        }
    }
}
