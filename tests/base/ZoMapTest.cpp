#include "base/ZoMap.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

template <class K, class V, int F>
std::vector<std::pair<K, V>> inOrder(const ZoMap<K, V, F>& map)
{
    std::vector<std::pair<K, V>> seen(1);
    for (auto position = map.GetStartPosition(); position != nullptr; seen.emplace_back())
        map.GetNextAssoc(position, seen.back().first, seen.back().second);
    seen.pop_back();
    return seen;
}

// h = h * 33 + unit, several units per step: lengths around the step, a NUL inside, units above 0x7F.
TEST(ZoMapTest, StringHashMatchesTheOneUnitFormulaAndBucketsChainNewestFirst)
{
    const struct
    {
        std::u16string key;
        uint32_t hash;
    } cases[] = {
        {u"", 0u},
        {u"ab", 97u * 33u + 98u},
        {u"abcd", 3595978u},
        {u"abcde", 118667375u},
        {u"ZoClassName1234", 1571334762u},
        {std::u16string(u"ab\0cdefgh", 9), 3299u},
        {std::u16string(u"abcdefg\0h", 9), 379755964u},
        {u"\u00e9\uffff\u4e2dxyzw", 3170279447u},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ZoHashKey(CString(c.key)), c.hash) << c.key.size() << " units";
    ZoMap<uint32_t, int> map;
    // (key >> 4) % 17: 0x10 and 0x120 share bucket 1, where the newer one leads; 0x20 is in 2.
    map[0x20] = 2;
    map[0x10] = 1;
    map[0x120] = 3;
    EXPECT_EQ(inOrder(map), (std::vector<std::pair<uint32_t, int>>{{0x120, 3}, {0x10, 1}, {0x20, 2}}));
}

TEST(ZoMapTest, RandomOperationsMatchAStdMapModel)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    ZoMap<uint32_t, uint32_t> map(4, 7);
    std::map<uint32_t, uint32_t> model;
    for (int step = 0; step < 5000; ++step) {
        const uint32_t key = random() % 200;
        if (random() % 3 == 0) {
            EXPECT_EQ(map.RemoveKey(key), model.erase(key) == 1);
        } else {
            map[key] = step;
            model[key] = step;
        }
        ASSERT_EQ(map.GetCount(), model.size());
    }
    const auto seen = inOrder(map);
    EXPECT_EQ((std::map<uint32_t, uint32_t>(seen.begin(), seen.end())), model);
    EXPECT_EQ(seen.size(), model.size());
    const ZoMap<uint32_t, uint32_t> copy(map);
    const auto copied = inOrder(copy); // a copy may chain a bucket in another order
    EXPECT_EQ((std::map<uint32_t, uint32_t>(copied.begin(), copied.end())), model);
    EXPECT_NE(copy.GetPlexManager(), map.GetPlexManager());
    const uint32_t blocks = map.GetPlexManager()->GetBlockCount();
    map.RemoveAll();
    EXPECT_FALSE(map.HasHashTable());
    for (const auto& [key, value] : model)
        map[key] = value;
    EXPECT_EQ(map.GetPlexManager()->GetBlockCount(), blocks);
}

TEST(ZoMapGrowthTest, TheTableGrowsWithTheMapAndStartsOverWhenEmptied)
{
    ZoMap<CString, uint32_t> map;
    EXPECT_TRUE(!map.HasHashTable() && map.Find(u"absent") == nullptr);
    for (uint32_t i = 0; i < 1000; ++i)
        map[CString::Formatted(u"name%d", i)] = i;
    // 17 -> 35 -> ... -> 575 buckets, then 1151 once the 576th key makes more keys than buckets.
    EXPECT_EQ(map.GetHashTableSize(), 1151u);
    ZoMap<uint32_t, int, ZoMapFixedBucketCount> fixed;
    for (uint32_t i = 0; i < 1000; ++i)
        fixed[i << 4] = 1;
    EXPECT_EQ(fixed.GetHashTableSize(), 17u);
    EXPECT_EQ(fixed.GetCount(), 1000u);
    // Every key in the bucket its hash names: iteration visits buckets in order, hashes never go down.
    const auto seen = inOrder(map);
    EXPECT_EQ(seen.size(), 1000u);
    for (size_t i = 1; i < seen.size(); ++i)
        EXPECT_GE(ZoHashKey(seen[i].first) % map.GetHashTableSize(), ZoHashKey(seen[i - 1].first) % map.GetHashTableSize());
    uint32_t value = 0;
    EXPECT_TRUE(map.Lookup(u"name999", value) && value == 999u);
    EXPECT_FALSE(map.Lookup(u"Name999", value) || map.RemoveKey(u"name1000"));
    for (uint32_t i = 0; i < 1000; ++i)
        EXPECT_TRUE(map.RemoveKey(CString::Formatted(u"name%d", i)));
    // The bucket table goes with the last association and comes back, at 17, with the next.
    EXPECT_FALSE(map.HasHashTable());
    map.SetAt(u"again", 3);
    map[u"again"] = 4;
    EXPECT_TRUE(map.GetCount() == 1u && *map.Find(u"again") == 4u);
    EXPECT_EQ(map.GetHashTableSize(), 17u);
}

} // namespace
