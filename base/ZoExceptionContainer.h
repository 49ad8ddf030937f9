// ZoExceptionContainer: thrown for inconsistent container state (array sets, attribute containers).
// Its report names it "ZoExceptionContainer".
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionContainer);
