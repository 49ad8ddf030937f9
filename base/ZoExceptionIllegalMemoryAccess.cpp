#include "base/ZoExceptionIllegalMemoryAccess.h"

ZO_DEFINE_EXCEPTION_NAMED(ZoExceptionIllegalMemoryAccess)
