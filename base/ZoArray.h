/// @class ZoArray
/// ZoArray<T, policy>: the library's contiguous dynamic array over a reference-counted ZoMemoryBlock.
///
/// Elements are plain data to this class: they are created, copied, moved and dropped as raw bytes
/// (memcpy/memmove), never through constructors or destructors, so arrays of plain data cost no
/// per-element code. Element types with constructors belong in ZoArrayManaged. Every operation that
/// an element type can change is virtual, so the managed, list and run-time-sized forms reuse the
/// growth logic; all byte arithmetic goes through getElementSize() for the same reason.
///
/// Invariants: GetCount() <= GetMemoryElementCount() after every public operation; GetData() is the
/// block's buffer, or null when there is no block. Indices and counts are never checked: an index
/// out of range is the caller's fault. A failed allocation leaves the data null (the next access
/// faults); the array itself throws nothing. The int results of the growing operations are 1 when
/// new storage was obtained and 0 otherwise. `keep` nonzero means that the elements in use survive
/// a change of storage.
///
/// Only the byte array ZoArray<unsigned char, 0> serializes (a versioned form; the older form
/// without marker and version is still read). Reading checks every count against the data that
/// actually arrives, so a damaged count ends in an exception, never in a huge allocation.
/// @ingroup containers
#pragma once

#include "base/ZoArrayPolicyAlloc.h"
#include "base/ZoMemoryBlock.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWrite.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

// How ZoArray::Dump writes one element. Numbers, characters and strings go through the stream's own
// operator; pointers are written as their address ("0x" and 16 upper-case digits). Element types of
// other kinds get an overload of their own next to the type (found by argument-dependent lookup).
template <class T, std::enable_if_t<!std::is_pointer_v<T>, int> = 0>
void ZoDumpElement(ZoStreamWrite& stream, const T& value)
{
    stream << value;
}

template <class T>
void ZoDumpElement(ZoStreamWrite& stream, T* value)
{
    stream << CString::Formatted(u"%p", static_cast<const void*>(value));
}

template <class T, int Policy = 0>
class ZO_TEMPLATE_API ZoArray : public ZoArrayPolicyAlloc<Policy>
{
public:
    /// Empty, without storage: GetData() is null until the first element arrives.
    ZoArray() : m_data(nullptr), m_count(0), m_memoryCount(0) {}
    /// `count` elements of uninitialised storage.
    explicit ZoArray(uint32_t count) : m_data(nullptr), m_count(count), m_memoryCount(count) { allocate(); }
    /// `count` elements, the first ones taken from the arguments in order; elements beyond the
    /// arguments are left uninitialised, arguments beyond `count` ignored.
    template <class... Rest>
    ZoArray(uint32_t count, T first, Rest... rest) : ZoArray(count)
    {
        const T values[] = {first, static_cast<T>(rest)...};
        const uint32_t given = static_cast<uint32_t>(sizeof(values) / sizeof(T));
        if (m_data != nullptr)
            std::memcpy(static_cast<void*>(m_data), values, sizeof(T) * (given < count ? given : count));
    }
    /// Copies the source's elements in use; spare capacity is not copied.
    ZoArray(const ZoArray& other) : m_data(nullptr), m_count(other.m_count), m_memoryCount(other.m_count)
    {
        this->copyPolicy(other);
        if (m_count > 0) {
            allocate();
            copyBytes(0, other.m_data, m_count);
        }
    }
    virtual ~ZoArray() { release(); }

    /// Slot order matters to the derived forms: keep the declarations in this order.
    virtual ZoArray& operator=(const ZoArray& other)
    {
        if (this == &other)
            return *this;
        this->copyPolicy(other);
        SetMemoryElementCount(other.m_count, 0);
        m_count = other.m_count;
        copyBytes(0, other.m_data, m_count);
        return *this;
    }
    /// Assigns `value` to each element in use; spare capacity is untouched.
    virtual void Reset(const T& value)
    {
        const uint32_t size = getElementSize();
        for (uint32_t i = 0; i < m_count; ++i)
            std::memcpy(bytesAt(i), &value, size);
    }
    /// Zeroes the bytes of the elements in use.
    virtual void Reset()
    {
        if (m_data != nullptr)
            std::memset(bytesAt(0), 0, byteCount(m_count));
    }
    /// Exactly `count` elements; storage grows to exactly `count` when it must (no policy rounding).
    virtual void SetElementCount(uint32_t count, int keep = 1)
    {
        if (count == m_count)
            return;
        if (count > m_memoryCount)
            enlarge(count, keep);
        m_count = count;
    }
    /// Room for one more element, counted at once; the policy decides the new capacity.
    virtual int Grow(int keep = 1)
    {
        if (m_count < m_memoryCount) {
            ++m_count;
            return 0;
        }
        uint32_t newCount = this->getNewAllocSize(m_memoryCount);
        // A grow constant of 0 would never make room; one element is the least that works.
        if (newCount <= m_memoryCount)
            newCount = m_memoryCount + 1;
        enlarge(newCount, keep);
        ++m_count;
        return 1;
    }
    /// Appends the other array's elements; storage grows to exactly the sum when it must.
    virtual int Add(const ZoArray& other, int keep = 1)
    {
        if (other.m_count == 0)
            return 0;
        if (&other == this) {
            const ZoArray copy(other);
            return Add(copy, keep);
        }
        int renewed = 0;
        const uint32_t oldCount = m_count;
        if (m_count + other.m_count > m_memoryCount) {
            enlarge(m_count + other.m_count, keep);
            renewed = 1;
        }
        m_count = oldCount + other.m_count;
        copyBytes(oldCount, other.m_data, other.m_count);
        return renewed;
    }
    /// Appends a copy of `value`'s bytes; `value` may be an element of this array. Returns 1 when
    /// the storage was renewed, 0 otherwise.
    virtual int Add(const T& value, int keep = 1)
    {
        // A value inside this array's own storage must be saved first: Grow can move the storage.
        if (aliasesStorage(&value)) {
            const std::vector<unsigned char> saved = saveValue(value);
            const int renewed = Grow(keep);
            std::memcpy(bytesAt(m_count - 1), saved.data(), saved.size());
            return renewed;
        }
        const int renewed = Grow(keep);
        const size_t size = getElementSize();
        std::memcpy(reinterpret_cast<unsigned char*>(m_data) + size * (m_count - 1), &value, size);
        return renewed;
    }
    /// Puts a copy of `value` at `index`, moving the later elements up; `value` may be an element of
    /// this array. Requires: index <= GetCount() (not checked). Returns 1 when the storage was renewed.
    virtual int InsertBefore(uint32_t index, const T& value, int grow = 1, int keep = 1)
    {
        if (aliasesStorage(&value)) {
            const std::vector<unsigned char> saved = saveValue(value);
            const int renewed = InsertBefore(index, grow, keep);
            std::memcpy(bytesAt(index), saved.data(), saved.size());
            return renewed;
        }
        const int renewed = InsertBefore(index, grow, keep);
        std::memcpy(bytesAt(index), &value, getElementSize());
        return renewed;
    }
    /// Opens a hole at `index` by moving the elements from `index` up by one. With `grow` 0 the
    /// caller has already counted the new element.
    virtual int InsertBefore(uint32_t index, int grow = 1, int keep = 1)
    {
        const int renewed = grow ? Grow(keep) : 0;
        const uint32_t moving = m_count - index;
        if (moving > 1)
            std::memmove(bytesAt(index + 1), bytesAt(index), byteCount(moving - 1));
        return renewed;
    }
    /// InsertBefore(index + 1, value, grow, keep).
    virtual int InsertAfter(uint32_t index, const T& value, int grow = 1, int keep = 1)
    {
        return InsertBefore(index + 1, value, grow, keep);
    }
    /// InsertBefore(index + 1, grow, keep): the hole is at index + 1.
    virtual int InsertAfter(uint32_t index, int grow = 1, int keep = 1) { return InsertBefore(index + 1, grow, keep); }
    /// Requires: index < GetCount() (not checked).
    virtual void Remove(uint32_t index)
    {
        --m_count;
        if (index < m_count)
            std::memmove(bytesAt(index), bytesAt(index + 1), byteCount(m_count - index));
    }
    /// Drops every element and keeps the storage.
    virtual void RemoveAll() { m_count = 0; }
    /// Capacity of exactly `count` elements, but never below the elements in use when `keep` is
    /// nonzero; with `keep` 0 a smaller `count` also cuts the elements in use.
    virtual int SetMemoryElementCount(uint32_t count, int keep = 1)
    {
        uint32_t target = count;
        if (count <= m_count) {
            if (keep)
                target = m_count;
            else
                m_count = count;
        }
        if (m_memoryCount == target)
            return 0;
        enlarge(target, keep);
        return 1;
    }

    /// Requires: index < GetCount() (not checked).
    T& operator[](uint32_t index) { return m_data[index]; }
    /// Requires: index < GetCount() (not checked).
    const T& operator[](uint32_t index) const { return m_data[index]; }
    /// The first element; null when the array has no storage (never allocated, or allocation failed).
    T* GetData() const { return m_data; }
    /// Elements in use; 0 for an empty array.
    uint32_t GetCount() const { return m_count; }
    /// Capacity in elements: the elements in use plus the spare room.
    uint32_t GetMemoryElementCount() const { return m_memoryCount; }
    /// 1 when the array has storage (GetData() is not null), 0 otherwise.
    int HasMemoryBlock() const { return m_data != nullptr; }
    /// The shared block behind GetData(); null without storage. Holding it keeps the bytes alive
    /// after the array moves on to a new block.
    ZoSmartPointer<ZoMemoryBlock> GetMemoryBlock() const { return m_memoryBlock; }

    /// Removes the first element; does nothing on an empty array.
    void RemoveHead()
    {
        if (m_count > 0)
            Remove(0);
    }
    /// Removes the last element; does nothing on an empty array.
    void RemoveTail()
    {
        if (m_count > 0)
            Remove(m_count - 1);
    }
    /// 1 when an element in use compares equal to `value` with operator==, 0 otherwise.
    int Exists(const T& value) const
    {
        for (uint32_t i = 0; i < m_count; ++i)
            if (m_data[i] == value)
                return 1;
        return 0;
    }
    /// Equal counts and equal element bytes.
    bool operator==(const ZoArray& other) const
    {
        if (m_count != other.m_count)
            return false;
        return m_count == 0 || std::memcmp(m_data, other.m_data, byteCount(m_count)) == 0;
    }
    /// Reverses the order of the elements in use, byte-wise.
    void Reverse()
    {
        const uint32_t size = getElementSize();
        std::vector<unsigned char> swap(size);
        for (uint32_t i = 0; i < m_count / 2; ++i) {
            std::memcpy(swap.data(), bytesAt(i), size);
            std::memcpy(bytesAt(i), bytesAt(m_count - 1 - i), size);
            std::memcpy(bytesAt(m_count - 1 - i), swap.data(), size);
        }
    }
    /// Rotates towards higher indices by `places` (negative rotates the other way): Rotate(1) turns
    /// [1,2,3] into [3,1,2].
    void Rotate(int places)
    {
        if (places == 0 || m_count == 0)
            return;
        int64_t shift = places % static_cast<int64_t>(m_count);
        if (shift < 0)
            shift += m_count;
        if (shift == 0)
            return;
        const uint32_t k = static_cast<uint32_t>(shift);
        std::vector<unsigned char> tail(byteCount(k));
        std::memcpy(tail.data(), bytesAt(m_count - k), tail.size());
        std::memmove(bytesAt(k), bytesAt(0), byteCount(m_count - k));
        std::memcpy(bytesAt(0), tail.data(), tail.size());
    }
    /// Bytes of the elements in use plus 52 for the array object itself (the figure reports have
    /// always used, independent of the platform's object size).
    uint32_t GetMemoryUsage() const { return getElementSize() * m_count + 52; }

    /// Writes the elements in order, "," before every element but the first; nothing else (no
    /// brackets, no line break), so callers frame the list themselves.
    void Dump(ZoStreamWrite& stream) const
    {
        for (uint32_t i = 0; i < m_count; ++i) {
            if (i != 0)
                stream << u",";
            ZoDumpElement(stream, m_data[i]);
        }
    }

    ///@{
    /// The byte array's binary form: 0xFFFFFFFF (the marker of the versioned form), version record 1,
    /// the count, the element size 1, then the bytes. Reading also accepts the older form that starts
    /// with the count. Throws ZoExceptionWrongFileVersion for a newer version, an element size other
    /// than 1 or a count of 0xFFFFFFFF, and ZoExceptionStream when the data ends before the count says;
    /// the array may then hold a changed count. Only ZoArray<unsigned char, 0> provides these.
    void Serialize(ZoStreamWriteBinary& stream) const;
    /// Reads either form; see above for what it throws.
    void Serialize(ZoStreamReadBinary& stream);
    ///@}

protected:
    /// The block behind m_data; null without storage.
    ZoSmartPointer<ZoMemoryBlock> getMemoryBlock() const { return m_memoryBlock; }

    /// A fresh block of GetMemoryElementCount() elements, when that and the element size are nonzero.
    virtual void allocate()
    {
        const size_t bytes = byteCount(m_memoryCount);
        if (bytes == 0)
            return;
        m_memoryBlock = ZoSmartPointer<ZoMemoryBlock>(new ZoMemoryBlock(bytes));
        m_data = reinterpret_cast<T*>(m_memoryBlock->GetData());
    }
    /// Resizes the block in place; every holder of the block sees the moved buffer.
    virtual void reallocate()
    {
        if (m_memoryBlock.IsNull()) {
            allocate();
            return;
        }
        m_memoryBlock->Reallocate(byteCount(m_memoryCount));
        m_data = reinterpret_cast<T*>(m_memoryBlock->GetData());
    }
    /// Drops the block; the count is left for the caller to set.
    virtual void release()
    {
        m_memoryBlock = nullptr;
        m_data = nullptr;
        m_memoryCount = 0;
    }
    /// Storage of exactly `count` elements. Keeping elements moves them into a fresh block, so that
    /// holders of the old block keep the old data.
    virtual void enlarge(uint32_t count, int keep)
    {
        if (count == 0) {
            release();
        } else if (keep && m_count != 0) {
            const ZoSmartPointer<ZoMemoryBlock> oldBlock = m_memoryBlock;
            const T* oldData = m_data;
            release();
            m_memoryCount = count;
            allocate();
            copyBytes(0, oldData, m_count < count ? m_count : count);
        } else {
            m_memoryCount = count;
            reallocate();
        }
    }
    /// Bytes per element: sizeof(T) here; run-time-sized forms answer their own size.
    virtual uint32_t getElementSize() const { return sizeof(T); }

    /// Address of element `index` by byte arithmetic with getElementSize().
    unsigned char* bytesAt(uint32_t index) const
    {
        return reinterpret_cast<unsigned char*>(m_data) + static_cast<size_t>(index) * getElementSize();
    }
    /// Bytes taken by `count` elements.
    size_t byteCount(uint32_t count) const { return static_cast<size_t>(count) * getElementSize(); }
    /// Copies `count` elements' bytes to `targetIndex`; does nothing when either side is null.
    void copyBytes(uint32_t targetIndex, const T* source, uint32_t count)
    {
        if (count != 0 && m_data != nullptr && source != nullptr)
            std::memcpy(bytesAt(targetIndex), source, byteCount(count));
    }
    /// Whether `value` points into this array's storage (and would move when it grows).
    bool aliasesStorage(const void* value) const
    {
        const auto address = reinterpret_cast<uintptr_t>(value);
        const auto first = reinterpret_cast<uintptr_t>(m_data);
        return m_data != nullptr && address >= first && address < first + byteCount(m_memoryCount);
    }
    /// A copy of one element's bytes, taken before the storage may move.
    std::vector<unsigned char> saveValue(const T& value) const
    {
        const auto* bytes = reinterpret_cast<const unsigned char*>(&value);
        return std::vector<unsigned char>(bytes, bytes + getElementSize());
    }

    /// Makes the array `count` elements long (storage as SetElementCount(count, 0) leaves it) and
    /// fills them with raw bytes from the stream. Data that fits the present storage or 1 MiB is read
    /// in place; more is first collected in steps of at most what has already arrived, so that a
    /// damaged count meets the end of the data before anything near its claim is allocated. Returns
    /// false when the data ends early (the count may then have changed).
    bool readElementBytes(ZoStreamReadBinary& stream, uint32_t count)
    {
        const size_t total = byteCount(count);
        if (total <= byteCount(m_memoryCount) || total <= sc_readStepBytes) {
            SetElementCount(count, 0);
            if (total == 0)
                return true;
            return m_data != nullptr && stream.ReadBuffer(m_data, total) == total;
        }
        std::vector<unsigned char> collected;
        while (collected.size() < total) {
            const size_t arrived = collected.size();
            const size_t wanted = std::min(total - arrived, std::max(arrived, sc_readStepBytes));
            collected.resize(arrived + wanted);
            if (stream.ReadBuffer(collected.data() + arrived, wanted) != wanted)
                return false;
        }
        SetElementCount(count, 0);
        if (m_data == nullptr)
            return false;
        std::memcpy(m_data, collected.data(), total);
        return true;
    }
    /// The most that readElementBytes allocates before data has arrived to back it: 1 MiB.
    static constexpr size_t sc_readStepBytes = size_t(1) << 20;

    /// The block's buffer, or null without storage.
    T* m_data;
    /// Elements in use; never above m_memoryCount.
    uint32_t m_count;
    /// Capacity in elements.
    uint32_t m_memoryCount;
    /// The reference-counted block that owns m_data.
    ZoSmartPointer<ZoMemoryBlock> m_memoryBlock;
};

// Only the byte array serializes; these two are defined in ZoArray.cpp.
/// Writes the byte array's versioned binary form (see ZoArray::Serialize).
template <>
ZO_API void ZoArray<unsigned char, 0>::Serialize(ZoStreamWriteBinary& stream) const;
/// Reads the versioned or the older binary form (see ZoArray::Serialize); throws
/// ZoExceptionWrongFileVersion or ZoExceptionStream for data it cannot take.
template <>
ZO_API void ZoArray<unsigned char, 0>::Serialize(ZoStreamReadBinary& stream);

template <class T, int Policy>
void ZoArray<T, Policy>::Serialize(ZoStreamWriteBinary&) const
{
    static_assert(sizeof(T) == 0, "only ZoArray<unsigned char, 0> has a binary form");
}

template <class T, int Policy>
void ZoArray<T, Policy>::Serialize(ZoStreamReadBinary&)
{
    static_assert(sizeof(T) == 0, "only ZoArray<unsigned char, 0> has a binary form");
}

ZO_EXTERN_TEMPLATE(class ZoArray<unsigned char, 0>)
