#include "base/ZoArrayDynamicSize.h"

#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"

#include <algorithm>
#include <cstring>

namespace {
const char16_t kSource[] = u"..\\base\\ZoArrayDynamicSize.cpp";
} // namespace

ZoArrayDynamicSize::ZoArrayDynamicSize() : m_elementSize(0)
{
}

ZoArrayDynamicSize::ZoArrayDynamicSize(uint32_t count, uint32_t elementSize) : m_elementSize(elementSize)
{
    SetElementCount(count, 0);
}

ZoArrayDynamicSize::ZoArrayDynamicSize(uint32_t count, uint32_t memoryCount, uint32_t elementSize) : m_elementSize(elementSize)
{
    SetMemoryElementCount(memoryCount, 0);
    SetElementCount(count, 0);
}

ZoArrayDynamicSize::ZoArrayDynamicSize(const ZoArrayDynamicSize& other) : Base(), m_elementSize(0)
{
    copyPolicy(other);
    copyCountBytesFrom(other);
}

ZoArrayDynamicSize& ZoArrayDynamicSize::operator=(const ZoArrayDynamicSize& other)
{
    if (this != &other) {
        copyPolicy(other);
        copyCountBytesFrom(other);
    }
    return *this;
}

ZoArrayDynamicSize::~ZoArrayDynamicSize() = default;

void ZoArrayDynamicSize::copyCountBytesFrom(const ZoArrayDynamicSize& other)
{
    // The byte array's copy runs before the element size is known, so only GetCount() bytes are
    // copied; callers have long relied on this. The storage is nevertheless sized for whole
    // elements, so that every element of the copy can be used safely.
    release();
    m_count = 0;
    m_elementSize = other.m_elementSize;
    m_memoryCount = other.m_count;
    allocate();
    m_count = other.m_count;
    if (m_data == nullptr)
        return;
    const size_t bytes = byteCount(m_count);
    std::memset(m_data, 0, bytes);
    if (other.m_data != nullptr)
        std::memcpy(m_data, other.m_data, std::min<size_t>(bytes, m_count));
}

void ZoArrayDynamicSize::SetElementSize(uint32_t elementSize, int keep)
{
    if (elementSize == m_elementSize)
        return;
    const uint32_t memoryCount = m_memoryCount;
    const uint32_t oldSize = m_elementSize;
    const ZoSmartPointer<ZoMemoryBlock> oldBlock = m_memoryBlock;
    const unsigned char* oldData = m_data;
    release();
    m_elementSize = elementSize;
    m_memoryCount = memoryCount;
    allocate();
    if (!keep || m_count == 0 || elementSize == 0 || oldData == nullptr || m_data == nullptr)
        return;
    const uint32_t kept = std::min(oldSize, elementSize);
    for (uint32_t i = 0; i < m_count; ++i)
        std::memcpy(m_data + static_cast<size_t>(i) * elementSize, oldData + static_cast<size_t>(i) * oldSize, kept);
}

void ZoArrayDynamicSize::Reset()
{
    Base::Reset();
}

void ZoArrayDynamicSize::Serialize(ZoStreamWriteBinary& stream) const
{
    stream << m_count;
    stream << m_elementSize;
    const size_t bytes = byteCount(m_count);
    if (bytes != 0)
        stream.WriteBuffer(m_data, bytes);
}

void ZoArrayDynamicSize::Serialize(ZoStreamReadBinary& stream)
{
    uint32_t count = 0;
    uint32_t elementSize = 0;
    stream >> count;
    stream >> elementSize;
    if (elementSize != m_elementSize || m_memoryCount < count) {
        release();
        m_count = 0;
    }
    m_elementSize = elementSize;
    if (!readElementBytes(stream, count))
        throw ZoExceptionStream(kSource, u"ZoArrayDynamicSize", u"Serialize", ZoException::sc_uiNoLine);
}
