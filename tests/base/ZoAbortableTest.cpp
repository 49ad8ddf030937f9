#include "base/ZoAbortable.h"
#include "base/ZoArray.h"
#include "base/ZoEvent.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

TEST(ZoAbortableTest, FreshObjectIsNotAskedToStopAndNotRunning)
{
    ZoAbortable owning;
    EXPECT_FALSE(owning.GetTerminateEvent().IsSet());
    EXPECT_TRUE(owning.GetTerminatedEvent().IsSet());

    ZoEvent terminate(true), terminated(true);
    terminate.Set();
    terminated.Reset();
    const ZoAbortable borrowing(terminate, terminated);
    EXPECT_EQ(&borrowing.GetTerminateEvent(), &terminate);
    EXPECT_EQ(&borrowing.GetTerminatedEvent(), &terminated);
    EXPECT_FALSE(terminate.IsSet()) << "the constructor resets the terminate event";
    EXPECT_TRUE(terminated.IsSet()) << "and sets the terminated event";
}

TEST(ZoAbortableConcurrentTest, StopProtocol)
{
    ZoAbortable abortable;
    ZoEvent work(false);
    std::atomic<int> workDone{0};
    abortable.GetTerminatedEvent().Reset();
    std::thread operation([&] {
        // The terminate event at sc_uiTerminate, the terminated event at sc_uiTerminated, then the
        // operation's own events.
        ZoArray<ZoEvent, 0> stopEvents;
        stopEvents.Add(abortable.GetTerminateEvent());
        stopEvents.Add(abortable.GetTerminatedEvent());
        ZoArray<ZoEvent, 0> workEvents;
        workEvents.Add(work);
        workEvents.Add(abortable.GetTerminateEvent());
        while (!stopEvents[ZoAbortable::sc_uiTerminate].IsSet()) {
            if (ZoEvent::WaitForMultipleEvents(workEvents, false, INFINITE) == ZoEvent::eWaitSignaled &&
                !abortable.GetTerminateEvent().IsSet())
                ++workDone;
        }
        stopEvents[ZoAbortable::sc_uiTerminated].Set();
    });
    work.Set();
    abortable.GetTerminateEvent().Set();
    EXPECT_EQ(abortable.GetTerminatedEvent().Wait(INFINITE), ZoEvent::eWaitSignaled);
    operation.join();
    EXPECT_LE(workDone.load(), 1);
}

} // namespace
