// The synchronisation primitives: events, the abortable's event pair, critical sections.
#include "base/ZoAbortable.h"
#include "base/ZoArray.h"
#include "base/ZoCriticalSection.h"
#include "base/ZoCriticalSectionAuto.h"
#include "base/ZoEvent.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(ZoEventTest, ManualAutoResetPulseAndCopies)
{
    ZoEvent manual(true), automatic(false);
    EXPECT_EQ(manual.Wait(0), ZoEvent::eWaitTimeout);
    EXPECT_TRUE(manual.Set() && manual.Wait(INFINITE) == ZoEvent::eWaitSignaled);
    EXPECT_TRUE(manual.IsSet()) << "a manual-reset event stays set through waits";
    EXPECT_TRUE(manual.Reset() && !manual.IsSet());
    EXPECT_TRUE(automatic.Set() && automatic.IsSet() && !automatic.IsSet()) << "the test itself consumes the signal";
    EXPECT_TRUE(automatic.Set());
    EXPECT_EQ(ZoEvent::WaitForSingleEvent(automatic, 0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(ZoEvent::WaitForSingleEvent(automatic, 0), ZoEvent::eWaitTimeout);
    // A pulse with nobody waiting is lost, for both kinds, and leaves the event reset.
    EXPECT_TRUE(automatic.Pulse() && !automatic.IsSet());
    EXPECT_TRUE(manual.Set() && manual.Pulse() && !manual.IsSet());
    // Copies and assignments name one event.
    ZoEvent original(true), copy(original);
    original.Set();
    EXPECT_TRUE(copy.GetHandle() != original.GetHandle() && copy.IsSet());
    ZoEvent assigned(false);
    assigned = original;
    assigned.Reset();
    EXPECT_FALSE(original.IsSet()) << "assignment drops the auto-reset event and names the manual one";
    const HANDLE before = assigned.GetHandle();
    assigned = assigned;
    assigned.Set();
    EXPECT_TRUE(assigned.GetHandle() == before && original.IsSet());
}

// Every operation clears the last error first, so that a success never shows an earlier failure;
// a failure leaves the system's cause readable.
TEST(ZoEventTest, ClosedHandleFailsAloneButSignalsInASetAndErrorsAreFresh)
{
    ZoEvent live(false);
    ZoArray<ZoEvent, 0> events;
    events.Add(live); // the array's copy borrows the handle: ZoArray copies elements as raw bytes
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, false, 10), ZoEvent::eWaitTimeout);
    {
        ZoEvent closedSoon(true);
        events.Add(closedSoon);
    }
    // The multiple wait answers "signalled" for a set it cannot wait on; the single wait reports
    // the failure.
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, false, 0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(events, true, 0), ZoEvent::eWaitSignaled);
    EXPECT_EQ(ZoEvent::WaitForSingleEvent(events[1], 0), ZoEvent::eWaitFailed);
    EXPECT_FALSE(live.IsSet()) << "the failed waits consumed nothing";
    ZoOS::SetLastErrorCode(0);
    EXPECT_TRUE(!events[1].Set() && ZoOS::GetLastErrorCode() != 0);
    EXPECT_EQ(ZoEvent::WaitForMultipleEvents(ZoArray<ZoEvent, 0>(), false, 0), ZoEvent::eWaitSignaled);
    ZoOS::SetLastErrorCode(5);
    EXPECT_TRUE(!live.IsSet() && ZoOS::GetLastErrorCode() == 0) << "every operation clears the last error first";
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

TEST(ZoAbortableTest, OwnedEventsStartIdleBorrowedOnesAreReset)
{
    ZoAbortable owning;
    EXPECT_TRUE(!owning.GetTerminateEvent().IsSet() && owning.GetTerminatedEvent().IsSet());
    ZoEvent terminate(true), terminated(true);
    terminate.Set();
    const ZoAbortable borrowing(terminate, terminated);
    EXPECT_TRUE(&borrowing.GetTerminateEvent() == &terminate && &borrowing.GetTerminatedEvent() == &terminated);
    EXPECT_TRUE(!terminate.IsSet() && terminated.IsSet()) << "the constructor resets the terminate event and sets the other";
}

TEST(ZoCriticalSectionConcurrentTest, RecursionGuardsAssignmentAndExclusion)
{
    ZoCriticalSection lock;
    EXPECT_EQ(lock.GetSpinCount(), 4000u);
    lock.Enter();
    EXPECT_TRUE(lock.TryEnter());
    {
        ZoCriticalSectionAuto guard(lock);
        EXPECT_EQ(lock.GetRecursionCount(), 3);
        guard.LeaveEarly();
        guard.LeaveEarly();
        EXPECT_EQ(lock.GetRecursionCount(), 2) << "leaving early twice leaves once";
    }
    lock.Leave();
    lock.Leave();
    EXPECT_EQ(lock.GetRecursionCount(), 0);
    {
        ZoCriticalSectionAuto guard(&lock);
        EXPECT_EQ(lock.GetRecursionCount(), 1);
    }
    EXPECT_EQ(lock.GetRecursionCount(), 0);
    ZoCriticalSection configured(17), assigned;
    assigned = configured;
    EXPECT_EQ(assigned.GetSpinCount(), 17u) << "assignment copies the configuration, not the ownership";
    assigned.Enter();
    EXPECT_EQ(configured.GetRecursionCount(), 0);
    assigned.Leave();
    long long shared = 0;
    auto worker = [&] {
        for (int i = 0; i < 50000; ++i) {
            ZoCriticalSectionAuto guard(lock);
            ZoCriticalSectionAuto nested(lock);
            ++shared;
        }
    };
    std::thread a(worker), b(worker);
    a.join(), b.join();
    EXPECT_EQ(shared, 100000);
    lock.Enter();
    std::atomic<bool> otherCouldEnter{false};
    std::thread probe([&] { otherCouldEnter = lock.TryEnter(); });
    probe.join();
    lock.Leave();
    EXPECT_FALSE(otherCouldEnter.load());
}

} // namespace
