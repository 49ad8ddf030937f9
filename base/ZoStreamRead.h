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

    /// Reads a text into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when no text can be read.
    virtual ZoStreamRead& operator>>(CString& value) = 0;
    /// Reads a `double` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(double& value) = 0;
    /// Reads a `float` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(float& value) = 0;
    /// Reads a `long long` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(long long& value) = 0;
    /// Reads a `unsigned long long` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(unsigned long long& value) = 0;
    /// Reads a `long` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(long& value) = 0;
    /// Reads a `unsigned long` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(unsigned long& value) = 0;
    /// Reads a `int` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(int& value) = 0;
    /// Reads a `unsigned int` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(unsigned int& value) = 0;
    /// Reads a `short` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(short& value) = 0;
    /// Reads a `unsigned short` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(unsigned short& value) = 0;
    /// Reads a `signed char` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(signed char& value) = 0;
    /// Reads a `unsigned char` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(unsigned char& value) = 0;
    /// Reads a `bool` into `value`; returns this stream. Throws the stream's exception (ZoExceptionStream) when the data ends first or holds no such value.
    virtual ZoStreamRead& operator>>(bool& value) = 0;

    /// Reads a version record (an unsigned int) and returns it. Throws ZoExceptionWrongFileVersion,
    /// naming this stream's class, when the stored version is above `maxVersion`: the data was
    /// written by a newer release than this reader knows.
    unsigned int ReadAndCompareVersion(unsigned int maxVersion);
};
