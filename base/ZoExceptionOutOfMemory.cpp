#include "base/ZoExceptionOutOfMemory.h"

ZO_DEFINE_EXCEPTION_NAMED(ZoExceptionOutOfMemory)
