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
    ZoStreamWriteBinary& operator<<(const CString& value) override;
    ZoStreamWriteBinary& operator<<(double value) override;
    ZoStreamWriteBinary& operator<<(float value) override;
    ZoStreamWriteBinary& operator<<(long long value) override;
    ZoStreamWriteBinary& operator<<(unsigned long long value) override;
    ZoStreamWriteBinary& operator<<(long value) override;
    ZoStreamWriteBinary& operator<<(unsigned long value) override;
    ZoStreamWriteBinary& operator<<(int value) override;
    ZoStreamWriteBinary& operator<<(unsigned int value) override;
    ZoStreamWriteBinary& operator<<(short value) override;
    ZoStreamWriteBinary& operator<<(unsigned short value) override;
    ZoStreamWriteBinary& operator<<(signed char value) override;
    ZoStreamWriteBinary& operator<<(unsigned char value) override;
    ZoStreamWriteBinary& operator<<(bool value) override;

    /// Writes raw bytes, framed by nothing.
    void WriteBuffer(const void* buffer, uint64_t size) { write(buffer, size); }

protected:
    virtual ZoStreamWriteBinary& write(const void* buffer, uint64_t size) = 0;

private:
    void writeStringLength(uint64_t length);
};
