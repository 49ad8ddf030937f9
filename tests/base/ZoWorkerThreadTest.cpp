#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "base/ZoTaskQueue.h"
#include "base/ZoTaskQueueEventHandler.h"
#include "base/ZoWorkerThread.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

// Appends its number to a shared log when it runs; number -1 throws instead.
class NumberedTask : public ZoTask
{
public:
    NumberedTask(int number, std::vector<int>& log, std::mutex& lock) : m_number(number), m_log(log), m_lock(lock) {}

protected:
    CheckedBool run() override
    {
        if (m_number < 0)
            throw std::runtime_error("task failed");
        std::lock_guard<std::mutex> guard(m_lock);
        m_log.push_back(m_number);
        return true;
    }

private:
    int m_number;
    std::vector<int>& m_log;
    std::mutex& m_lock;
};

struct Event
{
    ZoTaskQueueEventHandler::EEvent event;
    ZoTask* task;
    uint32_t threadId;
};

class RecordingHandler : public ZoTaskQueueEventHandler
{
public:
    std::vector<Event> Events()
    {
        std::lock_guard<std::mutex> guard(m_lock);
        return m_events;
    }
    size_t Count(EEvent kind)
    {
        size_t count = 0;
        for (const Event& e : Events())
            count += e.event == kind;
        return count;
    }

protected:
    void onTaskQueueEvent(EEvent event, ZoSmartPointer<ZoTask> task) override
    {
        std::lock_guard<std::mutex> guard(m_lock);
        m_events.push_back(Event{event, task.Get(), ZoOS::GetCurrentThreadIdentifier()});
    }

private:
    std::mutex m_lock;
    std::vector<Event> m_events;
};

TEST(ZoTaskQueueTest, HandlersRegisterOnceAndHearAdditions)
{
    ZoTaskQueue queue;
    std::vector<int> log;
    std::mutex logLock;
    ZoSmartPointer<RecordingHandler> handler(new RecordingHandler);
    queue.RegisterEventHandler(handler);
    queue.RegisterEventHandler(handler);
    EXPECT_TRUE(queue.IsEmpty());
    ZoSmartPointer<ZoTask> task(new NumberedTask(1, log, logLock));
    queue.AddTask(task);
    EXPECT_EQ(queue.GetCount(), 1u);
    EXPECT_FALSE(queue.IsEmpty());
    ASSERT_EQ(handler->Events().size(), 1u) << "a second registration of the same handler is ignored";
    EXPECT_EQ(handler->Events()[0].event, ZoTaskQueueEventHandler::eTaskAdded);
    EXPECT_EQ(handler->Events()[0].task, task.Get());
    EXPECT_EQ(handler->Events()[0].threadId, ZoOS::GetCurrentThreadIdentifier());

    ZoTaskQueue copy(queue);
    EXPECT_EQ(copy.GetCount(), 1u);
    copy.AddTask(task);
    EXPECT_EQ(handler->Events().size(), 2u) << "the copy took the handlers";
    EXPECT_EQ(queue.GetCount(), 1u) << "and has lists of its own";

    queue.UnregisterEventHandler(handler);
    queue.UnregisterEventHandler(handler);
    queue.AddTask(task);
    EXPECT_EQ(handler->Events().size(), 2u);
    EXPECT_EQ(queue.GetCount(), 2u);
}

TEST(ZoWorkerThreadConcurrentTest, RunsTasksInArrivalOrderAndReportsThem)
{
    std::vector<int> log;
    std::mutex logLock;
    ZoWorkerThread worker;
    EXPECT_EQ(worker.GetName(), CString(u"ZoWorkerThreadBase"));
    ZoSmartPointer<RecordingHandler> handler(new RecordingHandler);
    worker.RegisterEventHandler(handler);
    std::vector<ZoSmartPointer<ZoTask>> tasks;
    for (int number : {1, 2, -1, 3}) {
        tasks.push_back(new NumberedTask(number, log, logLock));
        worker.AddTask(tasks.back());
    }
    ASSERT_TRUE(worker.Start());
    ASSERT_TRUE(zotest::WaitUntil([&] { return handler->Count(ZoTaskQueueEventHandler::eTaskFinished) == 4; }));
    // A task added while the worker waits is found: a pulse that misses the worker only delays it.
    tasks.push_back(new NumberedTask(4, log, logLock));
    worker.AddTask(tasks.back());
    ASSERT_TRUE(zotest::WaitUntil([&] { return handler->Count(ZoTaskQueueEventHandler::eTaskFinished) == 5; }));
    {
        std::lock_guard<std::mutex> guard(logLock);
        EXPECT_EQ(log, (std::vector<int>{1, 2, 3, 4})) << "the failing task did not stop the worker";
    }
    EXPECT_FALSE(tasks[2]->IsSuccessful());
    EXPECT_TRUE(tasks[3]->IsSuccessful());
    EXPECT_FALSE(tasks[0]->WaitUntilTerminate(0)) << "the worker's path leaves the done event alone";

    // Added, then starting and finished for each task, on the worker's thread.
    const std::vector<Event> events = handler->Events();
    ASSERT_EQ(events.size(), 15u);
    for (size_t i = 0; i < 5; ++i) {
        const size_t running = i < 4 ? 4 + 2 * i : 13;
        SCOPED_TRACE(testing::Message() << "task " << i);
        EXPECT_EQ(events[running].event, ZoTaskQueueEventHandler::eTaskStarting);
        EXPECT_EQ(events[running].task, tasks[i].Get());
        EXPECT_EQ(events[running + 1].event, ZoTaskQueueEventHandler::eTaskFinished);
        EXPECT_EQ(events[running + 1].task, tasks[i].Get());
        EXPECT_EQ(events[running].threadId, worker.GetThreadId());
    }

    worker.SetStop();
    EXPECT_TRUE(worker.IsStopRequested());
    ASSERT_TRUE(worker.WaitUntilTerminate(30000)) << "SetStop wakes the waiting worker";
    EXPECT_TRUE(worker.IsSuccessful());
    worker.AddTask(tasks[0]);
    EXPECT_EQ(worker.GetCount(), 1u) << "nothing takes tasks after the stop";
    worker.WaitUntilIdle();
}

TEST(ZoWorkerThreadConcurrentTest, DestructorStopsARunningWorker)
{
    std::vector<int> log;
    std::mutex logLock;
    auto* worker = new ZoWorkerThread;
    ASSERT_TRUE(worker->Start());
    ZoSmartPointer<ZoTask> task(new NumberedTask(1, log, logLock));
    worker->AddTask(task);
    delete worker;
    std::lock_guard<std::mutex> guard(logLock);
    EXPECT_LE(log.size(), 1u);
}

} // namespace
