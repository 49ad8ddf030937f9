#include "base/ZoExceptionNoOutputData.h"

ZO_DEFINE_EXCEPTION_NAMED(ZoExceptionNoOutputData)
