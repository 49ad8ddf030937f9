#include "base/ZoWorkerThread.h"

namespace {

// The task-added event is pulsed, and a pulse that falls between the worker's look at the queue and
// its wait is lost. The worker therefore waits at most this long before it looks again: a lost
// pulse delays a task, it never strands it.
const unsigned int sc_uiWakeCheckMs = 100;

} // namespace

ZoWorkerThread::ZoWorkerThread()
{
    registerEvent(getTaskAddedEvent());
}

ZoWorkerThread::ZoWorkerThread(const ZoWorkerThread& other) : ZoWorkerThreadBase(other), ZoTaskQueue(other)
{
    registerEvent(getTaskAddedEvent());
}

ZoWorkerThread::~ZoWorkerThread()
{
    // The queue is destroyed before the thread base: the thread must not outlive it.
    if (IsRunning()) {
        SetStop();
        (void)WaitUntilTerminate(INFINITE);
    }
}

int ZoWorkerThread::Run()
{
    for (;;) {
        ZoSmartPointer<ZoTask> task = takeTask();
        if (task == nullptr) {
            if (!IsStopRequested())
                getTaskAddedEvent().Wait(sc_uiWakeCheckMs);
        } else {
            notifyHandlers(ZoTaskQueueEventHandler::eTaskStarting, task);
            task->Run();
            notifyHandlers(ZoTaskQueueEventHandler::eTaskFinished, task);
        }
        task = nullptr;
        if (IsStopRequested())
            return 1;
    }
}
