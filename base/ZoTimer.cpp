#include "base/ZoTimer.h"

namespace {

// a x b / c truncated toward zero, with the product formed in 128 bits: the 64-bit product
// overflows after a few seconds at nanosecond resolution and frequency.
int64_t multiplyDivide(int64_t a, int64_t b, int64_t c)
{
    return static_cast<int64_t>(static_cast<__int128>(a) * b / c);
}

} // namespace

ZoTimer::ZoTimer() : ZoTimer(ZoPerformanceCounter::GetInstance()) {}

ZoTimer::ZoTimer(const ZoPerformanceCounter& counter)
    : m_counter(&counter), m_start(0), m_stop(0), m_break(0), m_pauseStart(0), m_pauseLength(0),
      m_frequency(counter.GetFrequency()), m_resolution(eMilliseconds)
{
}

void ZoTimer::Start()
{
    Reset();
    m_start = now();
}

void ZoTimer::Reset()
{
    m_start = 0;
    m_stop = 0;
    m_break = 0;
    m_pauseStart = 0;
    m_pauseLength = 0;
}

void ZoTimer::Stop()
{
    m_stop = now();
    m_break = 0;
}

void ZoTimer::Break()
{
    m_break = now();
}

void ZoTimer::StartAndBreak()
{
    Start();
    Break();
}

void ZoTimer::Resume()
{
    // Without a break, now - 0 would move the start by the whole clock reading.
    if (m_break == 0)
        return;
    const int64_t breakLength = now() - m_break;
    m_break = 0;
    m_start += breakLength;
    if (m_pauseStart > 0)
        m_pauseStart += breakLength;
}

int64_t ZoTimer::GetElapsedTime() const
{
    const int64_t end = m_break > 0 ? m_break : m_stop > 0 ? m_stop : now();
    return toUnits(end - m_start);
}

void ZoTimer::Subtract(int64_t units)
{
    m_start -= multiplyDivide(m_frequency, units, m_resolution);
}

void ZoTimer::SetResolution(EResolution resolution)
{
    m_resolution = resolution;
}

void ZoTimer::StartPause(uint32_t milliseconds)
{
    m_pauseLength = (m_frequency / 1000) * static_cast<int64_t>(milliseconds);
    m_pauseStart = now();
}

int ZoTimer::IsPause() const
{
    if (m_stop > 0)
        return false;
    const int64_t reference = m_break > 0 ? m_break : now();
    return m_pauseStart + m_pauseLength > reference;
}

int64_t ZoTimer::toUnits(int64_t ticks) const
{
    return multiplyDivide(m_resolution, ticks, m_frequency);
}
