#include "base/ZoWorkerThreadBase.h"

#include "platform/ZoOS.h"

ZoWorkerThreadBase::ZoWorkerThreadBase() : ZoWorkerThreadBase(CString(u"ZoWorkerThreadBase"), eNormal) {}

ZoWorkerThreadBase::ZoWorkerThreadBase(const CString& name, EThreadPriority priority)
    : ZoThread<ZoWorkerThreadBase, ZoThreadPolicyMFC>(*this, &ZoWorkerThreadBase::runWorker, name, priority),
      m_stopRequested(0), m_idleEvent(true), m_wakeEvent(nullptr)
{
}

ZoWorkerThreadBase::ZoWorkerThreadBase(const ZoWorkerThreadBase& other)
    : ZoThread<ZoWorkerThreadBase, ZoThreadPolicyMFC>(*this, &ZoWorkerThreadBase::runWorker, other.GetName(),
                                                      other.GetRequestedPriority()),
      m_stopRequested(0), m_idleEvent(true), m_wakeEvent(nullptr)
{
    SetFlags(static_cast<EFlags>(other.GetFlags().GetFlags()));
}

ZoWorkerThreadBase::~ZoWorkerThreadBase() = default;

void ZoWorkerThreadBase::SetStop()
{
    m_stopRequested.store(1);
    if (ZoEvent* wake = m_wakeEvent.load())
        wake->Set();
}

void ZoWorkerThreadBase::WaitUntilIdle()
{
    uint32_t exitCode = 0;
    if (ZoOS::GetThreadExitCode(GetThreadHandle(), exitCode) && exitCode == STILL_ACTIVE)
        m_idleEvent.Wait(INFINITE);
}
