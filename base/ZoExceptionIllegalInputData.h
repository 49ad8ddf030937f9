/// @class ZoExceptionIllegalInputData
/// ZoExceptionIllegalInputData: thrown for input data that the caller cannot accept (available to users).
/// Its report names it "ZoExceptionIllegalInputData".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionIllegalInputData);
