#include "base/ZoArray.h"
#include "base/ZoEvent.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

namespace {

// An array element that borrows `event`'s handle, as ZoArray copies elements as raw bytes.
void addBorrowed(ZoArray<ZoEvent, 0>& events, const ZoEvent& event)
{
    events.Add(event);
}

TEST(ZoEventTest, ManualAndAutoResetSignals)
{
    ZoEvent manual(true);
    EXPECT_EQ(manual.Wait(0), ZoEvent::eWaitTimeout);
    EXPECT_FALSE(manual.IsSet());
    EXPECT_TRUE(manual.Set());
    EXPECT_EQ(manual.Wait(0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(manual.Wait(INFINITE), ZoEvent::eWaitSignaled);
    EXPECT_TRUE(manual.IsSet()) << "a manual-reset event stays set through waits";
    EXPECT_TRUE(manual.Reset());
    EXPECT_FALSE(manual.IsSet());

    ZoEvent automatic(false);
    EXPECT_TRUE(automatic.Set());
    EXPECT_TRUE(automatic.IsSet()) << "the test itself consumes the signal";
    EXPECT_FALSE(automatic.IsSet());
    EXPECT_TRUE(automatic.Set());
    EXPECT_EQ(ZoEvent::WaitForSingleEvent(automatic, 0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(ZoEvent::WaitForSingleEvent(automatic, 0), ZoEvent::eWaitTimeout);

    // A pulse with nobody waiting is lost, for both kinds.
    EXPECT_TRUE(manual.Pulse());
    EXPECT_FALSE(manual.IsSet());
    EXPECT_TRUE(automatic.Pulse());
    EXPECT_FALSE(automatic.IsSet());
    manual.Set();
    EXPECT_TRUE(manual.Pulse());
    EXPECT_FALSE(manual.IsSet()) << "a pulse leaves the event reset";
}

TEST(ZoEventTest, CopiesNameTheSameEvent)
{
    ZoEvent original(true);
    ZoEvent copy(original);
    EXPECT_NE(copy.GetHandle(), original.GetHandle());
    original.Set();
    EXPECT_TRUE(copy.IsSet());

    ZoEvent assigned(false);
    assigned = original;
    EXPECT_TRUE(assigned.IsSet()) << "assignment drops the auto-reset event and names the manual one";
    assigned.Reset();
    EXPECT_FALSE(original.IsSet());

    const HANDLE before = assigned.GetHandle();
    assigned = assigned;
    EXPECT_EQ(assigned.GetHandle(), before);
    assigned.Set();
    EXPECT_TRUE(original.IsSet());
}

TEST(ZoEventTest, ClosedHandleFailsAloneButSignalsInASet)
{
    ZoEvent live(false);
    ZoArray<ZoEvent, 0> events;
    addBorrowed(events, live);
    {
        ZoEvent closedSoon(true);
        addBorrowed(events, closedSoon);
    }
    // The multiple wait answers "signalled" for a set it cannot wait on; the single wait reports
    // the failure.
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, false, 0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, true, 0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(ZoEvent::WaitForSingleEvent(events[1], 0), ZoEvent::eWaitFailed);
    EXPECT_FALSE(live.IsSet()) << "the failed waits consumed nothing";

    ZoOS::SetLastErrorCode(0);
    EXPECT_FALSE(events[1].Set());
    EXPECT_NE(ZoOS::GetLastErrorCode(), 0u) << "a failure leaves the system's cause readable";
    EXPECT_TRUE(live.Set());
    EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u) << "every operation clears the last error first";

    const ZoArray<ZoEvent, 0> none;
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(none, false, 0), ZoEvent::eWaitSignaled);
}

TEST(ZoEventTest, WaitAnyAndWaitAll)
{
    ZoEvent first(false), second(false);
    ZoArray<ZoEvent, 0> events;
    addBorrowed(events, first);
    addBorrowed(events, second);

    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, false, 0), ZoEvent::eWaitTimeout);
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, false, 10), ZoEvent::eWaitTimeout);
    second.Set();
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, true, 0), ZoEvent::eWaitTimeout);
    EXPECT_TRUE(second.IsSet()) << "an unsatisfied wait for all consumes no signal";

    second.Set();
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, false, 0), ZoEvent::eWaitSignaled);
    EXPECT_FALSE(second.IsSet()) << "the satisfied wait for any consumed the auto-reset signal";

    first.Set();
    second.Set();
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, true, 0), ZoEvent::eWaitSignaled);
    EXPECT_FALSE(first.IsSet());
    EXPECT_FALSE(second.IsSet());
}

// Threads that each wait once for the event, through a copy of their own (copies name one event),
// and count the satisfied waits.
struct Waiters
{
    std::atomic<int> released{0};
    std::vector<std::thread> threads;
    Waiters(const ZoEvent& event, int count)
    {
        for (int i = 0; i < count; ++i)
            threads.emplace_back([this, copy = ZoEvent(event)] { released += copy.Wait(INFINITE) == ZoEvent::eWaitSignaled; });
    }
    ~Waiters() { Join(); }
    void Join()
    {
        for (std::thread& thread : threads)
            if (thread.joinable())
                thread.join();
    }
};

TEST(ZoEventConcurrentTest, SetReleasesEveryWaiterAutoResetOnePerSignalPulseOnlyThoseWaiting)
{
    ZoEvent manual(true);
    Waiters all(manual, 3);
    manual.Set();
    all.Join();
    EXPECT_EQ(all.released.load(), 3);

    ZoEvent turn(false);
    Waiters oneByOne(turn, 3);
    for (int signal = 1; signal <= 3; ++signal) {
        turn.Set();
        ASSERT_TRUE(zotest::WaitUntil([&] { return oneByOne.released.load() >= signal; }));
        EXPECT_EQ(oneByOne.released.load(), signal);
    }
    oneByOne.Join();
    EXPECT_FALSE(turn.IsSet());

    // A pulse reaches only threads already waiting: keep pulsing until every thread was caught
    // waiting once.
    ZoEvent pulse(true);
    Waiters pulsed(pulse, 4);
    ASSERT_TRUE(zotest::WaitUntil([&] {
        pulse.Pulse();
        return pulsed.released.load() == 4;
    }));
    EXPECT_FALSE(pulse.IsSet());
}

TEST(ZoEventConcurrentTest, WaitForAllNeedsEverySignalAtOnce)
{
    ZoEvent first(false), second(false);
    ZoArray<ZoEvent, 0> events;
    addBorrowed(events, first);
    addBorrowed(events, second);
    std::atomic<bool> done{false};
    std::thread waiter([&] {
        EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, true, INFINITE), ZoEvent::eWaitSignaled);
        done = true;
    });
    first.Set();
    second.Set();
    waiter.join();
    EXPECT_TRUE(done.load());
    EXPECT_FALSE(first.IsSet());
    EXPECT_FALSE(second.IsSet());
}

} // namespace
