#pragma once

#include "base/ZoStreamWriteASCII.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoStreamWriteASCIITraceDiagnostic: a text stream into an external diagnostics viewer, through
/// the process-wide diagnostics client (loaded at run time on the first write). Each write is sent
/// as one message.
///
/// When the viewer's library is missing or incomplete the user is told once, and from then on
/// everything written is dropped without error. Percent directives in the written text are
/// interpreted as a format (with no arguments): write `%%` for a percent sign. Messages longer
/// than 2047 code units are cut. The stream itself holds nothing; any number of them may exist.
/// @ingroup diagnostics
class ZO_API ZoStreamWriteASCIITraceDiagnostic : public ZoStreamWriteASCII
{
    ZO_DECLARE_RTTI()

    ZoStreamWriteASCIITraceDiagnostic() = default;
    ~ZoStreamWriteASCIITraceDiagnostic() override;

    using ZoStreamWriteASCII::operator<<;

protected:
    ZoStreamWriteASCIITraceDiagnostic& write(const CString& text) override;
};
