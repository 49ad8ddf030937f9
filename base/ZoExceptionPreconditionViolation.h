/// @class ZoExceptionPreconditionViolation
/// ZoExceptionPreconditionViolation: thrown for a caller that broke an operation's precondition (an invalid file mode, an
/// invalid probability-model parameter).
/// Its report names it "ZoExceptionPreconditionViolation".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionPreconditionViolation);
