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
    ZoSmartPointer(ZoNullPointer) : m_pointer(nullptr) {}
    ZoSmartPointer(std::nullptr_t) : m_pointer(nullptr) {}
    ZoSmartPointer(T* object) : m_pointer(object) { acquire(); }
    ZoSmartPointer(const ZoSmartPointer& other) : m_pointer(other.m_pointer) { acquire(); }
    ZoSmartPointer(ZoSmartPointer&& other) noexcept : m_pointer(other.m_pointer) { other.m_pointer = nullptr; }
    template <class U, std::enable_if_t<std::is_convertible_v<U*, T*>, int> = 0>
    ZoSmartPointer(const ZoSmartPointer<U>& other) : m_pointer(other.Get())
    {
        acquire();
    }
    ~ZoSmartPointer() { release(); }

    ZoSmartPointer& operator=(const ZoSmartPointer& other) { return reset(other.m_pointer); }
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
    ZoSmartPointer& operator=(T* object) { return reset(object); }
    ZoSmartPointer& operator=(ZoNullPointer) { return reset(nullptr); }
    ZoSmartPointer& operator=(std::nullptr_t) { return reset(nullptr); }

    T* Get() const { return m_pointer; }
    T& operator*() const { return *m_pointer; }
    T* operator->() const { return m_pointer; }
    explicit operator bool() const { return m_pointer != nullptr; }
    bool operator!() const { return m_pointer == nullptr; }
    bool IsNull() const { return m_pointer == nullptr; }

    bool operator==(const ZoSmartPointer& other) const { return m_pointer == other.m_pointer; }
    bool operator!=(const ZoSmartPointer& other) const { return m_pointer != other.m_pointer; }
    bool operator==(const T* object) const { return m_pointer == object; }
    bool operator!=(const T* object) const { return m_pointer != object; }
    bool operator==(ZoNullPointer) const { return m_pointer == nullptr; }
    bool operator!=(ZoNullPointer) const { return m_pointer != nullptr; }
    bool operator==(std::nullptr_t) const { return m_pointer == nullptr; }
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
template <class T, class... Args>
ZoSmartPointer<T> ZoMakeSmart(Args&&... args)
{
    return ZoSmartPointer<T>(new T(std::forward<Args>(args)...));
}
