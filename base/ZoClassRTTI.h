/// @class ZoClassRTTI
/// ZoClassRTTI: the interface of every class that takes part in the type registry. A participating
/// class declares its descriptor with ZO_DECLARE_RTTI() in its body and defines it with one of the
/// ZO_IMPLEMENT_RTTI macros in its source file.
/// @ingroup objectmodel
#pragma once

#include "base/ZoRTTI.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

class ZO_API ZoClassRTTI
{
public:
    const ZoRTTI& GetRTTI() const { return getRTTI(); }
    const CString& GetClassNameW() const { return getRTTI().GetName(); }
    /// The object's class is exactly r (a base does not count).
    bool Is(const ZoRTTI& r) const { return getRTTI().Is(r); }
    /// The object's class is r or derives from it.
    bool IsKindOf(const ZoRTTI& r) const { return getRTTI().IsKindOf(r); }

protected:
    ZoClassRTTI() = default;
    ZoClassRTTI(const ZoClassRTTI&) = default;
    ZoClassRTTI& operator=(const ZoClassRTTI&) = default;
    /// Not virtual: objects are never deleted through this interface.
    ~ZoClassRTTI() = default;

    virtual const ZoRTTI& getRTTI() const = 0;
};
