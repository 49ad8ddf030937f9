#include "base/ZoCriticalSection.h"
#include "base/ZoCriticalSectionAuto.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

TEST(ZoCriticalSectionTest, RecursionCountFollowsNestedEntries)
{
    ZoCriticalSection lock;
    EXPECT_EQ(lock.GetSpinCount(), 4000u);
    EXPECT_EQ(lock.GetRecursionCount(), 0);
    lock.Enter();
    lock.Enter();
    EXPECT_TRUE(lock.TryEnter());
    EXPECT_EQ(lock.GetRecursionCount(), 3);
    lock.Leave();
    lock.Leave();
    lock.Leave();
    EXPECT_EQ(lock.GetRecursionCount(), 0);
}

TEST(ZoCriticalSectionTest, LeaveEarlyTwiceLeavesOnce)
{
    ZoCriticalSection lock(10);
    lock.Enter();
    {
        ZoCriticalSectionAuto guard(lock);
        EXPECT_EQ(lock.GetRecursionCount(), 2);
        guard.LeaveEarly();
        guard.LeaveEarly();
        EXPECT_EQ(lock.GetRecursionCount(), 1);
    }
    EXPECT_EQ(lock.GetRecursionCount(), 1);
    lock.Leave();
    {
        ZoCriticalSectionAuto guard(&lock);
        EXPECT_EQ(lock.GetRecursionCount(), 1);
    }
    EXPECT_EQ(lock.GetRecursionCount(), 0);
}

TEST(ZoCriticalSectionTest, AssignmentCopiesTheConfigurationNotTheOwnership)
{
    ZoCriticalSection a(17), b;
    b = a;
    EXPECT_EQ(b.GetSpinCount(), 17u);
    b.Enter();
    EXPECT_EQ(a.GetRecursionCount(), 0);
    b.Leave();
}

TEST(ZoCriticalSectionConcurrentTest, ExcludesOtherThreads)
{
    ZoCriticalSection lock;
    long long shared = 0;
    std::atomic<bool> otherCouldEnter{false};
    auto worker = [&] {
        for (int i = 0; i < 50000; ++i) {
            ZoCriticalSectionAuto guard(lock);
            ZoCriticalSectionAuto nested(lock);
            ++shared;
        }
    };
    std::thread a(worker), b(worker);
    a.join();
    b.join();
    EXPECT_EQ(shared, 100000);

    lock.Enter();
    std::thread probe([&] { otherCouldEnter = lock.TryEnter(); });
    probe.join();
    lock.Leave();
    EXPECT_FALSE(otherCouldEnter.load());
    EXPECT_EQ(&GetCriticalSectionSingleton(), &GetCriticalSectionSingleton());
    EXPECT_NE(&GetCriticalSectionSingleton(), &GetCriticalSectionWeakPointerBase());
}

} // namespace
