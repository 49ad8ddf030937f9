/// @class ZoExceptionStream
/// ZoExceptionStream: thrown for stream and file failures: opening, reading past the end, closing, a bad string
/// length, corrupt range-coder data.
/// Its report names it "ZoException", as the reports of earlier releases did.
/// @ingroup objectmodel
#pragma once

#include "base/ZoException.h"

ZO_DECLARE_EXCEPTION(ZoExceptionStream);
