#include "base/ZoAnimatedObject.h"
#include "base/ZoPerformanceCounter.h"
#include "base/ZoRTTI.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cfloat>
#include <cstdint>
#include <vector>

namespace {

std::atomic<int64_t> g_clockMs{1000};

int64_t clockTicks()
{
    return g_clockMs.load();
}

// A millisecond clock moved by hand.
const ZoPerformanceCounter& simulatedClock()
{
    static const ZoPerformanceCounter counter(&clockTicks, 1000);
    return counter;
}

// Records every frame and every clean-up.
class Fade : public ZoAnimatedObject
{
public:
    Fade() : ZoAnimatedObject(simulatedClock()) {}

    void Begin(int endless) { startAnimation(endless); }
    void RequestStop() { stopEndlessAnimation(); }

    std::vector<float> frames;
    int cleanups = 0;

protected:
    void continueAnimation(float progress) override { frames.push_back(progress); }
    void onCleanAfterAnimation() override { ++cleanups; }
};

TEST(ZoAnimatedObjectTest, FiniteAnimationReportsProgressThenEndsOnce)
{
    Fade fade;
    EXPECT_FLOAT_EQ(fade.GetAnimationLength(), 300.0f);
    fade.Begin(0);
    EXPECT_TRUE(fade.IsAnimationRunning());
    EXPECT_EQ(fade.ContinueAnimation(), 1);
    g_clockMs += 150;
    EXPECT_EQ(fade.ContinueAnimation(), 1);
    g_clockMs += 150;
    EXPECT_EQ(fade.ContinueAnimation(), 0);
    EXPECT_FALSE(fade.IsAnimationRunning());
    EXPECT_EQ(fade.frames, (std::vector<float>{0.0f, 0.5f, 1.0f}));
    EXPECT_EQ(fade.cleanups, 1);

    g_clockMs += 1000;
    EXPECT_EQ(fade.ContinueAnimation(), 0) << "the stopped timer keeps the animation at its end";
    EXPECT_EQ(fade.frames.back(), 1.0f);

    Fade late;
    late.Begin(0);
    g_clockMs += 5000;
    EXPECT_EQ(late.ContinueAnimation(), 0);
    EXPECT_EQ(late.frames, (std::vector<float>{1.0f})) << "a late poll gets exactly 1.0, never more";
    EXPECT_EQ(late.cleanups, 1);
}

TEST(ZoAnimatedObjectTest, EndlessAnimationPassesMillisecondsUntilStopped)
{
    Fade spinner;
    spinner.Begin(1);
    g_clockMs += 1234;
    EXPECT_EQ(spinner.ContinueAnimation(), 1);
    g_clockMs += 10000;
    EXPECT_EQ(spinner.ContinueAnimation(), 1) << "an endless animation does not end with its length";
    EXPECT_FALSE(spinner.IsEndlessAnimationStopped());
    spinner.RequestStop();
    EXPECT_TRUE(spinner.IsEndlessAnimationStopped());
    EXPECT_EQ(spinner.ContinueAnimation(), 0);
    EXPECT_EQ(spinner.frames, (std::vector<float>{1234.0f, 11234.0f, FLT_MAX}));
    EXPECT_EQ(spinner.cleanups, 1);
    EXPECT_FALSE(spinner.IsAnimationRunning());
}

TEST(ZoAnimatedObjectTest, ZeroLengthEndAndTerminateFinishAtOnce)
{
    Fade zero;
    zero.SetAnimationLength(0.0f);
    EXPECT_FALSE(zero.IsAnimated());
    zero.Begin(0);
    EXPECT_EQ(zero.ContinueAnimation(), 0);
    EXPECT_EQ(zero.frames, (std::vector<float>{1.0f}));
    EXPECT_EQ(zero.cleanups, 1);

    Fade ended;
    ended.Begin(0);
    ended.EndAnimation();
    EXPECT_EQ(ended.frames, (std::vector<float>{1.0f}));
    EXPECT_EQ(ended.cleanups, 1);

    Fade terminated;
    terminated.Begin(0);
    terminated.TerminateAnimation();
    EXPECT_FALSE(terminated.IsAnimationRunning());
    EXPECT_TRUE(terminated.frames.empty()) << "no final frame";
    EXPECT_EQ(terminated.cleanups, 1);
}

TEST(ZoAnimatedObjectTest, IsRegisteredWithTheTypeRegistry)
{
    EXPECT_EQ(ZoRTTI::Find(CString(u"ZoAnimatedObject")), &ZoAnimatedObject::RTTI);
    EXPECT_TRUE(Fade().IsKindOf(ZoAnimatedObject::RTTI));
}

} // namespace
