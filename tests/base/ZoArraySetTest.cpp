#include "base/ZoArraySet.h"
#include "base/ZoAttributeDefinition.h"
#include "base/ZoConstructorDefault.h"
#include "base/ZoExceptionContainer.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <vector>

namespace {

typedef ZoSmartPointer<ZoAttributeDefinition> Definition;

Definition zeroedAttribute(uint32_t size, uint32_t id)
{
    return Definition(new ZoAttributeDefinition(size, id, new ZoConstructorDefault(), nullptr, 0));
}

std::vector<uint32_t> members(const ZoArraySet& sets, uint32_t set)
{
    const ZoArraySet::Members& held = sets.GetMembers(set);
    return std::vector<uint32_t>(held.GetData(), held.GetData() + held.GetCount());
}

// Random operations against a vector of std::set, with two attributes asserted and destroyed along
// the way: each set's attribute carries a tag that must follow the set through every move of the
// records (growth, repacking, removal of earlier sets).
TEST(ZoArraySetTest, BehavesLikeAVectorOfSetsAndKeepsEachSetsAttributes)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    ZoArraySet sets;
    std::vector<std::set<uint32_t>> model;
    std::vector<uint32_t> tags;
    uint32_t nextTag = 1;
    const Definition padding = zeroedAttribute(12, 1);
    const Definition tag = zeroedAttribute(4, 2);
    bool tagged = false, padded = false;

    for (int step = 0; step < 4000; ++step) {
        const uint32_t member = random() % 64;
        const uint32_t set = model.empty() ? 0 : random() % model.size();
        switch (random() % 12) {
        case 0:
        case 1: {
            std::vector<uint32_t> start(random() % 5);
            for (uint32_t& value : start)
                value = random() % 64;
            ASSERT_EQ(sets.AddSet(start.data(), static_cast<uint32_t>(start.size())), model.size());
            model.emplace_back(start.begin(), start.end());
            tags.push_back(nextTag++);
            if (tagged)
                sets.GetAttribute<uint32_t>(static_cast<uint32_t>(model.size() - 1), *tag) = tags.back();
            break;
        }
        case 2:
            if (!model.empty() && random() % 3 == 0) {
                sets.RemoveSet(set);
                model.erase(model.begin() + set);
                tags.erase(tags.begin() + set);
            }
            break;
        case 3:
            if (random() % 8 == 0) {
                // Assert or destroy; the tags are written again after the tag attribute arrives.
                if (random() % 2 == 0) {
                    padded ? sets.DestroyAttribute(padding) : sets.AssertAttribute(padding);
                    padded = !padded;
                } else if (tagged) {
                    sets.DestroyAttribute(tag);
                    tagged = false;
                } else {
                    sets.AssertAttribute(tag);
                    tagged = true;
                    for (uint32_t i = 0; i < model.size(); ++i)
                        sets.GetAttribute<uint32_t>(i, *tag) = tags[i];
                }
            }
            break;
        default:
            if (model.empty())
                break;
            if (random() % 2 == 0)
                ASSERT_EQ(sets.Insert(set, member), model[set].insert(member).second);
            else
                ASSERT_EQ(sets.Remove(set, member), model[set].erase(member) == 1);
            ASSERT_EQ(sets.Contains(set, member), model[set].count(member) == 1);
        }
        ASSERT_EQ(sets.GetSetCount(), model.size());
        if (step % 97 == 0 || step == 3999) {
            ASSERT_NO_THROW(sets.CheckConsistency());
            std::vector<uint32_t> holding;
            for (uint32_t i = 0; i < model.size(); ++i) {
                ASSERT_EQ(members(sets, i), std::vector<uint32_t>(model[i].begin(), model[i].end()));
                if (tagged) {
                    ASSERT_EQ(sets.GetAttribute<uint32_t>(i, *tag), tags[i]) << "set " << i;
                }
                if (model[i].count(member))
                    holding.push_back(i);
            }
            ASSERT_EQ(sets.FindSets(member), holding);
        }
    }
}

TEST(ZoArraySetTest, RefusesSetsOutOfRangeAndAttributesAssertedElsewhere)
{
    ZoArraySet sets, other;
    const uint32_t values[] = {5, 1, 5, 3};
    sets.AddSet(values, 4);
    EXPECT_EQ(members(sets, 0), std::vector<uint32_t>({1, 3, 5}));
    for (auto call : std::vector<void (*)(ZoArraySet&)>{
             [](ZoArraySet& s) { s.Insert(1, 0); }, [](ZoArraySet& s) { s.Remove(1, 0); },
             [](ZoArraySet& s) { s.Contains(1, 0); }, [](ZoArraySet& s) { s.GetMembers(1); },
             [](ZoArraySet& s) { s.RemoveSet(1); }})
        EXPECT_THROW(call(sets), ZoExceptionContainer);
    EXPECT_EQ(sets.GetSetCount(), 1u);

    const Definition mine = zeroedAttribute(4, 7);
    const Definition theirs = zeroedAttribute(4, 7);
    EXPECT_THROW(sets.GetAttributeData(0, *mine), ZoExceptionContainer);
    sets.AssertAttribute(mine);
    other.AssertAttribute(theirs);
    EXPECT_EQ(sets.GetAttribute<uint32_t>(0, *mine), 0u);
    EXPECT_THROW(sets.GetAttributeData(0, *theirs), ZoExceptionContainer);
    // Destroying an attribute of another collection leaves this one's alone.
    sets.DestroyAttribute(theirs);
    EXPECT_NO_THROW(sets.GetAttributeData(0, *mine));
}

TEST(ZoArraySetTest, BinaryFormRoundTripsAndDamagedFormsChangeNothing)
{
    ZoArraySet sets;
    const uint32_t first[] = {2, 0x01020304};
    sets.AddSet(first, 2);
    sets.AddSet();
    const Definition tag = zeroedAttribute(4, 1);
    sets.AssertAttribute(tag);
    ZoStreamWriteBinaryMemory out;
    sets.Serialize(out);
    const std::vector<unsigned char> expected = zotest::Bytes({0, 0, 0, 0, 2, 0, 0, 0,               // version, sets
                                                                2, 0, 0, 0, 2, 0, 0, 0, 4, 3, 2, 1, // set 0
                                                                0, 0, 0, 0});                       // set 1
    ASSERT_EQ(out.GetBuffer(), expected);

    ZoArraySet back;
    back.AddSet();
    const Definition loadedTag = zeroedAttribute(4, 9);
    back.AssertAttribute(loadedTag);
    back.GetAttribute<uint32_t>(0, *loadedTag) = 77;
    ZoStreamReadBinaryMemory in(expected);
    back.Serialize(in);
    ASSERT_EQ(back.GetSetCount(), 2u);
    EXPECT_EQ(members(back, 0), std::vector<uint32_t>({2, 0x01020304}));
    EXPECT_NO_THROW(back.CheckConsistency());
    // Attribute bytes are not part of the file: every loaded set starts with fresh ones.
    EXPECT_EQ(back.GetAttribute<uint32_t>(0, *loadedTag), 0u);
    EXPECT_EQ(back.GetAttribute<uint32_t>(1, *loadedTag), 0u);

    // Members out of order, a newer version, a count far above what arrives: nothing changes.
    std::vector<unsigned char> unordered = expected;
    unordered[15] = 0x7F;
    std::vector<unsigned char> newer = expected;
    newer[0] = 1;
    std::vector<unsigned char> cut(expected.begin(), expected.end() - 1);
    cut[4] = 0xFF;
    ZoStreamReadBinaryMemory unorderedIn(unordered), newerIn(newer), cutIn(cut);
    EXPECT_THROW(back.Serialize(unorderedIn), ZoExceptionContainer);
    EXPECT_THROW(back.Serialize(newerIn), ZoExceptionWrongFileVersion);
    EXPECT_THROW(back.Serialize(cutIn), ZoExceptionStream);
    EXPECT_EQ(back.GetSetCount(), 2u);
    EXPECT_EQ(members(back, 0), std::vector<uint32_t>({2, 0x01020304}));
}

} // namespace
