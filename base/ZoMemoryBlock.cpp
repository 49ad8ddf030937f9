#include "base/ZoMemoryBlock.h"

#include "base/ZoHeapTracker.h"

#include <cstdlib>

// The tracker takes the new block's address only, but GCC's optimiser reads a const pointer
// parameter as a read of the fresh (uninitialised) block and warns in optimised builds.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
ZoMemoryBlock::ZoMemoryBlock(size_t size) : m_data(static_cast<unsigned char*>(std::malloc(size == 0 ? 1 : size)))
{
    ZoHeapTracker::RecordAllocation(m_data, size);
}
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic pop
#endif

ZoMemoryBlock::ZoMemoryBlock(const ZoMemoryBlock& other) : ZoReferenceCountedClass<ZoMemoryBlock>(other), m_data(other.m_data)
{
}

ZoMemoryBlock& ZoMemoryBlock::operator=(const ZoMemoryBlock& other)
{
    ZoReferenceCountedClass<ZoMemoryBlock>::operator=(other);
    m_data = other.m_data;
    return *this;
}

ZoMemoryBlock::~ZoMemoryBlock()
{
    ZoHeapTracker::RecordRelease(m_data);
    std::free(m_data);
}

void ZoMemoryBlock::Reallocate(size_t size)
{
    void* moved = std::realloc(m_data, size == 0 ? 1 : size);
    ZoHeapTracker::RecordReallocation(m_data, moved, size);
    if (moved == nullptr)
        std::free(m_data);
    m_data = static_cast<unsigned char*>(moved);
}
