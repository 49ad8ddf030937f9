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

/// Calendar fields of a point in time, as the Windows type of that name: every field 16 bits,
/// 16 bytes in all. ZoDateTime keeps its UTC fields in one.
/// @ingroup services
struct SYSTEMTIME
{
    /// Year, e.g. 2024.
    uint16_t wYear;
    /// Month 1..12.
    uint16_t wMonth;
    /// Day of the week, 0 = Sunday .. 6 = Saturday.
    uint16_t wDayOfWeek;
    /// Day of the month 1..31.
    uint16_t wDay;
    /// Hour 0..23.
    uint16_t wHour;
    /// Minute 0..59.
    uint16_t wMinute;
    /// Second 0..59.
    uint16_t wSecond;
    /// Millisecond 0..999.
    uint16_t wMilliseconds;
};

/// A 64-bit count of 100-ns ticks since 1 January 1601 UTC, split in two 32-bit halves as
/// the Windows type of that name (8 bytes, low half first).
/// @ingroup services
struct FILETIME
{
    /// Low 32 bits of the tick count.
    uint32_t dwLowDateTime;
    /// High 32 bits of the tick count.
    uint32_t dwHighDateTime;
};

/// A 128-bit unique identifier in the Windows layout: a 32-bit, two 16-bit fields and eight bytes
/// (16 bytes in all; the integer fields in the machine's byte order).
/// @ingroup services
struct GUID
{
    /// First 8 hexadecimal digits of the text form.
    uint32_t Data1;
    /// Next 4 digits.
    uint16_t Data2;
    /// Next 4 digits.
    uint16_t Data3;
    /// The last 16 digits, byte by byte in text order.
    unsigned char Data4[8];
};

// The waits' timeout that never expires, and an active thread's exit code.
const uint32_t INFINITE = 0xFFFFFFFFu;
const uint32_t STILL_ACTIVE = 259u;
#endif
