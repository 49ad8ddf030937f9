#include "base/ZoClassRTTI.h"
#include "base/ZoRTTI.h"
#include "base/ZoRTTIRegistration.h"

#include <gtest/gtest.h>

#include <memory>

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

TEST(ZoRTTITest, FindIsExactAndKindOfFollowsEveryBaseInOrder)
{
    EXPECT_EQ(ZoRTTI::Find(u"Pet"), &Pet::RTTI);
    for (const char16_t* other : {u"pet", u"Pets", u"Pe", u""})
        EXPECT_EQ(ZoRTTI::Find(other), nullptr);
    // "Aa" and "B@" collide under h * 33 + c; each still finds its own descriptor.
    const ZoRTTI aa(u"Aa", nullptr, nullptr), bb(u"B@", nullptr, nullptr);
    EXPECT_TRUE(ZoRTTI::Find(u"Aa") == &aa && ZoRTTI::Find(u"B@") == &bb);
    // The base list holds the count, then the bases in order.
    const uintptr_t* bases = RoboDog::RTTI.GetBaseClassRTTI();
    ASSERT_TRUE(bases != nullptr && Animal::RTTI.GetBaseClassRTTI() == nullptr);
    EXPECT_TRUE(bases[0] == 2 && bases[1] == uintptr_t(&Robot::RTTI) && bases[2] == uintptr_t(&Pet::RTTI));
    EXPECT_TRUE(RoboDog::RTTI.IsKindOf(RoboDog::RTTI) && RoboDog::RTTI.IsKindOf(Robot::RTTI));
    EXPECT_TRUE(RoboDog::RTTI.IsKindOf(Animal::RTTI)) << "reached only through the second base";
    EXPECT_FALSE(Animal::RTTI.IsKindOf(Pet::RTTI) || Robot::RTTI.IsKindOf(Animal::RTTI) || RoboDog::RTTI.Is(Pet::RTTI));
    EXPECT_TRUE(RoboDog::RTTI == RoboDog::RTTI && RoboDog::RTTI != Pet::RTTI);
    RoboDog dog;
    const Animal& asAnimal = dog;
    EXPECT_EQ(asAnimal.GetClassNameW(), CString(u"RoboDog"));
    EXPECT_TRUE(asAnimal.IsKindOf(Pet::RTTI));
    EXPECT_FALSE(asAnimal.Is(Pet::RTTI));
    EXPECT_TRUE(asAnimal.Is(RoboDog::RTTI));
}

// The registry creates and clones by name; registering a name again replaces it without growing.
TEST(ZoRTTITest, RegistryCreatesClonesAndReplacesByName)
{
    ZoRTTIRegistration& registry = ZoRTTIRegistration::GetInstance();
    const ZoRTTIRegistration::Registration* pet = registry.Lookup(u"Pet");
    ASSERT_TRUE(pet != nullptr && pet->create != nullptr);
    std::unique_ptr<Pet> made(static_cast<Pet*>(pet->create()));
    std::unique_ptr<Pet> copy(static_cast<Pet*>(pet->clone(made.get())));
    EXPECT_TRUE(made->Is(Pet::RTTI) && copy->Is(Pet::RTTI) && copy != made);
    ASSERT_NE(registry.Lookup(u"Animal"), nullptr);
    EXPECT_TRUE(registry.Lookup(u"Animal")->create == nullptr && registry.Lookup(u"Animal")->clone == nullptr);
    EXPECT_EQ(registry.Lookup(u"animal"), nullptr);
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

} // namespace
