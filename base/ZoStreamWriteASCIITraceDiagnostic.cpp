#include "base/ZoStreamWriteASCIITraceDiagnostic.h"

#include "base/ZoDiagnosticsClient.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteASCIITraceDiagnostic, ZoStreamWriteASCII, nullptr, nullptr);

ZoStreamWriteASCIITraceDiagnostic::~ZoStreamWriteASCIITraceDiagnostic() = default;

ZoStreamWriteASCIITraceDiagnostic& ZoStreamWriteASCIITraceDiagnostic::write(const CString& text)
{
    ZoDiagnosticsClient::Instance().Trace(text);
    return *this;
}
