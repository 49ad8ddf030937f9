#include "base/ZoStreamWriteASCII.h"

#include "base/ZoStreamWriteASCIIString.h"

#include <cstdint>

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteASCII, ZoStreamWrite, nullptr, nullptr);

namespace {

// Windows prints 64-bit values with "%ld", which its C library reads as a 32-bit long: logs have
// always shown the low 32 bits as a signed number, and are compared against exactly that.
CString format64(uint64_t value)
{
    return CString::Formatted(u"%ld", value);
}

// Signed small integers are widened to 32 bits with their sign and printed unsigned, so -1 reads
// 4294967295: that is what earlier releases wrote, and existing dumps are compared against it.
CString formatSignExtended(int32_t value)
{
    return CString::Formatted(u"%u", static_cast<uint32_t>(value));
}

} // namespace

ZoStreamWriteASCII::~ZoStreamWriteASCII() = default;

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(const CString& value)
{
    return write(value);
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(double value)
{
    return write(CString::Formatted(u"%lf", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(float value)
{
    return write(CString::Formatted(u"%f", static_cast<double>(value)));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(long long value)
{
    return write(format64(static_cast<uint64_t>(value)));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(unsigned long long value)
{
    return write(format64(value));
}

// `long` is 32-bit on Windows and 64-bit on Linux; each width prints as its own row.
ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(long value)
{
    if constexpr (sizeof(long) == 8)
        return write(format64(static_cast<uint64_t>(value)));
    else
        return write(CString::Formatted(u"%d", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(unsigned long value)
{
    if constexpr (sizeof(unsigned long) == 8)
        return write(format64(value));
    else
        return write(CString::Formatted(u"%u", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(int value)
{
    return write(CString::Formatted(u"%d", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(unsigned int value)
{
    return write(CString::Formatted(u"%u", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(short value)
{
    return write(formatSignExtended(value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(unsigned short value)
{
    return write(CString::Formatted(u"%u", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(signed char value)
{
    return write(formatSignExtended(value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(unsigned char value)
{
    return write(CString::Formatted(u"%u", value));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(bool value)
{
    return write(CString(value ? u"true" : u"false"));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::operator<<(const ZoStreamWriteASCIIString& collected)
{
    return write(static_cast<const CString&>(collected));
}

ZoStreamWriteASCII& ZoStreamWriteASCII::WriteAddress(const void* address)
{
    // The library's "%p" already prints "0x" and 16 upper-case digits on every target.
    return write(CString::Formatted(u"%p", address));
}
