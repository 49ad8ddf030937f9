#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoUniqueID: hands out new globally unique identifiers as text, for callers that need a fresh
/// name for a file, a record or a session.
///
/// An identifier is a time-ordered (version 1) UUID written as 8-4-4-4-12 hexadecimal digits with
/// hyphens, upper case, 36 characters, no braces. The class never returns an identifier that might
/// repeat: when the system cannot promise uniqueness it throws instead.
/// @ingroup services
class ZO_API ZoUniqueID
{
public:
    /// A new identifier. Safe to call from any thread. Throws ZoException when the system's
    /// generator fails or can promise only a locally unique value (Windows), or when the random
    /// source or the clock fails (POSIX).
    static CString GetUniqueID();
};
