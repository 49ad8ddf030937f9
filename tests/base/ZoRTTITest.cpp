#include "base/ZoClassFlags.h"
#include "base/ZoClassIndex.h"
#include "base/ZoClassName.h"
#include "base/ZoClassRTTI.h"
#include "base/ZoRTTI.h"
#include "base/ZoRTTIRegistration.h"

#include <gtest/gtest.h>

namespace {

// A small hierarchy: Animal <- Pet, Robot; RoboDog derives from both, Pet is its first base and
// Robot its second.
class Animal : public ZoClassRTTI
{
    ZO_DECLARE_RTTI()
    virtual ~Animal() = default;
};
class Pet : public Animal
{
    ZO_DECLARE_RTTI()
    CString name = u"Rex";
};
class Robot : public ZoClassRTTI
{
    ZO_DECLARE_RTTI()
};
class RoboDog : public Pet
{
    ZO_DECLARE_RTTI()
};

ZO_IMPLEMENT_RTTI(Animal, nullptr, nullptr);
ZO_IMPLEMENT_RTTI_BASE(Pet, Animal, &ZoRTTIFactory<Pet>::Create, &ZoRTTIFactory<Pet>::Clone);
ZO_IMPLEMENT_RTTI(Robot, nullptr, nullptr);
ZO_IMPLEMENT_RTTI_BASE2(RoboDog, Robot, Pet, &ZoRTTIFactory<RoboDog>::Create, nullptr);

TEST(ZoRTTITest, FindIsExactAndCaseSensitive)
{
    EXPECT_EQ(ZoRTTI::Find(u"Pet"), &Pet::RTTI);
    EXPECT_EQ(ZoRTTI::Find(u"pet"), nullptr);
    EXPECT_EQ(ZoRTTI::Find(u"Pets"), nullptr);
    EXPECT_EQ(ZoRTTI::Find(u""), nullptr);
    EXPECT_EQ(Pet::RTTI.GetName(), CString(u"Pet"));
}

TEST(ZoRTTITest, BaseListHoldsTheCountThenTheBasesInOrder)
{
    EXPECT_EQ(Animal::RTTI.GetBaseClassRTTI(), nullptr);
    const uintptr_t* bases = RoboDog::RTTI.GetBaseClassRTTI();
    ASSERT_NE(bases, nullptr);
    EXPECT_EQ(bases[0], 2u);
    EXPECT_EQ(reinterpret_cast<const ZoRTTI*>(bases[1]), &Robot::RTTI);
    EXPECT_EQ(reinterpret_cast<const ZoRTTI*>(bases[2]), &Pet::RTTI);
}

TEST(ZoRTTITest, KindOfFollowsEveryBaseButIsMeansExactly)
{
    EXPECT_TRUE(RoboDog::RTTI.IsKindOf(RoboDog::RTTI));
    EXPECT_TRUE(RoboDog::RTTI.IsKindOf(Robot::RTTI));
    // Animal is reached only through the second base.
    EXPECT_TRUE(RoboDog::RTTI.IsKindOf(Animal::RTTI));
    EXPECT_FALSE(Animal::RTTI.IsKindOf(Pet::RTTI));
    EXPECT_FALSE(Robot::RTTI.IsKindOf(Animal::RTTI));
    EXPECT_FALSE(RoboDog::RTTI.Is(Pet::RTTI));
    EXPECT_TRUE(RoboDog::RTTI == RoboDog::RTTI);
    EXPECT_TRUE(RoboDog::RTTI != Pet::RTTI);

    RoboDog dog;
    const Animal& asAnimal = dog;
    EXPECT_EQ(asAnimal.GetClassNameW(), CString(u"RoboDog"));
    EXPECT_TRUE(asAnimal.IsKindOf(Pet::RTTI));
    EXPECT_FALSE(asAnimal.Is(Pet::RTTI));
    EXPECT_TRUE(asAnimal.Is(RoboDog::RTTI));
}

TEST(ZoRTTITest, RegistryCreatesAndClonesByName)
{
    const ZoRTTIRegistration::Registration* pet = ZoRTTIRegistration::GetInstance().Lookup(u"Pet");
    ASSERT_NE(pet, nullptr);
    ASSERT_NE(pet->create, nullptr);
    Pet* made = static_cast<Pet*>(pet->create());
    EXPECT_TRUE(made->Is(Pet::RTTI));
    Pet* copy = static_cast<Pet*>(pet->clone(made));
    EXPECT_NE(copy, made);
    EXPECT_TRUE(copy->Is(Pet::RTTI));
    delete made;
    delete copy;

    const ZoRTTIRegistration::Registration* animal = ZoRTTIRegistration::GetInstance().Lookup(u"Animal");
    ASSERT_NE(animal, nullptr);
    EXPECT_EQ(animal->create, nullptr);
    EXPECT_EQ(animal->clone, nullptr);
    EXPECT_EQ(ZoRTTIRegistration::GetInstance().Lookup(u"animal"), nullptr);
}

TEST(ZoRTTITest, RegisteringANameAgainReplacesItWithoutGrowingTheRegistry)
{
    ZoRTTIRegistration& registry = ZoRTTIRegistration::GetInstance();
    const uint32_t before = registry.GetCount();
    {
        const ZoRTTI first(u"ZoRTTITest.Replaced", nullptr, nullptr);
        EXPECT_EQ(registry.GetCount(), before + 1);
        const ZoRTTI second(u"ZoRTTITest.Replaced", first, &ZoRTTIFactory<Pet>::Create, nullptr);
        EXPECT_EQ(registry.GetCount(), before + 1);
        EXPECT_EQ(ZoRTTI::Find(u"ZoRTTITest.Replaced"), &second);
        EXPECT_NE(registry.Lookup(u"ZoRTTITest.Replaced")->create, nullptr);
        // Replacing the record leaves the earlier registration of other names alone.
        EXPECT_EQ(ZoRTTI::Find(u"Pet"), &Pet::RTTI);
    }
    // Entries outlive their descriptors; a descriptor that registers again revives the name.
    const ZoRTTI third(u"ZoRTTITest.Replaced", nullptr, nullptr);
    EXPECT_EQ(ZoRTTI::Find(u"ZoRTTITest.Replaced"), &third);
    EXPECT_EQ(registry.GetCount(), before + 1);
}

TEST(ZoRTTITest, ManyNamesInTheSameBucketStayDistinct)
{
    // "Aa" and "B@" collide under h * 33 + c; every name must still find its own descriptor.
    const ZoRTTI aa(u"Aa", nullptr, nullptr);
    const ZoRTTI bb(u"B@", nullptr, nullptr);
    EXPECT_EQ(ZoRTTI::Find(u"Aa"), &aa);
    EXPECT_EQ(ZoRTTI::Find(u"B@"), &bb);
}

TEST(ZoClassValueTest, FlagsTestAllOrAnyBits)
{
    ZoClassFlags flags;
    EXPECT_EQ(flags.GetFlags(), 0u);
    EXPECT_TRUE(flags.IsFlagsSet(0));
    EXPECT_FALSE(flags.IsOneFlagSet(0));
    flags.AddFlags(0x5);
    EXPECT_TRUE(flags.IsFlagsSet(0x1));
    EXPECT_FALSE(flags.IsFlagsSet(0x3));
    EXPECT_TRUE(flags.IsOneFlagSet(0x3));
    flags.RemoveFlags(0x4);
    EXPECT_EQ(flags.GetFlags(), 0x1u);
    flags.RemoveFlags();
    EXPECT_EQ(flags.GetFlags(), 0u);

    ZoClassIndex index(7);
    index = 9u;
    EXPECT_EQ(index.GetIndex(), 9u);
    ZoClassName name(u"X");
    name = CString(u"Y");
    EXPECT_EQ(static_cast<const CString&>(name), CString(u"Y"));
}

} // namespace
