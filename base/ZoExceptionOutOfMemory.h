/// @class ZoExceptionOutOfMemory
/// ZoExceptionOutOfMemory: thrown for memory exhaustion detected by the caller (available to users).
/// Its report names it "ZoExceptionOutOfMemory".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionOutOfMemory);
