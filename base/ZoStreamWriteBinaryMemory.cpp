#include "base/ZoStreamWriteBinaryMemory.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteBinaryMemory, ZoStreamWriteBinary, nullptr, nullptr);

ZoStreamWriteBinaryMemory& ZoStreamWriteBinaryMemory::write(const void* buffer, uint64_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(buffer);
    m_buffer.insert(m_buffer.end(), bytes, bytes + size);
    return *this;
}
