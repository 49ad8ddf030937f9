/// @class ZoExceptionWrongFileVersion
/// ZoExceptionWrongFileVersion: thrown for serialized data whose stored version or layout the reader does not know.
/// Its report names it "ZoException", as the reports of earlier releases did.
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionWrongFileVersion);
