#include "base/ZoPerformanceCounter.h"

#include "platform/ZoOS.h"

template class ZoSingleton<ZoPerformanceCounter>;

namespace {

int64_t performanceCounterTicks()
{
    int64_t ticks = 0;
    ZoOS::QueryPerformanceCounterValue(ticks);
    return ticks;
}

int64_t tickCountTicks()
{
    return ZoOS::GetTickCountValue();
}

} // namespace

ZoPerformanceCounter::ZoPerformanceCounter() : m_tickSource(&performanceCounterTicks), m_frequency(0)
{
    if (!ZoOS::QueryPerformanceFrequencyValue(m_frequency) || m_frequency <= 0) {
        m_tickSource = &tickCountTicks;
        m_frequency = 1000;
    }
}

ZoPerformanceCounter::ZoPerformanceCounter(TickSource tickSource, int64_t frequency)
    : m_tickSource(tickSource), m_frequency(frequency)
{
}

ZoPerformanceCounter::~ZoPerformanceCounter() = default;

ZoPerformanceCounter& ZoPerformanceCounter::GetInstance()
{
    return ZoSingleton<ZoPerformanceCounter>::GetInstance();
}

bool ZoPerformanceCounter::HasInstance()
{
    return ZoSingleton<ZoPerformanceCounter>::HasInstance();
}
