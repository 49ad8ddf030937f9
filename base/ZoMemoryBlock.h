#pragma once

#include "base/ZoReferenceCountedClass.h"
#include "platform/ZoExport.h"

#include <cstddef>

/// ZoMemoryBlock: one reference-counted raw heap buffer, the storage of ZoArray. Arrays hand their
/// block out as a ZoSmartPointer<ZoMemoryBlock>, so a buffer can outlive the array that made it.
///
/// Copying a block copies only the buffer pointer: the copy and the source then name the same bytes
/// and both free them. The array code never copies a block; the shallow copy is kept because
/// existing callers move blocks between holders that way and release one side themselves.
/// @ingroup containers
class ZO_API ZoMemoryBlock : public ZoReferenceCountedClass<ZoMemoryBlock>
{
public:
    /// Allocates `size` uninitialised bytes from the C heap; the buffer is null when that fails.
    explicit ZoMemoryBlock(size_t size);
    /// Shallow: shares `other`'s buffer (see the class note); both blocks will free it.
    ZoMemoryBlock(const ZoMemoryBlock& other);
    /// Shallow: takes `other`'s buffer pointer without freeing the old one (see the class note).
    ZoMemoryBlock& operator=(const ZoMemoryBlock& other);
    ~ZoMemoryBlock() override;

    /// The buffer; null when the allocation failed.
    unsigned char* GetData() const { return m_data; }
    /// Resizes the buffer with the C heap's reallocation; every holder of the block sees the moved
    /// buffer. On failure the old bytes are freed and the buffer becomes null.
    void Reallocate(size_t size);

private:
    unsigned char* m_data;
};
