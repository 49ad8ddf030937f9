#include "base/ZoExceptionContainer.h"

ZO_DEFINE_EXCEPTION_NAMED(ZoExceptionContainer)
