#include "platform/CString.h"

#include <gtest/gtest.h>

namespace {

std::string fmt(const CString& s) { return s.ToUtf8(); }

TEST(CStringTest, FormatReadsDirectivesAsTheWindowsRuntimeDoes)
{
    struct Case
    {
        CString actual;
        const char* expected;
    };
    const Case cases[] = {
        {CString::Formatted(u"%s(%d):", CString(u"file.cpp"), 346), "file.cpp(346):"},
        {CString::Formatted(u"%02d.%02d.%04d", 3, 7, 2024), "03.07.2024"},
        {CString::Formatted(u"%d", 0xFFFFFFFFu), "-1"},
        {CString::Formatted(u"%d", int64_t(0x100000005)), "5"},
        {CString::Formatted(u"%ld", int64_t(-2)), "-2"},
        {CString::Formatted(u"%u %x %X", -1, 255, 0xABCDu), "4294967295 ff ABCD"},
        {CString::Formatted(u"%lld %I64d %llu", int64_t(-5000000000), int64_t(1) << 40, ~uint64_t(0)),
         "-5000000000 1099511627776 18446744073709551615"},
        {CString::Formatted(u"%f|%lf|%.2f|%8.3f|%-8.1f|", 1.5, 2.0, 3.14159, 2.5, 1.25), "1.500000|2.000000|3.14|   2.500|1.2     |"},
        {CString::Formatted(u"%c%c", u'O', 'k'), "Ok"},
        {CString::Formatted(u"%s|%s|%s|%5s|%-5s|%.2s|%s|", u"wide", "utf8 \xC3\xA4", std::string("std"), u"r", u"l", u"abc", u""),
         "wide|utf8 \xC3\xA4|std|    r|l    |ab||"},
        {CString::Formatted(u"%p", reinterpret_cast<const void*>(uintptr_t(0xABC))), "0x0000000000000ABC"},
        {CString::Formatted(u"100%% %+d % d %05d %-4d|", 5, 5, -42, 7), "100% +5  5 -0042 7   |"},
        {CString::Formatted(u"%*d|%.*f", 4, 7, 1, 2.25), "   7|2.2"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(fmt(c.actual), c.expected);
}

TEST(CStringTest, FormatWritesUnmatchedDirectivesAsTheyStand)
{
    EXPECT_EQ(fmt(CString::Formatted(u"%d and %s")), "%d and %s");
    EXPECT_EQ(fmt(CString::Formatted(u"%d and %s", 3)), "3 and %s");
    // An argument the directive cannot print is not reinterpreted.
    EXPECT_EQ(fmt(CString::Formatted(u"%s %f", 3)), "%s %f");
    for (const char16_t* format : {u"%d", u"%x", u"%c", u"%p", u"%*f", u"%.*f"}) // a star takes only a signed number
        EXPECT_EQ(CString::Formatted(format, 2.5), CString(format));
    EXPECT_EQ(fmt(CString::Formatted(u"%q %", 1)), "%q %");
    // Widths and precisions past the largest field are refused, however many digits they have
    // (the diagnostic trace formats user text) and wherever they come from; the largest is kept.
    for (const char16_t* huge : {u"%99999999999999999999d", u"%.99999999999999999999d", u"%4097d", u"%*d"})
        EXPECT_EQ(fmt(CString::Formatted(huge, int64_t(0x80000000), 1)).substr(0, 1), "%") << CString(huge).ToUtf8();
    EXPECT_EQ(fmt(CString::Formatted(u"%4096d", 1)).size(), 4096u);
    EXPECT_EQ(fmt(CString::Formatted(u"%-*d|", -3, 1)), "1  |");
    EXPECT_EQ(fmt(CString::Formatted(u"%s", static_cast<const char16_t*>(nullptr))), "(null)");
    CString target(u"old");
    target.Format(u"%d-%d", 1, 2);
    EXPECT_EQ(fmt(target), "1-2");
}

TEST(CStringTest, Utf8RoundTripsAndRepairsBadInputAndAnsiIsWindows1252)
{
    const std::string text = "a\xC3\xA9\xE2\x82\xAC\xF4\x8F\xBF\xBFz"; // a, e-acute, euro, U+10FFFF, z
    const CString decoded(text);
    EXPECT_EQ(decoded.GetLength(), 6); // the last code point takes two code units: DBFF DFFF
    EXPECT_EQ(decoded[1], 0xE9);
    EXPECT_EQ(decoded[2], 0x20AC);
    EXPECT_EQ(decoded[4], 0xDFFF);
    EXPECT_EQ(decoded.ToUtf8(), text);

    // Truncated, overlong, surrogate-encoding and stray continuation bytes each become U+FFFD.
    const CString bad(std::string("x\xC3" "y\xC0\xAF" "\xED\xA0\x80" "\x80" "\xF0\x9F"));
    EXPECT_EQ(bad.ToUtf8(), "x\xEF\xBF\xBDy\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
    // A lone surrogate cannot be written as UTF-8 either.
    EXPECT_EQ(CString(std::u16string(1, char16_t(0xD800))).ToUtf8(), "\xEF\xBF\xBD");
    // The ANSI code page is Windows-1252, both ways.
    const char bytes[] = "A\x80\xE9\x9F\x81";
    const CString ansi = CString::FromAnsi(bytes, 5);
    EXPECT_EQ(ansi[1], 0x20AC);
    EXPECT_EQ(ansi[2], 0xE9);
    EXPECT_EQ(ansi[3], 0x178);
    // The five bytes the code page leaves undefined are kept as the controls of the same value.
    for (const unsigned char undefined : {0x81, 0x8D, 0x8F, 0x90, 0x9D})
        EXPECT_EQ(CString::FromAnsi(reinterpret_cast<const char*>(&undefined), 1)[0], undefined);
    EXPECT_EQ(ansi.ToAnsi(), std::string(bytes, 5));
    // U+0080..U+009F are not the code page's 0x80..0x9F, except where it leaves a byte undefined.
    EXPECT_EQ(CString(u"\u4E2D!\u0080\u0081\u009F").ToAnsi(), "?!?\x81?");
}

TEST(CStringTest, SlicingSearchAndCaseClampTheirArguments)
{
    const CString s(u"Hello, World");
    const std::pair<CString, const char16_t*> slices[] = {
        {s.Mid(7), u"World"}, {s.Mid(7, 100), u"World"}, {s.Mid(100), u""}, {s.Mid(-3, 2), u"He"}, {s.Mid(4, 1), u"o"},
        {s.Left(5), u"Hello"}, {s.Right(5), u"World"}, {s.Right(50), u"Hello, World"}, {s.Left(-1), u""}};
    for (const auto& [actual, expected] : slices)
        EXPECT_EQ(actual, CString(expected));
    const std::pair<int, int> found[] = {{s.Find(u'o'), 4}, {s.Find(u'o', 5), 8}, {s.Find(u'o', 99), -1},
                                         {s.Find(CString(u"World")), 7}, {s.Find(CString(u"world")), -1}, {s.ReverseFind(u'l'), 10}};
    for (const auto& [actual, expected] : found)
        EXPECT_EQ(actual, expected);
    CString upper(u"straße \u00e0\u00ff");
    upper.MakeUpper();
    EXPECT_EQ(upper, CString(u"STRAßE \u00c0\u0178"));
    EXPECT_LT(CString(u"abc").Compare(CString(u"abd")), 0);
    EXPECT_TRUE(CString(u"abc") < CString(u"abd"));
    EXPECT_TRUE(CString(u"x") == u"x");
    EXPECT_TRUE(u"x" == CString(u"x"));
    CString joined = CString(u"a") + u"b" + CString(u"c") + u'd';
    joined += u"e";
    EXPECT_EQ(joined, CString(u"abcde"));
    EXPECT_TRUE(CString(static_cast<const char16_t*>(nullptr)).IsEmpty());
}

} // namespace
