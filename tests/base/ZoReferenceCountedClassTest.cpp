// The object model's lifetimes: reference counts, weak pointers, singletons.
#include "base/ZoAtomicCounter.h"
#include "base/ZoReferenceCountedClass.h"
#include "base/ZoSingleton.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoWeakPointer.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

// Counts its own destructions so that tests see exactly when an object dies.
class Tracked : public ZoReferenceCountedClass<Tracked>
{
public:
    explicit Tracked(int* destroyed) : m_destroyed(destroyed) {}
    ~Tracked() override { ++*m_destroyed; }
    int value = 0;

private:
    int* m_destroyed;
};

class DerivedTracked : public Tracked
{
public:
    using Tracked::Tracked;
};

TEST(ZoReferenceCountedClassTest, SmartPointersShareOneCountAndTheLastReleaseDeletes)
{
    int destroyed = 0;
    auto* object = new Tracked(&destroyed);
    EXPECT_EQ(object->GetReferenceCount(), 0);
    {
        ZoSmartPointer<Tracked> first(object);
        ZoSmartPointer<Tracked> second = first;
        ZoSmartPointer<const Tracked> readOnly(first);
        EXPECT_EQ(object->GetReferenceCount(), 3);
        second = nullptr;
        readOnly = ZoNullPointer();
        first = first; // self-assignment keeps the object alive
        EXPECT_TRUE(object->GetReferenceCount() == 1 && destroyed == 0);
    }
    EXPECT_EQ(destroyed, 1);
    // Releasing an object nobody referenced deletes it.
    ZoReferenceCountedAccess::Release(*new Tracked(&destroyed));
    EXPECT_EQ(destroyed, 2);
    // Reassignment takes the new reference before releasing the old; derived pointers convert.
    ZoSmartPointer<Tracked> a(new Tracked(&destroyed));
    ZoSmartPointer<Tracked> b(new DerivedTracked(&destroyed));
    a = b;
    EXPECT_TRUE(destroyed == 3 && b->GetReferenceCount() == 2);
    ZoSmartPointer<DerivedTracked> derived(new DerivedTracked(&destroyed));
    ZoSmartPointer<Tracked> base(derived);
    EXPECT_EQ(derived->GetReferenceCount(), 2);
    // Copies of the object take the count verbatim; assigning the derived value leaves it alone.
    Tracked copy(*b);
    EXPECT_EQ(copy.GetReferenceCount(), 2);
    Tracked other(&destroyed);
    other = *derived;
    EXPECT_EQ(other.GetReferenceCount(), 2);
    static_cast<ZoReferenceCountedClass<Tracked>&>(other) = static_cast<const Tracked&>(Tracked(&destroyed));
    EXPECT_EQ(other.GetReferenceCount(), 2);
}

TEST(ZoReferenceCountedClassTest, WeakPointersReadNullAfterTheLastRelease)
{
    int destroyed = 0;
    ZoSmartPointer<Tracked> owner(new Tracked(&destroyed));
    ZoWeakPointer<Tracked> weak1(owner.Get());
    ZoWeakPointer<Tracked> weak2(owner.Get());
    ZoWeakPointer<Tracked> weak3(weak1);
    ZoWeakPointer<Tracked>(owner.Get()); // a temporary that unregisters itself as the head
    EXPECT_EQ(weak1.Get(), owner.Get());
    weak2.Reset(nullptr); // unregistering a record that is not the head
    owner = nullptr;
    EXPECT_TRUE(destroyed == 1 && weak1.Get() == nullptr && weak2.Get() == nullptr && weak3.Get() == nullptr);
    // Unregistering a record that was never registered changes nothing.
    auto* object = new Tracked(&destroyed);
    owner = object;
    ZoWeakPointerRecord registered{owner.Get(), nullptr};
    ZoWeakPointerRecord stranger{owner.Get(), nullptr};
    ZoReferenceCountedAccess::RegisterWeakPointer(*owner, registered);
    ZoReferenceCountedAccess::UnregisterWeakPointer(*owner, stranger);
    owner = nullptr;
    EXPECT_TRUE(registered.object == nullptr && stranger.object == object) << "the stranger was never touched";
}

// Slow to build: a racing thread that sees it half-built finds no payload.
class Raced : public ZoSingleton<Raced>
{
public:
    static std::atomic<int> s_made;
    int payload = 0;

private:
    friend class ZoSingleton<Raced>;
    Raced()
    {
        ++s_made;
        std::this_thread::yield();
        payload = 42;
    }
};
std::atomic<int> Raced::s_made{0};

// Two threads copy pointers to one object and change one counter: no count is lost; racing
// threads get one fully built singleton.
TEST(ZoReferenceCountedClassConcurrentTest, TwoThreadsNeverLoseACountAndRacersGetOneSingleton)
{
    int destroyed = 0;
    ZoSmartPointer<Tracked> owner(new Tracked(&destroyed));
    ZoAtomicCounter counter;
    auto hammer = [&owner, &counter] {
        for (int i = 0; i < 100000; ++i) {
            ZoSmartPointer<Tracked> local(owner);
            ZoSmartPointer<Tracked> another(local);
            ++counter;
            counter += 2;
            --counter;
        }
    };
    std::thread a(hammer), b(hammer);
    a.join(), b.join();
    EXPECT_TRUE(owner->GetReferenceCount() == 1 && destroyed == 0);
    EXPECT_TRUE(counter.GetValue() == 400000 && counter.ExchangeValue(5) == 400000);
    EXPECT_TRUE(counter == 5 && counter > 4 && counter >= 5 && counter < 6 && counter <= 5);
    counter = 0x7FFFFFFF;
    EXPECT_EQ(++counter, static_cast<int32_t>(0x80000000u));
    std::atomic<bool> go{false};
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] {
            while (!go.load())
                std::this_thread::yield();
            wrong += Raced::GetInstance().payload != 42;
        });
    go = true;
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(Raced::s_made.load() == 1 && wrong.load() == 0);
}

} // namespace
