#pragma once

#include "base/ZoSingleton.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoPerformanceCounter: the process-wide high-resolution clock behind ZoTimer. It reads the system's
/// monotonic performance counter and knows its frequency; on a system without one it falls back to
/// the millisecond tick count with a frequency of 1000. Read-only after construction, so any thread
/// may use it.
///
/// The process's counter is a singleton reached through GetInstance(), owned by the library. A
/// counter over another tick source (a simulated clock for tests and replays) is made with the public
/// constructor, handed to ZoTimer explicitly and destroyed by its owner like any object; destroying
/// it leaves the process counter alone.
/// @ingroup concurrency
class ZO_API ZoPerformanceCounter : public ZoSingleton<ZoPerformanceCounter>
{
public:
    /// Returns the current tick count.
    typedef int64_t (*TickSource)();

    /// A counter over the given source and frequency (ticks per second, above 0).
    ZoPerformanceCounter(TickSource tickSource, int64_t frequency);
    ~ZoPerformanceCounter() override;

    /// The current tick count of the source; only differences mean anything.
    int64_t GetTicks() const { return m_tickSource(); }
    /// Ticks per second; above 0.
    int64_t GetFrequency() const { return m_frequency; }

    /// The process-wide counter over the system's clock, made on first use.
    static ZoPerformanceCounter& GetInstance();
    /// True once the process-wide counter exists; makes nothing.
    static bool HasInstance();

private:
    friend class ZoSingleton<ZoPerformanceCounter>;
    /// The system's counter, or the tick count when the system has none.
    ZoPerformanceCounter();

    TickSource m_tickSource;
    int64_t m_frequency;
};

ZO_EXTERN_TEMPLATE(class ZoSingleton<ZoPerformanceCounter>)
