#include "base/ZoCriticalSectionPolicy.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

template <int n>
class Counter : public ZoCriticalSectionPolicy<n>
{
public:
    void Add()
    {
        typename ZoCriticalSectionPolicy<n>::Guard guard(*this);
        ++m_value;
    }
    long Value() const { return m_value; }

private:
    long m_value = 0;
};

TEST(ZoCriticalSectionPolicyConcurrentTest, TheOwnLockKeepsUpdatesWholeAndCopiesGetTheirOwn)
{
    Counter<0> shared;
    auto addMany = [&shared] {
        for (int i = 0; i < 20000; ++i)
            shared.Add();
    };
    std::thread other(addMany);
    addMany();
    other.join();
    EXPECT_EQ(shared.Value(), 40000);

    shared.Lock();
    const Counter<0> copy(shared);
    EXPECT_NE(&copy.GetLock(), &shared.GetLock());
    EXPECT_EQ(copy.GetLock().GetRecursionCount(), 0) << "a copy never takes over a held lock";
    EXPECT_EQ(shared.GetLock().GetRecursionCount(), 1);
    shared.Unlock();

    Counter<1> owned;
    owned.Add();
    EXPECT_EQ(owned.Value(), 1);
}

} // namespace
