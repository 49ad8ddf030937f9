#pragma once

#include "base/ZoStreamRead.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoStreamReadBinary: reads the library's binary encoding — little-endian scalars without padding
/// or tags, length-prefixed UTF-16 strings, 32-bit version records — from whatever the derived
/// class's read() delivers.
///
/// A scalar that cannot be read whole throws ZoExceptionStream ("operator >>") with the line of its
/// size and signedness; a string without the wide-string marker throws ("readStringLength"); a
/// string whose characters are cut short throws ("operator >> (CString)"). After a throw the stream
/// is left where the failed read stopped.
/// @ingroup streams
class ZO_API ZoStreamReadBinary : public ZoStreamRead
{
    ZO_DECLARE_RTTI()

    /// Reads 0xFF, 0xFFFE, the length in code units and the UTF-16 code units. The length is one byte below 255, else 0xFF and 16 bits below 0xFFFF; after 0xFFFF a second 16-bit length follows (not the writer's 32 bits: files read by earlier releases depend on that), so texts of 65535 units or more do not round-trip. Throws ZoExceptionStream ("readStringLength") without the marker, ("operator >> (CString)") when the units are cut short.
    ZoStreamReadBinary& operator>>(CString& value) override;
    /// Reads a `double`: 8 bytes, IEEE 754, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(double& value) override;
    /// Reads a `float`: 4 bytes, IEEE 754, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(float& value) override;
    /// Reads a `long long`: 8 bytes, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(long long& value) override;
    /// Reads a `unsigned long long`: 8 bytes, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(unsigned long long& value) override;
    /// Reads a `long`: 4 bytes on Windows, 8 on Linux, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(long& value) override;
    /// Reads a `unsigned long`: 4 bytes on Windows, 8 on Linux, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(unsigned long& value) override;
    /// Reads a `int`: 4 bytes, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(int& value) override;
    /// Reads a `unsigned int`: 4 bytes, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(unsigned int& value) override;
    /// Reads a `short`: 2 bytes, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(short& value) override;
    /// Reads a `unsigned short`: 2 bytes, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(unsigned short& value) override;
    /// Reads a `signed char`: 1 byte, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(signed char& value) override;
    /// Reads a `unsigned char`: 1 byte, little-endian. Throws ZoExceptionStream ("operator >>") when fewer bytes remain.
    ZoStreamReadBinary& operator>>(unsigned char& value) override;
    /// Reads one byte; any non-zero byte is true. Throws ZoExceptionStream ("operator >>") when the data has ended.
    ZoStreamReadBinary& operator>>(bool& value) override;

    /// Reads up to `size` raw bytes; returns how many came (fewer at the end of the data).
    virtual uint64_t ReadBuffer(void* buffer, uint64_t size);

protected:
    /// Delivers up to `size` bytes; fewer only at the end of the data.
    virtual uint64_t read(void* buffer, uint64_t size) = 0;

private:
    void readScalar(void* value, uint64_t size, uint32_t line);
    uint32_t readStringLength();
};
