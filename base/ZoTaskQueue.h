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
    ZoTaskQueue& operator=(const ZoTaskQueue& other);
    ~ZoTaskQueue();

    /// Under the lock: calls every handler with eTaskAdded, appends the task, pulses the task-added
    /// event. Requires: a task (a null one is dropped by the worker unrun).
    void AddTask(ZoSmartPointer<ZoTask> task);
    uint32_t GetCount() const;
    int IsEmpty() const;
    /// Appends the handler unless the same object is registered already.
    void RegisterEventHandler(ZoSmartPointer<ZoTaskQueueEventHandler> handler);
    /// Removes the handler if it is registered; otherwise nothing happens.
    void UnregisterEventHandler(ZoSmartPointer<ZoTaskQueueEventHandler> handler);

protected:
    typedef ZoList<ZoSmartPointer<ZoTask>, 0x21> TaskList;
    typedef ZoList<ZoSmartPointer<ZoTaskQueueEventHandler>, 0x21> HandlerList;

    /// The head task, removed from the queue; null when the queue is empty.
    ZoSmartPointer<ZoTask> takeTask();
    /// Calls every handler without holding the lock (on a snapshot taken under it).
    void notifyHandlers(ZoTaskQueueEventHandler::EEvent event, const ZoSmartPointer<ZoTask>& task);
    ZoEvent& getTaskAddedEvent() { return m_taskAdded; }

private:
    void copyFrom(const ZoTaskQueue& other);

    TaskList m_tasks;
    mutable ZoCriticalSection m_lock;
    ZoEvent m_taskAdded;
    HandlerList m_handlers;
};
