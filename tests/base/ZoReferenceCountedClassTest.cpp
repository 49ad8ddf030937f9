#include "base/ZoAtomicCounter.h"
#include "base/ZoConstructorDefault.h"
#include "base/ZoDestructor.h"
#include "base/ZoReferenceCountedClass.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoWeakPointer.h"

#include <gtest/gtest.h>

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
        EXPECT_EQ(object->GetReferenceCount(), 1);
        ZoSmartPointer<Tracked> second = first;
        ZoSmartPointer<const Tracked> readOnly(first);
        EXPECT_EQ(object->GetReferenceCount(), 3);
        second = nullptr;
        readOnly = ZoNullPointer();
        EXPECT_EQ(object->GetReferenceCount(), 1);
        first = first; // self-assignment keeps the object alive
        EXPECT_EQ(destroyed, 0);
    }
    EXPECT_EQ(destroyed, 1);
    // Releasing an object nobody referenced deletes it.
    ZoReferenceCountedAccess::Release(*new Tracked(&destroyed));
    EXPECT_EQ(destroyed, 2);
    // Reassignment takes the new reference before releasing the old; derived pointers convert.
    ZoSmartPointer<Tracked> a(new Tracked(&destroyed));
    ZoSmartPointer<Tracked> b(new DerivedTracked(&destroyed));
    a = b;
    EXPECT_EQ(destroyed, 3);
    EXPECT_EQ(b->GetReferenceCount(), 2);
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
    {
        ZoWeakPointer<Tracked> shortLived(owner.Get());
    } // unregisters itself from the middle of nothing: it was the head
    EXPECT_EQ(weak1.Get(), owner.Get());
    weak2.Reset(nullptr); // unregistering a record that is not the head
    owner = nullptr;
    EXPECT_EQ(destroyed, 1);
    EXPECT_EQ(weak1.Get(), nullptr);
    EXPECT_EQ(weak3.Get(), nullptr);
    EXPECT_EQ(weak2.Get(), nullptr);

    // Unregistering a record that was never registered changes nothing.
    auto* object = new Tracked(&destroyed);
    owner = object;
    ZoWeakPointerRecord registered{owner.Get(), nullptr};
    ZoWeakPointerRecord stranger{owner.Get(), nullptr};
    ZoReferenceCountedAccess::RegisterWeakPointer(*owner, registered);
    ZoReferenceCountedAccess::UnregisterWeakPointer(*owner, stranger);
    owner = nullptr;
    EXPECT_EQ(registered.object, nullptr);
    EXPECT_EQ(stranger.object, object); // never registered, never touched
}

TEST(ZoReferenceCountedClassConcurrentTest, TwoThreadsNeverLoseACount)
{
    int destroyed = 0;
    ZoSmartPointer<Tracked> owner(new Tracked(&destroyed));
    const int rounds = 200000;
    auto hammer = [&owner] {
        for (int i = 0; i < rounds; ++i) {
            ZoSmartPointer<Tracked> local(owner);
            ZoSmartPointer<Tracked> another(local);
        }
    };
    std::thread a(hammer), b(hammer);
    a.join();
    b.join();
    EXPECT_EQ(owner->GetReferenceCount(), 1);
    EXPECT_EQ(destroyed, 0);
    owner = nullptr;
    EXPECT_EQ(destroyed, 1);
}

TEST(ZoAtomicCounterConcurrentTest, ConcurrentChangesAddUp)
{
    ZoAtomicCounter counter;
    auto worker = [&counter] {
        for (int i = 0; i < 100000; ++i) {
            ++counter;
            counter += 2;
            --counter;
        }
    };
    std::thread a(worker), b(worker);
    a.join();
    b.join();
    EXPECT_EQ(counter.GetValue(), 400000);
    EXPECT_EQ(counter.ExchangeValue(5), 400000);
    EXPECT_TRUE(counter == 5 && counter > 4 && counter >= 5 && counter < 6 && counter <= 5);
    counter = 0;
    EXPECT_TRUE(!counter);
    counter = 0x7FFFFFFF;
    EXPECT_EQ(++counter, static_cast<int32_t>(0x80000000u));
}

class Recorder : public ZoDestructor
{
public:
    void Destroy(unsigned char* memory, uint32_t size) const override { std::fill(memory, memory + size, 0xDD); }
};

TEST(ZoConstructorTest, DefaultZeroFillsAndDestructorsAreShareable)
{
    unsigned char bytes[6] = {1, 2, 3, 4, 5, 6};
    ZoSmartPointer<const ZoConstructor> construct(new ZoConstructorDefault);
    construct->Init(bytes + 1, 4);
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[1], 0);
    EXPECT_EQ(bytes[4], 0);
    EXPECT_EQ(bytes[5], 6);
    ZoSmartPointer<const ZoDestructor> destroy(new Recorder);
    ZoSmartPointer<const ZoDestructor> shared(destroy);
    shared->Destroy(bytes, 2);
    EXPECT_EQ(bytes[1], 0xDD);
    EXPECT_EQ(destroy->GetReferenceCount(), 2);
}

} // namespace
