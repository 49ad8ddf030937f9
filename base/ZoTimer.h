#pragma once

#include "base/ZoPerformanceCounter.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoTimer: a stopwatch over a ZoPerformanceCounter (the process's, unless another is given). It
/// measures from Start() to now, to Stop(), or to a Break(); Resume() cuts the break out of the
/// measurement. Subtract() moves the start, and a pause interval (StartPause / IsPause)
/// answers whether a given span has passed, frozen during a break. Results are in units of the
/// resolution: milliseconds unless SetResolution says otherwise.
///
/// All arithmetic is in signed 64-bit ticks; results are resolution x ticks / frequency, truncated
/// toward zero. A timer belongs to one thread at a time.
/// @ingroup concurrency
class ZO_API ZoTimer
{
public:
    /// Result units per second.
    enum EResolution : int32_t
    {
        eSeconds = 1,
        eMilliseconds = 1000,
        eMicroseconds = 1000000,
        eNanoseconds = 1000000000,
    };

    /// All tick values 0 (not started), milliseconds; over the process's counter or the given one.
    ZoTimer();
    /// As the default constructor, over `counter`, which must outlive the timer.
    explicit ZoTimer(const ZoPerformanceCounter& counter);

    /// Reset(), then start = now.
    void Start();
    /// Zeroes start, stop, break, pause start and pause length.
    void Reset();
    /// Freezes the measurement at now and ends a break.
    void Stop();
    /// Freezes the measurement at now until Resume().
    void Break();
    /// Start() and then Break(): a measurement that waits for Resume() to run.
    void StartAndBreak();
    /// Cuts the break out of the measurement and out of a running pause interval. Without a break
    /// it changes nothing.
    void Resume();
    /// Units from start to the break, else to the stop, else to now.
    int64_t GetElapsedTime() const;
    /// Moves the start back by `units` (start -= frequency x units / resolution), so the time measured
    /// from it grows by that many units; a negative count shortens it.
    void Subtract(int64_t units);
    /// Sets the unit of GetElapsedTime and Subtract; the ticks measured so far stay, so it may change at any time.
    void SetResolution(EResolution resolution);
    /// The unit of GetElapsedTime and Subtract; milliseconds for a new timer.
    EResolution GetResolution() const { return m_resolution; }
    /// The counter's ticks per second, taken at construction.
    int64_t GetFrequency() const { return m_frequency; }

    /// Starts an interval of `milliseconds` from now.
    void StartPause(uint32_t milliseconds);
    /// False once stopped; otherwise whether the interval still runs at the reference time (the
    /// break when on a break, else now). False when no interval was started.
    int IsPause() const;

private:
    int64_t now() const { return m_counter->GetTicks(); }
    /// resolution x ticks / frequency, exact (no overflow of the intermediate product).
    int64_t toUnits(int64_t ticks) const;

    const ZoPerformanceCounter* m_counter;
    int64_t m_start;
    int64_t m_stop;
    int64_t m_break;
    int64_t m_pauseStart;
    int64_t m_pauseLength;
    int64_t m_frequency;
    EResolution m_resolution;
};
