#pragma once

#include "base/ZoCriticalSection.h"
#include "base/ZoEvent.h"
#include "base/ZoList.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "base/ZoTaskQueueEventHandler.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <vector>

/// ZoTaskQueue: a first-in-first-out queue of tasks with listeners, drained by a ZoWorkerThread. Every
/// operation takes the queue's lock, so any thread may add tasks and register handlers while the
/// worker takes tasks out.
///
/// Adding a task calls the handlers (eTaskAdded, under the lock), appends the task and pulses the
/// task-added event: a worker already waiting wakes, and a worker that is not waiting finds the task
/// when it next looks at the queue.
/// @ingroup concurrency
class ZO_API ZoTaskQueue
{
public:
    ZoTaskQueue();
    /// Copies the other queue's tasks and handlers (taken under its lock) into lists of this queue's
    /// own; the copy has its own lock and its own task-added event.
    ZoTaskQueue(const ZoTaskQueue& other);
    /// Replaces this queue's tasks and handlers with copies of `other`'s lists (taken under its lock).
    ZoTaskQueue& operator=(const ZoTaskQueue& other);
    ~ZoTaskQueue();

    /// Under the lock: calls every handler with eTaskAdded, appends the task, pulses the task-added
    /// event. Requires: a task (a null one is dropped by the worker unrun).
    void AddTask(ZoSmartPointer<ZoTask> task);
    /// Number of queued tasks, read under the lock.
    uint32_t GetCount() const;
    /// Non-zero when no task is queued, read under the lock.
    int IsEmpty() const;
    /// Appends the handler unless the same object is registered already.
    void RegisterEventHandler(ZoSmartPointer<ZoTaskQueueEventHandler> handler);
    /// Removes the handler if it is registered; otherwise nothing happens.
    void UnregisterEventHandler(ZoSmartPointer<ZoTaskQueueEventHandler> handler);

protected:
    /// The queued tasks, oldest first.
    typedef ZoList<ZoSmartPointer<ZoTask>, 0x21> TaskList;
    /// The registered handlers, in registration order.
    typedef ZoList<ZoSmartPointer<ZoTaskQueueEventHandler>, 0x21> HandlerList;

    /// The head task, removed from the queue; null when the queue is empty.
    ZoSmartPointer<ZoTask> takeTask();
    /// Calls every handler without holding the lock (on a snapshot taken under it).
    void notifyHandlers(ZoTaskQueueEventHandler::EEvent event, const ZoSmartPointer<ZoTask>& task);
    /// Pulsed by AddTask; the worker waits on it for work.
    ZoEvent& getTaskAddedEvent() { return m_taskAdded; }

private:
    void copyFrom(const ZoTaskQueue& other);

    TaskList m_tasks;
    mutable ZoCriticalSection m_lock;
    ZoEvent m_taskAdded;
    HandlerList m_handlers;
};
