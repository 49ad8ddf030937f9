// The POSIX (Linux) implementation of the OS layer's monotonic counter, tick count,
// floating-point control, processor count and memory status.
#include "platform/ZoOS.h"
#include "platform/posix/ZoOSPosixSupport.h"

#include <cerrno>
#include <cfenv>
#include <cstdio>
#include <ctime>
#include <sched.h>
#include <sys/sysinfo.h>
#include <unistd.h>
#if defined(__x86_64__) || defined(__i386__)
#include <fpu_control.h>
#endif

namespace ZoOS {

using posix::fail;
using posix::succeed;

namespace {

// ---- floating point ---------------------------------------------------------------------------

const uint32_t sc_roundingMask = 0x300;
const uint32_t sc_precisionMask = 0x30000;

uint32_t readFloatingPointControl()
{
    uint32_t control = 0;
    switch (fegetround()) {
    case FE_DOWNWARD:
        control |= 0x100;
        break;
    case FE_UPWARD:
        control |= 0x200;
        break;
    case FE_TOWARDZERO:
        control |= 0x300;
        break;
    default:
        break;
    }
#if defined(__x86_64__) || defined(__i386__)
    fpu_control_t word = 0;
    _FPU_GETCW(word);
    switch ((word >> 8) & 3) {
    case 0:
        control |= 0x20000;
        break;
    case 2:
        control |= 0x10000;
        break;
    case 3:
        break;
    default:
        control |= 0x30000;
        break;
    }
#else
    control |= 0x10000;
#endif
    return control;
}

} // namespace

// ---- time -------------------------------------------------------------------------------------

bool QueryPerformanceCounterValue(int64_t& ticks)
{
    timespec now;
    if (clock_gettime(CLOCK_MONOTONIC, &now) != 0)
        return fail(errno);
    ticks = static_cast<int64_t>(now.tv_sec) * 1000000000LL + now.tv_nsec;
    return succeed();
}

bool QueryPerformanceFrequencyValue(int64_t& ticksPerSecond)
{
    ticksPerSecond = 1000000000LL;
    return succeed();
}

uint32_t GetTickCountValue()
{
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<uint32_t>(static_cast<uint64_t>(now.tv_sec) * 1000u + static_cast<uint64_t>(now.tv_nsec) / 1000000u);
}

// ---- floating point ---------------------------------------------------------------------------

bool ControlFloatingPoint(uint32_t& current, uint32_t newControl, uint32_t mask)
{
    if ((mask & ~sc_roundingMask) != 0)
        return fail(EINVAL);
    if (mask != 0) {
        static const int sc_modes[] = {FE_TONEAREST, FE_DOWNWARD, FE_UPWARD, FE_TOWARDZERO};
        const uint32_t rounding = ((newControl & mask) | (readFloatingPointControl() & ~mask)) & sc_roundingMask;
        if (fesetround(sc_modes[rounding >> 8]) != 0)
            return fail(EINVAL);
    }
    current = readFloatingPointControl();
    return succeed();
}

// ---- machine ----------------------------------------------------------------------------------

uint32_t GetProcessorCount()
{
    cpu_set_t allowed;
    CPU_ZERO(&allowed);
    if (sched_getaffinity(0, sizeof allowed, &allowed) == 0) {
        const int count = CPU_COUNT(&allowed);
        if (count > 0)
            return static_cast<uint32_t>(count);
    }
    const long online = sysconf(_SC_NPROCESSORS_ONLN);
    return online > 0 ? static_cast<uint32_t>(online) : 1u;
}

bool GetPhysicalMemoryStatus(uint64_t& total, uint64_t& available)
{
    // The kernel's own estimate of what new allocations can have without swapping, when it gives
    // one; otherwise free memory, which leaves the page cache out and so says too little.
    total = 0;
    available = 0;
    bool haveAvailable = false;
    if (std::FILE* info = std::fopen("/proc/meminfo", "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, info) != nullptr) {
            unsigned long long kib = 0;
            if (std::sscanf(line, "MemTotal: %llu kB", &kib) == 1)
                total = kib * 1024;
            else if (std::sscanf(line, "MemAvailable: %llu kB", &kib) == 1) {
                available = kib * 1024;
                haveAvailable = true;
            }
        }
        std::fclose(info);
    }
    if (total == 0 || !haveAvailable) {
        struct sysinfo status;
        if (::sysinfo(&status) != 0)
            return fail(errno);
        total = static_cast<uint64_t>(status.totalram) * status.mem_unit;
        available = static_cast<uint64_t>(status.freeram) * status.mem_unit;
    }
    return succeed();
}

} // namespace ZoOS
