// Date and time: text and display forms, calendar arithmetic, local time across daylight saving, file times.
#include "base/ZoDateTime.h"
#include "base/ZoException.h"
#include "platform/ZoOS.h"

#include "ZoContainerTestSupport.h"
#include "ZoTestSupport.h"

#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

// Sets TZ for the scope and restores it afterwards. POSIX only: Windows takes the zone from the
// system settings, which a test cannot change for itself.
#if !defined(_WIN32)
struct ScopedTimeZone
{
    explicit ScopedTimeZone(const char* zone) : hadOld(std::getenv("TZ") != nullptr), old(hadOld ? std::getenv("TZ") : "")
    {
        setenv("TZ", zone, 1), tzset();
    }
    ~ScopedTimeZone() { hadOld ? setenv("TZ", old.c_str(), 1) : unsetenv("TZ"), tzset(); }
    const bool hadOld;
    const std::string old;
};
#endif

std::string text(const ZoDateTime& value, ZoDateTime::EFormat format) { return value.ToString(format).ToUtf8(); }

std::string utc(const ZoDateTime& value)
{
    return CString::Formatted(u"%04d-%02d-%02d %02d:%02d:%02d", value.GetYear(), value.GetMonth(), value.GetDay(),
                              value.GetHour(), value.GetMinute(), value.GetSecond())
        .ToUtf8();
}

SYSTEMTIME fields(int year, int month, int day, int hour, int minute, int second, int millisecond = 0)
{
    auto word = [](int value) { return static_cast<uint16_t>(value); };
    SYSTEMTIME time = {};
    time.wYear = word(year), time.wMonth = word(month), time.wDay = word(day), time.wHour = word(hour);
    time.wMinute = word(minute), time.wSecond = word(second), time.wMilliseconds = word(millisecond);
    return time;
}

TEST(ZoDateTime, TextFormAndDisplayForms)
{
    // Read and shown in the same zone, the forms give back the text in any zone without a clock
    // change at that moment; POSIX pins UTC so that the stored fields can be checked too.
#if !defined(_WIN32)
    ScopedTimeZone zone("UTC0");
    EXPECT_EQ(utc(ZoDateTime(CString(u"2008-02-29 13:05:09"))), "2008-02-29 13:05:09");
    EXPECT_EQ(utc(ZoDateTime(CString(u"2008- 2-29  3:05:09"))), "2008-02-29 03:05:09") << "the scan skips blanks";
#endif
    const ZoDateTime leap(CString(u"2008-02-29 13:05:09"));
    const std::pair<uint32_t, const char*> forms[] = {
        {ZoDateTime::eFormatDate, "29.02.2008"},   {ZoDateTime::eFormatDateTime, "29.02.2008 13:05:09"},
        {ZoDateTime::eFormatDateTimeShort, "29.02.2008 13:05"}, {ZoDateTime::eFormatSortable, "2008-02-29 13:05:09"},
        {ZoDateTime::eFormatTime, "13:05:09"},     {ZoDateTime::eFormatTimeShort, "13:05"}, {8, ""}, {0xFFFFFFFFu, ""}};
    for (const auto& [format, expected] : forms)
        EXPECT_EQ(text(leap, static_cast<ZoDateTime::EFormat>(format)), expected) << format;
    // The long forms show today's date, whatever the value (unless midnight passes between the calls).
    const std::string today = text(leap, ZoDateTime::eFormatLongDate);
    EXPECT_TRUE(text(leap, ZoDateTime::eFormatLongDateTime) == today + " 13:05:09" ||
                text(leap, ZoDateTime::eFormatLongDate) != today);
    EXPECT_NE(today.find(std::to_string(ZoDateTime().GetYear())), std::string::npos) << today;
}

// Needs no particular zone: none of these texts names a local instant anywhere.
TEST(ZoDateTime, BadTextsAreRefused)
{
    const struct { const char16_t* text; int validFormat; } rows[] = {
        {u"2008-2-29 13:05:09", 0},  {u"2008/02/29 13:05:09", 0}, {u"", 0},
        {u"2008-02-29T13:05:09", 0}, {u"2008-02-29 13-05-09", 0}, {u"abcd-ef-gh ij:kl:mn", 0},
        {u"2008-02-29 13:05:09 ", 0}, {u"\u00e4008-02-29 13:05:09", 0},
        // The form is right but no calendar holds the fields: the constructor refuses them too.
        {u"2008-13-01 00:00:00", 1}, {u"2009-02-29 00:00:00", 1},  {u"2008-02-29 24:00:00", 1},
        {u"2008-02-29 -1:00:00", 1}, {u"2008-xx-29 13:05:09", 1},  {u"1600-12-31 12:00:00", 1},
    };
    for (const auto& row : rows) {
        const CString input(row.text);
        EXPECT_EQ(ZoDateTime::HasValidFormat(input), row.validFormat) << input.ToUtf8();
        SCOPED_TRACE(input.ToUtf8());
        zotest::ExpectThrowSite<ZoException>([&] { ZoDateTime parsed(input); }, "..\\base\\ZoDateTime.cpp", "ZoDateTime",
                                             "ZoDateTime", 116);
    }
}

TEST(ZoDateTime, CalendarArithmetic)
{
    const uint64_t unixEpoch = 116444736000000000ull;
    EXPECT_EQ(static_cast<uint64_t>(ZoDateTime(fields(1970, 1, 1, 0, 0, 0))), unixEpoch);
    EXPECT_EQ(ZoDateTime(unixEpoch).GetSystemTime().wDayOfWeek, 4) << "a Thursday";
    EXPECT_EQ(utc(ZoDateTime(uint64_t(0))), "1601-01-01 00:00:00");
    EXPECT_EQ(utc(ZoDateTime((uint64_t(1) << 63) - 1)), "30828-09-14 02:48:05");
    // What the calendar cannot hold becomes tick 0, fields and ticks alike.
    EXPECT_EQ(static_cast<uint64_t>(ZoDateTime(uint64_t(1) << 63)), 0u);
    EXPECT_EQ(utc(ZoDateTime(fields(2009, 2, 29, 0, 0, 0))), "1601-01-01 00:00:00");
#if !defined(_WIN32)
    // The OS layer checks every field itself (some Windows versions let impossible days through).
    ScopedTimeZone zone("UTC0");
    const SYSTEMTIME checked[] = {fields(1601, 1, 1, 0, 0, 0),         fields(30827, 12, 31, 23, 59, 59, 999),
                                  fields(2008, 2, 29, 0, 0, 0),        fields(1600, 12, 31, 0, 0, 0),
                                  fields(30828, 1, 1, 0, 0, 0),        fields(2009, 0, 1, 0, 0, 0),
                                  fields(2009, 13, 1, 0, 0, 0),        fields(2009, 4, 0, 0, 0, 0),
                                  fields(2009, 4, 31, 0, 0, 0),        fields(2009, 2, 29, 0, 0, 0),
                                  fields(2009, 1, 1, 24, 0, 0),        fields(2009, 1, 1, 0, 60, 0),
                                  fields(2009, 1, 1, 0, 0, 60),        fields(2009, 1, 1, 0, 0, 0, 1000)};
    for (size_t i = 0; i < std::size(checked); ++i) {
        uint64_t ticks = 0;
        SYSTEMTIME other = {};
        EXPECT_EQ(ZoOS::SystemTimeToTicks(checked[i], ticks), i < 3) << i;
        EXPECT_EQ(ZoOS::UniversalTimeToLocal(checked[i], other), i < 3) << i;
        EXPECT_EQ(ZoOS::LocalTimeToUniversal(checked[i], other), i < 3) << i;
    }
#endif

    const ZoDateTime start(fields(2009, 3, 5, 10, 0, 30, 250));
    ZoDateTime later(static_cast<uint64_t>(start) + 10000000);
    EXPECT_TRUE(later.GetDifference(start) == 1 && start.GetDifference(later) == -1);
    later = static_cast<uint64_t>(start) + 15000000;
    EXPECT_TRUE(later.GetDifference(start) == 1 && start.GetDifference(later) == -1) << "whole seconds, truncated";
    EXPECT_TRUE(start < later && start <= later && later > start && later >= start && start != later);
    ZoDateTime moved(start);
    moved.AddTimeInterval(-60);
    EXPECT_EQ(utc(moved), "2009-03-05 09:59:30");
    EXPECT_EQ(moved.GetMillisecond(), 250u);
    moved = ZoDateTime(fields(2009, 1, 1, 0, 0, 30));
    moved.AddTimeInterval(-60);
    EXPECT_EQ(utc(moved), "2008-12-31 23:59:30");
    moved.AddTimeInterval(86400 * 366);
    EXPECT_EQ(utc(moved), "2010-01-01 23:59:30");
    // Fields to ticks and back over random instants, against the day count of a plain model.
    const unsigned seed = zotest::ModelTestSeed();
    std::mt19937 random(seed);
    for (int i = 0; i < 2000; ++i) {
        const int year = 1601 + static_cast<int>(random() % 28000);
        const int month = 1 + static_cast<int>(random() % 12);
        const int day = 1 + static_cast<int>(random() % 28);
        const SYSTEMTIME original = fields(year, month, day, random() % 24, random() % 60, random() % 60, random() % 1000);
        const ZoDateTime value(original);
        const ZoDateTime back(static_cast<uint64_t>(value));
        ASSERT_EQ(utc(back), utc(value)) << "seed " << seed;
        ASSERT_EQ(back.GetMillisecond(), original.wMilliseconds) << "seed " << seed;
        // Model: whole days since 1601 by counting years and months.
        int64_t days = 0;
        for (int y = 1601; y < year; ++y)
            days += (y % 4 == 0 && (y % 100 != 0 || y % 400 == 0)) ? 366 : 365;
        static const int lengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
        for (int m = 1; m < month; ++m)
            days += lengths[m - 1] + (m == 2 && year % 4 == 0 && (year % 100 != 0 || year % 400 == 0) ? 1 : 0);
        days += day - 1;
        ASSERT_EQ(static_cast<uint64_t>(value) / 864000000000ull, static_cast<uint64_t>(days)) << "seed " << seed;
        ASSERT_EQ(back.GetSystemTime().wDayOfWeek, (days + 1) % 7) << "seed " << seed;
    }
}

#if !defined(_WIN32)
TEST(ZoDateTime, LocalTimeInTwoZonesAcrossDaylightSaving)
{
    // Central Europe: summer time from 2009-03-29 02:00 to 2009-10-25 03:00; US Eastern: from
    // 2009-03-08 02:00 to 2009-11-01 02:00.
    const char *cet = "CET-1CEST,M3.5.0,M10.5.0/3", *est = "EST5EDT,M3.2.0,M11.1.0";
    const struct { const char* zone; const char16_t* local; const char* universal; } rows[] = {
        {cet, u"2009-03-29 01:30:00", "2009-03-29 00:30:00"}, {cet, u"2009-03-29 03:30:00", "2009-03-29 01:30:00"},
        {est, u"2009-03-08 01:30:00", "2009-03-08 06:30:00"}, {est, u"2009-03-08 03:30:00", "2009-03-08 07:30:00"},
    };
    for (const auto& row : rows) {
        ScopedTimeZone zone(row.zone);
        const ZoDateTime value{CString(row.local)};
        EXPECT_EQ(utc(value), row.universal) << row.zone;
        EXPECT_EQ(value.ToString(ZoDateTime::eFormatSortable), CString(row.local)) << row.zone;
    }
    ScopedTimeZone zone(cet);
    EXPECT_EQ(ZoDateTime(CString(u"2009-03-29 03:01:00")).GetDifference(ZoDateTime(CString(u"2009-03-29 01:59:00"))), 120)
        << "the skipped hour is no time at all";
    // 5 March 2009 23:30 UTC is already the 6th in Central Europe.
    EXPECT_EQ(text(ZoDateTime(fields(2009, 3, 5, 23, 30, 0)), ZoDateTime::eFormatDate), "06.03.2009");
    EXPECT_EQ(text(ZoDateTime(fields(2009, 3, 5, 12, 0, 0)), ZoDateTime::eFormatDate), "05.03.2009");
}
#endif

TEST(ZoDateTime, FileTimes)
{
    zotest::TempFolder folder;
    const ZoDateTime before;
    std::ofstream(folder.Path("stamp.txt")) << "x";
    ZoDateTime modified(uint64_t(0)), created(uint64_t(0));
    ASSERT_EQ(modified.ReadFileModificationTime(folder.CPath("stamp.txt")), 1);
    ASSERT_EQ(created.ReadFileCreationTime(folder.CPath("stamp.txt")), 1);
    const ZoDateTime after;
    // File systems keep coarse stamps; a few seconds either way is the same moment here.
    for (const ZoDateTime* stamp : {&modified, &created})
        EXPECT_TRUE(stamp->GetDifference(before) >= -5 && stamp->GetDifference(after) <= 5) << utc(*stamp);
    ZoDateTime untouched(fields(2001, 2, 3, 4, 5, 6));
    EXPECT_EQ(untouched.ReadFileModificationTime(folder.CPath("missing.txt")), 0);
    EXPECT_EQ(untouched.ReadFileCreationTime(folder.CPath("missing.txt")), 0);
    EXPECT_EQ(utc(untouched), "2001-02-03 04:05:06");
}

} // namespace
