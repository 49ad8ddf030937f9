#include "base/ZoEvent.h"
#include "base/ZoMachineCapabilities.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "base/ZoThreadPool.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <stdexcept>
#include <thread>
#include <vector>

namespace {

const unsigned int sc_uiLongWaitMs = 60000;

// Counts how many tasks run at once, and the most that ever did.
struct Concurrency
{
    std::atomic<int> running{0};
    std::atomic<int> most{0};

    void Enter()
    {
        const int now = ++running;
        int seen = most.load();
        while (now > seen && !most.compare_exchange_weak(seen, now)) {
        }
    }
    void Leave() { --running; }
};

// A task whose work is a function; it notes the worker thread it ran on.
class FunctionTask : public ZoTask
{
public:
    explicit FunctionTask(std::function<bool()> work, Concurrency* concurrency = nullptr)
        : m_work(std::move(work)), m_concurrency(concurrency)
    {
    }

    std::atomic<uint32_t> workerId{0};

protected:
    CheckedBool run() override
    {
        workerId = ZoOS::GetCurrentThreadIdentifier();
        if (m_concurrency != nullptr)
            m_concurrency->Enter();
        const bool result = m_work();
        if (m_concurrency != nullptr)
            m_concurrency->Leave();
        return result;
    }

private:
    std::function<bool()> m_work;
    Concurrency* m_concurrency;
};

ZoSmartPointer<ZoTask> makeTask(std::function<bool()> work, Concurrency* concurrency = nullptr)
{
    return ZoSmartPointer<ZoTask>(new FunctionTask(std::move(work), concurrency));
}

uint32_t workerOf(const ZoSmartPointer<ZoTask>& task)
{
    return static_cast<FunctionTask*>(task.Get())->workerId.load();
}

bool finished(const ZoSmartPointer<ZoTask>& task)
{
    return task->WaitUntilTerminate(sc_uiLongWaitMs);
}

TEST(ZoThreadPoolConcurrentTest, RunsTasksAndReportsTheirOutcome)
{
    const bool fresh = !ZoThreadPool::HasInstance();
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    EXPECT_TRUE(ZoThreadPool::HasInstance());
    EXPECT_TRUE(pool.WaitUntilIdle(0)) << "the workers made at construction have all offered themselves";
    EXPECT_EQ(pool.GetWorkerLimit(), ZoMachineCapabilities::GetInstance().GetCPUCount());
    if (fresh) {
        EXPECT_EQ(pool.GetWorkerCount(), pool.GetWorkerLimit()) << "a new pool starts as many workers as its limit";
    }

    ZoSmartPointer<ZoTask> none;
    EXPECT_FALSE(pool.AddTask(none));

    ZoSmartPointer<ZoTask> good = makeTask([] { return true; });
    ZoSmartPointer<ZoTask> bad = makeTask([] { return false; });
    ZoSmartPointer<ZoTask> throwing = makeTask([]() -> bool { throw std::runtime_error("task failed"); });
    good->onAfterRun();
    ASSERT_TRUE(pool.AddTask(good));
    ASSERT_TRUE(pool.AddTask(bad, ZoThreadPool::eTaskPriorityHigh));
    ASSERT_TRUE(pool.AddTask(throwing, ZoThreadPool::eTaskPriorityLow));
    ASSERT_TRUE(finished(good)) << "the done event was reset by AddTask and set after the run";
    ASSERT_TRUE(finished(bad));
    ASSERT_TRUE(finished(throwing));
    EXPECT_TRUE(good->IsSuccessful());
    EXPECT_FALSE(bad->IsSuccessful());
    EXPECT_FALSE(throwing->IsSuccessful());
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    EXPECT_EQ(pool.GetIdleWorkerCount(), pool.GetWorkerCount());
}

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
                held.push_back(makeTask([&] {
                    ++started;
                    return release.Wait(INFINITE) == ZoEvent::eWaitSignaled;
                }));
                ASSERT_TRUE(pool.AddTask(held.back()));
            }
            for (const ZoSmartPointer<ZoTask>& task : held)
                ASSERT_TRUE(finished(task));
        };
        std::thread first(submitter), second(submitter);
        EXPECT_TRUE(zotest::WaitUntil([&] { return started.load() == 2 * limit; }));
        release.Set();
        first.join();
        second.join();
        ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    }
    ASSERT_GE(pool.GetWorkerCount(), 2 * limit);

    // `limit` blockers, each released by its own gate, fill this submitter's share.
    Concurrency concurrency;
    std::vector<std::unique_ptr<ZoEvent>> gates;
    std::vector<ZoSmartPointer<ZoTask>> blockers;
    for (uint32_t i = 0; i < limit; ++i) {
        gates.emplace_back(new ZoEvent(true));
        ZoEvent* gate = gates.back().get();
        blockers.push_back(makeTask([gate] { return gate->Wait(INFINITE) == ZoEvent::eWaitSignaled; }, &concurrency));
        ASSERT_TRUE(pool.AddTask(blockers.back()));
    }
    ASSERT_TRUE(zotest::WaitUntil([&] { return concurrency.running.load() == int(limit); }));

    // The rest waits although idle workers exist, and no worker is started for it: priority order,
    // equal priorities by arrival.
    const uint32_t workersAtTheLimit = pool.GetWorkerCount();
    std::mutex orderLock;
    std::vector<int> order;
    const int priorities[] = {1, 3, 2, 3, 1, 2, 0, 3};
    std::vector<ZoSmartPointer<ZoTask>> queued;
    for (int i = 0; i < 8; ++i) {
        queued.push_back(makeTask(
            [&, i] {
                std::lock_guard<std::mutex> guard(orderLock);
                order.push_back(i);
                return true;
            },
            &concurrency));
        ASSERT_TRUE(pool.AddTask(queued.back(), static_cast<ZoThreadPool::ETaskPriority>(priorities[i])));
    }
    EXPECT_GE(pool.GetIdleWorkerCount(), limit);
    EXPECT_EQ(pool.GetWorkerCount(), workersAtTheLimit);
    EXPECT_EQ(concurrency.running.load(), int(limit));
    for (const ZoSmartPointer<ZoTask>& task : queued)
        EXPECT_FALSE(task->WaitUntilTerminate(0)) << "nothing beyond the limit ran";

    // One blocker ends: its worker drains the whole queue, one task after another.
    gates[0]->Set();
    for (const ZoSmartPointer<ZoTask>& task : queued)
        ASSERT_TRUE(finished(task));
    {
        std::lock_guard<std::mutex> guard(orderLock);
        EXPECT_EQ(order, (std::vector<int>{1, 3, 7, 2, 5, 0, 4, 6}));
    }
    for (const ZoSmartPointer<ZoTask>& task : queued)
        EXPECT_EQ(workerOf(task), workerOf(blockers[0])) << "the submitter's next task stays on the worker that finished one";

    for (const std::unique_ptr<ZoEvent>& gate : gates)
        gate->Set();
    for (const ZoSmartPointer<ZoTask>& task : blockers)
        ASSERT_TRUE(finished(task));
    EXPECT_EQ(concurrency.most.load(), int(limit));
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
        busy.push_back(makeTask([&] {
            ++blocked;
            return release.Wait(INFINITE) == ZoEvent::eWaitSignaled;
        }));
        ASSERT_TRUE(pool.AddTask(busy.back(), ZoThreadPool::eTaskPriorityHighest));
    }
    ASSERT_TRUE(zotest::WaitUntil([&] { return blocked.load() == limit; }));

    // The second submitter is served at once by a free or a new worker, however busy the first is.
    std::atomic<int> othersDone{0};
    std::thread other([&] {
        std::vector<ZoSmartPointer<ZoTask>> mine;
        for (int i = 0; i < 20; ++i) {
            mine.push_back(makeTask([&] {
                ++othersDone;
                return true;
            }));
            ASSERT_TRUE(pool.AddTask(mine.back(), ZoThreadPool::eTaskPriorityLowest));
        }
        for (const ZoSmartPointer<ZoTask>& task : mine)
            ASSERT_TRUE(finished(task));
    });
    other.join();
    EXPECT_EQ(othersDone.load(), 20);
    EXPECT_EQ(blocked.load(), limit) << "the first submitter's queued tasks still wait for its own workers";

    release.Set();
    for (const ZoSmartPointer<ZoTask>& task : busy)
        ASSERT_TRUE(finished(task));
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
}

TEST(ZoThreadPoolConcurrentTest, ShutdownWaitsForIdleAndLeavesThePoolUsable)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));

    ZoEvent release(true);
    ZoSmartPointer<ZoTask> blocker = makeTask([&] { return release.Wait(INFINITE) == ZoEvent::eWaitSignaled; });
    ASSERT_TRUE(pool.AddTask(blocker));
    const uint32_t workers = pool.GetWorkerCount();
    EXPECT_FALSE(pool.ShutdownAndWait(20)) << "a busy pool does not become idle in time";
    EXPECT_EQ(pool.GetWorkerCount(), workers) << "and keeps its workers";
    ZoSmartPointer<ZoTask> meanwhile = makeTask([] { return true; });
    ASSERT_TRUE(pool.AddTask(meanwhile));
    ASSERT_TRUE(finished(meanwhile));
    release.Set();
    ASSERT_TRUE(finished(blocker));

    ASSERT_TRUE(pool.ShutdownAndWait(sc_uiLongWaitMs));
    EXPECT_EQ(pool.GetWorkerCount(), 0u);
    EXPECT_EQ(pool.GetIdleWorkerCount(), 0u);
    EXPECT_TRUE(pool.ShutdownAndWait(0)) << "an empty pool shuts down at once";

    ZoSmartPointer<ZoTask> afterwards = makeTask([] { return true; });
    ASSERT_TRUE(pool.AddTask(afterwards)) << "the next task starts a worker again";
    ASSERT_TRUE(finished(afterwards));
    EXPECT_TRUE(afterwards->IsSuccessful());
    EXPECT_EQ(pool.GetWorkerCount(), 1u);
    EXPECT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
}

TEST(ZoThreadPoolConcurrentTest, ShutdownWhileFourSubmittersKeepAddingEndsCleanly)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    const int sc_submitters = 4;
    const int sc_mostTasks = 20000;

    struct Added
    {
        ZoSmartPointer<ZoTask> task;
        std::shared_ptr<std::atomic<int>> runs;
        bool accepted;
    };
    std::vector<std::vector<Added>> added(sc_submitters);
    std::atomic<bool> stop{false};
    std::atomic<int> ran{0};
    std::vector<std::thread> submitters;
    for (int s = 0; s < sc_submitters; ++s) {
        submitters.emplace_back([&, s] {
            added[s].reserve(sc_mostTasks);
            while (!stop && added[s].size() < static_cast<size_t>(sc_mostTasks)) {
                auto runs = std::make_shared<std::atomic<int>>(0);
                ZoSmartPointer<ZoTask> task = makeTask([runs, &ran] {
                    ++*runs;
                    ++ran;
                    return true;
                });
                const bool accepted = pool.AddTask(task);
                added[s].push_back({task, runs, accepted});
            }
        });
    }
    ASSERT_TRUE(zotest::WaitUntil([&] { return ran.load() > 200; }));
    // Tiny tasks leave the pool idle often enough for the shutdown to find a moment.
    EXPECT_TRUE(pool.ShutdownAndWait(sc_uiLongWaitMs));
    const int before = ran.load();
    ASSERT_TRUE(zotest::WaitUntil([&] { return ran.load() > before + 200; }))
        << "the submitters' next tasks start workers again";
    stop = true;
    for (std::thread& submitter : submitters)
        submitter.join();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));

    int wrong = 0;
    for (const std::vector<Added>& list : added)
        for (const Added& entry : list)
            wrong += entry.accepted ? entry.runs->load() != 1 || !entry.task->WaitUntilTerminate(0) : entry.runs->load() > 1;
    EXPECT_EQ(wrong, 0) << "accepted tasks not run exactly once, or refused ones run twice";
    EXPECT_EQ(pool.GetIdleWorkerCount(), pool.GetWorkerCount());
}

TEST(ZoThreadPoolConcurrentTest, StressEveryTaskRunsExactlyOnce)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));
    const int sc_submitters = 4;
    const int sc_tasksPerSubmitter = 10000;
    const unsigned int seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");

    std::vector<std::atomic<int>> runs(sc_submitters * sc_tasksPerSubmitter);
    std::vector<std::vector<ZoSmartPointer<ZoTask>>> tasks(sc_submitters);
    std::atomic<int> refused{0};
    std::vector<std::thread> submitters;
    for (int s = 0; s < sc_submitters; ++s) {
        submitters.emplace_back([&, s] {
            std::mt19937 random(seed + s);
            std::uniform_int_distribution<int> priority(-5, 5);
            tasks[s].reserve(sc_tasksPerSubmitter);
            for (int i = 0; i < sc_tasksPerSubmitter; ++i) {
                std::atomic<int>* counter = &runs[s * sc_tasksPerSubmitter + i];
                tasks[s].push_back(makeTask([counter] {
                    ++*counter;
                    return true;
                }));
                if (!pool.AddTask(tasks[s].back(), static_cast<ZoThreadPool::ETaskPriority>(priority(random))))
                    ++refused;
            }
        });
    }
    for (std::thread& submitter : submitters)
        submitter.join();
    ASSERT_TRUE(pool.WaitUntilIdle(sc_uiLongWaitMs));

    EXPECT_EQ(refused.load(), 0);
    int wrong = 0;
    for (const std::atomic<int>& count : runs)
        wrong += count.load() != 1;
    EXPECT_EQ(wrong, 0) << "tasks not run exactly once";
    for (const std::vector<ZoSmartPointer<ZoTask>>& list : tasks)
        for (const ZoSmartPointer<ZoTask>& task : list)
            ASSERT_TRUE(task->IsSuccessful() && task->WaitUntilTerminate(0));
    EXPECT_EQ(pool.GetIdleWorkerCount(), pool.GetWorkerCount());
}

} // namespace
