// The task runners: the thread pool, the worker thread and its queue, and the task itself.
#include "base/ZoEvent.h"
#include "base/ZoMachineCapabilities.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "base/ZoTaskQueue.h"
#include "base/ZoTaskQueueEventHandler.h"
#include "base/ZoThreadPool.h"
#include "base/ZoWorkerThread.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

const unsigned int sc_uiLongWaitMs = 60000;

// A task whose work is a function; it notes the worker thread it ran on and how often it ran.
class FunctionTask : public ZoTask
{
public:
    explicit FunctionTask(std::function<bool()> work) : m_work(std::move(work)) {}
    std::atomic<uint32_t> workerId{0};
    std::atomic<int> runs{0};
    int number = 0;
    std::function<void()> onAddHook = [] {};
    void onAdd() override
    {
        ZoTask::onAdd();
        onAddHook();
    }

protected:
    CheckedBool run() override
    {
        ++runs;
        workerId = ZoOS::GetCurrentThreadIdentifier();
        return m_work();
    }

private:
    std::function<bool()> m_work;
};

ZoSmartPointer<ZoTask> makeTask(std::function<bool()> work)
{
    return ZoSmartPointer<ZoTask>(new FunctionTask(std::move(work)));
}

FunctionTask& as(const ZoSmartPointer<ZoTask>& task) { return *static_cast<FunctionTask*>(task.Get()); }

bool finished(const ZoSmartPointer<ZoTask>& task) { return task->WaitUntilTerminate(sc_uiLongWaitMs); }

bool allFinished(const std::vector<ZoSmartPointer<ZoTask>>& tasks)
{
    for (const ZoSmartPointer<ZoTask>& task : tasks)
        if (!finished(task))
            return false;
    return true;
}

// A task that waits for `gate` and counts its start in `started`.
ZoSmartPointer<ZoTask> blockedOn(ZoEvent& gate, std::atomic<uint32_t>& started)
{
    return makeTask([&gate, &started] { return ++started > 0 && gate.Wait(INFINITE) == ZoEvent::eWaitSignaled; });
}

TEST(ZoThreadPoolConcurrentTest, RunsTasksAndReportsTheirOutcome)
{
    const bool fresh = !ZoThreadPool::HasInstance();
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    EXPECT_TRUE(pool.WaitUntilIdle(0)) << "the workers made at construction have all offered themselves";
    EXPECT_EQ(pool.GetWorkerLimit(), ZoMachineCapabilities::GetInstance().GetCPUCount());
    EXPECT_TRUE(!fresh || pool.GetWorkerCount() == pool.GetWorkerLimit()) << "a new pool starts as many workers as its limit";
    ZoSmartPointer<ZoTask> none;
    EXPECT_FALSE(pool.AddTask(none));
    ZoSmartPointer<ZoTask> good = makeTask([] { return true; });
    ZoSmartPointer<ZoTask> bad = makeTask([] { return false; });
    ZoSmartPointer<ZoTask> throwing = makeTask([]() -> bool { throw std::runtime_error("task failed"); });
    EXPECT_FALSE(good->IsSuccessful()) << "a task that never ran did not succeed";
    good->onAfterRun();
    ASSERT_TRUE(pool.AddTask(good));
    ASSERT_TRUE(pool.AddTask(bad, ZoThreadPool::eTaskPriorityHigh));
    ASSERT_TRUE(pool.AddTask(throwing, ZoThreadPool::eTaskPriorityLow));
    for (const ZoSmartPointer<ZoTask>* task : {&good, &bad, &throwing})
        ASSERT_TRUE(finished(*task)) << "the done event was reset by AddTask and set after the run";
    EXPECT_TRUE(good->IsSuccessful() && !bad->IsSuccessful() && !throwing->IsSuccessful() && as(throwing).runs.load() == 1);
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs) && pool.GetIdleWorkerCount() == pool.GetWorkerCount());
}

// Catches a per-submitter limit that admits one task too many (or too few), a pool that starts
// workers for a submitter at its limit, a wrong priority order, and a worker that does not continue
// with its submitter's next task.
TEST(ZoThreadPoolConcurrentTest, OneSubmitterStaysWithinItsLimitInPriorityOrder)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    const uint32_t limit = pool.GetWorkerLimit();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    // Two other submitters make the pool grow to twice the limit, so that idle workers are at hand
    // when this thread reaches its own limit.
    {
        ZoEvent release(true);
        std::atomic<uint32_t> started{0};
        auto submitter = [&] {
            std::vector<ZoSmartPointer<ZoTask>> held;
            for (uint32_t i = 0; i < limit; ++i) {
                held.push_back(blockedOn(release, started));
                ASSERT_TRUE(pool.AddTask(held.back()));
            }
            ASSERT_TRUE(allFinished(held));
        };
        std::thread first(submitter), second(submitter);
        EXPECT_TRUE(zotest::WaitUntil([&] { return started.load() == 2 * limit; }));
        release.Set();
        first.join(), second.join();
        ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    }
    ASSERT_GE(pool.GetWorkerCount(), 2 * limit);
    // `limit` blockers, each released by its own gate, fill this submitter's share.
    std::vector<std::unique_ptr<ZoEvent>> gates;
    std::vector<ZoSmartPointer<ZoTask>> blockers;
    std::atomic<uint32_t> started{0};
    for (uint32_t i = 0; i < limit; ++i) {
        gates.emplace_back(new ZoEvent(true));
        blockers.push_back(blockedOn(*gates.back(), started));
        ASSERT_TRUE(pool.AddTask(blockers.back()));
    }
    ASSERT_TRUE(zotest::WaitUntil([&] { return started.load() == limit; }));
    // The rest waits although idle workers exist, and no worker is started for it: priority order,
    // equal priorities by arrival.
    const uint32_t workersAtTheLimit = pool.GetWorkerCount();
    std::mutex orderLock;
    std::vector<int> order;
    const int priorities[] = {1, 3, 2, 3, 1, 2, 0, 3};
    std::vector<ZoSmartPointer<ZoTask>> queued;
    for (int i = 0; i < 8; ++i) {
        queued.push_back(makeTask([&, i] {
            std::lock_guard<std::mutex> guard(orderLock);
            order.push_back(i);
            return true;
        }));
        ASSERT_TRUE(pool.AddTask(queued.back(), static_cast<ZoThreadPool::ETaskPriority>(priorities[i])));
    }
    EXPECT_TRUE(pool.GetIdleWorkerCount() >= limit && pool.GetWorkerCount() == workersAtTheLimit);
    // One blocker ends: its worker drains the whole queue, one task after another.
    gates[0]->Set();
    ASSERT_TRUE(allFinished(queued));
    EXPECT_EQ(order, (std::vector<int>{1, 3, 7, 2, 5, 0, 4, 6}));
    for (const ZoSmartPointer<ZoTask>& task : queued)
        EXPECT_EQ(as(task).workerId.load(), as(blockers[0]).workerId.load()) << "the next task stays on the worker that finished one";
    for (const std::unique_ptr<ZoEvent>& gate : gates)
        gate->Set();
    ASSERT_TRUE(allFinished(blockers) && started.load() == limit);
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
}

TEST(ZoThreadPoolConcurrentTest, AnotherSubmitterProgressesWhileOneIsAtItsLimit)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    const uint32_t limit = pool.GetWorkerLimit();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    ZoEvent release(true);
    std::atomic<uint32_t> blocked{0};
    std::vector<ZoSmartPointer<ZoTask>> busy;
    for (uint32_t i = 0; i < limit + 3; ++i) {
        busy.push_back(blockedOn(release, blocked));
        ASSERT_TRUE(pool.AddTask(busy.back(), ZoThreadPool::eTaskPriorityHighest));
    }
    ASSERT_TRUE(zotest::WaitUntil([&] { return blocked.load() == limit; }));
    // The second submitter is served at once by a free or a new worker, however busy the first is.
    std::thread other([&] {
        std::vector<ZoSmartPointer<ZoTask>> mine;
        for (int i = 0; i < 20; ++i) {
            mine.push_back(makeTask([] { return true; }));
            ASSERT_TRUE(pool.AddTask(mine.back(), ZoThreadPool::eTaskPriorityLowest));
        }
        ASSERT_TRUE(allFinished(mine));
    });
    other.join();
    EXPECT_EQ(blocked.load(), limit) << "the first submitter's queued tasks still wait for its own workers";
    release.Set();
    ASSERT_TRUE(allFinished(busy));
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
}

// A busy pool's shutdown times out and keeps its workers. A shutdown that saw the idle event and
// then finds the pool busy under the lock (a task's onAdd runs under it) must wait again. An empty
// pool shuts down at once, and the next task starts one worker.
TEST(ZoThreadPoolConcurrentTest, ShutdownWaitsForIdleEvenWhenTheLockFindsThePoolBusy)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    ZoEvent inOnAdd(true), leaveOnAdd(true), release(true);
    std::atomic<uint32_t> started{0};
    ZoSmartPointer<ZoTask> task = blockedOn(release, started);
    as(task).onAddHook = [&] {
        inOnAdd.Set();
        leaveOnAdd.Wait(INFINITE);
    };
    std::thread submitter([&] { EXPECT_TRUE(pool.AddTask(task)); });
    ASSERT_EQ(inOnAdd.Wait(sc_uiLongWaitMs), ZoEvent::eWaitSignaled);
    std::atomic<int> shutdown{-1};
    std::thread stopper([&] { shutdown = pool.ShutdownAndWait(sc_uiLongWaitMs) ? 1 : 0; });
    // Time for the shutdown to pass the idle event and queue on the lock; without it the test
    // still holds, it only takes the other path.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    leaveOnAdd.Set();
    submitter.join();
    ASSERT_TRUE(zotest::WaitUntil([&] { return started.load() == 1; }));
    const uint32_t workers = pool.GetWorkerCount();
    EXPECT_FALSE(pool.ShutdownAndWait(20)) << "a busy pool does not become idle in time";
    EXPECT_EQ(pool.GetWorkerCount(), workers) << "and keeps its workers";
    EXPECT_EQ(shutdown.load(), -1) << "no shutdown while a task runs";
    release.Set();
    stopper.join();
    EXPECT_EQ(shutdown.load(), 1);
    EXPECT_TRUE(task->IsSuccessful());
    EXPECT_TRUE(pool.GetWorkerCount() == 0 && pool.GetIdleWorkerCount() == 0);
    EXPECT_TRUE(pool.ShutdownAndWait(0)) << "an empty pool shuts down at once";
    ZoSmartPointer<ZoTask> afterwards = makeTask([] { return true; });
    ASSERT_TRUE(pool.AddTask(afterwards));
    ASSERT_TRUE(finished(afterwards));
    EXPECT_EQ(pool.GetWorkerCount(), 1u);
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
}

// Four submitters add tiny tasks at random priorities while the pool shuts down: every accepted
// task runs exactly once, a refused one never twice, and later tasks start workers again.
TEST(ZoThreadPoolConcurrentTest, ShutdownWhileFourSubmittersKeepAddingEndsCleanly)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    const int sc_submitters = 4;
    const size_t sc_mostTasks = 20000;
    const unsigned int seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::vector<std::vector<std::pair<ZoSmartPointer<ZoTask>, bool>>> added(sc_submitters);
    std::atomic<bool> stop{false};
    std::atomic<int> ran{0};
    std::vector<std::thread> submitters;
    for (int s = 0; s < sc_submitters; ++s) {
        submitters.emplace_back([&, s] {
            std::mt19937 random(seed + s);
            std::uniform_int_distribution<int> priority(-5, 5);
            added[s].reserve(sc_mostTasks);
            while (!stop && added[s].size() < sc_mostTasks) {
                ZoSmartPointer<ZoTask> task = makeTask([&ran] { return ++ran > 0; });
                const bool accepted = pool.AddTask(task, static_cast<ZoThreadPool::ETaskPriority>(priority(random)));
                added[s].emplace_back(task, accepted);
            }
        });
    }
    ASSERT_TRUE(zotest::WaitUntil([&] { return ran.load() > 200; }));
    // Tiny tasks leave the pool idle often enough for the shutdown to find a moment.
    EXPECT_TRUE(pool.ShutdownAndWait(sc_uiLongWaitMs));
    const int before = ran.load();
    ASSERT_TRUE(zotest::WaitUntil([&] { return ran.load() > before + 200; })) << "the submitters' next tasks start workers again";
    stop = true;
    for (std::thread& submitter : submitters)
        submitter.join();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    int wrong = 0;
    for (const auto& list : added)
        for (const auto& [task, accepted] : list)
            wrong += accepted ? as(task).runs.load() != 1 || !task->WaitUntilTerminate(0) || !task->IsSuccessful()
                              : as(task).runs.load() > 1;
    EXPECT_EQ(wrong, 0) << "accepted tasks not run exactly once, or refused ones run twice";
    EXPECT_EQ(pool.GetIdleWorkerCount(), pool.GetWorkerCount());
}

// Records each queue event as its letter (a added, s starting, f finished) and the task's number,
// and the threads the events came from.
class RecordingHandler : public ZoTaskQueueEventHandler
{
public:
    std::string Log()
    {
        std::lock_guard<std::mutex> guard(m_lock);
        return m_log;
    }
    std::vector<uint32_t> threads;

protected:
    void onTaskQueueEvent(EEvent event, ZoSmartPointer<ZoTask> task) override
    {
        std::lock_guard<std::mutex> guard(m_lock);
        m_log += std::string(1, "asf"[event == eTaskAdded ? 0 : event == eTaskStarting ? 1 : 2]) + std::to_string(as(task).number) + " ";
        threads.push_back(ZoOS::GetCurrentThreadIdentifier());
    }

private:
    std::mutex m_lock;
    std::string m_log;
};

TEST(ZoTaskQueueTest, HandlersRegisterOnceAndCopiesTakeThem)
{
    ZoTaskQueue queue;
    ZoSmartPointer<RecordingHandler> handler(new RecordingHandler);
    queue.RegisterEventHandler(handler);
    queue.RegisterEventHandler(handler);
    ZoSmartPointer<ZoTask> task = makeTask([] { return true; });
    queue.AddTask(task);
    EXPECT_EQ(handler->Log(), "a0 ") << "a second registration of the same handler is ignored";
    ZoTaskQueue copy(queue);
    copy.AddTask(task);
    EXPECT_EQ(handler->Log(), "a0 a0 ") << "the copy took the handlers";
    EXPECT_TRUE(queue.GetCount() == 1 && copy.GetCount() == 2) << "and has lists of its own";
    queue.UnregisterEventHandler(handler);
    queue.UnregisterEventHandler(handler);
    queue.AddTask(task);
    EXPECT_EQ(handler->Log(), "a0 a0 ");
    EXPECT_TRUE(queue.GetCount() == 2 && !queue.IsEmpty() && ZoTaskQueue().IsEmpty());
}

TEST(ZoWorkerThreadConcurrentTest, RunsTasksInArrivalOrderAndReportsThem)
{
    std::vector<int> log; // written by the worker only; read after the handler's lock says it ran
    ZoWorkerThread worker;
    ZoSmartPointer<RecordingHandler> handler(new RecordingHandler);
    worker.RegisterEventHandler(handler);
    std::vector<ZoSmartPointer<ZoTask>> tasks;
    auto add = [&](int number) {
        tasks.push_back(makeTask([&log, number]() -> bool {
            if (number < 0)
                throw std::runtime_error("task failed");
            log.push_back(number);
            return true;
        }));
        as(tasks.back()).number = number;
        worker.AddTask(tasks.back());
    };
    for (int number : {1, 2, -1, 3})
        add(number);
    ASSERT_TRUE(worker.Start());
    ASSERT_TRUE(zotest::WaitUntil([&] { return handler->Log().find("f3") != std::string::npos; }));
    // A task added while the worker waits is found: a pulse that misses the worker only delays it.
    add(4);
    ASSERT_TRUE(zotest::WaitUntil([&] { return handler->Log().find("f4") != std::string::npos; }));
    EXPECT_EQ(handler->Log(), "a1 a2 a-1 a3 s1 f1 s2 f2 s-1 f-1 s3 f3 a4 s4 f4 ");
    EXPECT_EQ(handler->threads.at(4), worker.GetThreadId()) << "tasks start on the worker's thread";
    EXPECT_EQ(log, (std::vector<int>{1, 2, 3, 4})) << "the failing task did not stop the worker";
    EXPECT_TRUE(!tasks[2]->IsSuccessful() && tasks[3]->IsSuccessful());
    EXPECT_FALSE(tasks[0]->WaitUntilTerminate(0)) << "the worker's path leaves the done event alone";
    worker.SetStop();
    ASSERT_TRUE(worker.IsStopRequested() && worker.WaitUntilTerminate(30000)) << "SetStop wakes the waiting worker";
    EXPECT_TRUE(worker.IsSuccessful());
    worker.AddTask(tasks[0]);
    EXPECT_EQ(worker.GetCount(), 1u) << "nothing takes tasks after the stop";
    worker.WaitUntilIdle();
    ZoWorkerThread running;
    ASSERT_TRUE(running.Start()) << "and its destructor stops a running worker";
}

} // namespace
