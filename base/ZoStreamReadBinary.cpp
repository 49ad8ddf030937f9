#include "base/ZoStreamReadBinary.h"

#include "base/ZoExceptionStream.h"
#include "platform/ZoOS.h"

#include <string>

ZO_IMPLEMENT_RTTI_BASE(ZoStreamReadBinary, ZoStreamRead, nullptr, nullptr);

namespace {
const char16_t kSource[] = u"..\\base\\ZoStreamReadBinary.cpp";
// The line each scalar's short read reports: one per size and signedness, as log filters and
// older tests know them.
const uint32_t kLineBool = 33, kLineUChar = 52, kLineSChar = 71, kLineUShort = 90, kLineShort = 109,
               kLineUInt = 128, kLineInt = 147, kLineULong = 166, kLineLong = 185, kLineUInt64 = 204,
               kLineInt64 = 223, kLineFloat = 242, kLineDouble = 261;
// `long` has the platform's width: on LP64 it reads as the 64-bit row.
const uint32_t kLineLongOfWidth = sizeof(long) == 8 ? kLineInt64 : kLineLong;
const uint32_t kLineULongOfWidth = sizeof(unsigned long) == 8 ? kLineUInt64 : kLineULong;
static_assert(sizeof(int) == 4 && sizeof(short) == 2 && sizeof(long long) == 8, "the encoding fixes these widths");
} // namespace

void ZoStreamReadBinary::readScalar(void* value, uint64_t size, uint32_t line)
{
    if (read(value, size) < size)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"operator >>", line);
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(bool& value)
{
    // The byte is taken as it stands, as files written by earlier releases may hold other values
    // than 0 and 1 there; it is read through a byte so that the bool itself is always valid.
    unsigned char byte = 0;
    readScalar(&byte, 1, kLineBool);
    value = byte != 0;
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(unsigned char& value)
{
    readScalar(&value, 1, kLineUChar);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(signed char& value)
{
    readScalar(&value, 1, kLineSChar);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(unsigned short& value)
{
    readScalar(&value, 2, kLineUShort);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(short& value)
{
    readScalar(&value, 2, kLineShort);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(unsigned int& value)
{
    readScalar(&value, 4, kLineUInt);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(int& value)
{
    readScalar(&value, 4, kLineInt);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(unsigned long& value)
{
    readScalar(&value, sizeof value, kLineULongOfWidth);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(long& value)
{
    readScalar(&value, sizeof value, kLineLongOfWidth);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(unsigned long long& value)
{
    readScalar(&value, 8, kLineUInt64);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(long long& value)
{
    readScalar(&value, 8, kLineInt64);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(float& value)
{
    readScalar(&value, 4, kLineFloat);
    return *this;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(double& value)
{
    readScalar(&value, 8, kLineDouble);
    return *this;
}

uint64_t ZoStreamReadBinary::ReadBuffer(void* buffer, uint64_t size)
{
    return read(buffer, size);
}

// The writer puts a 32-bit length after 0xFF FFFF for strings of 65535 units or more, but this
// reader takes the next 16-bit value instead. Files written by earlier readers and writers depend
// on exactly this pairing, so such long strings do not round-trip and the asymmetry stays.
uint32_t ZoStreamReadBinary::readStringLength()
{
    unsigned char marker = 0;
    unsigned short wide = 0;
    if (read(&marker, 1) < 1 || read(&wide, 2) < 2 || marker != 0xFF || wide != 0xFFFE)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"readStringLength", 346);
    unsigned char shortLength = 0;
    if (read(&shortLength, 1) < 1)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"readStringLength", 346);
    if (shortLength < 0xFF)
        return shortLength;
    unsigned short length = 0;
    if (read(&length, 2) < 2)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"readStringLength", 346);
    if (length < 0xFFFF)
        return length;
    if (read(&length, 2) < 2)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"readStringLength", 346);
    return length;
}

ZoStreamReadBinary& ZoStreamReadBinary::operator>>(CString& value)
{
    const uint32_t length = readStringLength();
    try {
        std::u16string units(length, u'\0');
        const uint64_t bytes = uint64_t(length) * 2;
        // A string cut short is damaged data: it is reported, never filled with what memory held.
        if (length != 0 && read(&units[0], bytes) < bytes)
            throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"operator >> (CString)", 320);
        value = CString(std::move(units));
    } catch (...) {
        // A terminated thread unwinds through here: that must go on, not become a stream error.
        ZoOS::RethrowThreadCancellation();
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinary", u"operator >> (CString)", 320);
    }
    return *this;
}
