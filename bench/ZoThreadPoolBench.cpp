// ZoThreadPool against oneTBB's task_group and std::async: 100,000 small tasks (a few arithmetic
// steps each) from one submitting thread and from four, counted as tasks per second from the first
// submission until every task has run.
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"
#include "base/ZoThreadPool.h"

#include <benchmark/benchmark.h>
#include <tbb/task_group.h>

#include <atomic>
#include <cstdint>
#include <deque>
#include <future>
#include <thread>
#include <vector>

namespace {

const int sc_iTasks = 100000;

std::atomic<uint64_t> s_sum{0};

// The work of one task: a short mix of the index, added to a shared total.
void smallWork(uint32_t index)
{
    uint32_t x = index;
    for (int i = 0; i < 16; ++i)
        x = x * 1664525u + 1013904223u;
    s_sum.fetch_add(x, std::memory_order_relaxed);
}

class SmallTask : public ZoTask
{
public:
    explicit SmallTask(uint32_t index) : m_index(index) {}

protected:
    CheckedBool run() override
    {
        smallWork(m_index);
        return true;
    }

private:
    uint32_t m_index;
};

// Runs `submit(first, count)` on `submitters` threads (on this thread when there is one).
template <class Submit>
void fromSubmitters(int submitters, Submit submit)
{
    const int share = sc_iTasks / submitters;
    if (submitters == 1) {
        submit(0, share);
        return;
    }
    std::vector<std::thread> threads;
    for (int s = 0; s < submitters; ++s)
        threads.emplace_back([&submit, s, share] { submit(s * share, share); });
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace

static void ZoThreadPoolSmallTasks(benchmark::State& state)
{
    ZoThreadPool& pool = ZoThreadPool::GetInstance();
    for (auto _ : state) {
        fromSubmitters(static_cast<int>(state.range(0)), [&pool](int first, int count) {
            for (int i = 0; i < count; ++i) {
                ZoSmartPointer<ZoTask> task(new SmallTask(static_cast<uint32_t>(first + i)));
                if (!pool.AddTask(task))
                    std::abort();
            }
        });
        pool.WaitUntilIdle(INFINITE);
    }
    state.SetItemsProcessed(state.iterations() * sc_iTasks);
}
BENCHMARK(ZoThreadPoolSmallTasks)->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond)->UseRealTime();

static void TbbTaskGroupSmallTasks(benchmark::State& state)
{
    for (auto _ : state) {
        fromSubmitters(static_cast<int>(state.range(0)), [](int first, int count) {
            tbb::task_group group;
            for (int i = 0; i < count; ++i)
                group.run([index = static_cast<uint32_t>(first + i)] { smallWork(index); });
            group.wait();
        });
    }
    state.SetItemsProcessed(state.iterations() * sc_iTasks);
}
BENCHMARK(TbbTaskGroupSmallTasks)->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond)->UseRealTime();

// std::async with the async policy starts a thread per task; a submitter keeps at most 256 futures
// in flight so that finished threads are joined as it goes.
static void StdAsyncSmallTasks(benchmark::State& state)
{
    for (auto _ : state) {
        fromSubmitters(static_cast<int>(state.range(0)), [](int first, int count) {
            std::deque<std::future<void>> inFlight;
            for (int i = 0; i < count; ++i) {
                if (inFlight.size() == 256) {
                    inFlight.front().get();
                    inFlight.pop_front();
                }
                inFlight.push_back(std::async(std::launch::async, smallWork, static_cast<uint32_t>(first + i)));
            }
            for (std::future<void>& future : inFlight)
                future.get();
        });
    }
    state.SetItemsProcessed(state.iterations() * sc_iTasks);
}
BENCHMARK(StdAsyncSmallTasks)->Arg(1)->Arg(4)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(1);
