// ZoExceptionIllegalMemoryAccess: thrown for a detected illegal memory access (available to users).
// Its report names it "ZoExceptionIllegalMemoryAccess".
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionIllegalMemoryAccess);
