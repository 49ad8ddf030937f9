#include "base/ZoStreamWriteBinary.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteBinary, ZoStreamWrite, nullptr, nullptr);

// The encoding is the scalars' own bytes, which are little-endian on every target the library
// builds for.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "the binary encoding assumes a little-endian host");

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(bool value)
{
    const unsigned char byte = value ? 1 : 0;
    return write(&byte, 1);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(unsigned char value)
{
    return write(&value, 1);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(signed char value)
{
    return write(&value, 1);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(unsigned short value)
{
    return write(&value, 2);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(short value)
{
    return write(&value, 2);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(unsigned int value)
{
    return write(&value, 4);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(int value)
{
    return write(&value, 4);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(unsigned long value)
{
    return write(&value, sizeof value);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(long value)
{
    return write(&value, sizeof value);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(unsigned long long value)
{
    return write(&value, 8);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(long long value)
{
    return write(&value, 8);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(float value)
{
    return write(&value, 4);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(double value)
{
    return write(&value, 8);
}

void ZoStreamWriteBinary::writeStringLength(uint64_t length)
{
    const unsigned char marker = 0xFF;
    const unsigned short wide = 0xFFFE;
    write(&marker, 1);
    write(&wide, 2);
    if (length < 0xFF) {
        const auto shortLength = static_cast<unsigned char>(length);
        write(&shortLength, 1);
        return;
    }
    write(&marker, 1);
    if (length < 0xFFFE) {
        const auto length16 = static_cast<unsigned short>(length);
        write(&length16, 2);
        return;
    }
    const unsigned short escape16 = 0xFFFF;
    write(&escape16, 2);
    if (length < 0xFFFFFFFFu) {
        const auto length32 = static_cast<uint32_t>(length);
        write(&length32, 4);
        return;
    }
    const uint32_t escape32 = 0xFFFFFFFFu;
    write(&escape32, 4);
    write(&length, 8);
}

ZoStreamWriteBinary& ZoStreamWriteBinary::operator<<(const CString& value)
{
    writeStringLength(static_cast<uint64_t>(value.GetLength()));
    if (value.GetLength() != 0)
        write(value.GetString(), uint64_t(value.GetLength()) * 2);
    return *this;
}
