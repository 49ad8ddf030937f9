#include "base/ZoMap.h"
#include "base/ZoPlexManager.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace {

struct Node
{
    Node* next;
    int payload;
};

TEST(ZoPlexManagerTest, HandsOutAFreshBlockLastNodeFirstAndReusesFreedNodes)
{
    ZoPlexManager<Node> manager(3);
    Node* a = manager.AllocateNode();
    Node* b = manager.AllocateNode();
    Node* c = manager.AllocateNode();
    EXPECT_EQ(manager.GetBlockCount(), 1u);
    EXPECT_EQ(b + 1, a); // the block was pushed first to last, so it pops last to first
    EXPECT_EQ(c + 1, b);
    Node* d = manager.AllocateNode();
    EXPECT_EQ(manager.GetBlockCount(), 2u);
    manager.FreeNode(b);
    EXPECT_EQ(manager.AllocateNode(), b);
    manager.FreeNode(a);
    manager.FreeNode(c);
    manager.FreeNode(d);
    EXPECT_EQ(manager.GetFreeNodeCount(), 2u + 3u);
    EXPECT_EQ(manager.GetMemoryUsage(), sizeof(manager) + 2 * (16 + 3 * sizeof(Node)));
    EXPECT_EQ(ZoPlexManager<Node>(0).AllocateNode(), nullptr);
}

TEST(ZoMapTest, StringKeysInsertLookUpAndRemove)
{
    ZoMap<CString, int> map;
    EXPECT_FALSE(map.HasHashTable());
    EXPECT_EQ(map.Find(u"absent"), nullptr);
    map[u"one"] = 1;
    map.SetAt(u"two", 2);
    map[u"one"] = 11;
    EXPECT_EQ(map.GetCount(), 2u);
    EXPECT_EQ(map.GetHashTableSize(), 17u);
    int value = 0;
    EXPECT_TRUE(map.Lookup(u"one", value));
    EXPECT_EQ(value, 11);
    EXPECT_FALSE(map.Lookup(u"One", value));
    EXPECT_FALSE(map.RemoveKey(u"three"));
    EXPECT_TRUE(map.RemoveKey(u"one"));
    EXPECT_TRUE(map.RemoveKey(u"two"));
    // The bucket table goes with the last association and comes back with the next.
    EXPECT_FALSE(map.HasHashTable());
    map[u"again"] = 3;
    EXPECT_TRUE(map.HasHashTable());
    EXPECT_EQ(ZoHashKey(CString(u"ab")), 97u * 33u + 98u);
}

// The hash takes several code units per step; lengths around the step, a NUL inside the key (the
// hash stops there) and units above 0x7F must give the one-unit-at-a-time value, wrapping at 2^32.
TEST(ZoMapTest, StringHashMatchesTheOneUnitFormula)
{
    const struct
    {
        std::u16string key;
        uint32_t hash;
    } cases[] = {
        {u"", 0u},
        {u"abcd", 3595978u},
        {u"abcde", 118667375u},
        {u"ZoClassName1234", 1571334762u},
        {std::u16string(u"ab\0cdefgh", 9), 3299u},
        {std::u16string(u"abcdefg\0h", 9), 379755964u},
        {u"\u00e9\uffff\u4e2dxyzw", 3170279447u},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ZoHashKey(CString(c.key)), c.hash) << c.key.size() << " units";
}

template <class K, class V, int F>
std::vector<std::pair<K, V>> inOrder(const ZoMap<K, V, F>& map)
{
    std::vector<std::pair<K, V>> seen(1);
    for (auto position = map.GetStartPosition(); position != nullptr; seen.emplace_back())
        map.GetNextAssoc(position, seen.back().first, seen.back().second);
    seen.pop_back();
    return seen;
}

TEST(ZoMapTest, IterationVisitsBucketsInOrderAndChainsFromTheirHead)
{
    ZoMap<uint32_t, int> map;
    // (key >> 4) % 17: 0x10 and 0x120 share bucket 1, where the newer one leads; 0x20 is in 2.
    map[0x20] = 2;
    map[0x10] = 1;
    map[0x120] = 3;
    EXPECT_EQ(inOrder(map), (std::vector<std::pair<uint32_t, int>>{{0x120, 3}, {0x10, 1}, {0x20, 2}}));
}

TEST(ZoMapTest, AssociationsComeFromThePoolAndAreReused)
{
    ZoMap<const void*, CString> map(10);
    const auto& pool = map.GetPlexManager();
    int anchors[25];
    for (int& anchor : anchors)
        map[&anchor] = CString(u"x");
    EXPECT_EQ(pool->GetBlockCount(), 3u);
    EXPECT_EQ(pool->GetFreeNodeCount(), 5u);
    for (int i = 0; i < 25; i += 2)
        EXPECT_TRUE(map.RemoveKey(&anchors[i]));
    EXPECT_EQ(map.GetCount(), 12u);
    EXPECT_EQ(*map.Find(&anchors[1]), CString(u"x"));
    EXPECT_EQ(map.Find(&anchors[0]), nullptr);
    map.RemoveAll();
    EXPECT_FALSE(map.HasHashTable());
    for (int& anchor : anchors)
        map[&anchor] = CString(u"y");
    EXPECT_EQ(pool->GetBlockCount(), 3u); // freed associations were handed out again
    ZoMap<const void*, CString> copy;
    copy = map;
    EXPECT_EQ(copy.GetCount(), 25u);
    EXPECT_NE(copy.GetPlexManager(), map.GetPlexManager());
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
    ZoMap<uint32_t, uint32_t> copy(map);
    EXPECT_EQ(copy.GetCount(), map.GetCount());
    for (const auto& [key, value] : model)
        EXPECT_EQ(*copy.Find(key), value);
}

TEST(ZoMapGrowthTest, TheTableGrowsWithTheMapAndStartsOverWhenEmptied)
{
    ZoMap<CString, uint32_t> map;
    for (uint32_t i = 0; i < 1000; ++i)
        map[CString::Formatted(u"name%d", i)] = i;
    // 17 -> 35 -> ... -> 575 buckets, then 1151 once the 576th key makes more keys than buckets.
    EXPECT_EQ(map.GetHashTableSize(), 1151u);
    ZoMap<uint32_t, int, ZoMapFixedBucketCount> fixed;
    for (uint32_t i = 0; i < 1000; ++i)
        fixed[i << 4] = 1;
    EXPECT_EQ(fixed.GetHashTableSize(), 17u);
    EXPECT_EQ(fixed.GetCount(), 1000u);
    for (uint32_t i = 0; i < 1000; ++i) {
        const uint32_t* value = map.Find(CString::Formatted(u"name%d", i));
        ASSERT_NE(value, nullptr);
        EXPECT_EQ(*value, i);
    }
    // Iteration still visits buckets in order: the hash of each key never goes down.
    const auto seen = inOrder(map);
    EXPECT_EQ(seen.size(), 1000u);
    for (size_t i = 1; i < seen.size(); ++i)
        EXPECT_GE(ZoHashKey(seen[i].first) % map.GetHashTableSize(), ZoHashKey(seen[i - 1].first) % map.GetHashTableSize());
    for (uint32_t i = 0; i < 1000; ++i)
        EXPECT_TRUE(map.RemoveKey(CString::Formatted(u"name%d", i)));
    EXPECT_EQ(map.GetHashTableSize(), 17u);
}

} // namespace
