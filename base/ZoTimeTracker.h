#pragma once

#include "base/ZoPerformanceCounter.h"
#include "base/ZoStreamWrite.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <utility>
#include <vector>

/// ZoTimeTracker: times nested phases of work and writes one line through a text stream as each
/// phase starts and as it stops, indented two spaces for every enclosing phase; the stop line carries
/// the phase's elapsed time in milliseconds:
///
///     start load
///       start parse
///       stop parse: 12.345 ms
///     stop load: 20.001 ms
///
/// Phases stop in the reverse order of their starts (a stack); Phase is the scope guard that stops
/// what it started. Times come from the performance counter (or a simulated one, for tests and
/// replays). One tracker serves one thread; the stream must outlive it.
/// @ingroup diagnostics
class ZO_API ZoTimeTracker
{
public:
    /// Writes to `stream` and times with the process's performance counter. The stream must outlive the tracker.
    explicit ZoTimeTracker(ZoStreamWrite& stream);
    /// Writes to `stream` and times with `counter`; both must outlive the tracker.
    ZoTimeTracker(ZoStreamWrite& stream, const ZoPerformanceCounter& counter);
    ZoTimeTracker(const ZoTimeTracker&) = delete;
    ZoTimeTracker& operator=(const ZoTimeTracker&) = delete;

    /// Writes the start line and opens a phase inside the current one.
    void Start(const CString& name);
    /// Closes the innermost phase, writes its stop line and returns its elapsed milliseconds.
    /// Throws ZoExceptionPreconditionViolation when no phase is open.
    double Stop();
    /// How many phases are open.
    uint32_t GetDepth() const { return static_cast<uint32_t>(m_open.size()); }

    /// Starts a phase for the lifetime of the scope.
    class ZO_API Phase
    {
    public:
        /// Calls tracker.Start(name); the tracker must outlive the phase.
        Phase(ZoTimeTracker& tracker, const CString& name);
        /// Stops the phase; a stream that fails then is not reported (a destructor cannot throw).
        ~Phase();
        Phase(const Phase&) = delete;
        Phase& operator=(const Phase&) = delete;

    private:
        ZoTimeTracker& m_tracker;
    };

private:
    CString indentation() const;

    ZoStreamWrite& m_stream;
    const ZoPerformanceCounter& m_counter;
    std::vector<std::pair<CString, int64_t>> m_open;
};
