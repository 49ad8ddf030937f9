/// @class ZoExceptionNoOutputData
/// ZoExceptionNoOutputData: thrown for an algorithm asked for output that it has not produced.
/// Its report names it "ZoExceptionNoOutputData".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionNoOutputData);
