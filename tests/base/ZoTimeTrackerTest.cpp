#include "base/ZoExceptionPreconditionViolation.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoTimeTracker.h"

#include <gtest/gtest.h>

namespace {

int64_t g_ticks = 0;

int64_t ticks()
{
    return g_ticks;
}

TEST(ZoTimeTrackerTest, NestedPhasesWriteIndentedStartAndStopLines)
{
    // A microsecond clock moved by hand.
    const ZoPerformanceCounter clock(&ticks, 1000000);
    ZoStreamWriteASCIIString text;
    ZoTimeTracker tracker(text, clock);
    g_ticks = 1000;
    tracker.Start(u"load");
    g_ticks += 250;
    {
        ZoTimeTracker::Phase parse(tracker, u"parse");
        EXPECT_EQ(tracker.GetDepth(), 2u);
        g_ticks += 12345;
    }
    tracker.Start(u"check");
    g_ticks += 1;
    EXPECT_DOUBLE_EQ(tracker.Stop(), 0.001);
    g_ticks += 7404;
    EXPECT_DOUBLE_EQ(tracker.Stop(), 20.0);
    EXPECT_EQ(tracker.GetDepth(), 0u);
    EXPECT_EQ(text.GetText(), CString(u"start load\n"
                                      u"  start parse\n"
                                      u"  stop parse: 12.345 ms\n"
                                      u"  start check\n"
                                      u"  stop check: 0.001 ms\n"
                                      u"stop load: 20.000 ms\n"));

    try {
        tracker.Stop();
        ADD_FAILURE() << "a stop without a start";
    } catch (const ZoExceptionPreconditionViolation& e) {
        EXPECT_EQ(e.GetThrowingMethodName(), CString(u"Stop"));
    }
}

} // namespace
