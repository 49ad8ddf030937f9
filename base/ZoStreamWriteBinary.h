#pragma once

#include "base/ZoStreamWrite.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoStreamWriteBinary: writes the library's binary encoding — little-endian scalars without padding
/// or tags, length-prefixed UTF-16 strings, 32-bit version records — through the derived class's
/// write(). It checks nothing itself: failures come from write().
///
/// String layout: 0xFF, 0xFFFE (the wide-string marker), then the length in code units (one byte
/// below 255; else 0xFF and 16 bits below 0xFFFE; else 0xFF, 0xFFFF and 32 bits; else 0xFF, 0xFFFF,
/// 0xFFFFFFFF and 64 bits), then the code units, no terminator.
/// @ingroup streams
class ZO_API ZoStreamWriteBinary : public ZoStreamWrite
{
    ZO_DECLARE_RTTI()

    using ZoStreamWrite::operator<<;
    /// Writes 0xFF, 0xFFFE, the length in code units (see the class note) and the UTF-16 code units, no terminator.
    ZoStreamWriteBinary& operator<<(const CString& value) override;
    /// Writes a `double`: 8 bytes, IEEE 754, little-endian.
    ZoStreamWriteBinary& operator<<(double value) override;
    /// Writes a `float`: 4 bytes, IEEE 754, little-endian.
    ZoStreamWriteBinary& operator<<(float value) override;
    /// Writes a `long long`: 8 bytes, little-endian.
    ZoStreamWriteBinary& operator<<(long long value) override;
    /// Writes a `unsigned long long`: 8 bytes, little-endian.
    ZoStreamWriteBinary& operator<<(unsigned long long value) override;
    /// Writes a `long`: 4 bytes on Windows, 8 on Linux, little-endian.
    ZoStreamWriteBinary& operator<<(long value) override;
    /// Writes a `unsigned long`: 4 bytes on Windows, 8 on Linux, little-endian.
    ZoStreamWriteBinary& operator<<(unsigned long value) override;
    /// Writes a `int`: 4 bytes, little-endian.
    ZoStreamWriteBinary& operator<<(int value) override;
    /// Writes a `unsigned int`: 4 bytes, little-endian.
    ZoStreamWriteBinary& operator<<(unsigned int value) override;
    /// Writes a `short`: 2 bytes, little-endian.
    ZoStreamWriteBinary& operator<<(short value) override;
    /// Writes a `unsigned short`: 2 bytes, little-endian.
    ZoStreamWriteBinary& operator<<(unsigned short value) override;
    /// Writes a `signed char`: 1 byte, little-endian.
    ZoStreamWriteBinary& operator<<(signed char value) override;
    /// Writes a `unsigned char`: 1 byte, little-endian.
    ZoStreamWriteBinary& operator<<(unsigned char value) override;
    /// Writes one byte, 1 for true and 0 for false.
    ZoStreamWriteBinary& operator<<(bool value) override;

    /// Writes raw bytes, framed by nothing.
    void WriteBuffer(const void* buffer, uint64_t size) { write(buffer, size); }

protected:
    /// Delivers `size` raw bytes to the destination; throws the destination's exception when it cannot take them. Returns this stream.
    virtual ZoStreamWriteBinary& write(const void* buffer, uint64_t size) = 0;

private:
    void writeStringLength(uint64_t length);
};
