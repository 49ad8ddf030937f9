#include "base/ZoDiagnosticsClient.h"

#include "platform/ZoOS.h"

#include <cstdint>

namespace {

// An exclamation-mark icon with an OK button.
const uint32_t sc_warningStyle = 0x30;

template <class Function>
Function entry(ZoOS::LibraryHandle library, const char* name)
{
    return reinterpret_cast<Function>(ZoOS::GetDynamicEntry(library, name));
}

} // namespace

ZoDiagnosticsClient::ZoDiagnosticsClient(const CString& libraryName)
    : m_libraryName(libraryName), m_trace(nullptr), m_timer(nullptr), m_bitmap(nullptr)
{
}

ZoDiagnosticsClient& ZoDiagnosticsClient::Instance()
{
    static ZoDiagnosticsClient client(DefaultLibraryName());
    return client;
}

CString ZoDiagnosticsClient::DefaultLibraryName()
{
#if defined(_WIN32)
    return CString(u"DiagnosticsClient.dll");
#else
    return CString(u"libDiagnosticsClient.so");
#endif
}

// One attempt only: a missing viewer is reported once, not on every line of a log.
void ZoDiagnosticsClient::load()
{
    const ZoOS::LibraryHandle library = ZoOS::LoadDynamicLibrary(m_libraryName);
    if (library == nullptr) {
        ZoOS::ShowMessage(CString::Formatted(u"ZoDiagnosticsClient: Could not load library %s", m_libraryName),
                          u"Error", sc_warningStyle);
        return;
    }
    const TraceFunction trace = entry<TraceFunction>(library, "SendDiagnosticsTraceW");
    m_timer = entry<OpaqueFunction>(library, "SendDiagnosticsTimerW");
    m_bitmap = entry<OpaqueFunction>(library, "SendDiagnosticsBitmapW");
    if (trace == nullptr || m_timer == nullptr || m_bitmap == nullptr) {
        ZoOS::ShowMessage(
            CString::Formatted(u"ZoDiagnosticsClient: Could not find method(s) in library %s", m_libraryName),
            u"Error", sc_warningStyle);
        return;
    }
    m_trace.store(trace, std::memory_order_release);
}

void ZoDiagnosticsClient::Trace(const CString& text)
{
    std::call_once(m_loadOnce, [this] { load(); });
    const TraceFunction trace = m_trace.load(std::memory_order_acquire);
    if (trace == nullptr)
        return;
    // The viewer has always received the text run through the formatter with no arguments, and
    // callers write "%%" for a percent sign because of it. The formatter writes a directive
    // without an argument as it stands, so no text can make it read memory.
    CString formatted = CString::Formatted(text.GetString());
    // The viewer's buffer holds 2047 units and a terminator; longer text is cut, not refused.
    // A surrogate pair is not split: its lone first half would be an invalid character.
    if (formatted.GetLength() > sc_maxTraceLength) {
        int length = sc_maxTraceLength;
        const char16_t last = formatted[length - 1];
        if (last >= 0xD800 && last <= 0xDBFF)
            --length;
        formatted = formatted.Left(length);
    }
#if defined(_WIN32)
    trace(reinterpret_cast<const wchar_t*>(formatted.GetString()));
#else
    trace(formatted.GetString());
#endif
}
