#pragma once

#include "base/ZoReferenceCountedClass.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "platform/ZoExport.h"

/// ZoTaskQueueEventHandler: the listener of a ZoTaskQueue. A queue calls its registered handlers when
/// a task is added (on the adding thread, with the queue's lock held, before the task is appended) and
/// just before and after a worker thread runs it (on the worker, without the lock).
///
/// Handlers are reference counted; the queue holds them through ZoSmartPointer. A handler must not
/// add tasks to, or register with, the queue that is calling it for eTaskAdded from another thread
/// while it waits for that thread: the queue's lock is held.
/// @ingroup concurrency
class ZO_API ZoTaskQueueEventHandler : public ZoReferenceCountedClass<ZoTaskQueueEventHandler>
{
public:
    /// When the handler is called; the comments say on which thread.
    enum EEvent
    {
        eTaskAdded = 0,    ///< in ZoTaskQueue::AddTask, before the task is appended
        eTaskStarting = 1, ///< on the worker, just before the task runs
        eTaskFinished = 2, ///< on the worker, just after the task ran
    };

    ZoTaskQueueEventHandler();
    ~ZoTaskQueueEventHandler() override;

protected:
    friend class ZoTaskQueue;

    /// Called for each event of a queue the handler is registered with: eTaskAdded under the queue's lock (do not call back into the queue from another thread then), the others without it.
    virtual void onTaskQueueEvent(EEvent event, ZoSmartPointer<ZoTask> task) = 0;
};
