#include "base/ZoExceptionDivisionByZero.h"

ZO_DEFINE_EXCEPTION_NAMED(ZoExceptionDivisionByZero)
