#include "base/ZoTimeTracker.h"

#include "base/ZoException.h"
#include "base/ZoExceptionPreconditionViolation.h"

ZoTimeTracker::ZoTimeTracker(ZoStreamWrite& stream) : ZoTimeTracker(stream, ZoPerformanceCounter::GetInstance()) {}

ZoTimeTracker::ZoTimeTracker(ZoStreamWrite& stream, const ZoPerformanceCounter& counter)
    : m_stream(stream), m_counter(counter)
{
}

void ZoTimeTracker::Start(const CString& name)
{
    m_stream << indentation() + CString(u"start ") + name + CString(u"\n");
    // The clock starts after the line is written, so the writing is not counted in the phase.
    m_open.emplace_back(name, m_counter.GetTicks());
}

double ZoTimeTracker::Stop()
{
    const int64_t now = m_counter.GetTicks();
    if (m_open.empty())
        throw ZoExceptionPreconditionViolation(u"..\\base\\ZoTimeTracker.cpp", u"ZoTimeTracker", u"Stop", __LINE__);
    const std::pair<CString, int64_t> phase = m_open.back();
    m_open.pop_back();
    const double elapsedMs = static_cast<double>(now - phase.second) * 1000.0 / static_cast<double>(m_counter.GetFrequency());
    m_stream << indentation() + CString::Formatted(u"stop %s: %.3f ms\n", phase.first, elapsedMs);
    return elapsedMs;
}

CString ZoTimeTracker::indentation() const
{
    return CString(std::u16string(2 * m_open.size(), u' '));
}

ZoTimeTracker::Phase::Phase(ZoTimeTracker& tracker, const CString& name) : m_tracker(tracker)
{
    m_tracker.Start(name);
}

ZoTimeTracker::Phase::~Phase()
{
    try {
        m_tracker.Stop();
    } catch (const ZoException&) {
        // The phase is closed all the same; only its line is lost.
    }
}
