/// @class ZoArrayManaged
/// ZoArrayManaged<T, policy>: the ZoArray for element types with constructors, copies and
/// destructors (strings, smart pointers, lists). It keeps ZoArray's growth, sizing and return values
/// but runs each element's own code wherever an element is created, copied, moved or dropped.
///
/// Invariant: exactly the elements [0, GetCount()) are constructed; spare capacity is raw storage.
/// Three protected virtual operations create and drop single elements (copy-construct in place,
/// default-construct in place, destroy in place); ZoArrayOfLists overrides them so that every list
/// it holds draws from one node pool. When storage changes with `keep` nonzero the elements are moved
/// into the new block (move construction when the type has one) and the old ones destroyed; with
/// `keep` 0 every element is destroyed and the surviving count is default-constructed afresh.
///
/// As in ZoArray, indices are not checked. A failed allocation throws std::bad_alloc here (the plain
/// array leaves null storage instead), because constructing into null storage is no option.
/// @ingroup containers
#pragma once

#include "base/ZoArray.h"
#include "platform/ZoExport.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

template <class T, int Policy = 0>
class ZO_TEMPLATE_API ZoArrayManaged : public ZoArray<T, Policy>
{
    typedef ZoArray<T, Policy> Base;

public:
    /// Empty, without storage.
    ZoArrayManaged() {}
    /// `count` default-constructed elements, storage for exactly that many.
    explicit ZoArrayManaged(uint32_t count) { SetElementCount(count, 0); }
    /// Copies the source's elements in use; spare capacity is not copied.
    ZoArrayManaged(const ZoArrayManaged& other) : Base()
    {
        this->copyPolicy(other);
        Add(other, 0);
    }
    /// Destroys the elements in use, then releases the storage.
    ~ZoArrayManaged() override { destroyRange(0, this->m_count); }

    /// Copy-assigns the other array's elements (element by element, not byte-wise); storage ends at
    /// exactly the other's count, as in ZoArray. Throws what the element's copy throws.
    Base& operator=(const Base& other) override
    {
        if (this == &other)
            return *this;
        this->copyPolicy(other);
        const uint32_t count = other.GetCount();
        if (this->m_memoryCount != count) {
            // Storage of exactly the source's count, as the plain array's assignment leaves it.
            destroyRange(0, this->m_count);
            this->m_count = 0;
            enlarge(count, 0);
        }
        const uint32_t assigned = std::min(count, this->m_count);
        for (uint32_t i = 0; i < assigned; ++i)
            this->m_data[i] = other[i];
        destroyRange(count, this->m_count);
        this->m_count = assigned;
        for (uint32_t i = assigned; i < count; ++i)
            appendCopy(other[i]);
        return *this;
    }
    /// Copy-assigns `value` to each element in use; `value` may be one of them.
    void Reset(const T& value) override
    {
        const T saved(value);
        for (uint32_t i = 0; i < this->m_count; ++i)
            this->m_data[i] = saved;
    }
    /// Every element back to its default state (the plain array zeroes bytes; that would corrupt
    /// elements that own resources).
    void Reset() override
    {
        for (uint32_t i = 0; i < this->m_count; ++i) {
            destroyElement(&this->m_data[i]);
            constructElement(&this->m_data[i]);
        }
    }
    /// Exactly `count` elements: new ones default-constructed, dropped ones destroyed.
    void SetElementCount(uint32_t count, int keep = 1) override
    {
        const uint32_t old = this->m_count;
        if (count <= old) {
            destroyRange(count, old);
            this->m_count = count;
            return;
        }
        Base::SetElementCount(count, keep);
        this->m_count = old;
        while (this->m_count < count) {
            constructElement(&this->m_data[this->m_count]);
            ++this->m_count;
        }
    }
    /// One more element, default-constructed; returns 1 when the storage was renewed.
    int Grow(int keep = 1) override
    {
        const int renewed = growRaw(keep);
        constructLast([&](T* at) { constructElement(at); });
        return renewed;
    }
    /// Appends copy-constructed copies of the other array's elements; `other` may be this array.
    int Add(const Base& other, int keep = 1) override
    {
        const uint32_t adding = other.GetCount();
        if (adding == 0)
            return 0;
        if (&other == this) {
            const ZoArrayManaged copy(*this);
            return Add(copy, keep);
        }
        int renewed = 0;
        if (this->m_count + adding > this->m_memoryCount) {
            enlarge(this->m_count + adding, keep);
            renewed = 1;
        }
        for (uint32_t i = 0; i < adding; ++i)
            appendCopy(other[i]);
        return renewed;
    }
    /// Appends a copy-constructed copy of `value`, which may be an element of this array.
    int Add(const T& value, int keep = 1) override
    {
        // A value inside this array's own storage must be saved first: growing can move it.
        if (this->aliasesStorage(&value)) {
            const T saved(value);
            return Add(saved, keep);
        }
        const int renewed = growRaw(keep);
        constructLast([&](T* at) { constructElement(at, value); });
        return renewed;
    }
    /// Puts a copy of `value` at `index`, moving the later elements up. Requires: index <=
    /// GetCount() (not checked).
    int InsertBefore(uint32_t index, const T& value, int grow = 1, int keep = 1) override
    {
        if (this->aliasesStorage(&value)) {
            const T saved(value);
            return InsertBefore(index, saved, grow, keep);
        }
        const int renewed = openHole(index, grow, keep);
        this->m_data[index] = value;
        return renewed;
    }
    /// The hole holds a default-constructed element for the caller to fill.
    int InsertBefore(uint32_t index, int grow = 1, int keep = 1) override
    {
        const int renewed = openHole(index, grow, keep);
        if (this->m_count - index > 1) {
            destroyElement(&this->m_data[index]);
            constructElement(&this->m_data[index]);
        }
        return renewed;
    }
    /// Destroys element `index` and moves the later ones down. Requires: index < GetCount() (not checked).
    void Remove(uint32_t index) override
    {
        for (uint32_t i = index; i + 1 < this->m_count; ++i)
            this->m_data[i] = std::move(this->m_data[i + 1]);
        destroyElement(&this->m_data[this->m_count - 1]);
        --this->m_count;
    }
    /// Destroys every element in use; the storage is kept.
    void RemoveAll() override
    {
        destroyRange(0, this->m_count);
        this->m_count = 0;
    }
    /// Capacity as in ZoArray; elements cut off with `keep` 0 are destroyed.
    int SetMemoryElementCount(uint32_t count, int keep = 1) override
    {
        if (count <= this->m_count && !keep) {
            destroyRange(count, this->m_count);
            this->m_count = count;
        }
        return Base::SetMemoryElementCount(count, keep);
    }

    /// Same as the assignment from the base type.
    virtual ZoArrayManaged& operator=(const ZoArrayManaged& other)
    {
        operator=(static_cast<const Base&>(other));
        return *this;
    }

    /// Element-wise forms of the plain array's byte-wise operations: elements with resources must
    /// not be swapped or compared as raw bytes.
    void Reverse() { std::reverse(this->m_data, this->m_data + this->m_count); }
    /// Rotates like ZoArray::Rotate, moving elements with std::rotate.
    void Rotate(int places)
    {
        if (places == 0 || this->m_count == 0)
            return;
        int64_t shift = places % static_cast<int64_t>(this->m_count);
        if (shift < 0)
            shift += this->m_count;
        std::rotate(this->m_data, this->m_data + (this->m_count - shift), this->m_data + this->m_count);
    }
    /// Equal counts and elements equal by their operator==.
    bool operator==(const ZoArrayManaged& other) const
    {
        return this->m_count == other.m_count && std::equal(this->m_data, this->m_data + this->m_count, other.m_data);
    }

protected:
    /// Copy-constructs one element in raw storage at `at`.
    virtual void constructElement(T* at, const T& from) { new (at) T(from); }
    /// Default-constructs one element in raw storage at `at`.
    virtual void constructElement(T* at) { new (at) T(); }
    /// Destroys the element at `at`, leaving raw storage.
    virtual void destroyElement(T* at) { at->~T(); }

    /// Storage of exactly `count` elements, moving (keep) or re-creating (no keep) the live ones.
    void enlarge(uint32_t count, int keep) override
    {
        const uint32_t alive = this->m_count;
        const uint32_t surviving = std::min(alive, count);
        const ZoSmartPointer<ZoMemoryBlock> oldBlock = this->m_memoryBlock;
        T* const oldData = this->m_data;
        if (!keep)
            destroyRange(0, alive);
        else
            destroyRange(surviving, alive);
        this->m_count = 0;
        this->release();
        if (count == 0)
            return;
        this->m_memoryCount = count;
        this->allocate();
        if (this->m_data == nullptr) {
            this->m_memoryCount = 0;
            if (keep)
                destroyRange(oldData, 0, surviving);
            throw std::bad_alloc();
        }
        for (uint32_t i = 0; i < surviving; ++i) {
            if (keep) {
                new (&this->m_data[i]) T(std::move_if_noexcept(oldData[i]));
                oldData[i].~T();
            } else {
                constructElement(&this->m_data[i]);
            }
            ++this->m_count;
        }
    }

private:
    void destroyRange(uint32_t first, uint32_t end) { destroyRange(this->m_data, first, end); }
    void destroyRange(T* data, uint32_t first, uint32_t end)
    {
        for (uint32_t i = first; i < end; ++i)
            destroyElement(&data[i]);
    }
    /// Base growth without constructing: the caller constructs the counted last element.
    int growRaw(int keep) { return Base::Grow(keep); }
    template <class Construct>
    void constructLast(Construct construct)
    {
        T* const last = &this->m_data[this->m_count - 1];
        --this->m_count;
        construct(last);
        ++this->m_count;
    }
    void appendCopy(const T& value)
    {
        constructElement(&this->m_data[this->m_count], value);
        ++this->m_count;
    }
    /// Grows when asked, then shifts [index, count - 1) up by one place by assignment from the top;
    /// the element at `index` is then the caller's to overwrite.
    int openHole(uint32_t index, int grow, int keep)
    {
        const int renewed = grow ? Grow(keep) : 0;
        for (uint32_t i = this->m_count - 1; i > index; --i)
            this->m_data[i] = std::move(this->m_data[i - 1]);
        return renewed;
    }
};
