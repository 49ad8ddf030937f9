#include "base/ZoArray.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace {

template <class T, int P>
std::vector<T> contents(const ZoArray<T, P>& array)
{
    return std::vector<T>(array.GetData(), array.GetData() + array.GetCount());
}

TEST(ZoArrayTest, GrowthFollowsThePolicy)
{
    ZoArray<uint32_t, 0> byConstant;
    std::vector<uint32_t> capacities;
    for (uint32_t i = 0; i < 11; ++i) {
        const int renewed = byConstant.Add(i);
        EXPECT_EQ(renewed, i == 0 || i == 10 ? 1 : 0) << i;
        capacities.push_back(byConstant.GetMemoryElementCount());
    }
    EXPECT_EQ(byConstant.GetCount(), 11u);
    EXPECT_EQ(byConstant.GetMemoryElementCount(), 20u);

    ZoArray<unsigned char, 1> doubling;
    std::vector<uint32_t> seen;
    for (int i = 0; i < 5; ++i) {
        doubling.Add(static_cast<unsigned char>(i));
        seen.push_back(doubling.GetMemoryElementCount());
    }
    EXPECT_EQ(seen, (std::vector<uint32_t>{1, 2, 4, 4, 8}));
}

TEST(ZoArrayTest, InsertAndRemoveMoveOnlyWhatTheyMust)
{
    ZoArray<uint32_t, 0> array(3, 1u, 2u, 3u);
    array.InsertBefore(3u, 9u, 1, 1); // at the old count: an append
    EXPECT_EQ(contents(array), (std::vector<uint32_t>{1, 2, 3, 9}));
    array.InsertBefore(0u, 7u, 1, 1);
    EXPECT_EQ(contents(array), (std::vector<uint32_t>{7, 1, 2, 3, 9}));
    array.InsertAfter(4u, 8u, 1, 1);
    EXPECT_EQ(contents(array), (std::vector<uint32_t>{7, 1, 2, 3, 9, 8}));
    array.Remove(5);
    array.Remove(0);
    EXPECT_EQ(contents(array), (std::vector<uint32_t>{1, 2, 3, 9}));
    array.RemoveHead();
    array.RemoveTail();
    EXPECT_EQ(contents(array), (std::vector<uint32_t>{2, 3}));
    // Inserting an element of the array itself survives the storage moving under it.
    for (int i = 0; i < 20; ++i)
        array.Add(array[0]);
    EXPECT_EQ(array[21], 2u);
}

TEST(ZoArrayTest, RotateReverseAndCompare)
{
    ZoArray<uint32_t, 0> a(3, 1u, 2u, 3u);
    a.Rotate(1);
    EXPECT_EQ(contents(a), (std::vector<uint32_t>{3, 1, 2}));
    a.Rotate(-1);
    a.Rotate(-1);
    EXPECT_EQ(contents(a), (std::vector<uint32_t>{2, 3, 1}));
    a.Reverse();
    EXPECT_EQ(contents(a), (std::vector<uint32_t>{1, 3, 2}));
    ZoArray<uint32_t, 0> one(1, 5u), empty;
    one.Reverse();
    empty.Reverse();
    empty.Rotate(3);
    EXPECT_EQ(one[0], 5u);
    EXPECT_TRUE((a == ZoArray<uint32_t, 0>(3, 1u, 3u, 2u)));
    EXPECT_FALSE(a == one);
    EXPECT_TRUE(a.Exists(3u));
    EXPECT_FALSE(a.Exists(4u));
}

TEST(ZoArrayTest, CapacityCallsNeverCutElementsInUseWhenKeeping)
{
    ZoArray<unsigned char, 0> bytes;
    EXPECT_EQ(bytes.GetMemoryUsage(), 52u);
    bytes.SetElementCount(5, 1);
    EXPECT_EQ(bytes.GetMemoryElementCount(), 5u); // exact, no policy rounding
    for (unsigned char i = 0; i < 5; ++i)
        bytes[i] = i;
    EXPECT_EQ(bytes.SetMemoryElementCount(2, 1), 0);
    EXPECT_EQ(bytes.GetCount(), 5u);
    EXPECT_EQ(bytes.SetMemoryElementCount(8, 1), 1);
    EXPECT_EQ(contents(bytes), (std::vector<unsigned char>{0, 1, 2, 3, 4}));
    EXPECT_EQ(bytes.SetMemoryElementCount(2, 0), 1);
    EXPECT_EQ(bytes.GetCount(), 2u);
    EXPECT_EQ(bytes.GetMemoryUsage(), 54u);
    bytes.SetMemoryElementCount(0, 0);
    EXPECT_FALSE(bytes.HasMemoryBlock());
}

TEST(ZoArrayTest, KeepingStorageLeavesHoldersOfTheOldBlockTheirData)
{
    ZoArray<unsigned char, 0> bytes(2, static_cast<unsigned char>(7), static_cast<unsigned char>(8));
    ZoSmartPointer<ZoMemoryBlock> handedOut = bytes.GetMemoryBlock();
    bytes.SetElementCount(100, 1);
    EXPECT_NE(handedOut->GetData(), reinterpret_cast<unsigned char*>(bytes.GetData()));
    EXPECT_EQ(handedOut->GetData()[1], 8);
    EXPECT_EQ(bytes[1], 8);
}

TEST(ZoArrayTest, CopiesTakeTheElementsButNotTheSpareCapacity)
{
    ZoArray<uint32_t, 0> source;
    source.SetGrowConstant(4);
    for (uint32_t i = 0; i < 5; ++i)
        source.Add(i);
    const ZoArray<uint32_t, 0> copy(source);
    EXPECT_EQ(copy.GetMemoryElementCount(), 5u);
    EXPECT_EQ(copy.GetGrowConstant(), 4u);
    EXPECT_EQ(contents(copy), contents(source));
    ZoArray<uint32_t, 0> assigned;
    assigned = source;
    EXPECT_EQ(contents(assigned), contents(source));
    assigned.Add(assigned);
    EXPECT_EQ(assigned.GetCount(), 10u);
    EXPECT_EQ(assigned[7], 2u);
    source.Reset(9u);
    EXPECT_EQ(contents(source), std::vector<uint32_t>(5, 9u));
    source.Reset();
    EXPECT_EQ(contents(source), std::vector<uint32_t>(5, 0u));
}

TEST(ZoArrayTest, RandomOperationsMatchAVectorModel)
{
    const unsigned seed = std::random_device{}();
    std::mt19937 random(seed);
    ZoArray<uint32_t, 1> array;
    std::vector<uint32_t> model;
    for (int step = 0; step < 5000; ++step) {
        const uint32_t value = random();
        const uint32_t count = static_cast<uint32_t>(model.size());
        switch (random() % 7) {
        case 0:
        case 1:
            array.Add(value);
            model.push_back(value);
            break;
        case 2: {
            const uint32_t at = count == 0 ? 0 : random() % (count + 1);
            array.InsertBefore(at, value, 1, 1);
            model.insert(model.begin() + at, value);
            break;
        }
        case 3:
            if (count != 0) {
                const uint32_t at = random() % count;
                array.Remove(at);
                model.erase(model.begin() + at);
            }
            break;
        case 4: {
            const int places = static_cast<int>(random() % 7) - 3;
            array.Rotate(places);
            if (count != 0) {
                const int shift = ((places % static_cast<int>(count)) + static_cast<int>(count)) % static_cast<int>(count);
                std::rotate(model.begin(), model.end() - shift, model.end());
            }
            break;
        }
        case 5:
            array.Reverse();
            std::reverse(model.begin(), model.end());
            break;
        case 6: {
            const uint32_t newCount = random() % 40;
            array.SetElementCount(newCount, 1);
            for (uint32_t i = count; i < newCount; ++i)
                array[i] = value;
            model.resize(newCount, value);
            break;
        }
        }
        ASSERT_EQ(contents(array), model) << "seed " << seed << " step " << step;
        ASSERT_LE(array.GetCount(), array.GetMemoryElementCount());
    }
}

} // namespace
