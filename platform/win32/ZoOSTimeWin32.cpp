// The Win32 implementation of the OS layer's date and time.
#include "platform/ZoOS.h"

namespace ZoOS {

namespace {

uint64_t ticksOf(const FILETIME& time)
{
    return (static_cast<uint64_t>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
}

bool result(BOOL ok)
{
    SetLastErrorCode(ok ? 0 : ::GetLastError());
    return ok != 0;
}

} // namespace

void GetCurrentUniversalTime(SYSTEMTIME& universal)
{
    ::GetSystemTime(&universal);
    SetLastErrorCode(0);
}

bool SystemTimeToTicks(const SYSTEMTIME& time, uint64_t& ticks)
{
    FILETIME converted = {};
    if (!result(::SystemTimeToFileTime(&time, &converted)))
        return false;
    ticks = ticksOf(converted);
    return true;
}

bool TicksToSystemTime(uint64_t ticks, SYSTEMTIME& time)
{
    FILETIME source;
    source.dwLowDateTime = static_cast<DWORD>(ticks);
    source.dwHighDateTime = static_cast<DWORD>(ticks >> 32);
    SYSTEMTIME converted = {};
    if (!result(::FileTimeToSystemTime(&source, &converted)))
        return false;
    time = converted;
    return true;
}

bool LocalTimeToUniversal(const SYSTEMTIME& local, SYSTEMTIME& universal)
{
    SYSTEMTIME converted = {};
    if (!result(::TzSpecificLocalTimeToSystemTime(nullptr, &local, &converted)))
        return false;
    universal = converted;
    return true;
}

bool UniversalTimeToLocal(const SYSTEMTIME& universal, SYSTEMTIME& local)
{
    SYSTEMTIME converted = {};
    if (!result(::SystemTimeToTzSpecificLocalTime(nullptr, &universal, &converted)))
        return false;
    local = converted;
    return true;
}

CString FormatTimeOfDay(const SYSTEMTIME& local, bool withSeconds)
{
    // The user's default locale (0x0400) with the 24-hour clock forced (flag 8), into the 9
    // characters "hh:mm:ss" needs.
    wchar_t buffer[9] = {0};
    const int length = ::GetTimeFormatW(0x0400, 8, &local, withSeconds ? L"hh:mm:ss" : L"hh:mm", buffer, 9);
    SetLastErrorCode(length > 0 ? 0 : ::GetLastError());
    return CString(reinterpret_cast<const char16_t*>(buffer));
}

CString FormatCurrentLongDate()
{
    // No date given: the long date (flag 2) of today.
    wchar_t buffer[1024] = {0};
    const int length = ::GetDateFormatW(0x0400, 2, nullptr, nullptr, buffer, 1024);
    SetLastErrorCode(length > 0 ? 0 : ::GetLastError());
    return CString(reinterpret_cast<const char16_t*>(buffer));
}

bool ReadFileTimes(const CString& path, uint64_t& creationTicks, uint64_t& modificationTicks)
{
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW(reinterpret_cast<const wchar_t*>(path.GetString()), &found);
    if (search == INVALID_HANDLE_VALUE) {
        SetLastErrorCode(::GetLastError());
        return false;
    }
    ::FindClose(search);
    creationTicks = ticksOf(found.ftCreationTime);
    modificationTicks = ticksOf(found.ftLastWriteTime);
    SetLastErrorCode(0);
    return true;
}

} // namespace ZoOS
