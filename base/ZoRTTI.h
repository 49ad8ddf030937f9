#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoRTTI: the descriptor of one class registered with the library's type registry: its exact name,
/// up to two base descriptors, and (through the registry) functions that create or clone an instance.
///
/// A descriptor is a static object of its class (the member RTTI), built during library load. Its
/// constructor registers it under its name, replacing an earlier registration of the same name, and
/// only then builds the base list. A descriptor's identity is its address. The base list is null for
/// a class without registered bases, otherwise an array whose first slot holds the number of bases
/// (1 or 2) and whose following slots point to the base descriptors in constructor order.
///
/// Lookups take no lock: registration happens during load, before the library is used from more
/// than one thread.
/// @ingroup objectmodel
class ZO_API ZoRTTI
{
public:
    /// Makes a new instance of the class, or copies an existing one; both return the object as an
    /// untyped pointer to the class itself.
    typedef void* (*CreateFunction)();
    /// Copies the object at `source` (of the class itself); returns the copy, owned by the caller.
    typedef void* (*CloneFunction)(void* source);

    /// Describes class `name` with no registered base and registers it under that name. `create` and `clone` may be null: the class then cannot be made by name.
    ZoRTTI(const CString& name, CreateFunction create, CloneFunction clone);
    /// Describes class `name` with one registered base and registers it; `create` and `clone` may be null.
    ZoRTTI(const CString& name, const ZoRTTI& base, CreateFunction create, CloneFunction clone);
    /// Describes class `name` with two registered bases and registers it; `create` and `clone` may be null.
    ZoRTTI(const CString& name, const ZoRTTI& base1, const ZoRTTI& base2, CreateFunction create, CloneFunction clone);
    /// Frees the base list; the registry entry stays (entries are never removed).
    ~ZoRTTI();
    ZoRTTI(const ZoRTTI&) = delete;
    ZoRTTI& operator=(const ZoRTTI&) = delete;

    /// The class name the descriptor was made with, as the registry knows it.
    const CString& GetName() const { return m_name; }
    /// Identity: true only for the very same descriptor.
    bool operator==(const ZoRTTI& other) const { return this == &other; }
    /// Identity: true for any other descriptor.
    bool operator!=(const ZoRTTI& other) const { return this != &other; }
    /// The very same descriptor.
    bool Is(const ZoRTTI& other) const { return this == &other; }
    /// This class is `other` or derives from it through any chain of registered bases.
    bool IsKindOf(const ZoRTTI& other) const;
    /// The base list as stored: null, or [count, base1, (base2)].
    const uintptr_t* GetBaseClassRTTI() const { return m_baseList; }
    /// Number of registered bases: 0, 1 or 2.
    uint32_t GetBaseCount() const { return m_baseList == nullptr ? 0 : static_cast<uint32_t>(m_baseList[0]); }
    /// Requires: index < GetBaseCount().
    const ZoRTTI& GetBase(uint32_t index) const { return *reinterpret_cast<const ZoRTTI*>(m_baseList[index + 1]); }

    /// The registered descriptor of that exact (case-sensitive) name, or null.
    static const ZoRTTI* Find(const CString& name);

private:
    friend class ZoClassSerialization;

    void registerSelf(CreateFunction create, CloneFunction clone);
    bool isDerivedFrom(const ZoRTTI& other) const;
    static CreateFunction getCreate(const CString& name);
    static CloneFunction getClone(const CString& name);

    CString m_name;
    uintptr_t* m_baseList;
};

/// Create and clone functions for a class T that is default- and copy-constructible.
/// @ingroup objectmodel
template <class T>
struct ZO_TEMPLATE_API ZoRTTIFactory
{
    /// A default-made T, owned by the caller.
    static void* Create() { return new T(); }
    /// A copy of the T at `source`, owned by the caller.
    static void* Clone(void* source) { return new T(*static_cast<T*>(source)); }
};

// Inside the class body (leaves the access at public): declares the class's descriptor RTTI and
// the getRTTI() override that ZoClassRTTI asks for. Its comments are /** */ because a // comment
// would swallow the continuation line.
#define ZO_DECLARE_RTTI()                                                                              \
public:                                                                                                \
    /** The class's descriptor, registered under its exact name at load: compare GetRTTI() to it. */   \
    static const ZoRTTI RTTI;                                                                          \
                                                                                                       \
protected:                                                                                             \
    /** Returns RTTI, so that an object reports its most derived registered class. */                  \
    const ZoRTTI& getRTTI() const override { return RTTI; }                                            \
                                                                                                       \
public:

// In one source file: defines and registers the descriptor with no, one or two registered bases.
// `create` and `clone` may be nullptr (the class cannot be made by name) or
// &ZoRTTIFactory<Class>::Create / &ZoRTTIFactory<Class>::Clone.
#define ZO_IMPLEMENT_RTTI(Class, create, clone) const ZoRTTI Class::RTTI(CString(u"" #Class), create, clone)
#define ZO_IMPLEMENT_RTTI_BASE(Class, Base, create, clone)                                             \
    const ZoRTTI Class::RTTI(CString(u"" #Class), Base::RTTI, create, clone)
#define ZO_IMPLEMENT_RTTI_BASE2(Class, Base1, Base2, create, clone)                                    \
    const ZoRTTI Class::RTTI(CString(u"" #Class), Base1::RTTI, Base2::RTTI, create, clone)
