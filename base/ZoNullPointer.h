#pragma once

#include "platform/ZoExport.h"

/// ZoNullPointer: the tag with which a null ZoSmartPointer is built or compared. It converts to a
/// null untyped pointer and carries nothing.
/// @ingroup objectmodel
class ZO_API ZoNullPointer
{
public:
    operator void*() const { return nullptr; }
};
