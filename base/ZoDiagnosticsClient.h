// ZoDiagnosticsClient: the library's link to an external diagnostics viewer, a separate program
// reached through a small library loaded at run time ("DiagnosticsClient.dll" on Windows,
// "libDiagnosticsClient.so" through the usual library search on Linux). Used by
// ZoStreamWriteASCIITraceDiagnostic; not part of the library's interface.
//
// A client makes one load attempt, on its first trace. When the library is missing, or lacks one
// of its three entries (trace, timer, bitmap), that is shown to the user once through
// ZoOS::ShowMessage and every later trace is dropped without a word: diagnostics must never get in
// the way of the application. The library is never unloaded. The timer and bitmap entries are
// looked up and kept as well, though only the trace entry is called.
//
// The load attempt happens exactly once even when several threads trace for the first time at
// once (each trace stream has its own thread, the client is shared); a client of its own can be
// made for another library name.
#pragma once

#include "platform/CString.h"

#include <atomic>
#include <mutex>

class ZoDiagnosticsClient
{
public:
#if defined(_WIN32)
    typedef void (*TraceFunction)(const wchar_t* text);
#else
    typedef void (*TraceFunction)(const char16_t* text);
#endif
    // The wire contract of these two belongs to the viewer; the library only keeps them.
    typedef void (*OpaqueFunction)();

    // The longest text handed to the viewer, in code units: it takes a 2048-unit terminated buffer.
    static const int sc_maxTraceLength = 2047;

    explicit ZoDiagnosticsClient(const CString& libraryName);
    ZoDiagnosticsClient(const ZoDiagnosticsClient&) = delete;
    ZoDiagnosticsClient& operator=(const ZoDiagnosticsClient&) = delete;

    // The client of the platform's diagnostics library, shared by the whole process.
    static ZoDiagnosticsClient& Instance();
    static CString DefaultLibraryName();

    // Sends the text to the viewer, loading the library on the first call. The text is its own
    // format string: percent directives in it are interpreted (with no arguments, so each one is
    // written as it stands, "%%" excepted), and the result is cut to sc_maxTraceLength units.
    void Trace(const CString& text);

    // True once the library has been loaded with all three entries.
    bool IsConnected() const { return m_trace.load(std::memory_order_acquire) != nullptr; }

private:
    void load();

    const CString m_libraryName;
    std::once_flag m_loadOnce;
    std::atomic<TraceFunction> m_trace;
    OpaqueFunction m_timer;
    OpaqueFunction m_bitmap;
};
