// ZoExceptionIllegalInputData: thrown for input data that the caller cannot accept (available to users).
// Its report names it "ZoExceptionIllegalInputData".
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionIllegalInputData);
