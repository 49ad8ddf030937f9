#include "base/ZoPerformanceCounter.h"
#include "base/ZoTimer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>

namespace {

// A clock the test moves by hand. Tick 0 would read as "not set" in the timer, so it starts later.
std::atomic<int64_t> g_fakeTicks{1000000};

int64_t fakeTicks()
{
    return g_fakeTicks.load();
}

void advance(int64_t ticks)
{
    g_fakeTicks += ticks;
}

// A counter over the fake clock at `frequency` ticks a second: a million for microseconds, a
// billion for nanoseconds, a thousand like a machine without a performance counter.
template <int64_t frequency>
const ZoPerformanceCounter& counter()
{
    static const ZoPerformanceCounter instance(&fakeTicks, frequency);
    return instance;
}

TEST(ZoTimerTest, ProcessCounterIsMonotonic)
{
    ZoPerformanceCounter& process = ZoPerformanceCounter::GetInstance();
#if !defined(_WIN32)
    EXPECT_EQ(process.GetFrequency(), 1000000000);
#endif
    EXPECT_GT(process.GetFrequency(), 0);
    int64_t previous = process.GetTicks();
    for (int i = 0; i < 1000; ++i) {
        const int64_t now = process.GetTicks();
        ASSERT_GE(now, previous);
        previous = now;
    }
}

TEST(ZoTimerTest, ElapsedTimeStopAndResolution)
{
    ZoTimer timer(counter<1000000>());
    timer.Start();
    advance(1500000);
    EXPECT_EQ(timer.GetElapsedTime(), 1500);
    timer.SetResolution(ZoTimer::eSeconds);
    EXPECT_EQ(timer.GetElapsedTime(), 1) << "whole seconds, truncated";
    timer.SetResolution(ZoTimer::eMilliseconds);
    timer.Stop();
    advance(700000);
    EXPECT_EQ(timer.GetElapsedTime(), 1500) << "a stopped timer stands still";

    // Nanosecond results over hours of nanosecond ticks: the intermediate product must not overflow.
    ZoTimer longRun(counter<1000000000>());
    longRun.SetResolution(ZoTimer::eNanoseconds);
    longRun.Start();
    advance(int64_t(3600) * 1000000000);
    EXPECT_EQ(longRun.GetElapsedTime(), int64_t(3600) * 1000000000);

    ZoTimer millisecondTimer(counter<1000>());
    millisecondTimer.Start();
    advance(42);
    millisecondTimer.SetResolution(ZoTimer::eMicroseconds);
    EXPECT_EQ(millisecondTimer.GetElapsedTime(), 42000) << "whole milliseconds only";
}

TEST(ZoTimerTest, BreakAndResumeCutTheBreakOut)
{
    ZoTimer timer(counter<1000000>());
    timer.Start();
    advance(100000);
    timer.Break();
    advance(250000);
    EXPECT_EQ(timer.GetElapsedTime(), 100);
    advance(50000);
    EXPECT_EQ(timer.GetElapsedTime(), 100) << "a break without resume reports the same time on every call";
    timer.Resume();
    advance(30000);
    EXPECT_EQ(timer.GetElapsedTime(), 130);

    timer.StartAndBreak();
    advance(80000);
    EXPECT_EQ(timer.GetElapsedTime(), 0);
    timer.Resume();
    advance(20000);
    EXPECT_EQ(timer.GetElapsedTime(), 20);
    timer.Resume();
    EXPECT_EQ(timer.GetElapsedTime(), 20) << "resume without a break changes nothing";

    timer.Break();
    advance(10000);
    timer.Stop();
    EXPECT_EQ(timer.GetElapsedTime(), 30) << "Stop ends the break and measures to now";
}

TEST(ZoTimerTest, SubtractMovesTheStartBack)
{
    ZoTimer timer(counter<1000000>());
    timer.Start();
    advance(500000);
    timer.Subtract(120);
    EXPECT_EQ(timer.GetElapsedTime(), 620) << "start -= frequency x units / resolution";
    timer.SetResolution(ZoTimer::eSeconds);
    timer.Subtract(1);
    timer.SetResolution(ZoTimer::eMicroseconds);
    EXPECT_EQ(timer.GetElapsedTime(), 1620000);

    timer.Reset();
    timer.Start();
    timer.SetResolution(ZoTimer::eMilliseconds);
    advance(2999);
    EXPECT_EQ(timer.GetElapsedTime(), 2) << "truncated toward zero";
    timer.Subtract(-3);
    EXPECT_EQ(timer.GetElapsedTime(), 0) << "-1 microsecond truncates to 0 milliseconds, not -1";
}

TEST(ZoTimerTest, PauseIntervalFreezesDuringABreak)
{
    ZoTimer timer(counter<1000000>());
    EXPECT_FALSE(timer.IsPause()) << "no interval started";
    timer.Start();
    timer.StartPause(500);
    EXPECT_TRUE(timer.IsPause());
    advance(499999);
    EXPECT_TRUE(timer.IsPause());
    timer.Break();
    advance(1000000);
    EXPECT_TRUE(timer.IsPause()) << "on a break the answer is frozen";
    timer.Resume();
    EXPECT_TRUE(timer.IsPause()) << "the break was cut out of the interval";
    advance(1);
    EXPECT_FALSE(timer.IsPause());

    timer.StartPause(500);
    timer.Stop();
    EXPECT_FALSE(timer.IsPause()) << "a stopped timer has no pause";

    ZoTimer coarse(counter<1000>());
    coarse.Start();
    coarse.StartPause(10);
    advance(9);
    EXPECT_TRUE(coarse.IsPause());
    advance(1);
    EXPECT_FALSE(coarse.IsPause());
}

} // namespace
