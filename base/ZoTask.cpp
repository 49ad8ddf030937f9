#include "base/ZoTask.h"

#include "platform/ZoOS.h"

ZoTask::ZoTask() : m_done(true), m_success(false) {}

ZoTask::ZoTask(const ZoTask& other)
    : ZoReferenceCountedClass<ZoTask>(other), m_done(other.m_done), m_success(other.m_success.load())
{
}

ZoTask& ZoTask::operator=(const ZoTask& other)
{
    ZoReferenceCountedClass<ZoTask>::operator=(other);
    m_done = other.m_done;
    m_success.store(other.m_success.load());
    return *this;
}

ZoTask::~ZoTask() = default;

void ZoTask::Run()
{
    try {
        const CheckedBool result = run();
        m_success.store(result.Get());
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
        m_success.store(false);
    }
}

ZoTask::CheckedBool ZoTask::WaitUntilTerminate(unsigned int timeoutMs) const
{
    return m_done.Wait(timeoutMs) != ZoEvent::eWaitTimeout;
}

void ZoTask::onAdd()
{
    m_done.Reset();
}

void ZoTask::onBeforeRun() {}

void ZoTask::onAfterRun()
{
    m_done.Set();
}

void ZoTask::onCancel() {}
