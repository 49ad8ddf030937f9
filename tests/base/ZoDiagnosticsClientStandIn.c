/* The tests' stand-in for the diagnostics viewer's client library (libDiagnosticsClient.so, DiagnosticsClient.dll):
 * the three entries the library looks up, and two through which a test reads what the trace entry received. */
#include <stdint.h>

#if defined(_WIN32)
#  define STAND_IN_EXPORT __declspec(dllexport)
#else
#  define STAND_IN_EXPORT __attribute__((visibility("default")))
#endif

enum { kCapacity = 4096 };

static uint16_t g_lastTrace[kCapacity + 1];
static int g_traceCount;
static char g_busy;

/* 16-bit code units (wchar_t on Windows, char16_t on Linux); several threads may trace at once. */
STAND_IN_EXPORT void SendDiagnosticsTraceW(const uint16_t* text)
{
    while (__atomic_test_and_set(&g_busy, __ATOMIC_ACQUIRE))
        ;
    int length = 0;
    for (; text[length] != 0 && length < kCapacity; ++length)
        g_lastTrace[length] = text[length];
    g_lastTrace[length] = 0;
    __atomic_add_fetch(&g_traceCount, 1, __ATOMIC_RELEASE);
    __atomic_clear(&g_busy, __ATOMIC_RELEASE);
}

STAND_IN_EXPORT void SendDiagnosticsTimerW(void) {}
STAND_IN_EXPORT void SendDiagnosticsBitmapW(void) {}

STAND_IN_EXPORT int StandInTraceCount(void) { return __atomic_load_n(&g_traceCount, __ATOMIC_ACQUIRE); }
STAND_IN_EXPORT const uint16_t* StandInLastTrace(void) { return g_lastTrace; }
