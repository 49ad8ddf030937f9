#include "base/ZoStreamReadBinaryMemory.h"

#include <cstring>

ZO_IMPLEMENT_RTTI_BASE(ZoStreamReadBinaryMemory, ZoStreamReadBinary, nullptr, nullptr);

ZoStreamReadBinaryMemory::ZoStreamReadBinaryMemory(const void* data, uint64_t size)
    : m_data(static_cast<const unsigned char*>(data), static_cast<const unsigned char*>(data) + size)
{
}

ZoStreamReadBinaryMemory::ZoStreamReadBinaryMemory(std::vector<unsigned char> data) : m_data(std::move(data)) {}

uint64_t ZoStreamReadBinaryMemory::read(void* buffer, uint64_t size)
{
    const uint64_t taken = size < GetRemaining() ? size : GetRemaining();
    if (taken != 0)
        std::memcpy(buffer, m_data.data() + m_position, static_cast<size_t>(taken));
    m_position += taken;
    return taken;
}
