// The Win32 implementation of the OS layer's monotonic counter, tick count, floating-point control
// processor count and memory status.
#include "platform/ZoOS.h"

#include <float.h>

namespace ZoOS {

namespace {

// The precision field of the C library's control word.
const unsigned int sc_precisionMask = 0x30000;

} // namespace

// ---- time -------------------------------------------------------------------------------------

bool QueryPerformanceCounterValue(int64_t& ticks)
{
    LARGE_INTEGER value;
    if (!::QueryPerformanceCounter(&value))
        return false;
    ticks = value.QuadPart;
    ::SetLastError(0);
    return true;
}

bool QueryPerformanceFrequencyValue(int64_t& ticksPerSecond)
{
    LARGE_INTEGER value;
    if (!::QueryPerformanceFrequency(&value))
        return false;
    ticksPerSecond = value.QuadPart;
    ::SetLastError(0);
    return true;
}

uint32_t GetTickCountValue()
{
    return ::GetTickCount();
}

// ---- floating point ---------------------------------------------------------------------------

bool ControlFloatingPoint(uint32_t& current, uint32_t newControl, uint32_t mask)
{
    // x64 has no precision control: the C library rejects the request through its invalid-parameter
    // handler, which would end the process, so it is refused here instead.
    if ((mask & sc_precisionMask) != 0) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    unsigned int control = 0;
    if (::_controlfp_s(&control, newControl, mask & ~sc_precisionMask) != 0) {
        ::SetLastError(ERROR_INVALID_PARAMETER);
        return false;
    }
    current = control;
    ::SetLastError(0);
    return true;
}

// ---- machine ----------------------------------------------------------------------------------

uint32_t GetProcessorCount()
{
    SYSTEM_INFO info;
    ::GetSystemInfo(&info);
    return info.dwNumberOfProcessors > 0 ? info.dwNumberOfProcessors : 1u;
}

bool GetPhysicalMemoryStatus(uint64_t& total, uint64_t& available)
{
    MEMORYSTATUSEX status;
    status.dwLength = sizeof status;
    if (!::GlobalMemoryStatusEx(&status))
        return false;
    total = status.ullTotalPhys;
    available = status.ullAvailPhys;
    ::SetLastError(0);
    return true;
}

} // namespace ZoOS
