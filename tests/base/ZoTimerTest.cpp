// The timer and the classes that measure with it (time tracker, animated object), all driven by a
// clock the test moves by hand.
#include "base/ZoAnimatedObject.h"
#include "base/ZoExceptionPreconditionViolation.h"
#include "base/ZoPerformanceCounter.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoTimeTracker.h"
#include "base/ZoTimer.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cfloat>
#include <cstdint>
#include <vector>

namespace {

// Tick 0 would read as "not set" in the timer, so the clock starts later.
std::atomic<int64_t> g_ticks{1000000};

int64_t fakeTicks() { return g_ticks.load(); }

void advance(int64_t ticks) { g_ticks += ticks; }

// A counter over the fake clock at `frequency` ticks a second: a million for microseconds, a
// billion for nanoseconds, a thousand like a machine without a performance counter.
template <int64_t frequency>
const ZoPerformanceCounter& counter()
{
    static const ZoPerformanceCounter instance(&fakeTicks, frequency);
    return instance;
}

TEST(ZoTimerTest, ElapsedStopBreakResumeAndResolution)
{
    ZoTimer timer(counter<1000000>());
    EXPECT_EQ(timer.GetResolution(), ZoTimer::eMilliseconds);
    timer.Start();
    advance(1500000);
    EXPECT_EQ(timer.GetElapsedTime(), 1500);
    timer.SetResolution(ZoTimer::eSeconds);
    EXPECT_EQ(timer.GetElapsedTime(), 1) << "whole seconds, truncated";
    timer.SetResolution(ZoTimer::eMilliseconds);
    timer.Stop();
    advance(700000);
    EXPECT_EQ(timer.GetElapsedTime(), 1500) << "a stopped timer stands still";
    timer.Start();
    advance(100000);
    timer.Break();
    advance(250000);
    EXPECT_EQ(timer.GetElapsedTime(), 100) << "a break freezes the measurement";
    timer.Resume();
    advance(30000);
    EXPECT_EQ(timer.GetElapsedTime(), 130) << "and Resume cuts the break out";
    timer.StartAndBreak();
    advance(80000);
    EXPECT_EQ(timer.GetElapsedTime(), 0);
    timer.Resume();
    advance(20000);
    timer.Resume();
    EXPECT_EQ(timer.GetElapsedTime(), 20) << "resume without a break changes nothing";
    timer.Break();
    advance(10000);
    timer.Stop();
    EXPECT_EQ(timer.GetElapsedTime(), 30) << "Stop ends the break and measures to now";
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

TEST(ZoTimerTest, SubtractMovesTheStartBackAndPausesFreezeInABreak)
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
    // A pause interval freezes during a break.
    timer.Reset();
    EXPECT_FALSE(timer.IsPause()) << "no interval started";
    timer.Start();
    timer.StartPause(500);
    advance(499999);
    EXPECT_TRUE(timer.IsPause());
    timer.Break();
    advance(1000000);
    EXPECT_TRUE(timer.IsPause()) << "on a break the answer is frozen";
    timer.Resume();
    EXPECT_TRUE(timer.IsPause()) << "the break was cut out of the interval";
    advance(1);
    EXPECT_FALSE(timer.IsPause()) << "one tick past the interval";
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

TEST(ZoTimeTrackerTest, NestedPhasesWriteIndentedStartAndStopLines)
{
    ZoStreamWriteASCIIString text;
    ZoTimeTracker tracker(text, counter<1000000>());
    tracker.Start(u"load");
    advance(250);
    {
        ZoTimeTracker::Phase parse(tracker, u"parse");
        EXPECT_EQ(tracker.GetDepth(), 2u);
        advance(12345);
    }
    tracker.Start(u"check");
    advance(1);
    EXPECT_DOUBLE_EQ(tracker.Stop(), 0.001);
    advance(7404);
    EXPECT_DOUBLE_EQ(tracker.Stop(), 20.0);
    EXPECT_EQ(tracker.GetDepth(), 0u);
    EXPECT_EQ(text.GetText(), CString(u"start load\n"
                                      u"  start parse\n"
                                      u"  stop parse: 12.345 ms\n"
                                      u"  start check\n"
                                      u"  stop check: 0.001 ms\n"
                                      u"stop load: 20.000 ms\n"));
    zotest::ExpectThrowSite<ZoExceptionPreconditionViolation>([&] { tracker.Stop(); }, "..\\base\\ZoTimeTracker.cpp",
                                                              "ZoTimeTracker", "Stop", 24);
}

// Records every frame and every clean-up; runs on the millisecond fake clock.
class Fade : public ZoAnimatedObject
{
public:
    Fade() : ZoAnimatedObject(counter<1000>()) {}
    void Begin(int endless) { startAnimation(endless); }
    void RequestStop() { stopEndlessAnimation(); }
    std::vector<float> frames;
    int cleanups = 0;

protected:
    void continueAnimation(float progress) override { frames.push_back(progress); }
    void onCleanAfterAnimation() override { ++cleanups; }
};

TEST(ZoAnimatedObjectTest, FiniteEndlessZeroLengthEndedAndTerminatedAnimations)
{
    Fade fade;
    fade.Begin(0);
    EXPECT_TRUE(fade.IsAnimationRunning());
    EXPECT_EQ(fade.ContinueAnimation(), 1);
    advance(150);
    EXPECT_EQ(fade.ContinueAnimation(), 1);
    advance(150);
    EXPECT_EQ(fade.ContinueAnimation(), 0);
    EXPECT_FALSE(fade.IsAnimationRunning());
    EXPECT_EQ(fade.cleanups, 1);
    advance(1000);
    EXPECT_EQ(fade.ContinueAnimation(), 0) << "the stopped timer keeps the animation at its end";
    EXPECT_EQ(fade.frames, (std::vector<float>{0.0f, 0.5f, 1.0f, 1.0f}));
    Fade late;
    late.Begin(0);
    advance(5000);
    EXPECT_EQ(late.ContinueAnimation(), 0);
    EXPECT_EQ(late.frames, (std::vector<float>{1.0f})) << "a late poll gets exactly 1.0, never more";
    // An endless animation runs past its length until asked to stop.
    Fade spinner;
    spinner.Begin(1);
    advance(1234);
    EXPECT_EQ(spinner.ContinueAnimation(), 1);
    advance(10000);
    EXPECT_EQ(spinner.ContinueAnimation(), 1) << "an endless animation does not end with its length";
    EXPECT_FALSE(spinner.IsEndlessAnimationStopped());
    spinner.RequestStop();
    EXPECT_TRUE(spinner.IsEndlessAnimationStopped() && spinner.ContinueAnimation() == 0);
    EXPECT_EQ(spinner.frames, (std::vector<float>{1234.0f, 11234.0f, FLT_MAX}));
    Fade zero, ended, terminated;
    zero.SetAnimationLength(0.0f);
    EXPECT_FALSE(zero.IsAnimated());
    zero.Begin(0);
    EXPECT_EQ(zero.ContinueAnimation(), 0);
    ended.Begin(0);
    ended.EndAnimation();
    terminated.Begin(0);
    terminated.TerminateAnimation();
    EXPECT_FALSE(terminated.IsAnimationRunning());
    for (const Fade* each : {&late, &spinner, &zero, &ended, &terminated})
        EXPECT_EQ(each->cleanups, 1) << "every animation cleans up once";
    EXPECT_TRUE(zero.frames == late.frames && ended.frames == late.frames);
    EXPECT_TRUE(terminated.frames.empty()) << "no final frame";
}

} // namespace
