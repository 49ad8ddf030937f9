#include "base/ZoThreadPool.h"

#include "base/ZoCriticalSectionAuto.h"
#include "base/ZoMachineCapabilities.h"
#include "base/ZoThread.h"
#include "base/ZoThreadPolicyMFC.h"
#include "base/ZoTimer.h"
#include "platform/ZoOS.h"

#include <memory>
#include <utility>

template class ZoSingleton<ZoThreadPool>;

// A pool worker: runs the tasks put into its one-place mailbox until it receives a null task.
class ZoThreadPool::WorkerThread : public ZoThread<ZoThreadPool::WorkerThread, ZoThreadPolicyMFC>
{
public:
    explicit WorkerThread(ZoThreadPool& pool)
        : ZoThread<WorkerThread, ZoThreadPolicyMFC>(*this, &WorkerThread::work, CString(u"ZoThreadPool::WorkerThread"), eNormal),
          m_servedSubmitter(sc_uiNoSubmitter), m_pool(pool), m_slotEmpty(false), m_slotFull(false)
    {
        m_slotEmpty.Set();
    }

    // Blocks until the mailbox is empty, then fills it.
    void PutTask(const ZoSmartPointer<ZoTask>& task)
    {
        m_slotEmpty.Wait(INFINITE);
        m_slotTask = task;
        m_slotFull.Set();
    }

    static constexpr uint32_t sc_uiNoSubmitter = 0xFFFFFFFFu;

    // The thread id of the submitter whose task the worker runs or ran last; guarded by the pool's
    // lock.
    uint32_t m_servedSubmitter;

protected:
    // The worker offers itself before StartAndWait returns to the pool, so it may already have a
    // task when the pool counts it. The pool reaches it by reference rather than through
    // GetInstance(): the first workers start while the pool's constructor still runs.
    void onBeforeRun() override { m_pool.considerIdleWorker(*this); }

private:
    // Blocks until the mailbox is full, then empties it.
    ZoSmartPointer<ZoTask> takeTask()
    {
        m_slotFull.Wait(INFINITE);
        ZoSmartPointer<ZoTask> task = std::move(m_slotTask);
        m_slotEmpty.Set();
        return task;
    }

    int work()
    {
        for (ZoSmartPointer<ZoTask> task = takeTask(); task != nullptr; task = takeTask()) {
            // Each hook on its own: a failing onBeforeRun must not keep the done event from being
            // signalled by onAfterRun.
            try {
                task->onBeforeRun();
            } catch (...) {
                ZoOS::RethrowThreadCancellation();
            }
            task->Run();
            try {
                task->onAfterRun();
            } catch (...) {
                ZoOS::RethrowThreadCancellation();
            }
            task = nullptr;
            m_pool.considerIdleWorker(*this);
        }
        return 1;
    }

    ZoThreadPool& m_pool;
    ZoEvent m_slotEmpty;
    ZoEvent m_slotFull;
    ZoSmartPointer<ZoTask> m_slotTask;
};

ZoThreadPool::ZoThreadPool()
    : m_flags(0), m_workerLimit(ZoMachineCapabilities::GetInstance().GetCPUCount()), m_workerCount(0), m_lock(ZoCriticalSection::sc_uiDefaultSpinCount),
      m_idleWorkers(10), m_waitingSubmitters(10), m_idleEvent(true), m_submitters(10, 17),
      m_taskNodes(new TaskList::PlexManager(100))
{
    for (uint32_t i = 0; i < m_workerLimit; ++i)
        createWorkerThread();
}

ZoThreadPool::~ZoThreadPool()
{
    // A worker that has just gone idle signals the idle event inside the lock and is still leaving
    // it: let it out before the lock goes. (Workers that are busy are the caller's affair.)
    {
        ZoCriticalSectionAuto guard(m_lock);
    }
    for (SubmitterMap::Position position = m_submitters.GetStartPosition(); position != nullptr;) {
        uint32_t submitter = 0;
        ThreadData* data = nullptr;
        m_submitters.GetNextAssoc(position, submitter, data);
        delete data;
    }
}

ZoThreadPool& ZoThreadPool::GetInstance()
{
    return ZoSingleton<ZoThreadPool>::GetInstance();
}

bool ZoThreadPool::HasInstance()
{
    return ZoSingleton<ZoThreadPool>::HasInstance();
}

uint32_t ZoThreadPool::GetWorkerCount() const
{
    ZoCriticalSectionAuto guard(m_lock);
    return m_workerCount;
}

uint32_t ZoThreadPool::GetIdleWorkerCount() const
{
    ZoCriticalSectionAuto guard(m_lock);
    return m_idleWorkers.GetCount();
}

bool ZoThreadPool::AddTask(ZoSmartPointer<ZoTask>& task, ETaskPriority priority)
{
    if (task == nullptr)
        return false;
    ZoCriticalSectionAuto guard(m_lock);
    if ((m_flags & eShuttingDown) != 0)
        return false;
    task->onAdd();
    const uint32_t submitter = ZoOS::GetCurrentThreadIdentifier();
    ThreadData& data = findOrCreateThreadData(submitter);
    if (data.busyWorkers < m_workerLimit && !m_idleWorkers.IsEmpty()) {
        occupyWorker(task, submitter, nullptr);
        return true;
    }
    // Before the first entry of lower priority, so equal priorities keep their arrival order.
    TaskList::Position position = data.tasks.GetHeadPosition();
    while (position != nullptr && data.tasks.GetAt(position).priority >= priority)
        position = data.tasks.GetNextPosition(position);
    if (position != nullptr)
        data.tasks.InsertBefore(position, TaskEntry{task, priority});
    else
        data.tasks.AddTail(TaskEntry{task, priority});
    // At its limit the submitter waits for one of its own workers.
    if (data.busyWorkers >= m_workerLimit)
        return true;
    m_waitingSubmitters.AddTail(submitter);
    guard.LeaveEarly();
    return createWorkerThread();
}

bool ZoThreadPool::WaitUntilIdle(unsigned int timeoutMs)
{
    return m_idleEvent.Wait(timeoutMs) == ZoEvent::eWaitSignaled;
}

bool ZoThreadPool::ShutdownAndWait(unsigned int timeoutMs)
{
    ZoTimer timer;
    timer.Start();
    if (m_idleEvent.Wait(timeoutMs) != ZoEvent::eWaitSignaled)
        return false;
    unsigned int remainingMs = timeoutMs;
    m_lock.Enter();
    // The idle event may be stale by the time the lock is held: wait again for what is left of the
    // time until the pool is idle under the lock.
    while (m_idleWorkers.GetCount() != m_workerCount) {
        if (remainingMs != INFINITE) {
            const int64_t elapsedMs = timer.GetElapsedTime();
            remainingMs = elapsedMs >= static_cast<int64_t>(remainingMs) ? 0u : remainingMs - static_cast<unsigned int>(elapsedMs);
        }
        m_lock.Leave();
        timer.Start();
        if (m_idleEvent.Wait(remainingMs) != ZoEvent::eWaitSignaled)
            return false;
        m_lock.Enter();
    }
    m_flags |= eShuttingDown;
    while (!m_idleWorkers.IsEmpty()) {
        WorkerThread* worker = m_idleWorkers.GetHead();
        m_idleWorkers.RemoveHead();
        worker->PutTask(nullptr);
        if (!worker->WaitUntilTerminate(INFINITE)) {
            m_idleWorkers.AddTail(worker);
            m_flags &= ~static_cast<uint32_t>(eShuttingDown);
            m_lock.Leave();
            return false;
        }
        delete worker;
        --m_workerCount;
    }
    m_flags &= ~static_cast<uint32_t>(eShuttingDown);
    m_lock.Leave();
    return true;
}

void ZoThreadPool::considerIdleWorker(WorkerThread& worker)
{
    ZoCriticalSectionAuto guard(m_lock);
    // The submitter just served comes first: its next task stays on this worker.
    if (worker.m_servedSubmitter != WorkerThread::sc_uiNoSubmitter) {
        const uint32_t submitter = worker.m_servedSubmitter;
        if (ThreadData** found = m_submitters.Find(submitter)) {
            ThreadData& data = **found;
            --data.busyWorkers;
            if (!data.tasks.IsEmpty()) {
                giveHeadTask(data, submitter, worker);
                return;
            }
            if (data.busyWorkers == 0)
                removeThreadData(submitter);
        }
    }
    // Then the submitter that has waited longest for a new worker; its id is consumed either way.
    if (!m_waitingSubmitters.IsEmpty()) {
        const uint32_t submitter = m_waitingSubmitters.GetHead();
        m_waitingSubmitters.RemoveHead();
        if (ThreadData** found = m_submitters.Find(submitter)) {
            ThreadData& data = **found;
            if (data.busyWorkers < m_workerLimit && !data.tasks.IsEmpty()) {
                giveHeadTask(data, submitter, worker);
                return;
            }
        }
    }
    // Then anybody below the limit, in the map's bucket order.
    for (SubmitterMap::Position position = m_submitters.GetStartPosition(); position != nullptr;) {
        uint32_t submitter = 0;
        ThreadData* data = nullptr;
        m_submitters.GetNextAssoc(position, submitter, data);
        if (data->busyWorkers < m_workerLimit && !data->tasks.IsEmpty()) {
            giveHeadTask(*data, submitter, worker);
            return;
        }
    }
    m_idleWorkers.AddTail(&worker);
    updateIdleState();
}

bool ZoThreadPool::createWorkerThread()
{
    auto* worker = new WorkerThread(*this);
    if (!worker->StartAndWait()) {
        // No thread was made, so nothing else refers to the worker.
        delete worker;
        return false;
    }
    ZoCriticalSectionAuto guard(m_lock);
    ++m_workerCount;
    updateIdleState();
    return true;
}

void ZoThreadPool::occupyWorker(ZoSmartPointer<ZoTask>& task, uint32_t submitter, WorkerThread* worker)
{
    ++(*m_submitters.Find(submitter))->busyWorkers;
    if (worker == nullptr) {
        worker = m_idleWorkers.GetHead();
        m_idleWorkers.RemoveHead();
    }
    worker->m_servedSubmitter = submitter;
    // An idle worker's mailbox is empty, and so is the mailbox of a worker that has just offered
    // itself: this wait does not block.
    worker->PutTask(task);
    updateIdleState();
}

void ZoThreadPool::updateIdleState()
{
    if (m_idleWorkers.GetCount() == m_workerCount)
        m_idleEvent.Set();
    else
        m_idleEvent.Reset();
}

void ZoThreadPool::giveHeadTask(ThreadData& data, uint32_t submitter, WorkerThread& worker)
{
    ZoSmartPointer<ZoTask> task = data.tasks.GetHead().task;
    data.tasks.RemoveHead();
    occupyWorker(task, submitter, &worker);
}

ZoThreadPool::ThreadData& ZoThreadPool::findOrCreateThreadData(uint32_t submitter)
{
    if (ThreadData** found = m_submitters.Find(submitter))
        return **found;
    // Made before the map entry, so that a failed allocation leaves no empty entry behind.
    std::unique_ptr<ThreadData> data(new ThreadData(m_taskNodes));
    m_submitters[submitter] = data.get();
    return *data.release();
}

void ZoThreadPool::removeThreadData(uint32_t submitter)
{
    if (ThreadData** found = m_submitters.Find(submitter)) {
        delete *found;
        m_submitters.RemoveKey(submitter);
    }
}
