#pragma once

#include "base/ZoMap.h"
#include "base/ZoRTTI.h"
#include "base/ZoSingleton.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoRTTIRegistration: the process-wide type registry, mapping an exact class name to its descriptor
/// and its create and clone functions.
///
/// A ZoMap of 17 buckets whose associations come from a node pool of 1000 per block. Registering a
/// name that is already present replaces its record and does not grow the count. Entries are never
/// removed. Registration happens while libraries load; afterwards the registry is only read, without
/// a lock.
/// @ingroup objectmodel
class ZO_API ZoRTTIRegistration : public ZoSingleton<ZoRTTIRegistration>
{
public:
    /// What the registry keeps per class name.
    struct Registration
    {
        /// The class's descriptor.
        const ZoRTTI* rtti;
        /// Makes an instance by name; null when the class cannot be made by name.
        ZoRTTI::CreateFunction create;
        /// Copies an instance; null when the class cannot be copied by name.
        ZoRTTI::CloneFunction clone;
    };

    /// Inserts the name if absent, then overwrites its record.
    void Register(const CString& name, const ZoRTTI* rtti, ZoRTTI::CreateFunction create, ZoRTTI::CloneFunction clone);
    /// The record registered under exactly this name, or null.
    const Registration* Lookup(const CString& name) const;
    /// Number of distinct names registered.
    uint32_t GetCount() const { return m_classes.GetCount(); }

    /// The registry lives in the library: these hide ZoSingleton's accessors so that a program always
    /// reaches the library's one instance, even where template statics cannot be shared.
    static ZoRTTIRegistration& GetInstance();
    /// True once the registry exists (the library makes it while it loads); makes nothing.
    static bool HasInstance();

private:
    friend class ZoSingleton<ZoRTTIRegistration>;
    ZoRTTIRegistration();
    ~ZoRTTIRegistration() override = default;

    ZoMap<CString, Registration> m_classes;
};

ZO_EXTERN_TEMPLATE(class ZoSingleton<ZoRTTIRegistration>)
