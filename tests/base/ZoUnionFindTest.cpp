#include "base/ZoPermutationTable.h"
#include "base/ZoUnionFind.h"
#include "ZoContainerTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <vector>

namespace {

std::vector<uint32_t> setNumbers(const ZoUnionFind& sets)
{
    std::vector<uint32_t> numbers;
    for (uint32_t i = 0; i < sets.GetCount(); ++i)
        numbers.push_back(sets.GetSetNumber(i));
    return numbers;
}

TEST(ZoUnionFindTest, RandomPairsMatchAReachabilityModel)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    const uint32_t count = 300;
    ZoUnionFind sets(count);
    std::vector<uint32_t> label(count);
    std::iota(label.begin(), label.end(), 0u);
    for (int pair = 0; pair < 200; ++pair) {
        const uint32_t a = random() % count, b = random() % count;
        sets.AddPair(a, b);
        const uint32_t from = label[b], to = label[a];
        for (uint32_t& l : label)
            if (l == from)
                l = to;
        // The root of every set stays its smallest element.
        const uint32_t smallest = static_cast<uint32_t>(std::find(label.begin(), label.end(), to) - label.begin());
        ASSERT_EQ(sets.GetRoot(b), smallest);
    }
    std::map<uint32_t, uint32_t> numberOfLabel;
    std::vector<uint32_t> expected;
    for (uint32_t i = 0; i < count; ++i) {
        auto found = numberOfLabel.find(label[i]);
        if (found == numberOfLabel.end())
            found = numberOfLabel.emplace(label[i], static_cast<uint32_t>(numberOfLabel.size())).first;
        expected.push_back(found->second);
    }
    // Copies are deep: numbering the original leaves theirs parents to number.
    ZoUnionFind copy(sets), assigned(3);
    assigned = sets;
    EXPECT_EQ(sets.CreateSetNumbers(), numberOfLabel.size());
    EXPECT_EQ(setNumbers(sets), expected);
    EXPECT_TRUE(copy.CreateSetNumbers() == numberOfLabel.size() && setNumbers(copy) == expected);
    EXPECT_TRUE(assigned.CreateSetNumbers() == numberOfLabel.size() && setNumbers(assigned) == expected);
    sets.InitElements(2);
    sets.AddPair(1, 1); // a pair with itself changes nothing
    EXPECT_TRUE(sets.CreateSetNumbers() == 2u && ZoUnionFind().CreateSetNumbers() == 0u);
}

TEST(ZoPermutationTableTest, NumbersValuesInOrderOfFirstOccurrence)
{
    const uint32_t values[] = {2, 0, 2, 1};
    const ZoPermutationTable table(values, 4);
    EXPECT_EQ(table.GetNumUniqueEntries(), 3u);
    const uint32_t unique[] = {1, 2, 0, 0xFFFFFFFFu}, original[] = {2, 0, 1}; // 3 is absent from the input
    for (uint32_t i = 0; i < 4; ++i)
        EXPECT_TRUE(table.GetUnique(i) == unique[i] && (i == 3 || table.GetOriginal(i) == original[i])) << i;
    // Copies share the tables; destroying them in any order is safe (the sanitizer build watches).
    auto* copy = new ZoPermutationTable(table);
    const uint32_t others[] = {1, 1};
    ZoPermutationTable assigned(others, 2);
    assigned = *copy;
    delete copy;
    EXPECT_TRUE(assigned.GetOriginal(2) == 1u && assigned.GetNumUniqueEntries() == 3u && table.GetUnique(1) == 2u);
    const uint32_t none[] = {0};
    const ZoPermutationTable empty(none, 0);
    EXPECT_EQ(empty.GetNumUniqueEntries(), 0u);
}

} // namespace
