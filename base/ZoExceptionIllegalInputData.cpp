#include "base/ZoExceptionIllegalInputData.h"

ZO_DEFINE_EXCEPTION_NAMED(ZoExceptionIllegalInputData)
