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

    virtual ZoStreamWrite& operator<<(const CString& value) = 0;
    virtual ZoStreamWrite& operator<<(double value) = 0;
    virtual ZoStreamWrite& operator<<(float value) = 0;
    virtual ZoStreamWrite& operator<<(long long value) = 0;
    virtual ZoStreamWrite& operator<<(unsigned long long value) = 0;
    virtual ZoStreamWrite& operator<<(long value) = 0;
    virtual ZoStreamWrite& operator<<(unsigned long value) = 0;
    virtual ZoStreamWrite& operator<<(int value) = 0;
    virtual ZoStreamWrite& operator<<(unsigned int value) = 0;
    virtual ZoStreamWrite& operator<<(short value) = 0;
    virtual ZoStreamWrite& operator<<(unsigned short value) = 0;
    virtual ZoStreamWrite& operator<<(signed char value) = 0;
    virtual ZoStreamWrite& operator<<(unsigned char value) = 0;
    virtual ZoStreamWrite& operator<<(bool value) = 0;

    /// A terminated UTF-16 text, written as a CString.
    ZoStreamWrite& operator<<(const char16_t* text);
    /// Writes a version record (an unsigned int) for ReadAndCompareVersion.
    void WriteVersion(unsigned int version);
};
