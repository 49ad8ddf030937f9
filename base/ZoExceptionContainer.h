/// @class ZoExceptionContainer
/// ZoExceptionContainer: thrown for inconsistent container state (array sets, attribute containers).
/// Its report names it "ZoExceptionContainer".
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionContainer);
