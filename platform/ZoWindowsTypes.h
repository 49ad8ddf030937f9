// The Windows value types that the library's interfaces use. On Windows they are the system's
// own (through <windows.h>, lean and without min/max macros); elsewhere they are structs of the same
// layout, so that code and file formats built on them are the same on every target.
#pragma once

#include <cstdint>

#if defined(_WIN32)
#  ifndef WIN32_LEAN_AND_MEAN
#    define WIN32_LEAN_AND_MEAN
#  endif
#  ifndef NOMINMAX
#    define NOMINMAX
#  endif
#  include <windows.h>
#else
typedef void* HANDLE;

struct SYSTEMTIME
{
    uint16_t wYear;
    uint16_t wMonth;
    uint16_t wDayOfWeek;
    uint16_t wDay;
    uint16_t wHour;
    uint16_t wMinute;
    uint16_t wSecond;
    uint16_t wMilliseconds;
};

struct FILETIME
{
    uint32_t dwLowDateTime;
    uint32_t dwHighDateTime;
};

struct GUID
{
    uint32_t Data1;
    uint16_t Data2;
    uint16_t Data3;
    unsigned char Data4[8];
};

// The waits' timeout that never expires, and an active thread's exit code.
const uint32_t INFINITE = 0xFFFFFFFFu;
const uint32_t STILL_ACTIVE = 259u;
#endif
