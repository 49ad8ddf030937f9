#include "base/ZoStreamWriteASCIITrace.h"

#include "platform/ZoOS.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteASCIITrace, ZoStreamWriteASCII, nullptr, nullptr);

ZoStreamWriteASCIITrace::~ZoStreamWriteASCIITrace() = default;

ZoStreamWriteASCIITrace& ZoStreamWriteASCIITrace::write(const CString& text)
{
#if defined(NDEBUG)
    // Trace output is a debug-build facility on every target, whatever the system offers in a
    // release build: applications trace freely and rely on it costing nothing when shipped.
    (void)text;
#else
    for (int position = 0; position < text.GetLength(); position += sc_pieceLength)
        ZoOS::WriteDebugTrace(text.Mid(position, sc_pieceLength));
#endif
    return *this;
}
