#pragma once

#include "platform/ZoExport.h"

/// ZoNoType: stands for "no type" in template argument lists. It has no state; assignment is all it
/// supports.
/// @ingroup objectmodel
class ZO_API ZoNoType
{
public:
    /// Does nothing: there is no state.
    ZoNoType& operator=(const ZoNoType&) = default;
};
