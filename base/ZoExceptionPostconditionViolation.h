/// @class ZoExceptionPostconditionViolation
/// ZoExceptionPostconditionViolation: thrown for a broken postcondition (available to users).
/// Its report names it "ZoExceptionPostconditionViolation".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionPostconditionViolation);
