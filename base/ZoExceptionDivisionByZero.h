/// @class ZoExceptionDivisionByZero
/// ZoExceptionDivisionByZero: thrown for a division by zero detected by the caller (available to users).
/// Its report names it "ZoExceptionDivisionByZero".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionDivisionByZero);
