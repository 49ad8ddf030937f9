#include "base/ZoExceptionWrongFileVersion.h"

ZO_DEFINE_EXCEPTION(ZoExceptionWrongFileVersion)
