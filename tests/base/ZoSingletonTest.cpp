#include "base/ZoSingleton.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <thread>

namespace {

class Lazy : public ZoSingleton<Lazy>
{
public:
    int constructions() const { return m_constructions; }
    static std::atomic<int> s_made;

private:
    friend class ZoSingleton<Lazy>;
    Lazy() : m_constructions(++s_made) {}
    int m_constructions;
};
std::atomic<int> Lazy::s_made{0};

// Asks for itself while it is being built: the instance must already be visible.
class SelfAware : public ZoSingleton<SelfAware>
{
public:
    SelfAware* seenDuringConstruction = nullptr;

private:
    friend class ZoSingleton<SelfAware>;
    SelfAware() { seenDuringConstruction = &GetInstance(); }
};

class Failing : public ZoSingleton<Failing>
{
public:
    static int s_attempts;

private:
    friend class ZoSingleton<Failing>;
    Failing()
    {
        if (++s_attempts == 1)
            throw std::runtime_error("first construction fails");
    }
};
int Failing::s_attempts = 0;

TEST(ZoSingletonTest, MadeOnFirstUseOnceVisibleToItsConstructorAndRetriedAfterAThrow)
{
    EXPECT_FALSE(ZoSingleton<Lazy>::HasInstance());
    Lazy& first = Lazy::GetInstance();
    EXPECT_TRUE(Lazy::HasInstance());
    EXPECT_EQ(&first, &Lazy::GetInstance());
    EXPECT_EQ(Lazy::s_made.load(), 1);
    SelfAware& instance = SelfAware::GetInstance();
    EXPECT_EQ(instance.seenDuringConstruction, &instance);
    // A throwing constructor leaves no instance, and the next call tries again.
    EXPECT_THROW(Failing::GetInstance(), std::runtime_error);
    EXPECT_FALSE(Failing::HasInstance());
    EXPECT_NO_THROW(Failing::GetInstance());
    EXPECT_TRUE(Failing::HasInstance());
    EXPECT_EQ(Failing::s_attempts, 2);
}

class Disposable : public ZoSingleton<Disposable>
{
public:
    ~Disposable() override { std::fputs("Disposable destroyed\n", stderr); }

private:
    friend class ZoSingleton<Disposable>;
    Disposable() = default;
};

TEST(ZoSingletonTest, HasInstanceFollowsTheInstanceLifetime)
{
    EXPECT_FALSE(Disposable::HasInstance());
    Disposable& first = Disposable::GetInstance();
    EXPECT_TRUE(Disposable::HasInstance());
    delete &first;
    EXPECT_FALSE(Disposable::HasInstance());
    Disposable::GetInstance();
    EXPECT_TRUE(Disposable::HasInstance());
}

TEST(ZoSingletonTest, TheInstanceIsDestroyedAtExit)
{
    EXPECT_EXIT(
        {
            Disposable::GetInstance();
            std::exit(0);
        },
        testing::ExitedWithCode(0), "Disposable destroyed");
}

class Raced : public ZoSingleton<Raced>
{
public:
    static std::atomic<int> s_made;
    int payload;

private:
    friend class ZoSingleton<Raced>;
    Raced() : payload(0)
    {
        ++s_made;
        std::this_thread::yield();
        payload = 42;
    }
};
std::atomic<int> Raced::s_made{0};

TEST(ZoSingletonConcurrentTest, RacingThreadsGetOneFullyBuiltInstance)
{
    std::atomic<bool> go{false};
    std::atomic<int> wrongPayload{0};
    Raced* seen[4] = {};
    std::thread threads[4];
    for (int i = 0; i < 4; ++i)
        threads[i] = std::thread([&, i] {
            while (!go.load())
                std::this_thread::yield();
            Raced& instance = Raced::GetInstance();
            if (instance.payload != 42)
                ++wrongPayload;
            seen[i] = &instance;
        });
    go = true;
    for (auto& thread : threads)
        thread.join();
    EXPECT_EQ(Raced::s_made.load(), 1);
    EXPECT_EQ(wrongPayload.load(), 0);
    for (Raced* instance : seen)
        EXPECT_EQ(instance, seen[0]);
}

} // namespace
