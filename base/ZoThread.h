#pragma once

#include "base/ZoEvent.h"
#include "base/ZoFlags.h"
#include "base/ZoThreadPolicyMFC.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoOS.h"
#include "platform/ZoWindowsTypes.h"

#include <atomic>
#include <cstdint>
#include <thread>

/// The names every ZoThread instantiation shares.
/// @ingroup concurrency
class ZO_API ZoThreadTypes
{
public:
    /// The Windows thread priorities themselves, so they compare with the system's values directly.
    enum EThreadPriority : int32_t
    {
        eIdle = -15,
        eLowest = -2,
        eBelowNormal = -1,
        eNormal = 0,
        eAboveNormal = 1,
        eHighest = 2,
        eTimeCritical = 15,
    };
    /// Options of a thread object, read by the routine when it ends.
    enum EFlags : uint32_t
    {
        /// The thread object deletes itself when its routine ends.
        eAutoDelete = 1,
    };
    /// Bits of the state word (GetState()).
    enum EState : uint32_t
    {
        eStarted = 1,
        eRunning = 2,
        eFinished = 4,
        eSuspended = 8,
        eFailed = 16,
    };
};

/// ZoThread<Object, Policy>: an owned thread that calls one member function of one object. The
/// object and its run function are fixed at construction; Start() makes the thread (through the
/// policy, suspended, then resumed), and the thread routine runs the derived class's onBeforeRun
/// hook, the run function and the onAfterRun hook, turning every exception and a run function
/// result of 0 into a failed state and exit code 1. No exception ever leaves the thread.
///
/// The state word (eStarted, eRunning, eFinished, eSuspended, eFailed) is written by the owning
/// thread (Start, Suspend, Resume, Terminate) and by the thread routine without a lock; it is atomic,
/// but a reader may see it a moment late. Decisions that must be exact go through the system (the
/// exit code, waits on the thread handle).
///
/// With the flag eAutoDelete the routine deletes the object when it ends: such an object is made
/// with new and not touched by its creator after Start(). Its destructor never kills the thread.
///
/// Termination stops the thread from outside, which skips the rest of its routine (the terminate
/// event is not set, an auto-delete object not deleted). On Windows the thread stops at once. On
/// POSIX it stops at its next wait (an event, a sleep, a blocking call), unwinding its stack, and a
/// thread that never waits cannot be stopped; see ZoOS::TerminateThreadObject.
///
/// Copying copies every field, the thread handle and the state included, without duplicating the
/// handle: both objects then close it. The copy exists for derived classes that are copied before
/// they start; copying a started thread object is not supported.
/// @ingroup concurrency
template <class Object, class Policy>
class ZO_TEMPLATE_API ZoThread : public ZoThreadTypes
{
public:
    /// Returns non-zero for success.
    typedef int (Object::*RunFunction)();

    /// Fills the fields; no thread is made yet. The name is stored only, never given to the system.
    ZoThread(Object& object, RunFunction run, const CString& name, EThreadPriority priority)
        : m_name(name), m_object(&object), m_run(run), m_thread(nullptr), m_startEvent(nullptr),
          m_terminateEvent(nullptr), m_priority(priority), m_threadId(0), m_state(0), m_startInProgress(false)
    {
    }
    /// Copies every field, the thread handle included without duplicating it (see the class note): for derived objects copied before they start.
    ZoThread(const ZoThread& other)
        : m_policy(other.m_policy), m_name(other.m_name), m_flags(other.m_flags), m_object(other.m_object),
          m_run(other.m_run), m_thread(other.m_thread), m_startEvent(other.m_startEvent.load()),
          m_terminateEvent(other.m_terminateEvent.load()), m_priority(other.m_priority), m_threadId(other.m_threadId),
          m_state(other.m_state.load()), m_startInProgress(false)
    {
    }
    ZoThread& operator=(const ZoThread&) = delete;

    /// Terminates a thread that is still active (unless eAutoDelete is set), then closes the handle.
    virtual ~ZoThread()
    {
        if (m_thread != nullptr) {
            if (!m_flags.IsFlagsSet(eAutoDelete) && exitCodeIs(STILL_ACTIVE))
                Terminate();
            if (m_thread != nullptr)
                ZoOS::CloseObjectHandle(m_thread);
        }
    }

    /// Starts the thread. False while an earlier thread of this object still runs (nothing changes
    /// then) and when the system cannot make a thread (thread id 0xFFFFFFFF, null handle). A finished
    /// thread is replaced: once the old routine has fully ended, its handle is closed and the state
    /// cleared. The new thread already runs when its requested priority is applied.
    virtual int Start()
    {
        if (m_thread != nullptr) {
            const uint32_t state = m_state.load();
            if ((state & eStarted) != 0 && (state & eFinished) == 0)
                return false;
            // The old routine may still be returning: let it end before its handle goes.
            ZoOS::WaitForObject(m_thread, INFINITE);
            ZoOS::CloseObjectHandle(m_thread);
            m_thread = nullptr;
            m_state.store(0);
        }
        m_startInProgress.store(true);
        uint32_t threadId = 0;
        HANDLE factoryHandle =
            m_policy.BeginThread(&ThreadProc, this, 0, 0, ZoThreadPolicyMFC::sc_uiCreateSuspended, threadId);
        if (factoryHandle != nullptr) {
            // The factory's handle is released once the thread runs; the object keeps its own.
            m_thread = ZoOS::DuplicateObjectHandle(factoryHandle, true);
            m_threadId = threadId;
            ZoOS::ResumeThreadObject(factoryHandle);
            ZoOS::CloseObjectHandle(factoryHandle);
        } else {
            m_thread = nullptr;
            m_threadId = 0xFFFFFFFFu;
        }
        if (m_thread == nullptr) {
            m_startInProgress.store(false);
            return false;
        }
        m_state.fetch_or(eStarted);
        if (ZoOS::GetThreadPriorityLevel(m_thread) != m_priority)
            ZoOS::SetThreadPriorityLevel(m_thread, m_priority);
        // Last touch of this object: an auto-delete routine waits for it before deleting.
        m_startInProgress.store(false);
        return true;
    }

    /// Start(), then blocks until the new thread's onBeforeRun has returned (or failed), so the
    /// derived class's start-up work is done when this returns true. False when Start fails.
    virtual bool StartAndWait()
    {
        ZoEvent started(true);
        m_startEvent.store(&started);
        if (!Start()) {
            ZoEvent* expected = &started;
            // A routine still running may have taken the event already; it sets it at once.
            if (!m_startEvent.compare_exchange_strong(expected, nullptr))
                started.Wait(INFINITE);
            return false;
        }
        started.Wait(INFINITE);
        return true;
    }

    /// Kills a thread that is still active (exit code STILL_ACTIVE), closes the handle and sets the
    /// state to exactly eFinished. The killed thread's exit code is STILL_ACTIVE too.
    void Terminate()
    {
        if (m_thread != nullptr) {
            if (exitCodeIs(STILL_ACTIVE))
                ZoOS::TerminateThreadObject(m_thread, STILL_ACTIVE);
            ZoOS::CloseObjectHandle(m_thread);
            m_thread = nullptr;
        }
        m_state.store(eFinished);
    }

    /// A handle is held and the system reports the thread active.
    int IsRunning() const { return m_thread != nullptr && exitCodeIs(STILL_ACTIVE); }
    /// Non-zero unless the routine failed (an exception, or a run function result of 0); also non-zero before Start.
    int IsSuccessful() const { return (m_state.load() & eFailed) == 0; }
    /// Blocks up to `timeoutMs`; false only when the wait timed out, so a failed wait (no thread, a
    /// failed start) answers true.
    bool WaitUntilTerminate(uint32_t timeoutMs) const { return ZoOS::WaitForObject(m_thread, timeoutMs) != ZoOS::sc_waitTimeout; }

    /// False unless the routine runs; true at once when already suspended; else suspends the thread
    /// (stopping it wherever it is, locks included) and sets eSuspended.
    int Suspend()
    {
        const uint32_t state = m_state.load();
        if ((state & eRunning) == 0)
            return false;
        if ((state & eSuspended) != 0)
            return true;
        if (ZoOS::SuspendThreadObject(m_thread) == 0xFFFFFFFFu)
            return false;
        m_state.fetch_or(eSuspended);
        return true;
    }
    /// The mirror of Suspend: true at once when not suspended.
    int Resume()
    {
        const uint32_t state = m_state.load();
        if ((state & eRunning) == 0)
            return false;
        if ((state & eSuspended) == 0)
            return true;
        if (ZoOS::ResumeThreadObject(m_thread) == 0xFFFFFFFFu)
            return false;
        m_state.fetch_and(~static_cast<uint32_t>(eSuspended));
        return true;
    }

    /// Changes the running thread's priority only; the priority requested for the next Start stays.
    int SetPriority(EThreadPriority priority) { return ZoOS::SetThreadPriorityLevel(m_thread, priority); }
    /// The priority the next Start applies.
    EThreadPriority GetRequestedPriority() const { return m_priority; }
    /// The thread's present priority; ZoOS::sc_threadPriorityError when it cannot be read.
    EThreadPriority GetPriority() const { return static_cast<EThreadPriority>(ZoOS::GetThreadPriorityLevel(m_thread)); }
    /// One step up (down) the ladder -15, -2, -1, 0, 1, 2, 15. False at the top (bottom) and for a
    /// present priority off the ladder; otherwise whether the change succeeded.
    int SpeedUp() { return stepPriority(+1); }
    /// One step down the priority ladder; see SpeedUp.
    int SlowDown() { return stepPriority(-1); }

    /// An event the routine sets once, when it ends. Set it before Start.
    void SetTerminateEvent(ZoEvent& event) { m_terminateEvent.store(&event); }
    /// The system handle of the thread; null before Start and after the handle was closed. Owned by this object.
    HANDLE GetThreadHandle() const { return m_thread; }
    /// The system's id of the thread; 0 before Start.
    uint32_t GetThreadId() const { return m_threadId; }
    /// Renames the object; the name is not given to the system.
    void SetName(const CString& name) { m_name = name; }
    /// The name given at construction or by SetName.
    const CString& GetName() const { return m_name; }
    /// The state bits (EState); see the class comment on staleness.
    uint32_t GetState() const { return m_state.load(); }

    /// The flags are read by the routine when it ends: change them before Start.
    const ZoFlags<EFlags>& GetFlags() const { return m_flags; }
    /// Replaces every flag with `flags`.
    void SetFlags(EFlags flags) { m_flags.SetFlags(flags); }
    /// Sets the bits of `flags`; the others stay.
    void AddFlags(EFlags flags) { m_flags.AddFlags(flags); }
    /// Clears the bits of `flags`; the others stay.
    void RemoveFlags(EFlags flags) { m_flags.RemoveFlags(flags); }
    /// True when every bit of `flags` is set (so always for no bits).
    bool IsFlagsSet(EFlags flags) const { return m_flags.IsFlagsSet(flags); }
    /// True when at least one bit of `flags` is set (so never for no bits).
    bool IsOneFlagSet(EFlags flags) const { return m_flags.IsOneFlagSet(flags); }

protected:
    /// Runs on the new thread before the run function; an exception marks the thread failed and the
    /// run function is skipped. Empty here.
    virtual void onBeforeRun() {}
    /// Runs on the thread after a successful run function, with 0; an exception marks it failed.
    virtual void onAfterRun(uint32_t) {}

    /// The thread's start routine; `argument` is the thread object.
    static unsigned int ThreadProc(void* argument)
    {
        auto* self = static_cast<ZoThread*>(argument);
        self->m_state.fetch_or(eRunning);
        self->m_policy.onThreadStart();
        try {
            self->onBeforeRun();
        } catch (...) {
            ZoOS::RethrowThreadCancellation();
            self->m_state.fetch_or(eFailed);
        }
        if (ZoEvent* started = self->m_startEvent.exchange(nullptr))
            started->Set();
        if ((self->m_state.load() & eFailed) == 0) {
            Object* const object = self->m_object;
            const RunFunction run = self->m_run;
            try {
                if ((object->*run)() == 0)
                    self->m_state.fetch_or(eFailed);
            } catch (...) {
                ZoOS::RethrowThreadCancellation();
                self->m_state.fetch_or(eFailed);
            }
        }
        if ((self->m_state.load() & eFailed) == 0) {
            try {
                self->onAfterRun(0);
            } catch (...) {
                ZoOS::RethrowThreadCancellation();
                self->m_state.fetch_or(eFailed);
            }
        }
        // Once eFinished is visible the owner may reuse or destroy a plain thread object, so what
        // the last steps need is read before.
        const bool autoDelete = self->m_flags.IsFlagsSet(eAutoDelete);
        ZoEvent* const terminated = self->m_terminateEvent.exchange(nullptr);
        uint32_t state = self->m_state.load();
        while (!self->m_state.compare_exchange_weak(state, (state & ~static_cast<uint32_t>(eRunning)) | eFinished)) {
        }
        const unsigned int exitCode = (state & eFailed) != 0 ? 1u : 0u;
        if (terminated != nullptr)
            terminated->Set();
        if (autoDelete) {
            // Start may still be finishing with the object (it applies the priority after the
            // thread runs); it takes microseconds.
            while (self->m_startInProgress.load())
                std::this_thread::yield();
            delete self;
        }
        return exitCode;
    }

private:
    bool exitCodeIs(uint32_t expected) const
    {
        uint32_t exitCode = 0;
        return ZoOS::GetThreadExitCode(m_thread, exitCode) && exitCode == expected;
    }

    int stepPriority(int direction)
    {
        static const int32_t sc_ladder[] = {eIdle, eLowest, eBelowNormal, eNormal, eAboveNormal, eHighest, eTimeCritical};
        const int32_t current = ZoOS::GetThreadPriorityLevel(m_thread);
        int step = 0;
        while (step < 7 && sc_ladder[step] != current)
            ++step;
        const int next = step + direction;
        if (step == 7 || next < 0 || next > 6)
            return false;
        return ZoOS::SetThreadPriorityLevel(m_thread, sc_ladder[next]);
    }

    Policy m_policy;
    CString m_name;
    ZoFlags<EFlags> m_flags;
    Object* m_object;
    RunFunction m_run;
    HANDLE m_thread;
    std::atomic<ZoEvent*> m_startEvent;
    std::atomic<ZoEvent*> m_terminateEvent;
    EThreadPriority m_priority;
    uint32_t m_threadId;
    std::atomic<uint32_t> m_state;
    /// True from the start of Start() until its last touch of the object.
    std::atomic<bool> m_startInProgress;
};
