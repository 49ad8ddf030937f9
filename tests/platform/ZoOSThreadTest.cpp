// The thread and event layer of ZoOS, driven directly; the same cases run on both targets.
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <thread>
#include <vector>

namespace {

const uint32_t sc_longWaitMs = 30000;

uint32_t exitCodeOf(HANDLE thread)
{
    uint32_t code = 0;
    EXPECT_TRUE(ZoOS::GetThreadExitCode(thread, code));
    return code;
}

uint32_t countAndReturn(void* argument)
{
    ++*static_cast<std::atomic<int>*>(argument);
    return 42;
}

// Counts its laps until `stop` is set. Until `waits` is set it only spins, with errno left at EINTR
// (a stopped POSIX thread must not mistake that stale value for an interrupted wait and stay
// stopped); afterwards every lap is one of the layer's waits, where a terminated POSIX thread ends.
struct Lapper
{
    HANDLE stop = ZoOS::CreateEventObject(true, false);
    std::atomic<bool> waits{false};
    std::atomic<long long> laps{0};
    ~Lapper() { ZoOS::CloseObjectHandle(stop); }
    static uint32_t Run(void* argument)
    {
        auto& self = *static_cast<Lapper*>(argument);
        errno = EINTR;
        while (!self.waits.load())
            ++self.laps;
        while (ZoOS::WaitForObject(self.stop, 0) == ZoOS::sc_waitTimeout)
            ++self.laps;
        return 3;
    }
};

// Needs far more stack than the smallest a system allows: a thread made with the default stack
// size (0) must get the default, not the minimum.
uint32_t deepStack(void*)
{
    volatile unsigned char block[64 * 1024];
    for (size_t i = 0; i < sizeof block; i += 512)
        block[i] = static_cast<unsigned char>(i >> 9);
    return block[sizeof block - 512];
}

TEST(ZoOSThreadConcurrentTest, SuspendedCreationCountsResumesExitCodesAndStacks)
{
    std::atomic<int> ran{0};
    uint32_t id = 0;
    const HANDLE thread = ZoOS::CreateThreadObject(&countAndReturn, &ran, 0, true, id);
    ASSERT_NE(thread, nullptr);
    EXPECT_TRUE(id != 0 && id != ZoOS::GetCurrentThreadIdentifier());
    EXPECT_EQ(ZoOS::WaitForObject(thread, 20), ZoOS::sc_waitTimeout);
    EXPECT_EQ(ZoOS::SuspendThreadObject(thread), 1u) << "created suspended: the count was 1";
    EXPECT_EQ(ZoOS::ResumeThreadObject(thread), 2u);
    EXPECT_TRUE(exitCodeOf(thread) == STILL_ACTIVE && ran.load() == 0) << "still suspended once";
    // From here on the thread is reached through a duplicate only.
    const HANDLE duplicate = ZoOS::DuplicateObjectHandle(thread, false);
    ASSERT_NE(duplicate, nullptr);
    EXPECT_TRUE(ZoOS::CloseObjectHandle(thread));
    const HANDLE never = ZoOS::CreateEventObject(true, false);
    const HANDLE both[] = {never, duplicate};
    EXPECT_EQ(ZoOS::WaitForObjects(2, both, false, 0), ZoOS::sc_waitTimeout);
    EXPECT_EQ(ZoOS::ResumeThreadObject(duplicate), 1u);
    EXPECT_EQ(ZoOS::WaitForObjects(2, both, false, sc_longWaitMs), ZoOS::sc_waitObject0 + 1)
        << "a thread handle is signalled when the thread ends";
    EXPECT_TRUE(ran.load() == 1 && exitCodeOf(duplicate) == 42u);
    EXPECT_TRUE(ZoOS::CloseObjectHandle(never) && ZoOS::CloseObjectHandle(duplicate));
    // A thread terminated before it ever ran ends with the termination's code.
    const HANDLE held = ZoOS::CreateThreadObject(&countAndReturn, &ran, 0, true, id);
    ASSERT_TRUE(held != nullptr && ZoOS::TerminateThreadObject(held, 7));
    EXPECT_TRUE(ZoOS::WaitForObject(held, sc_longWaitMs) == ZoOS::sc_waitObject0 && exitCodeOf(held) == 7u);
    EXPECT_EQ(ran.load(), 1) << "the routine never started";
    EXPECT_TRUE(ZoOS::CloseObjectHandle(held));
    for (const uint32_t stackSize : {0u, 1024u * 1024u}) {
        const HANDLE deep = ZoOS::CreateThreadObject(&deepStack, nullptr, stackSize, false, id);
        ASSERT_NE(deep, nullptr) << "default stacks are full size";
        EXPECT_EQ(ZoOS::WaitForObject(deep, sc_longWaitMs), ZoOS::sc_waitObject0);
        ZoOS::CloseObjectHandle(deep);
    }
}

TEST(ZoOSThreadConcurrentTest, SuspendStopsARunningThreadResumeCountsDownAndTerminateEndsItSuspended)
{
    Lapper lapper;
    uint32_t id = 0;
    const HANDLE thread = ZoOS::CreateThreadObject(&Lapper::Run, &lapper, 0, false, id);
    ASSERT_NE(thread, nullptr);
    ASSERT_TRUE(zotest::WaitUntil([&] { return lapper.laps.load() > 0; }));
    EXPECT_EQ(ZoOS::SuspendThreadObject(thread), 0u);
    const long long frozen = lapper.laps.load();
    EXPECT_EQ(ZoOS::SuspendThreadObject(thread), 1u);
    // Nothing to wait for but time: a stopped thread cannot move the counter, however long.
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(lapper.laps.load(), frozen);
    EXPECT_EQ(ZoOS::ResumeThreadObject(thread), 2u);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    EXPECT_EQ(lapper.laps.load(), frozen) << "one suspension is left";
    EXPECT_EQ(ZoOS::ResumeThreadObject(thread), 1u);
    EXPECT_TRUE(zotest::WaitUntil([&] { return lapper.laps.load() > frozen; }));
    EXPECT_EQ(ZoOS::ResumeThreadObject(thread), 0u) << "resuming a running thread changes nothing";
    lapper.waits = true;
    const long long spun = lapper.laps.load();
    ASSERT_TRUE(zotest::WaitUntil([&] { return lapper.laps.load() > spun + 10; }));
    ASSERT_EQ(ZoOS::SuspendThreadObject(thread), 0u);
    EXPECT_TRUE(ZoOS::TerminateThreadObject(thread, 9));
    EXPECT_TRUE(ZoOS::WaitForObject(thread, sc_longWaitMs) == ZoOS::sc_waitObject0 && exitCodeOf(thread) == 9u)
        << "the termination's code, not the routine's";
    EXPECT_TRUE(ZoOS::CloseObjectHandle(thread));
}

TEST(ZoOSThreadConcurrentTest, WaitsTakeAtMost64HandlesConsumeOnlyWhenSatisfiedAndWakeOnTheLast)
{
    std::vector<HANDLE> events;
    for (uint32_t i = 0; i <= ZoOS::sc_maximumWaitObjects; ++i)
        events.push_back(ZoOS::CreateEventObject(false, true));
    ASSERT_EQ(events.size(), 65u);
    for (const auto& [count, all] : {std::pair<uint32_t, bool>{65, false}, {65, true}, {0, false}})
        EXPECT_EQ(ZoOS::WaitForObjects(count, events.data(), all, 0), ZoOS::sc_waitFailed) << count;
    // Wait for all 64 at once: every auto-reset signal goes, the 65th stays.
    EXPECT_EQ(ZoOS::WaitForObjects(64, events.data(), true, 0), ZoOS::sc_waitObject0);
    EXPECT_EQ(ZoOS::WaitForObjects(64, events.data(), false, 0), ZoOS::sc_waitTimeout);
    EXPECT_EQ(ZoOS::WaitForObject(events[64], 0), ZoOS::sc_waitObject0);
    // Wait for any: the lowest signalled index wins and only its signal is consumed.
    ASSERT_TRUE(ZoOS::SetEventObject(events[63]) && ZoOS::SetEventObject(events[40]));
    EXPECT_EQ(ZoOS::WaitForObjects(64, events.data(), true, 0), ZoOS::sc_waitTimeout);
    EXPECT_EQ(ZoOS::WaitForObjects(64, events.data(), false, 0), ZoOS::sc_waitObject0 + 40);
    EXPECT_EQ(ZoOS::WaitForObjects(64, events.data(), false, 0), ZoOS::sc_waitObject0 + 63);
    EXPECT_EQ(ZoOS::WaitForObjects(64, events.data(), false, 0), ZoOS::sc_waitTimeout);
    // A sleeping wait for any of 64 wakes on the last one and consumes its signal.
    std::atomic<uint32_t> result{0};
    std::thread waiter([&] { result = ZoOS::WaitForObjects(64, events.data(), false, sc_longWaitMs); });
    ZoOS::SetEventObject(events[63]);
    waiter.join();
    EXPECT_TRUE(result.load() == ZoOS::sc_waitObject0 + 63 && ZoOS::WaitForObject(events[63], 0) == ZoOS::sc_waitTimeout);
    // One closed handle among them fails the whole wait.
    std::vector<HANDLE> withClosed(events.begin(), events.begin() + 3);
    withClosed[1] = ZoOS::CreateEventObject(true, true);
    ASSERT_TRUE(ZoOS::CloseObjectHandle(withClosed[1]));
    ZoOS::SetEventObject(events[0]);
    EXPECT_EQ(ZoOS::WaitForObjects(3, withClosed.data(), false, 0), ZoOS::sc_waitFailed);
    EXPECT_EQ(ZoOS::WaitForObject(events[0], 0), ZoOS::sc_waitObject0) << "the failed wait consumed nothing";
    for (HANDLE event : events)
        ZoOS::CloseObjectHandle(event);
}

TEST(ZoOSThreadTest, DuplicatesNameOneObjectAndClosedHandlesFail)
{
    // Enough handles that the table grows while handles are in use.
    std::vector<HANDLE> originals, duplicates;
    for (int i = 0; i < 300; ++i) {
        originals.push_back(ZoOS::CreateEventObject(true, false));
        duplicates.push_back(ZoOS::DuplicateObjectHandle(originals.back(), false));
        ASSERT_TRUE(originals.back() != nullptr && duplicates.back() != nullptr && duplicates.back() != originals.back());
    }
    for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(testing::Message() << "event " << i);
        ASSERT_TRUE(ZoOS::CloseObjectHandle(originals[i]));
        // The event lives on in its duplicate.
        ASSERT_TRUE(ZoOS::SetEventObject(duplicates[i]));
        ASSERT_EQ(ZoOS::WaitForObject(duplicates[i], 0), ZoOS::sc_waitObject0);
        ZoOS::SetLastErrorCode(0);
        ASSERT_FALSE(ZoOS::SetEventObject(originals[i]) || ZoOS::GetLastErrorCode() == 0);
        ASSERT_EQ(ZoOS::DuplicateObjectHandle(originals[i], false), nullptr);
    }
    const HANDLE closed = duplicates[0];
    for (HANDLE duplicate : duplicates)
        ASSERT_TRUE(ZoOS::CloseObjectHandle(duplicate));
    EXPECT_FALSE(ZoOS::CloseObjectHandle(closed) || ZoOS::ResetEventObject(closed) || ZoOS::PulseEventObject(closed));
    EXPECT_TRUE(ZoOS::WaitForObject(closed, 0) == ZoOS::sc_waitFailed && ZoOS::WaitForObject(nullptr, 0) == ZoOS::sc_waitFailed);
    uint32_t code = 0;
    EXPECT_FALSE(ZoOS::GetThreadExitCode(closed, code));
#if !defined(_WIN32)
    // The library's own table never hands a closed handle's value out again, so a stale handle
    // cannot reach the object that took over its slot (Windows makes no such promise).
    const HANDLE successor = ZoOS::CreateEventObject(true, false);
    EXPECT_NE(successor, closed);
    // Nor does a value it never handed out (not a multiple of 4) name an object.
    EXPECT_FALSE(ZoOS::SetEventObject(reinterpret_cast<HANDLE>(reinterpret_cast<uintptr_t>(successor) + 1)));
    EXPECT_FALSE(ZoOS::SetEventObject(closed));
    EXPECT_EQ(ZoOS::WaitForObject(successor, 0), ZoOS::sc_waitTimeout);
    // An event is no thread.
    EXPECT_EQ(ZoOS::SuspendThreadObject(successor), 0xFFFFFFFFu);
    EXPECT_FALSE(ZoOS::TerminateThreadObject(successor, 1));
    ZoOS::CloseObjectHandle(successor);
#endif
}

} // namespace
