#include "base/ZoDateTime.h"

#include "base/ZoException.h"
#include "platform/ZoOS.h"

#include <cstdio>
#include <string>

namespace {

const int64_t sc_ticksPerSecond = 10000000;

// Fields to ticks, refusing fields that do not come back unchanged: some system versions accept
// 29 February of a common year or day 31 of a short month and quietly move on to the next month.
bool toTicks(const SYSTEMTIME& time, uint64_t& ticks)
{
    SYSTEMTIME back = {};
    return ZoOS::SystemTimeToTicks(time, ticks) && ZoOS::TicksToSystemTime(ticks, back) && back.wYear == time.wYear &&
           back.wMonth == time.wMonth && back.wDay == time.wDay && back.wHour == time.wHour &&
           back.wMinute == time.wMinute && back.wSecond == time.wSecond && back.wMilliseconds == time.wMilliseconds;
}

} // namespace

ZoDateTime::ZoDateTime()
{
    SYSTEMTIME now = {};
    ZoOS::GetCurrentUniversalTime(now);
    setUniversal(now);
}

ZoDateTime::ZoDateTime(const SYSTEMTIME& universal)
{
    setUniversal(universal);
}

ZoDateTime::ZoDateTime(const FILETIME& ticks)
{
    *this = ticks;
}

ZoDateTime::ZoDateTime(uint64_t ticks)
{
    setTicks(ticks);
}

ZoDateTime::ZoDateTime(const CString& text)
{
    int fields[6] = {0, 0, 0, 0, 0, 0};
    bool ok = scan(text, fields);
    for (int i = 0; ok && i < 6; ++i)
        ok = fields[i] >= 0 && fields[i] <= 0xFFFF;
    SYSTEMTIME local = {}, universal = {};
    if (ok) {
        local.wYear = static_cast<uint16_t>(fields[0]);
        local.wMonth = static_cast<uint16_t>(fields[1]);
        local.wDay = static_cast<uint16_t>(fields[2]);
        local.wHour = static_cast<uint16_t>(fields[3]);
        local.wMinute = static_cast<uint16_t>(fields[4]);
        local.wSecond = static_cast<uint16_t>(fields[5]);
        uint64_t ticks = 0;
        // The local fields must name a calendar instant before the zone may convert them, and the
        // zone's answer must be one too (the first instants of 1601 have no earlier UTC).
        ok = toTicks(local, ticks) && ZoOS::LocalTimeToUniversal(local, universal) && toTicks(universal, ticks);
    }
    if (!ok)
        throw ZoException(u"..\\base\\ZoDateTime.cpp", u"ZoDateTime", u"ZoDateTime", 116);
    setUniversal(universal);
}

ZoDateTime& ZoDateTime::operator=(const SYSTEMTIME& universal)
{
    setUniversal(universal);
    return *this;
}

ZoDateTime& ZoDateTime::operator=(const FILETIME& ticks)
{
    setTicks((static_cast<uint64_t>(ticks.dwHighDateTime) << 32) | ticks.dwLowDateTime);
    return *this;
}

ZoDateTime& ZoDateTime::operator=(uint64_t ticks)
{
    setTicks(ticks);
    return *this;
}

uint64_t ZoDateTime::getTicks() const
{
    return (static_cast<uint64_t>(m_fileTime.dwHighDateTime) << 32) | m_fileTime.dwLowDateTime;
}

void ZoDateTime::setTicks(uint64_t ticks)
{
    SYSTEMTIME universal = {};
    if (!ZoOS::TicksToSystemTime(ticks, universal)) {
        ticks = 0;
        ZoOS::TicksToSystemTime(ticks, universal);
    }
    m_systemTime = universal;
    m_fileTime.dwLowDateTime = static_cast<uint32_t>(ticks);
    m_fileTime.dwHighDateTime = static_cast<uint32_t>(ticks >> 32);
}

void ZoDateTime::setUniversal(const SYSTEMTIME& universal)
{
    uint64_t ticks = 0;
    if (!toTicks(universal, ticks)) {
        setTicks(0);
        return;
    }
    m_systemTime = universal;
    m_fileTime.dwLowDateTime = static_cast<uint32_t>(ticks);
    m_fileTime.dwHighDateTime = static_cast<uint32_t>(ticks >> 32);
}

int64_t ZoDateTime::GetDifference(const ZoDateTime& other) const
{
    // Both counts lie below 2^63, so the difference fits.
    return static_cast<int64_t>(getTicks() - other.getTicks()) / sc_ticksPerSecond;
}

void ZoDateTime::AddTimeInterval(int64_t seconds)
{
    setTicks(getTicks() + static_cast<uint64_t>(seconds) * static_cast<uint64_t>(sc_ticksPerSecond));
}

int ZoDateTime::ReadFileCreationTime(const CString& path)
{
    uint64_t creation = 0, modification = 0;
    if (!ZoOS::ReadFileTimes(path, creation, modification))
        return 0;
    setTicks(creation);
    return 1;
}

int ZoDateTime::ReadFileModificationTime(const CString& path)
{
    uint64_t creation = 0, modification = 0;
    if (!ZoOS::ReadFileTimes(path, creation, modification))
        return 0;
    setTicks(modification);
    return 1;
}

CString ZoDateTime::ToString(EFormat format) const
{
    SYSTEMTIME local = m_systemTime;
    ZoOS::UniversalTimeToLocal(m_systemTime, local);
    CString time;
    if (format == eFormatLongDateTime || format == eFormatDateTime || format == eFormatSortable || format == eFormatTime)
        time = ZoOS::FormatTimeOfDay(local, true);
    else if (format == eFormatDateTimeShort || format == eFormatTimeShort)
        time = ZoOS::FormatTimeOfDay(local, false);
    // The long forms show the date of the call, not the stored one: they have always asked the
    // system for today's long date, and screens built on them expect that. Callers that want the
    // stored date use the numeric forms.
    switch (format) {
    case eFormatLongDateTime:
        return CString::Formatted(u"%s %s", ZoOS::FormatCurrentLongDate(), time);
    case eFormatLongDate:
        return ZoOS::FormatCurrentLongDate();
    case eFormatDate:
        return CString::Formatted(u"%02d.%02d.%04d", local.wDay, local.wMonth, local.wYear);
    case eFormatDateTime:
    case eFormatDateTimeShort:
        return CString::Formatted(u"%02d.%02d.%04d %s", local.wDay, local.wMonth, local.wYear, time);
    case eFormatSortable:
        return CString::Formatted(u"%04d-%02d-%02d %s", local.wYear, local.wMonth, local.wDay, time);
    case eFormatTime:
    case eFormatTimeShort:
        return time;
    default:
        return CString();
    }
}

bool ZoDateTime::scan(const CString& text, int fields[6])
{
    if (text.GetLength() != 19 || text.Find(u'-') != 4 || text.Find(u'-', 5) != 7 || text.Find(u' ', 8) != 10 ||
        text.Find(u':', 11) != 13 || text.Find(u':', 14) != 16)
        return false;
    // The separators stand at fixed places, so no field is longer than four characters and the scan
    // cannot overflow. A character beyond ASCII ends the scan like any other non-digit.
    char narrow[20] = {0};
    for (int i = 0; i < 19; ++i)
        narrow[i] = text[i] < 0x80 && text[i] != 0 ? static_cast<char>(text[i]) : '?';
    return std::sscanf(narrow, "%d-%d-%d %d:%d:%d", &fields[0], &fields[1], &fields[2], &fields[3], &fields[4],
                       &fields[5]) >= 1;
}

int ZoDateTime::HasValidFormat(const CString& text)
{
    int fields[6] = {0, 0, 0, 0, 0, 0};
    return scan(text, fields) ? 1 : 0;
}
