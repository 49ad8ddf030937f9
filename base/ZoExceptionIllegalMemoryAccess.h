/// @class ZoExceptionIllegalMemoryAccess
/// ZoExceptionIllegalMemoryAccess: thrown for a detected illegal memory access (available to users).
/// Its report names it "ZoExceptionIllegalMemoryAccess".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionIllegalMemoryAccess);
