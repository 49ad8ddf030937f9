#pragma once

#include "platform/ZoExport.h"

#include <atomic>
#include <cstdint>

template <class T>
class ZoSmartPointer;
template <class T>
class ZoWeakPointer;

/// The record a weak pointer registers: the object it watches (cleared when the object dies) and the
/// link to the next record of the same object.
/// @ingroup objectmodel
struct ZoWeakPointerRecord
{
    /// The watched object; null once the object has died.
    void* object;
    /// The next record registered with the same object, or null.
    ZoWeakPointerRecord* next;
};

/// ZoReferenceCountedClass<T>: the intrusive reference count of a class T that derives from it.
///
/// The count changes only by atomic read-modify-write operations, so references may be taken and
/// dropped from any thread. A new object has count 0; the first ZoSmartPointer raises it to 1, and the
/// Release() that takes it to 0 or below deletes the object through its virtual destructor. (An object
/// released without ever having been referenced is therefore deleted too.)
///
/// Weak pointers register a two-word record {object, next} with the object; when the object dies it
/// clears the object word of every registered record, so a weak pointer then reads null. The weak
/// list itself is not synchronised: holders that share weak pointers across threads hold
/// GetCriticalSectionWeakPointerBase() while they use them.
///
/// Copying a counted object copies its count and weak list verbatim. Serialised objects of the
/// library and its users have relied on this since the first release, so it stays, although a copy
/// thereby starts with its source's count; code that copies counted objects must balance the counts
/// itself (usually by assigning the copy's count through a fresh object, or by never handing the
/// copy to a smart pointer).
/// @ingroup objectmodel
template <class T>
class ZO_TEMPLATE_API ZoReferenceCountedClass
{
public:
    ZoReferenceCountedClass() : m_count(0), m_weakList(nullptr) {}
    /// Constructing from a T starts a fresh count (0) and an empty weak list.
    ZoReferenceCountedClass(const T&) : m_count(0), m_weakList(nullptr) {}
    /// Copies the count and the weak list verbatim (see the class note: the copy must balance its count).
    ZoReferenceCountedClass(const ZoReferenceCountedClass& other)
        : m_count(other.m_count.load(std::memory_order_relaxed)), m_weakList(other.m_weakList)
    {
    }
    virtual ~ZoReferenceCountedClass()
    {
        while (m_weakList != nullptr) {
            ZoWeakPointerRecord* record = m_weakList;
            record->object = nullptr;
            m_weakList = record->next;
        }
    }

    /// Copies the count and the weak list verbatim, as the copy constructor does.
    ZoReferenceCountedClass& operator=(const ZoReferenceCountedClass& other)
    {
        m_count.store(other.m_count.load(std::memory_order_relaxed), std::memory_order_relaxed);
        m_weakList = other.m_weakList;
        return *this;
    }
    /// Assigning the derived value leaves the counting part alone.
    ZoReferenceCountedClass& operator=(const T&) { return *this; }

    /// The current count; a plain read, for diagnostics and tests.
    int32_t GetReferenceCount() const { return m_count.load(std::memory_order_relaxed); }

private:
    template <class U>
    friend class ZoSmartPointer;
    template <class U>
    friend class ZoWeakPointer;
    friend class ZoReferenceCountedAccess;

    T& GetReference()
    {
        m_count.fetch_add(1, std::memory_order_acq_rel);
        return static_cast<T&>(*this);
    }
    const T& GetReference() const
    {
        m_count.fetch_add(1, std::memory_order_acq_rel);
        return static_cast<const T&>(*this);
    }
    void Release() const
    {
        if (m_count.fetch_sub(1, std::memory_order_acq_rel) - 1 <= 0)
            delete this;
    }
    void RegisterWeakPointer(void* record) const
    {
        auto* weak = static_cast<ZoWeakPointerRecord*>(record);
        weak->next = m_weakList;
        m_weakList = weak;
    }
    void UnregisterWeakPointer(void* record) const
    {
        auto* weak = static_cast<ZoWeakPointerRecord*>(record);
        if (m_weakList == weak) {
            m_weakList = weak->next;
            return;
        }
        for (ZoWeakPointerRecord* current = m_weakList; current != nullptr; current = current->next) {
            if (current->next == weak) {
                current->next = weak->next;
                return;
            }
        }
    }

    mutable std::atomic<int32_t> m_count;
    mutable ZoWeakPointerRecord* m_weakList;
};

/// Gives code outside the smart and weak pointers (tests, custom holders) the counting operations
/// that the class keeps private so that ordinary users go through ZoSmartPointer.
/// @ingroup objectmodel
class ZoReferenceCountedAccess
{
public:
    /// Takes a reference to `object` and returns it.
    template <class T>
    static auto& GetReference(T& object) { return object.GetReference(); }
    /// Drops a reference; deletes `object` when the count falls to 0 or below.
    template <class T>
    static void Release(const T& object) { object.Release(); }
    /// Registers `record` so that it is cleared when `object` dies. Not synchronised.
    template <class T>
    static void RegisterWeakPointer(const T& object, ZoWeakPointerRecord& record) { object.RegisterWeakPointer(&record); }
    /// Unregisters `record`; nothing when it is not registered. Not synchronised.
    template <class T>
    static void UnregisterWeakPointer(const T& object, ZoWeakPointerRecord& record) { object.UnregisterWeakPointer(&record); }
};
