/// @class ZoAbortable
/// ZoAbortable: the stop-request convention of long operations. Two events travel with the
/// operation: the terminate event, which whoever wants the operation to stop sets, and the
/// terminated event, which is signalled while the operation is not running.
///
/// The protocol: the operation resets the terminated event when it begins and sets it when it ends;
/// meanwhile it polls the terminate event (IsSet) or waits on it together with its own work events,
/// the terminate event at position sc_uiTerminate and the terminated event at sc_uiTerminated of the
/// array. The requesting party sets the terminate event and waits on the terminated event.
///
/// A fresh object reads as not asked to stop and not running. It either owns its two events (default
/// constructor) or uses two events of the caller's, which must outlive it.
/// @ingroup concurrency
#pragma once

#include "base/ZoEvent.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoAbortable
{
public:
    ///@{
    /// Positions of the two events when they are waited on together.
    static constexpr uint16_t sc_uiTerminate = 0;
    static constexpr uint16_t sc_uiTerminated = 1;
    ///@}

    /// Makes and owns two manual-reset events: terminate reset, terminated set.
    ZoAbortable();
    /// Uses the caller's events (kept by address): resets `terminate`, sets `terminated`.
    ZoAbortable(ZoEvent& terminate, ZoEvent& terminated);
    /// Shallow: both copy the two event pointers and the ownership flag as they are. Two owning
    /// objects would then delete the same events, so owning objects are passed by reference and
    /// never copied; the shallow copy is kept for the classes that copy non-owning ones.
    ///@{
    ZoAbortable(const ZoAbortable& other);
    ZoAbortable& operator=(const ZoAbortable& other);
    ///@}
    /// Deletes the events when it owns them.
    virtual ~ZoAbortable();

    ///@{
    /// The event a requester sets to ask the operation to stop; the operation polls or waits on it.
    ZoEvent& GetTerminateEvent() { return *m_terminate; }
    const ZoEvent& GetTerminateEvent() const { return *m_terminate; }
    ///@}
    ///@{
    /// The event that is set while the operation is not running; a requester waits on it after
    /// setting the terminate event.
    ZoEvent& GetTerminatedEvent() { return *m_terminated; }
    const ZoEvent& GetTerminatedEvent() const { return *m_terminated; }
    ///@}

private:
    ZoEvent* m_terminate;
    ZoEvent* m_terminated;
    bool m_ownsEvents;
};
