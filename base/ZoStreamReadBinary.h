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

    ZoStreamReadBinary& operator>>(CString& value) override;
    ZoStreamReadBinary& operator>>(double& value) override;
    ZoStreamReadBinary& operator>>(float& value) override;
    ZoStreamReadBinary& operator>>(long long& value) override;
    ZoStreamReadBinary& operator>>(unsigned long long& value) override;
    ZoStreamReadBinary& operator>>(long& value) override;
    ZoStreamReadBinary& operator>>(unsigned long& value) override;
    ZoStreamReadBinary& operator>>(int& value) override;
    ZoStreamReadBinary& operator>>(unsigned int& value) override;
    ZoStreamReadBinary& operator>>(short& value) override;
    ZoStreamReadBinary& operator>>(unsigned short& value) override;
    ZoStreamReadBinary& operator>>(signed char& value) override;
    ZoStreamReadBinary& operator>>(unsigned char& value) override;
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
