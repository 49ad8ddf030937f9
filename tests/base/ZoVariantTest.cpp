// The variant: its conversion table cell by cell, in-place conversion that keeps the value when it
// throws, and comparisons across kinds.
#include "base/ZoException.h"
#include "base/ZoVariant.h"

#include "ZoTestSupport.h"

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using Blob = ZoVariant::Blob;

// The result of `operation` as text, or "!method line" when it throws.
std::string outcome(const std::function<std::string()>& operation)
{
    try {
        return operation();
    } catch (const ZoException& e) {
        EXPECT_EQ(e.GetThrowingClassName().ToUtf8() + e.GetFileName().ToUtf8(),
                  e.GetThrowingMethodName() == CString(u"ZoDateTime") ? "ZoDateTime..\\base\\ZoDateTime.cpp"
                                                                         : "ZoVariant..\\base\\ZoVariant.cpp");
        return "!" + e.GetThrowingMethodName().ToUtf8() + " " + std::to_string(e.GetCodeLine());
    }
}

std::string number(double value) { return CString::Formatted(u"%.9g", value).ToUtf8(); }

// One column per conversion of the table.
std::vector<std::string> conversions(const ZoVariant& v)
{
    return {
        outcome([&] { return std::to_string(v.ToBOOL()); }),
        outcome([&] { return std::to_string(v.ToINT()); }),
        outcome([&] { return std::to_string(v.ToDWORD()); }),
        outcome([&] { return number(v.ToFLOAT()); }),
        outcome([&] { return v.ToString().ToUtf8(); }),
        outcome([&] { return CString::Formatted(u"%08X", v.ToColor().GetDWORD()).ToUtf8(); }),
        outcome([&] { return std::to_string(v.ToBlob().GetCount()); }),
        outcome([&] { return std::to_string(static_cast<uint64_t>(v.ToDateTime())); }),
    };
}

const ZoDateTime& sampleDate()
{
    static const ZoDateTime date(uint64_t(128486355090000000ull));
    return date;
}

TEST(ZoVariant, ConversionTable)
{
    const std::string date = sampleDate().ToString(ZoDateTime::eFormatSortable).ToUtf8();
    const std::string ticks = std::to_string(static_cast<uint64_t>(sampleDate()));
    const std::string noBlob = "!ToBlob 279", noDate = "!ToString 225", noColor = "!ToColor 260";
    // Columns: ToBOOL ToINT ToDWORD ToFLOAT ToString ToColor ToBlob ToDateTime.
    const struct { ZoVariant value; std::vector<std::string> expected; } rows[] = {
        {ZoVariant(), {"!ToBOOL 51", "!ToINT 87", "!ToDWORD 129", "!ToFLOAT 163", "!ToString 205", noColor, noBlob, noDate}},
        {ZoVariant(true), {"1", "1", "1", "1", "1", noColor, noBlob, noDate}},
        {ZoVariant(false), {"0", "0", "0", "0", "0", noColor, noBlob, noDate}},
        {ZoVariant(-7), {"1", "-7", "4294967289", "-7", "-7", noColor, noBlob, noDate}},
        {ZoVariant(int64_t(0x100000005ll)), {"1", "5", "5", "4.2949673e+09", "5", noColor, noBlob, noDate}},
        {ZoVariant(int64_t(4294967296ll)), {"1", "0", "0", "4.2949673e+09", "0", noColor, noBlob, noDate}},
        {ZoVariant(0xFFFFFFFFu), {"1", "-1", "4294967295", "4.2949673e+09", "-1", "FFFFFFFF", noBlob, noDate}},
        {ZoVariant(-2.75f), {"1", "-2", "4294967294", "-2.75", "-2.750000", noColor, noBlob, noDate}},
        {ZoVariant(1e20f), {"1", "-2147483648", "0", "1.00000002e+20", "100000002004087734272.000000", noColor, noBlob, noDate}},
        {ZoVariant(3.9), {"1", "3", "3", "3.9000001", "!ToString 205", noColor, noBlob, noDate}},
        {ZoVariant(1e300), {"1", "-2147483648", "0", "inf", "!ToString 205", noColor, noBlob, noDate}},
        {ZoVariant('A'), {"1", "65", "65", "!ToFLOAT 163", "A", noColor, noBlob, noDate}},
        {ZoVariant(char(-3)), {"1", "-3", "4294967293", "!ToFLOAT 163", "\xEF\xBF\xBD", noColor, noBlob, noDate}},
        {ZoVariant(u"  -42xyz"), {"1", "-42", "4294967254", "-42", "  -42xyz", "FFFFFFBE", noBlob, "!ZoDateTime 116"}},
        {ZoVariant(u"123456"), {"1", "123456", "123456", "123456", "123456", "FF123456", noBlob, "!ZoDateTime 116"}},
        {ZoVariant(u"FF00FF00"), {"0", "0", "0", "0", "FF00FF00", "FF00FF00", noBlob, "!ZoDateTime 116"}},
        {ZoVariant(u"0x99999999999"), {"0", "0", "0", "1.0555312e+13", "0x99999999999", "FFFFFFFF", noBlob, "!ZoDateTime 116"}},
        {ZoVariant(u"99999999999"), {"1", "2147483647", "2147483647", "9.9999998e+10", "99999999999", "FFFFFFFF", noBlob, "!ZoDateTime 116"}},
        {ZoVariant(CString(date)), {"1", "2008", "2008", "2008", date, "FF002008", noBlob, ticks}},
        {ZoVariant(Blob(2, 1, 2)), {"!ToBOOL 51", "!ToINT 87", "!ToDWORD 129", "!ToFLOAT 163", "!ToString 205", noColor, "2", noDate}},
        {ZoVariant(sampleDate()), {"!ToBOOL 51", "!ToINT 87", "!ToDWORD 129", "!ToFLOAT 163", date, noColor, noBlob, ticks}},
        {ZoVariant(ZoColor(0x80123456u)), {"!ToBOOL 51", "!ToINT 87", "2148676694", "!ToFLOAT 163", "0x123456", "80123456", noBlob, noDate}},
    };
    for (const auto& row : rows) {
        const std::vector<std::string> got = conversions(row.value);
        for (size_t column = 0; column < got.size(); ++column)
            EXPECT_EQ(got[column], row.expected[column]) << "kind " << row.value.GetType() << ", column " << column;
    }
    EXPECT_EQ(ZoVariant(std::numeric_limits<float>::quiet_NaN()).ToBOOL(), 1);
    EXPECT_EQ(ZoVariant(std::numeric_limits<float>::quiet_NaN()).ToINT(), std::numeric_limits<int32_t>::min());
}

// What identifies a variant's value without converting it through the table.
std::string fingerprint(const ZoVariant& v)
{
    const std::string kind = std::to_string(v.GetType()) + ":";
    switch (v.GetType()) {
    case ZoVariant::eTypeDouble: return kind + number(v.ToFLOAT());
    case ZoVariant::eTypeBlob: return kind + std::to_string(v.ToBlob().GetCount());
    case ZoVariant::eTypeNull: return kind;
    default: return kind + v.ToString().ToUtf8();
    }
}

TEST(ZoVariant, ConvertToMatchesTheTableOrLeavesTheValue)
{
    const ZoVariant sources[] = {ZoVariant(), ZoVariant(true), ZoVariant(-7), ZoVariant(int64_t(5)), ZoVariant(9u),
                                 ZoVariant(2.5f), ZoVariant(2.5), ZoVariant('x'), ZoVariant(u"2008-02-29 13:05:09"),
                                 ZoVariant(u"12"), ZoVariant(Blob(1, 9)), ZoVariant(sampleDate()), ZoVariant(ZoColor::c_RED)};
    for (const ZoVariant& source : sources) {
        for (uint32_t target = 0; target <= 12; ++target) {
            ZoVariant value;
            source.GetType() == ZoVariant::eTypeDouble ? void(value = 2.5) : void(value = source); // no double copies
            const std::string before = fingerprint(value);
            std::string expected;
            switch (target) {
            case ZoVariant::eTypeNull: expected = "0:"; break;
            case ZoVariant::eTypeBool: expected = outcome([&] { return "1:" + std::to_string(value.ToBOOL()); }); break;
            case ZoVariant::eTypeInt: expected = outcome([&] { return "2:" + std::to_string(value.ToINT()); }); break;
            case ZoVariant::eTypeDWORD: expected = outcome([&] { return "4:" + std::to_string(int32_t(value.ToDWORD())); }); break;
            case ZoVariant::eTypeFloat: expected = outcome([&] { return "5:" + CString::Formatted(u"%f", double(value.ToFLOAT())).ToUtf8(); }); break;
            case ZoVariant::eTypeString: expected = outcome([&] { return "8:" + value.ToString().ToUtf8(); }); break;
            case ZoVariant::eTypeDateTime: expected = outcome([&] { return "10:" + value.ToDateTime().ToString(ZoDateTime::eFormatSortable).ToUtf8(); }); break;
            case ZoVariant::eTypeColor: expected = outcome([&] { return "11:" + value.ToColor().ToString().ToUtf8(); }); break;
            default: expected = "!ConvertTo 628";
            }
            if (target == value.GetType())
                expected = before;
            const std::string got = outcome([&] {
                value.ConvertTo(static_cast<ZoVariant::EVariantType>(target));
                return fingerprint(value);
            });
            EXPECT_EQ(got, expected) << "from " << before << " to " << target;
            if (got[0] == '!') {
                EXPECT_EQ(fingerprint(value), before) << "a refused conversion changed the value, to " << target;
            }
        }
    }
    // A double is never copied, and the refusal leaves the target alone.
    ZoVariant target(u"kept");
    EXPECT_EQ(outcome([&] { target = ZoVariant(1.5); return std::string(); }), "!ToString 307");
    const ZoVariant d(1.5);
    EXPECT_EQ(outcome([&] { target = d; return std::string(); }), "!ToString 307");
    EXPECT_EQ(target.ToString(), CString(u"kept"));
    target = target.ToString() + CString(u"!");
    EXPECT_EQ(target.ToString(), CString(u"kept!"));
}

TEST(ZoVariant, ComparisonsFollowTheRightHandKind)
{
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const struct { ZoVariant left, right; std::string equal, less, greater; } rows[] = {
        {ZoVariant(5), ZoVariant(5u), "1", "0", "0"},
        {ZoVariant(-1), ZoVariant(1u), "0", "0", "1"}, // as DWORDs
        {ZoVariant(-1), ZoVariant(1), "0", "1", "0"},
        {ZoVariant(int64_t(-5)), ZoVariant(int64_t(3)), "0", "1", "0"},
        {ZoVariant(nan), ZoVariant(nan), "0", "0", "0"},
        {ZoVariant(1.5f), ZoVariant(2.5f), "0", "1", "0"},
        {ZoVariant(char(-1)), ZoVariant(char(1)), "0", "1", "0"},
        {ZoVariant(257), ZoVariant(true), "1", "!operator < 573", "!operator > 598"}, // the byte only
        {ZoVariant(u"B"), ZoVariant(u"a"), "0", "1", "0"},
        {ZoVariant(u"a"), ZoVariant(u"a"), "1", "0", "0"},
        {ZoVariant(), ZoVariant(), "1", "0", "0"},
        {ZoVariant(3), ZoVariant(), "0", "0", "0"},
        {ZoVariant(ZoColor::c_RED), ZoVariant(ZoColor::c_RED), "1", "!operator < 573", "!operator > 598"},
        {ZoVariant(3), ZoVariant(ZoColor::c_RED), "!operator == 548", "!operator < 573", "!operator > 598"},
        {ZoVariant(3), ZoVariant(u"3"), "!operator == 548", "!operator < 573", "!operator > 598"},
        {ZoVariant(3), ZoVariant(3.0), "!operator == 548", "!operator < 573", "!operator > 598"},
        {ZoVariant(Blob(1, 1)), ZoVariant(Blob(1, 1)), "!operator == 548", "!operator < 573", "!operator > 598"},
        {ZoVariant(sampleDate()), ZoVariant(sampleDate()), "!operator == 548", "!operator < 573", "!operator > 598"},
    };
    for (const auto& row : rows) {
        const std::string where = fingerprint(row.left) + " vs " + fingerprint(row.right);
        EXPECT_EQ(outcome([&] { return std::to_string(row.left == row.right); }), row.equal) << where;
        EXPECT_EQ(outcome([&] { return std::to_string(row.left < row.right); }), row.less) << where;
        EXPECT_EQ(outcome([&] { return std::to_string(row.left > row.right); }), row.greater) << where;
        if (row.equal.size() == 1) {
            EXPECT_EQ(row.left != row.right, row.equal == "0") << where;
        }
    }
}

} // namespace
