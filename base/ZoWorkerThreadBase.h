#pragma once

#include "base/ZoEvent.h"
#include "base/ZoThread.h"
#include "base/ZoThreadPolicyMFC.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <atomic>
#include <cstdint>

class ZO_API ZoWorkerThreadBase;
ZO_EXTERN_TEMPLATE(class ZoThread<ZoWorkerThreadBase, ZoThreadPolicyMFC>)

/// ZoWorkerThreadBase: the base of threads that serve work until they are asked to stop. It is a
/// ZoThread whose target object is the worker itself and whose run function calls the virtual Run()
/// of the derived class. It adds a stop request, an idle event and a wake event: SetStop() records
/// the request and sets the wake event, so a worker waiting for work looks at the request at once.
///
/// The library never signals the idle event itself; derived classes decide when they are idle
/// (ZoWorkerThread, for instance, does not use it).
/// @ingroup concurrency
class ZO_API ZoWorkerThreadBase : public ZoThread<ZoWorkerThreadBase, ZoThreadPolicyMFC>
{
public:
    /// Named "ZoWorkerThreadBase", normal priority.
    ZoWorkerThreadBase();
    /// A new, unstarted worker with that name and priority.
    ZoWorkerThreadBase(const CString& name, EThreadPriority priority);
    /// A new, unstarted worker with the other's name, requested priority and flags. Its target is
    /// itself, its stop request clear, its idle event its own; it has no wake event until it
    /// registers one.
    ZoWorkerThreadBase(const ZoWorkerThreadBase& other);
    ~ZoWorkerThreadBase() override;

    /// Records the stop request, then sets the wake event if one is registered.
    void SetStop();
    /// True once SetStop has been called; the worker's loop polls it.
    bool IsStopRequested() const { return m_stopRequested.load() != 0; }
    /// Blocks without limit on the idle event while the thread is alive; returns at once otherwise.
    void WaitUntilIdle();

protected:
    /// The derived worker's loop; returns non-zero for success.
    virtual int Run() = 0;
    /// Remembers the event that SetStop sets (not owned).
    void registerEvent(ZoEvent& event) { m_wakeEvent.store(&event); }
    /// The event WaitUntilIdle waits for; derived workers set it when idle.
    ZoEvent& getIdleEvent() { return m_idleEvent; }

private:
    int runWorker() { return Run(); }

    std::atomic<int32_t> m_stopRequested;
    ZoEvent m_idleEvent;
    std::atomic<ZoEvent*> m_wakeEvent;
};
