#include "base/ZoExceptionStream.h"

ZO_DEFINE_EXCEPTION(ZoExceptionStream)
