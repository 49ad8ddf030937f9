#pragma once

#include "platform/ZoExport.h"

#include "base/ZoNullPointer.h"
#include "base/ZoReferenceCountedClass.h"

#include <cstddef>
#include <type_traits>
#include <utility>

/// ZoSmartPointer<T>: owns one reference to an object whose class derives from
/// ZoReferenceCountedClass. Null is allowed.
///
/// Taking a non-null object or copying a non-null pointer takes a reference; destruction and
/// reassignment release the old target after the new reference has been taken, so assigning a
/// pointer to itself is safe. T may be const (ZoSmartPointer<ZoConstructor const>).
/// @ingroup objectmodel
template <class T>
class ZO_TEMPLATE_API ZoSmartPointer
{
public:
    ZoSmartPointer() : m_pointer(nullptr) {}
    /// Null.
    ZoSmartPointer(ZoNullPointer) : m_pointer(nullptr) {}
    /// Null.
    ZoSmartPointer(std::nullptr_t) : m_pointer(nullptr) {}
    /// Takes a reference to `object` (none when it is null). A fresh object (count 0) becomes owned by this pointer.
    ZoSmartPointer(T* object) : m_pointer(object) { acquire(); }
    /// Takes another reference to `other`'s object.
    ZoSmartPointer(const ZoSmartPointer& other) : m_pointer(other.m_pointer) { acquire(); }
    /// Takes over `other`'s reference; `other` becomes null.
    ZoSmartPointer(ZoSmartPointer&& other) noexcept : m_pointer(other.m_pointer) { other.m_pointer = nullptr; }
    /// From a pointer to a derived class; takes another reference.
    template <class U, std::enable_if_t<std::is_convertible_v<U*, T*>, int> = 0>
    ZoSmartPointer(const ZoSmartPointer<U>& other) : m_pointer(other.Get())
    {
        acquire();
    }
    ~ZoSmartPointer() { release(); }

    /// Takes a reference to `other`'s object, then releases the old one.
    ZoSmartPointer& operator=(const ZoSmartPointer& other) { return reset(other.m_pointer); }
    /// Takes over `other`'s reference and releases the old one; `other` becomes null.
    ZoSmartPointer& operator=(ZoSmartPointer&& other) noexcept
    {
        if (this != &other) {
            T* old = m_pointer;
            m_pointer = other.m_pointer;
            other.m_pointer = nullptr;
            if (old != nullptr)
                old->Release();
        }
        return *this;
    }
    /// Takes a reference to `object`, then releases the old one.
    ZoSmartPointer& operator=(T* object) { return reset(object); }
    /// Releases the object; the pointer becomes null.
    ZoSmartPointer& operator=(ZoNullPointer) { return reset(nullptr); }
    /// Releases the object; the pointer becomes null.
    ZoSmartPointer& operator=(std::nullptr_t) { return reset(nullptr); }

    /// The object, or null; no reference is taken.
    T* Get() const { return m_pointer; }
    /// The object. Requires: not null (not checked).
    T& operator*() const { return *m_pointer; }
    /// The object. Requires: not null (not checked).
    T* operator->() const { return m_pointer; }
    /// True when not null.
    explicit operator bool() const { return m_pointer != nullptr; }
    /// True when null.
    bool operator!() const { return m_pointer == nullptr; }
    /// True when null.
    bool IsNull() const { return m_pointer == nullptr; }

    /// True when both point to the same object (or both are null).
    bool operator==(const ZoSmartPointer& other) const { return m_pointer == other.m_pointer; }
    /// True when they point to different objects.
    bool operator!=(const ZoSmartPointer& other) const { return m_pointer != other.m_pointer; }
    /// True when this points to `object`.
    bool operator==(const T* object) const { return m_pointer == object; }
    /// True when this does not point to `object`.
    bool operator!=(const T* object) const { return m_pointer != object; }
    /// True when null.
    bool operator==(ZoNullPointer) const { return m_pointer == nullptr; }
    /// True when not null.
    bool operator!=(ZoNullPointer) const { return m_pointer != nullptr; }
    /// True when null.
    bool operator==(std::nullptr_t) const { return m_pointer == nullptr; }
    /// True when not null.
    bool operator!=(std::nullptr_t) const { return m_pointer != nullptr; }

private:
    void acquire()
    {
        if (m_pointer != nullptr)
            m_pointer->GetReference();
    }
    void release()
    {
        if (m_pointer != nullptr) {
            T* old = m_pointer;
            m_pointer = nullptr;
            old->Release();
        }
    }
    ZoSmartPointer& reset(T* object)
    {
        if (object != nullptr)
            object->GetReference();
        T* old = m_pointer;
        m_pointer = object;
        if (old != nullptr)
            old->Release();
        return *this;
    }

    T* m_pointer;
};

/// Convenience for `ZoSmartPointer<T>(new T(...))`.
/// @ingroup objectmodel
template <class T, class... Args>
ZoSmartPointer<T> ZoMakeSmart(Args&&... args)
{
    return ZoSmartPointer<T>(new T(std::forward<Args>(args)...));
}
