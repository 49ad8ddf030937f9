#pragma once

#include "platform/ZoExport.h"

/// ZoNullPointer: the tag with which a null ZoSmartPointer is built or compared. It converts to a
/// null untyped pointer and carries nothing.
/// @ingroup objectmodel
class ZO_API ZoNullPointer
{
public:
    /// Always null, so a ZoNullPointer converts to any pointer as an empty one.
    operator void*() const { return nullptr; }
};
