#pragma once

#include "base/ZoClassRTTI.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoStreamWrite: the abstract output stream every serialising class writes to, with one virtual
/// operator per basic type. Binary streams encode the values; text streams print them.
///
/// The integer overloads follow the C++ types: `long` and `unsigned long` have the platform's width
/// (4 bytes on Windows, 8 on Linux), `long long` is always 8, so every fixed-width type writes the
/// same bytes on every target. Derived streams that override the operators bring the non-virtual
/// text overload back with `using ZoStreamWrite::operator<<;`.
/// @ingroup streams
class ZO_API ZoStreamWrite : public ZoClassRTTI
{
    ZO_DECLARE_RTTI()

    virtual ~ZoStreamWrite();

    /// Writes a text; returns this stream. Failures are the concrete stream's (a file stream throws).
    virtual ZoStreamWrite& operator<<(const CString& value) = 0;
    /// Writes a `double`; returns this stream.
    virtual ZoStreamWrite& operator<<(double value) = 0;
    /// Writes a `float`; returns this stream.
    virtual ZoStreamWrite& operator<<(float value) = 0;
    /// Writes a `long long`; returns this stream.
    virtual ZoStreamWrite& operator<<(long long value) = 0;
    /// Writes a `unsigned long long`; returns this stream.
    virtual ZoStreamWrite& operator<<(unsigned long long value) = 0;
    /// Writes a `long`; returns this stream.
    virtual ZoStreamWrite& operator<<(long value) = 0;
    /// Writes a `unsigned long`; returns this stream.
    virtual ZoStreamWrite& operator<<(unsigned long value) = 0;
    /// Writes a `int`; returns this stream.
    virtual ZoStreamWrite& operator<<(int value) = 0;
    /// Writes a `unsigned int`; returns this stream.
    virtual ZoStreamWrite& operator<<(unsigned int value) = 0;
    /// Writes a `short`; returns this stream.
    virtual ZoStreamWrite& operator<<(short value) = 0;
    /// Writes a `unsigned short`; returns this stream.
    virtual ZoStreamWrite& operator<<(unsigned short value) = 0;
    /// Writes a `signed char`; returns this stream.
    virtual ZoStreamWrite& operator<<(signed char value) = 0;
    /// Writes a `unsigned char`; returns this stream.
    virtual ZoStreamWrite& operator<<(unsigned char value) = 0;
    /// Writes a `bool`; returns this stream.
    virtual ZoStreamWrite& operator<<(bool value) = 0;

    /// A terminated UTF-16 text, written as a CString.
    ZoStreamWrite& operator<<(const char16_t* text);
    /// Writes a version record (an unsigned int) for ReadAndCompareVersion.
    void WriteVersion(unsigned int version);
};
