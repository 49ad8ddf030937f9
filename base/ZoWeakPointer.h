#pragma once

#include "platform/ZoExport.h"

#include "base/ZoReferenceCountedClass.h"

/// ZoWeakPointer<T>: watches a reference-counted object without owning it. Get() returns the object
/// while it lives and null once its last reference has been released.
///
/// Not synchronised: a weak pointer and the death of its object must be ordered by the caller;
/// holders that share weak pointers across threads hold GetCriticalSectionWeakPointerBase().
/// @ingroup objectmodel
template <class T>
class ZO_TEMPLATE_API ZoWeakPointer
{
public:
    ZoWeakPointer() : m_record{nullptr, nullptr} {}
    /// Watches `object` (may be null).
    explicit ZoWeakPointer(T* object) : m_record{nullptr, nullptr} { Reset(object); }
    /// Watches the object `other` watches, with a record of its own.
    ZoWeakPointer(const ZoWeakPointer& other) : m_record{nullptr, nullptr} { Reset(other.Get()); }
    /// Stops watching the current object and watches the one `other` watches.
    ZoWeakPointer& operator=(const ZoWeakPointer& other)
    {
        if (this != &other)
            Reset(other.Get());
        return *this;
    }
    ~ZoWeakPointer() { Reset(nullptr); }

    /// Stops watching the current object (if it still lives) and starts watching `object`.
    void Reset(T* object)
    {
        if (T* current = Get())
            current->UnregisterWeakPointer(&m_record);
        m_record.object = object;
        m_record.next = nullptr;
        if (object != nullptr)
            object->RegisterWeakPointer(&m_record);
    }
    /// The object, or null once it has died; takes no reference, so hold GetCriticalSectionWeakPointerBase() when another thread may release it.
    T* Get() const { return static_cast<T*>(m_record.object); }

private:
    ZoWeakPointerRecord m_record;
};
