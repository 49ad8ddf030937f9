#pragma once

#include "base/ZoStreamWriteASCII.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoStreamWriteASCIITrace: a text stream into the debugger's trace output (standard error on
/// Linux), for developers' diagnostics. That output exists only in debug builds: in release builds
/// the stream discards everything written to it. Text is passed on in pieces of at most 1024 code
/// units, the most the system's trace output takes in one call; an empty text passes nothing.
/// @ingroup streams
class ZO_API ZoStreamWriteASCIITrace : public ZoStreamWriteASCII
{
    ZO_DECLARE_RTTI()

    ZoStreamWriteASCIITrace() = default;
    ~ZoStreamWriteASCIITrace() override;

    using ZoStreamWriteASCII::operator<<;

    /// The largest piece handed to the trace output in one call.
    static const int sc_pieceLength = 1024;

protected:
    ZoStreamWriteASCIITrace& write(const CString& text) override;
};
