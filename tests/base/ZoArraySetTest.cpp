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

#include <algorithm>
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

// Against a vector of std::set; each set's tag attribute must follow it through every record move.
TEST(ZoArraySetTest, BehavesLikeAVectorOfSetsAndKeepsEachSetsAttributes)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    ZoArraySet sets;
    std::vector<std::set<uint32_t>> model;
    std::vector<uint32_t> tags;
    const Definition padding = zeroedAttribute(12, 1), tag = zeroedAttribute(4, 2);
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
            tags.push_back(static_cast<uint32_t>(step) + 1);
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
        case 3: // assert or destroy; the tags are written again when the tag attribute arrives
            if (random() % 8 != 0)
                break;
            if (random() % 2 == 0) {
                padded ? sets.DestroyAttribute(padding) : sets.AssertAttribute(padding);
                padded = !padded;
                break;
            }
            tagged ? sets.DestroyAttribute(tag) : sets.AssertAttribute(tag);
            tagged = !tagged;
            for (uint32_t i = 0; i < model.size() && tagged; ++i)
                sets.GetAttribute<uint32_t>(i, *tag) = tags[i];
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
    const Definition mine = zeroedAttribute(4, 7), theirs = zeroedAttribute(4, 7);
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
    sets.AssertAttribute(zeroedAttribute(4, 1));
    ZoStreamWriteBinaryMemory out;
    sets.Serialize(out);
    // Version, set count, then each set's member count and members.
    const std::vector<unsigned char> expected = zotest::Bytes({0, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 2, 0, 0, 0, 4, 3, 2, 1, 0, 0, 0, 0});
    ASSERT_EQ(out.GetBuffer(), expected);
    ZoArraySet back;
    back.AddSet();
    const Definition loadedTag = zeroedAttribute(4, 9);
    back.AssertAttribute(loadedTag);
    back.GetAttribute<uint32_t>(0, *loadedTag) = 77;
    ZoStreamReadBinaryMemory in(expected);
    back.Serialize(in);
    ASSERT_EQ(back.GetSetCount(), 2u);
    EXPECT_NO_THROW(back.CheckConsistency());
    // Attribute bytes are not part of the file: every loaded set starts with fresh ones.
    EXPECT_TRUE(back.GetAttribute<uint32_t>(0, *loadedTag) == 0u && back.GetAttribute<uint32_t>(1, *loadedTag) == 0u);
    // Members out of order or repeated, a newer version, a count far above what arrives: nothing changes.
    std::vector<unsigned char> unordered = expected, repeated = expected, newer = expected, cut(expected.begin(), expected.end() - 1);
    unordered[15] = 0x7F;
    std::copy(expected.begin() + 12, expected.begin() + 16, repeated.begin() + 16);
    newer[0] = 1;
    cut[4] = 0xFF;
    ZoStreamReadBinaryMemory unorderedIn(unordered), repeatedIn(repeated), newerIn(newer), cutIn(cut);
    EXPECT_THROW(back.Serialize(unorderedIn), ZoExceptionContainer);
    EXPECT_THROW(back.Serialize(repeatedIn), ZoExceptionContainer);
    EXPECT_THROW(back.Serialize(newerIn), ZoExceptionWrongFileVersion);
    EXPECT_THROW(back.Serialize(cutIn), ZoExceptionStream);
    ASSERT_EQ(back.GetSetCount(), 2u);
    EXPECT_TRUE(members(back, 0) == std::vector<uint32_t>({2, 0x01020304}) && members(back, 1).empty());
}

} // namespace
