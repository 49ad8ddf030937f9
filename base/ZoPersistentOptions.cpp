#include "base/ZoPersistentOptions.h"

#include "platform/ZoOS.h"

#include <vector>

namespace {

const uint32_t sc_typeString = 1; // REG_SZ
const uint32_t sc_typeDword = 4;  // REG_DWORD

int writeDword(const CString& key, const CString& name, uint32_t value, uint32_t root)
{
    const unsigned char bytes[4] = {static_cast<unsigned char>(value), static_cast<unsigned char>(value >> 8),
                                    static_cast<unsigned char>(value >> 16), static_cast<unsigned char>(value >> 24)};
    return ZoOS::WriteOptionValue(root, key, name, sc_typeDword, bytes, 4) ? 1 : 0;
}

// Stored bytes are little-endian; fewer than 4 stored bytes leave the high ones zero.
bool readDword(const CString& key, const CString& name, uint32_t& value, uint32_t root)
{
    unsigned char bytes[4] = {0, 0, 0, 0};
    uint32_t size = 4;
    if (!ZoOS::ReadOptionValue(root, key, name, bytes, size))
        return false;
    value = static_cast<uint32_t>(bytes[0]) | (static_cast<uint32_t>(bytes[1]) << 8) |
            (static_cast<uint32_t>(bytes[2]) << 16) | (static_cast<uint32_t>(bytes[3]) << 24);
    return true;
}

} // namespace

uint32_t ZoPersistentOptions::getKey(EPersistentOptionsCategory category)
{
    switch (category) {
    case eClassesRoot:
        return 0x80000000;
    case eCurrentUser:
        return 0x80000001;
    case eLocalMachine:
        return 0x80000002;
    case eUsers:
        return 0x80000003;
    case eCurrentConfig:
        return 0x80000005;
    }
    return 0;
}

int ZoPersistentOptions::readValue(const CString& key, const CString& name, void* data, uint32_t& size,
                                   EPersistentOptionsCategory category)
{
    return ZoOS::ReadOptionValue(getKey(category), key, name, data, size) ? 1 : 0;
}

int ZoPersistentOptions::writeValue(const CString& key, const CString& name, uint32_t type, const void* data,
                                    uint32_t size, EPersistentOptionsCategory category)
{
    return ZoOS::WriteOptionValue(getKey(category), key, name, type, data, size) ? 1 : 0;
}

int ZoPersistentOptions::WriteOption(const CString& key, const CString& name, bool value,
                                     EPersistentOptionsCategory category)
{
    return writeDword(key, name, value ? 1 : 0, getKey(category));
}

int ZoPersistentOptions::WriteOption(const CString& key, const CString& name, int32_t value,
                                     EPersistentOptionsCategory category)
{
    return writeDword(key, name, static_cast<uint32_t>(value), getKey(category));
}

int ZoPersistentOptions::WriteOption(const CString& key, const CString& name, uint32_t value,
                                     EPersistentOptionsCategory category)
{
    return writeDword(key, name, value, getKey(category));
}

int ZoPersistentOptions::WriteOption(const CString& key, const CString& name, const CString& value,
                                     EPersistentOptionsCategory category)
{
    // UTF-16 little-endian whatever the machine's order: the bytes the registry holds.
    const uint32_t length = static_cast<uint32_t>(value.GetLength());
    std::vector<unsigned char> bytes(static_cast<size_t>(length) * 2);
    for (uint32_t i = 0; i < length; ++i) {
        bytes[2 * i] = static_cast<unsigned char>(value[static_cast<int>(i)] & 0xFF);
        bytes[2 * i + 1] = static_cast<unsigned char>(value[static_cast<int>(i)] >> 8);
    }
    return writeValue(key, name, sc_typeString, bytes.data(), length * 2, category);
}

int ZoPersistentOptions::ReadOption(const CString& key, const CString& name, bool& value,
                                    EPersistentOptionsCategory category)
{
    uint32_t stored = 0;
    if (!readDword(key, name, stored, getKey(category)))
        return 0;
    // Only 1 is true: settings written by other programs with other non-zero numbers have always
    // read as false, and callers depend on it.
    value = stored == 1;
    return 1;
}

int ZoPersistentOptions::ReadOption(const CString& key, const CString& name, int32_t& value,
                                    EPersistentOptionsCategory category)
{
    uint32_t stored = 0;
    if (!readDword(key, name, stored, getKey(category)))
        return 0;
    value = static_cast<int32_t>(stored);
    return 1;
}

int ZoPersistentOptions::ReadOption(const CString& key, const CString& name, uint32_t& value,
                                    EPersistentOptionsCategory category)
{
    return readDword(key, name, value, getKey(category)) ? 1 : 0;
}

int ZoPersistentOptions::ReadOption(const CString& key, const CString& name, CString& value, uint32_t maxLength,
                                    EPersistentOptionsCategory category)
{
    if (maxLength > 0x7FFFFFFF)
        return 0;
    std::vector<unsigned char> bytes(static_cast<size_t>(maxLength) * 2, 0);
    uint32_t size = maxLength * 2;
    if (!readValue(key, name, bytes.data(), size, category))
        return 0;
    // Up to the first zero, and never past the buffer: a text of exactly maxLength characters has
    // no terminator after it.
    std::u16string text;
    for (uint32_t i = 0; i < maxLength; ++i) {
        const char16_t unit = static_cast<char16_t>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
        if (unit == 0)
            break;
        text += unit;
    }
    value = CString(std::move(text));
    return 1;
}

int ZoPersistentOptions::DeleteOption(const CString& key, const CString& name, EPersistentOptionsCategory category)
{
    return ZoOS::DeleteOptionValue(getKey(category), key, name) ? 1 : 0;
}
