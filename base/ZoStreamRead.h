#pragma once

#include "base/ZoClassRTTI.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoStreamRead: the abstract input stream every deserialising class reads from, with one virtual
/// operator per basic type. Classes read themselves against this interface and never learn whether
/// the bytes come from a file, memory or a decompressor.
///
/// The integer overloads follow the C++ types: `long` and `unsigned long` have the platform's width
/// (4 bytes on Windows, 8 on Linux), `long long` is always 8, so every fixed-width type (int32_t,
/// uint64_t, ...) reads the same bytes on every target. Portable code uses fixed-width types.
/// @ingroup streams
class ZO_API ZoStreamRead : public ZoClassRTTI
{
    ZO_DECLARE_RTTI()

    virtual ~ZoStreamRead();

    virtual ZoStreamRead& operator>>(CString& value) = 0;
    virtual ZoStreamRead& operator>>(double& value) = 0;
    virtual ZoStreamRead& operator>>(float& value) = 0;
    virtual ZoStreamRead& operator>>(long long& value) = 0;
    virtual ZoStreamRead& operator>>(unsigned long long& value) = 0;
    virtual ZoStreamRead& operator>>(long& value) = 0;
    virtual ZoStreamRead& operator>>(unsigned long& value) = 0;
    virtual ZoStreamRead& operator>>(int& value) = 0;
    virtual ZoStreamRead& operator>>(unsigned int& value) = 0;
    virtual ZoStreamRead& operator>>(short& value) = 0;
    virtual ZoStreamRead& operator>>(unsigned short& value) = 0;
    virtual ZoStreamRead& operator>>(signed char& value) = 0;
    virtual ZoStreamRead& operator>>(unsigned char& value) = 0;
    virtual ZoStreamRead& operator>>(bool& value) = 0;

    /// Reads a version record (an unsigned int) and returns it. Throws ZoExceptionWrongFileVersion,
    /// naming this stream's class, when the stored version is above `maxVersion`: the data was
    /// written by a newer release than this reader knows.
    unsigned int ReadAndCompareVersion(unsigned int maxVersion);
};
