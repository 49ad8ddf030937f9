/// @class ZoEvent
/// ZoEvent: the library's event, a signal that threads set and wait for. A manual-reset event stays
/// signalled until Reset(); an auto-reset event lets exactly one wait through per signal and then
/// resets itself.
///
/// The object is exactly one system handle and nothing else, so that an array of events (a
/// ZoArray<ZoEvent, 0>) is handed to the multiple wait as a plain array of handles. Copies (copy
/// construction, assignment) duplicate the handle: they name the same event and may live in other
/// threads. Elements put into a ZoArray are copied as raw bytes and borrow the source's handle; the
/// source must outlive the array's use of it. Fill such arrays with Add: assigning to an element of
/// uninitialised storage would close whatever its bytes happen to name.
///
/// Operations report failure by their result, never by an exception. Every operation except
/// construction, copying and destruction first clears the OS layer's last error, so that a caller
/// reads 0 there after success and the system's cause after a failure.
/// @ingroup concurrency
#pragma once

#include "platform/ZoExport.h"
#include "platform/ZoWindowsTypes.h"

#include <cstdint>

// Only named in a parameter type: thread headers need not bring in the array and stream classes.
template <class T, int Policy>
class ZoArray;

class ZO_API ZoEvent
{
public:
    /// Outcome of a wait.
    enum EWaitResult
    {
        eWaitFailed = 0,   ///< the wait failed (a null or closed handle) or was abandoned
        eWaitSignaled = 1, ///< the event, or the set of events, was signalled
        eWaitTimeout = 2,  ///< the timeout elapsed first
    };

    /// A new event, not signalled. When the system cannot make one the handle stays null (every
    /// operation then fails); nothing is thrown.
    explicit ZoEvent(bool manualReset = true);
    /// Duplicates the other's handle: both name one event.
    ZoEvent(const ZoEvent& other);
    /// Closes this handle, then duplicates the other's. Returns nothing, as it always has.
    void operator=(const ZoEvent& other);
    ~ZoEvent();

    /// True exactly when the system call succeeded.
    bool Set();
    /// Makes the event not signalled; true when the system call succeeded.
    bool Reset();
    /// Releases the threads waiting right now (all of them, or one for an auto-reset event) and
    /// leaves the event not signalled; a pulse with nobody waiting is lost.
    bool Pulse();
    /// Whether the event is signalled, tested by a wait of 0 ms. On an auto-reset event the test
    /// consumes the signal.
    bool IsSet() const;
    /// Blocks up to `timeoutMs` (INFINITE: without limit). Same as WaitForSingleEvent(*this, ...).
    EWaitResult Wait(unsigned int timeoutMs) const;

    /// eWaitSignaled, eWaitTimeout, or eWaitFailed for anything else (a failed or abandoned wait).
    static EWaitResult WaitForSingleEvent(const ZoEvent& event, unsigned int timeoutMs);
    /// Waits for all (`waitAll`) or any of the events. Answers eWaitTimeout when the time ran out and
    /// eWaitSignaled for every other outcome, a failed wait included (an array holding a closed or
    /// null handle, an empty array, more than 64 events), and never tells which event fired. Callers
    /// poll their set of events with it and treat a broken set as "look again", so the asymmetry with
    /// the single wait is kept.
    static EWaitResult WaitForMultipleEvents(const ZoArray<ZoEvent, 0>& events, bool waitAll, unsigned int timeoutMs);

    /// The system handle, null when creation failed.
    HANDLE GetHandle() const { return m_handle; }

private:
    HANDLE m_handle;
};

static_assert(sizeof(ZoEvent) == sizeof(HANDLE), "an array of events must be an array of handles");
