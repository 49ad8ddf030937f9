#pragma once

#include "base/ZoCriticalSection.h"
#include "base/ZoEvent.h"
#include "base/ZoList.h"
#include "base/ZoMap.h"
#include "base/ZoSingleton.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoThreadPool: the process-wide pool of worker threads that runs ZoTask objects with fairness
/// between the threads that submit them.
///
/// - Every submitting thread has its own queue, ordered by priority (larger first; equal priorities
///   in the order added).
/// - A submitter occupies at most as many workers at once as the machine has processors (the
///   per-submitter limit), however many workers exist.
/// - A worker that finishes a task continues with the next task of the same submitter before it
///   serves anybody else; otherwise it serves the longest-waiting submitter, then any submitter below
///   its limit, and otherwise goes idle.
/// - The pool starts with as many workers as the limit and grows whenever a submitter below its limit
///   finds no idle worker. It shrinks only in ShutdownAndWait, which ends every worker and leaves the
///   pool usable: the next AddTask starts workers again.
/// - Each worker takes its tasks from a one-place mailbox.
///
/// A task added to the pool is reset (onAdd), run on a worker between onBeforeRun and onAfterRun, and
/// its done event signalled by onAfterRun; the submitter waits with ZoTask::WaitUntilTerminate.
/// Exceptions from the task never reach the pool.
///
/// Reach the pool through ZoThreadPool::GetInstance(), which makes it on first use (the library owns
/// the one instance). Destroying the pool at process exit does not stop its workers: a program that
/// needs its workers gone calls ShutdownAndWait first. A task must not call ShutdownAndWait.
/// @ingroup concurrency
class ZO_API ZoThreadPool : public ZoSingleton<ZoThreadPool>
{
public:
    /// Larger is more urgent; any signed 32-bit value may be given.
    enum ETaskPriority : int32_t
    {
        eTaskPriorityLowest = -2,
        eTaskPriorityLow = -1,
        eTaskPriorityNormal = 0,
        eTaskPriorityHigh = 1,
        eTaskPriorityHighest = 2,
    };

    /// The pool's worker thread (internal).
    class WorkerThread;

    /// Hands the task to an idle worker at once, or queues it for the calling thread. False for a
    /// null task, while the pool shuts down, and when a needed new worker could not be started (the
    /// task then stays queued and runs when a worker is free). Blocks only on the pool's lock.
    bool AddTask(ZoSmartPointer<ZoTask>& task, ETaskPriority priority = eTaskPriorityNormal);
    /// Blocks up to `timeoutMs` (INFINITE: without limit) until every worker is idle, which is when
    /// every task handed to the pool has run. False on timeout.
    bool WaitUntilIdle(unsigned int timeoutMs);
    /// Waits up to `timeoutMs` for the pool to become idle, then ends every worker and waits for each
    /// to finish. False when the pool did not become idle in time; the workers then keep working.
    /// The pool is usable afterwards.
    bool ShutdownAndWait(unsigned int timeoutMs);

    /// The per-submitter limit: the processor count, fixed at construction.
    uint32_t GetWorkerLimit() const { return m_workerLimit; }
    /// Workers alive and workers idle; a snapshot taken under the pool's lock.
    uint32_t GetWorkerCount() const;
    /// Workers waiting for a task; a snapshot taken under the pool's lock.
    uint32_t GetIdleWorkerCount() const;

    /// The process-wide pool, made on first use with its workers started.
    static ZoThreadPool& GetInstance();
    /// True once the pool exists; makes nothing.
    static bool HasInstance();

protected:
    /// A worker offers itself: after it started and after each task. Gives it its submitter's next
    /// task, else the task of the first waiting submitter, else of the first submitter (in the map's
    /// bucket order) below its limit; otherwise the worker goes idle.
    virtual void considerIdleWorker(WorkerThread& worker);

private:
    friend class ZoSingleton<ZoThreadPool>;

    struct TaskEntry
    {
        ZoSmartPointer<ZoTask> task;
        ETaskPriority priority;

        bool operator==(const TaskEntry& other) const { return task == other.task && priority == other.priority; }
    };
    typedef ZoList<TaskEntry, 0x21> TaskList;
    /// One per submitting thread that has queued tasks or busy workers.
    struct ThreadData
    {
        explicit ThreadData(const ZoSmartPointer<TaskList::PlexManager>& taskNodes) : busyWorkers(0), tasks(taskNodes) {}

        uint32_t busyWorkers;
        TaskList tasks;
    };

    enum EPoolFlags : uint32_t
    {
        eShuttingDown = 1,
    };

    /// Registers as the instance and starts `limit` workers.
    ZoThreadPool();
    /// Frees the pool's own state; the workers are neither stopped nor waited for.
    ~ZoThreadPool() override;

    bool createWorkerThread();
    /// Lock held. Counts the worker as busy for the submitter and puts the task into its mailbox (the
    /// head of the idle list when `worker` is null).
    void occupyWorker(ZoSmartPointer<ZoTask>& task, uint32_t submitter, WorkerThread* worker);
    /// Lock held. The idle event is set exactly when every worker is idle.
    void updateIdleState();
    /// Lock held. Gives the submitter's head task to the worker.
    void giveHeadTask(ThreadData& data, uint32_t submitter, WorkerThread& worker);
    ThreadData& findOrCreateThreadData(uint32_t submitter);
    void removeThreadData(uint32_t submitter);

    uint32_t m_flags;
    const uint32_t m_workerLimit;
    uint32_t m_workerCount;
    mutable ZoCriticalSection m_lock;
    ZoList<WorkerThread*, 0x21> m_idleWorkers;
    ZoList<uint32_t, 0x21> m_waitingSubmitters;
    ZoEvent m_idleEvent;
    /// The values are held by pointer so that the pool can walk the map in bucket order without
    /// copying a submitter's queue. Its 17 buckets never grow: that order decides who is served
    /// next once the waiting submitters are served.
    typedef ZoMap<uint32_t, ThreadData*, ZoMapFixedBucketCount> SubmitterMap;
    SubmitterMap m_submitters;
    /// Shared by the task lists of all submitters.
    ZoSmartPointer<TaskList::PlexManager> m_taskNodes;
};

ZO_EXTERN_TEMPLATE(class ZoSingleton<ZoThreadPool>)
