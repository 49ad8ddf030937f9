// The POSIX (Linux) implementation of the OS layer's date and time: the calendar arithmetic of the
// Windows FILETIME count, local time through the C library's time-zone rules, and file times.
#include "platform/ZoOS.h"

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>

namespace ZoOS {

namespace {

const int64_t sc_ticksPerSecond = 10000000;
const int64_t sc_ticksPerDay = sc_ticksPerSecond * 86400;
// Seconds from 1601-01-01 to 1970-01-01.
const int64_t sc_unixEpochSeconds = 11644473600;
// Days from 0000-03-01 (the civil calendar's origin below) to 1601-01-01.
const int64_t sc_daysTo1601 = 584694;

bool isLeapYear(int64_t year)
{
    return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

int daysInMonth(int64_t year, int month)
{
    static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 && isLeapYear(year) ? 29 : days[month - 1];
}

// Days since 0000-03-01 of a proleptic Gregorian date (years start in March, so leap days come last).
int64_t daysFromCivil(int64_t year, int64_t month, int64_t day)
{
    year -= month <= 2 ? 1 : 0;
    const int64_t era = year / 400;
    const int64_t yearOfEra = year - era * 400;
    const int64_t dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra;
}

void civilFromDays(int64_t days, int64_t& year, int64_t& month, int64_t& day)
{
    const int64_t era = days / 146097;
    const int64_t dayOfEra = days - era * 146097;
    const int64_t yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const int64_t monthIndex = (5 * dayOfYear + 2) / 153;
    day = dayOfYear - (153 * monthIndex + 2) / 5 + 1;
    month = monthIndex < 10 ? monthIndex + 3 : monthIndex - 9;
    year = yearOfEra + era * 400 + (month <= 2 ? 1 : 0);
}

bool fieldsValid(const SYSTEMTIME& time)
{
    return time.wYear >= 1601 && time.wYear <= 30827 && time.wMonth >= 1 && time.wMonth <= 12 && time.wDay >= 1 &&
           time.wDay <= daysInMonth(time.wYear, time.wMonth) && time.wHour <= 23 && time.wMinute <= 59 &&
           time.wSecond <= 59 && time.wMilliseconds <= 999;
}

// Seconds since 1970 of valid UTC fields (milliseconds dropped).
int64_t unixSeconds(const SYSTEMTIME& time)
{
    uint64_t ticks = 0;
    SystemTimeToTicks(time, ticks);
    return static_cast<int64_t>(ticks / sc_ticksPerSecond) - sc_unixEpochSeconds;
}

bool fromUnixSeconds(int64_t seconds, int64_t nanoseconds, uint64_t& ticks)
{
    // Before 1601 or beyond the 63-bit tick range: no FILETIME for it.
    if (seconds < -sc_unixEpochSeconds || seconds > INT64_MAX / sc_ticksPerSecond - sc_unixEpochSeconds - 1)
        return false;
    const int64_t value = (seconds + sc_unixEpochSeconds) * sc_ticksPerSecond + nanoseconds / 100;
    if (value < 0)
        return false;
    ticks = static_cast<uint64_t>(value);
    return true;
}

void fieldsFromTm(const struct tm& broken, uint16_t milliseconds, SYSTEMTIME& time)
{
    time.wYear = static_cast<uint16_t>(broken.tm_year + 1900);
    time.wMonth = static_cast<uint16_t>(broken.tm_mon + 1);
    time.wDayOfWeek = static_cast<uint16_t>(broken.tm_wday);
    time.wDay = static_cast<uint16_t>(broken.tm_mday);
    time.wHour = static_cast<uint16_t>(broken.tm_hour);
    time.wMinute = static_cast<uint16_t>(broken.tm_min);
    time.wSecond = static_cast<uint16_t>(broken.tm_sec);
    time.wMilliseconds = milliseconds;
}

} // namespace

void GetCurrentUniversalTime(SYSTEMTIME& universal)
{
    struct timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    uint64_t ticks = 0;
    fromUnixSeconds(now.tv_sec, now.tv_nsec, ticks);
    TicksToSystemTime(ticks, universal);
    SetLastErrorCode(0);
}

bool SystemTimeToTicks(const SYSTEMTIME& time, uint64_t& ticks)
{
    if (!fieldsValid(time)) {
        SetLastErrorCode(EINVAL);
        return false;
    }
    const int64_t days = daysFromCivil(time.wYear, time.wMonth, time.wDay) - sc_daysTo1601;
    const int64_t seconds = (time.wHour * 60 + time.wMinute) * 60 + time.wSecond;
    ticks = static_cast<uint64_t>(days * sc_ticksPerDay + seconds * sc_ticksPerSecond + time.wMilliseconds * 10000);
    SetLastErrorCode(0);
    return true;
}

bool TicksToSystemTime(uint64_t ticks, SYSTEMTIME& time)
{
    if (ticks >= (uint64_t(1) << 63)) {
        SetLastErrorCode(EINVAL);
        return false;
    }
    const int64_t days = static_cast<int64_t>(ticks / sc_ticksPerDay);
    int64_t rest = static_cast<int64_t>(ticks % sc_ticksPerDay);
    int64_t year = 0, month = 0, day = 0;
    civilFromDays(days + sc_daysTo1601, year, month, day);
    time.wYear = static_cast<uint16_t>(year);
    time.wMonth = static_cast<uint16_t>(month);
    time.wDay = static_cast<uint16_t>(day);
    // 1601-01-01 was a Monday.
    time.wDayOfWeek = static_cast<uint16_t>((days + 1) % 7);
    time.wHour = static_cast<uint16_t>(rest / (3600 * sc_ticksPerSecond));
    rest %= 3600 * sc_ticksPerSecond;
    time.wMinute = static_cast<uint16_t>(rest / (60 * sc_ticksPerSecond));
    rest %= 60 * sc_ticksPerSecond;
    time.wSecond = static_cast<uint16_t>(rest / sc_ticksPerSecond);
    time.wMilliseconds = static_cast<uint16_t>(rest % sc_ticksPerSecond / 10000);
    SetLastErrorCode(0);
    return true;
}

bool LocalTimeToUniversal(const SYSTEMTIME& local, SYSTEMTIME& universal)
{
    if (!fieldsValid(local)) {
        SetLastErrorCode(EINVAL);
        return false;
    }
    struct tm broken = {};
    broken.tm_year = local.wYear - 1900;
    broken.tm_mon = local.wMonth - 1;
    broken.tm_mday = local.wDay;
    broken.tm_hour = local.wHour;
    broken.tm_min = local.wMinute;
    broken.tm_sec = local.wSecond;
    broken.tm_isdst = -1;
    errno = 0;
    const time_t seconds = mktime(&broken);
    uint64_t ticks = 0;
    if ((seconds == static_cast<time_t>(-1) && errno != 0) ||
        !fromUnixSeconds(seconds, static_cast<int64_t>(local.wMilliseconds) * 1000000, ticks)) {
        SetLastErrorCode(errno != 0 ? static_cast<uint32_t>(errno) : EINVAL);
        return false;
    }
    return TicksToSystemTime(ticks, universal);
}

bool UniversalTimeToLocal(const SYSTEMTIME& universal, SYSTEMTIME& local)
{
    if (!fieldsValid(universal)) {
        SetLastErrorCode(EINVAL);
        return false;
    }
    // localtime_r need not look at TZ again; tzset makes a change of TZ in the process count.
    tzset();
    const time_t seconds = static_cast<time_t>(unixSeconds(universal));
    struct tm broken = {};
    if (localtime_r(&seconds, &broken) == nullptr) {
        SetLastErrorCode(static_cast<uint32_t>(errno));
        return false;
    }
    fieldsFromTm(broken, universal.wMilliseconds, local);
    SetLastErrorCode(0);
    return true;
}

CString FormatTimeOfDay(const SYSTEMTIME& local, bool withSeconds)
{
    SetLastErrorCode(0);
    if (withSeconds)
        return CString::Formatted(u"%02d:%02d:%02d", local.wHour, local.wMinute, local.wSecond);
    return CString::Formatted(u"%02d:%02d", local.wHour, local.wMinute);
}

CString FormatCurrentLongDate()
{
    static const char16_t* const weekdays[7] = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                                                u"Thursday", u"Friday", u"Saturday"};
    static const char16_t* const months[12] = {u"January", u"February", u"March",     u"April",
                                               u"May",     u"June",     u"July",      u"August",
                                               u"September", u"October", u"November", u"December"};
    tzset();
    const time_t now = time(nullptr);
    struct tm broken = {};
    if (localtime_r(&now, &broken) == nullptr) {
        SetLastErrorCode(static_cast<uint32_t>(errno));
        return CString();
    }
    SetLastErrorCode(0);
    return CString::Formatted(u"%s, %s %d, %d", weekdays[broken.tm_wday], months[broken.tm_mon], broken.tm_mday,
                              broken.tm_year + 1900);
}

bool ReadFileTimes(const CString& path, uint64_t& creationTicks, uint64_t& modificationTicks)
{
    const std::string name = path.ToUtf8();
    struct statx info = {};
    if (statx(AT_FDCWD, name.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &info) != 0) {
        SetLastErrorCode(static_cast<uint32_t>(errno));
        return false;
    }
    const struct statx_timestamp& created = (info.stx_mask & STATX_BTIME) != 0 ? info.stx_btime : info.stx_ctime;
    uint64_t creation = 0, modification = 0;
    if (!fromUnixSeconds(created.tv_sec, created.tv_nsec, creation) ||
        !fromUnixSeconds(info.stx_mtime.tv_sec, info.stx_mtime.tv_nsec, modification)) {
        SetLastErrorCode(EOVERFLOW);
        return false;
    }
    creationTicks = creation;
    modificationTicks = modification;
    SetLastErrorCode(0);
    return true;
}

} // namespace ZoOS
