#pragma once

#include "base/ZoTaskQueue.h"
#include "base/ZoWorkerThreadBase.h"
#include "platform/ZoExport.h"

/// ZoWorkerThread: one dedicated thread that drains its own ZoTaskQueue in arrival order. For each
/// task it calls the queue's handlers with eTaskStarting, runs the task (ZoTask::Run) and calls them
/// with eTaskFinished, all on the worker thread. It calls neither onBeforeRun nor onAfterRun of the
/// task, so a task's done event is not signalled on this path: submitters that need to wait register
/// a handler and watch for eTaskFinished.
///
/// SetStop() ends the loop after the task in hand; tasks still queued then stay queued. The queue's
/// task-added event is the worker's wake event, so SetStop wakes an idle worker at once. A task's own
/// exception only makes it unsuccessful; an exception from a handler ends the worker, whose thread
/// then reports failure.
///
/// Usage: make the worker, Start() it, AddTask(...) from any thread; SetStop() and
/// WaitUntilTerminate(...) before destroying it. The destructor does that itself for a worker that
/// still runs (it waits for the task in hand to finish).
/// @ingroup concurrency
class ZO_API ZoWorkerThread : public ZoWorkerThreadBase, public ZoTaskQueue
{
public:
    ZoWorkerThread();
    /// A new, unstarted worker with copies of the other's name, priority, flags, tasks and handlers.
    ZoWorkerThread(const ZoWorkerThread& other);
    /// Asks a running worker to stop and waits, without limit, until its thread has ended.
    ~ZoWorkerThread() override;

protected:
    /// The loop; returns 1 once a stop was requested.
    int Run() override;
};
