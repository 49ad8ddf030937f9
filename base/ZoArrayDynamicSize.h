/// @class ZoArrayDynamicSize
/// ZoArrayDynamicSize: a byte array whose elements have a size chosen at run time (records of a
/// layout known only from data, pixels of a format picked by the user). It is ZoArray<unsigned char, 0>
/// with the element size as a field: counts, capacities and positions are in elements, and every
/// growth, insertion, removal and move of the byte array works on whole elements. operator[] gives
/// the address of an element.
///
/// Copying keeps an established behaviour: the copy constructor and assignment copy the byte
/// array's part first and take over the element size only afterwards, so they copy GetCount()
/// bytes, not GetCount() elements. The copy has the source's count and element size, storage for all
/// of its elements, and the bytes past the first GetCount() zeroed. Code that needs a full copy sets
/// the element size and copies the bytes itself.
///
/// The binary form is the count, the element size and the elements, without marker or version.
/// Reading checks the claimed size against the data that arrives and throws ZoExceptionStream when
/// the data ends early; a damaged count or size never leads to an allocation far beyond the data.
/// @ingroup containers
#pragma once

#include "base/ZoArray.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoArrayDynamicSize : public ZoArray<unsigned char, 0>
{
    typedef ZoArray<unsigned char, 0> Base;

public:
    /// No elements, element size 0.
    ZoArrayDynamicSize();
    /// `count` uninitialised elements of `elementSize` bytes.
    ZoArrayDynamicSize(uint32_t count, uint32_t elementSize);
    /// Storage for `memoryCount` elements, `count` of them in use (uninitialised).
    ZoArrayDynamicSize(uint32_t count, uint32_t memoryCount, uint32_t elementSize);
    ///@{
    /// Takes the source's grow setting, count and element size with storage for every element, but
    /// copies only its first GetCount() bytes and zeroes the rest (see the class note).
    ZoArrayDynamicSize(const ZoArrayDynamicSize& other);
    ZoArrayDynamicSize& operator=(const ZoArrayDynamicSize& other);
    ///@}
    ~ZoArrayDynamicSize() override;

    /// Bytes per element; 0 for an array made without one.
    uint32_t GetElementSize() const { return m_elementSize; }
    /// Changes the element size. With `keep` nonzero (and elements present, and a nonzero new size)
    /// each element keeps its first min(old, new) bytes and the added bytes are uninitialised;
    /// otherwise the contents are lost. The capacity in elements stays as it was.
    void SetElementSize(uint32_t elementSize, int keep = 1);

    ///@{
    /// The address of element `index` (GetElementSize() bytes). Requires: index < GetCount() (not
    /// checked).
    unsigned char* operator[](uint32_t index) { return bytesAt(index); }
    const unsigned char* operator[](uint32_t index) const { return bytesAt(index); }
    ///@}

    /// Zeroes GetCount() × GetElementSize() bytes.
    void Reset() override;
    using Base::Reset;

    /// Writes the count, the element size and GetCount() × GetElementSize() bytes. Throws what the
    /// stream throws.
    void Serialize(ZoStreamWriteBinary& stream) const;
    /// Replaces count, element size and elements with the stream's. Throws ZoExceptionStream when
    /// the data ends before the claimed elements do; the array's contents are undefined then.
    void Serialize(ZoStreamReadBinary& stream);

protected:
    uint32_t getElementSize() const override { return m_elementSize; }

private:
    /// Takes `other`'s count and element size with storage for every element, copying only its first
    /// GetCount() bytes (see the class note).
    void copyCountBytesFrom(const ZoArrayDynamicSize& other);

    uint32_t m_elementSize;
};
