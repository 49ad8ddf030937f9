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
    /// The descriptor of the object's most derived registered class (not of the static type).
    const ZoRTTI& GetRTTI() const { return getRTTI(); }
    /// The registered name of the object's most derived class; throw sites and reports use it.
    /// The W is part of the name: it is what the Windows headers turn a plain GetClassName into.
    const CString& GetClassNameW() const { return getRTTI().GetName(); }
    /// The object's class is exactly r (a base does not count).
    bool Is(const ZoRTTI& r) const { return getRTTI().Is(r); }
    /// The object's class is r or derives from it.
    bool IsKindOf(const ZoRTTI& r) const { return getRTTI().IsKindOf(r); }

protected:
    ZoClassRTTI() = default;
    ///@{
    /// Copying copies nothing: the descriptor belongs to the class, not to the object.
    ZoClassRTTI(const ZoClassRTTI&) = default;
    ZoClassRTTI& operator=(const ZoClassRTTI&) = default;
    ///@}
    /// Not virtual: objects are never deleted through this interface.
    ~ZoClassRTTI() = default;

    /// Supplied by ZO_DECLARE_RTTI(): returns the most derived class's RTTI member.
    virtual const ZoRTTI& getRTTI() const = 0;
};
