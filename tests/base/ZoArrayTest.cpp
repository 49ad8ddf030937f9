#include "base/ZoArray.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoArrayManaged.h"
#include "base/ZoArrayOfLists.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "ZoContainerTestSupport.h"
#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <vector>

namespace {

using zotest::Bytes;
using zotest::Counted;

template <class T, int P>
std::vector<T> contents(const ZoArray<T, P>& array)
{
    return std::vector<T>(array.GetData(), array.GetData() + array.GetCount());
}

template <class T, int P>
std::vector<int> values(const ZoArray<T, P>& array)
{
    std::vector<int> result;
    for (const T& element : contents(array))
        result.push_back(element.Value());
    return result;
}

std::vector<unsigned char> serialized(const ZoArray<unsigned char, 0>& array)
{
    ZoStreamWriteBinaryMemory out;
    array.Serialize(out);
    return out.GetBuffer();
}

TEST(ZoArrayTest, GrowthFollowsThePolicyAndCapacityCallsNeverCutElementsInUseWhenKeeping)
{
    ZoArray<uint32_t, 0> byConstant;
    ZoArray<unsigned char, 1> doubling;
    std::vector<uint32_t> constantCapacities, doublingCapacities;
    for (uint32_t i = 0; i < 11; ++i) {
        EXPECT_EQ(byConstant.Add(i), i == 0 || i == 10 ? 1 : 0) << i;
        constantCapacities.push_back(byConstant.GetMemoryElementCount());
        doubling.Add(static_cast<unsigned char>(i));
        doublingCapacities.push_back(doubling.GetMemoryElementCount());
    }
    EXPECT_EQ(constantCapacities, (std::vector<uint32_t>{10, 10, 10, 10, 10, 10, 10, 10, 10, 10, 20}));
    EXPECT_EQ(doublingCapacities, (std::vector<uint32_t>{1, 2, 4, 4, 8, 8, 8, 8, 16, 16, 16}));
    ZoArray<unsigned char, 0> bytes;
    EXPECT_EQ(bytes.GetMemoryUsage(), 52u);
    bytes.SetElementCount(5, 1);
    EXPECT_EQ(bytes.GetMemoryElementCount(), 5u); // exact, no policy rounding
    for (unsigned char i = 0; i < 5; ++i)
        bytes[i] = i;
    EXPECT_EQ(bytes.SetMemoryElementCount(2, 1), 0);
    // Keeping moves the elements into a fresh block: holders of the old one keep their data.
    ZoSmartPointer<ZoMemoryBlock> handedOut = bytes.GetMemoryBlock();
    EXPECT_EQ(bytes.SetMemoryElementCount(8, 1), 1);
    EXPECT_EQ(contents(bytes), (std::vector<unsigned char>{0, 1, 2, 3, 4}));
    EXPECT_TRUE(handedOut->GetData() != bytes.GetData() && handedOut->GetData()[4] == 4);
    EXPECT_EQ(bytes.SetMemoryElementCount(2, 0), 1);
    EXPECT_TRUE(bytes.GetCount() == 2u && bytes.GetMemoryUsage() == 54u);
    bytes.SetMemoryElementCount(0, 0);
    EXPECT_FALSE(bytes.HasMemoryBlock());
    // Copies take the elements and the policy but not the spare capacity.
    ZoArray<uint32_t, 0> source, assigned;
    source.SetGrowConstant(4);
    for (uint32_t i = 0; i < 5; ++i)
        source.Add(i);
    const ZoArray<uint32_t, 0> copy(source);
    assigned = source;
    EXPECT_TRUE(copy.GetMemoryElementCount() == 5u && copy.GetGrowConstant() == 4u);
    EXPECT_TRUE(contents(copy) == contents(source) && contents(assigned) == contents(source));
    source.Reset(9u);
    EXPECT_EQ(contents(source), std::vector<uint32_t>(5, 9u));
}

TEST(ZoArrayTest, ByteArraySerializesInTheVersionedFormReadsTheOlderOneAndRefusesDamage)
{
    const ZoArray<unsigned char, 0> three(3, static_cast<unsigned char>(0xA1), static_cast<unsigned char>(0xB2),
                                          static_cast<unsigned char>(0xC3));
    const std::vector<unsigned char> bytes = serialized(three);
    EXPECT_EQ(bytes, Bytes({0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 3, 0, 0, 0, 1, 0, 0, 0, 0xA1, 0xB2, 0xC3}));
    EXPECT_EQ(serialized(ZoArray<unsigned char, 0>(1, static_cast<unsigned char>(0x5A))),
              Bytes({0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 0x5A}));
    auto readBack = [](const std::vector<unsigned char>& from, ZoArray<unsigned char, 0> into) {
        ZoStreamReadBinaryMemory in(from);
        into.Serialize(in);
        EXPECT_EQ(in.GetRemaining(), 0u);
        return into;
    };
    EXPECT_TRUE(readBack(bytes, ZoArray<unsigned char, 0>(7)) == three);
    EXPECT_TRUE(readBack(Bytes({3, 0, 0, 0, 1, 0, 0, 0, 0xA1, 0xB2, 0xC3}), ZoArray<unsigned char, 0>()) == three); // the older form
    EXPECT_EQ(readBack(serialized(ZoArray<unsigned char, 0>()), ZoArray<unsigned char, 0>(9)).GetCount(), 0u);
    ZoArray<unsigned char, 0> large(3u << 20);
    for (uint32_t i = 0; i < large.GetCount(); ++i)
        large[i] = static_cast<unsigned char>(i * 7);
    const ZoArray<unsigned char, 0> largeRead = readBack(serialized(large), ZoArray<unsigned char, 0>());
    EXPECT_TRUE(largeRead == large && largeRead.GetMemoryElementCount() == large.GetCount());
    ZoArray<unsigned char, 0> array;
    auto readFrom = [&](const std::vector<unsigned char>& from) {
        ZoStreamReadBinaryMemory in(from);
        array.Serialize(in);
    };
    zotest::ExpectThrowSite<ZoExceptionWrongFileVersion>(
        [&] { readFrom(Bytes({0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 3, 0, 0, 0, 2, 0, 0, 0, 1, 2, 3, 4, 5, 6})); },
        "..\\base\\ZoArray.h", "ZoArray", "Serialize", 541); // an element size of 2
    EXPECT_THROW(readFrom(Bytes({0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0})),
                 ZoExceptionWrongFileVersion);
    EXPECT_THROW(readFrom(Bytes({0xFF, 0xFF, 0xFF, 0xFF, 2, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0})), ZoExceptionWrongFileVersion);
    EXPECT_THROW(readFrom(Bytes({0xFF, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 0xF0, 0xFF, 0xFF, 0xFF, 1, 0, 0, 0, 1, 2, 3})), ZoExceptionStream);
    EXPECT_LE(array.GetMemoryElementCount(), 1u << 20);
    for (size_t length = 0; length < bytes.size(); ++length) // every truncation
        EXPECT_THROW(readFrom(std::vector<unsigned char>(bytes.begin(), bytes.begin() + static_cast<long>(length))), ZoException) << length;
}

TEST(ZoArrayTest, DumpSeparatesElementsWithCommasOnly)
{
    ZoStreamWriteASCIIString text;
    int target = 0;
    ZoArray<unsigned char, 0>(3, static_cast<unsigned char>(1), static_cast<unsigned char>(20), static_cast<unsigned char>(255)).Dump(text);
    ZoArray<uint32_t, 0>().Dump(text);
    ZoArray<float, 1>(1, 0.5f).Dump(text);
    ZoArray<int*, 0>(2, &target, static_cast<int*>(nullptr)).Dump(text);
    EXPECT_EQ(text.GetText(), CString(u"1,20,2550.500000") + CString::Formatted(u"%p", static_cast<const void*>(&target)) + CString(u",0x0000000000000000"));
}

// The managed paths the model test does not take: default construction, growth, assignment.
TEST(ZoArrayTest, ManagedArraysConstructCopyAndDestroyEveryElementExactlyOnce)
{
    Counted::ResetCounts();
    {
        ZoArrayManaged<Counted, 1> array(3);
        EXPECT_EQ(Counted::counts().defaults, 3);
        for (int i = 0; i < 10; ++i)
            EXPECT_EQ(array.Add(Counted(i)), i == 0 || i == 3 || i == 9 ? 1 : 0) << i; // 3 -> 6 -> 12 -> 24
        EXPECT_EQ(Counted::counts().Live(), 13);
        array.SetElementCount(4, 1);
        EXPECT_EQ(array.SetMemoryElementCount(2, 1), 1); // never below the elements in use
        EXPECT_EQ(array.GetMemoryElementCount(), 4u);
        ZoArrayManaged<Counted, 1> assigned(20);
        assigned = array;
        EXPECT_TRUE(assigned == array && assigned.GetMemoryElementCount() == 4u);
        assigned.Reset(Counted(4));
        EXPECT_EQ(values(assigned), std::vector<int>(4, 4));
        EXPECT_EQ(Counted::counts().Live(), 4 + 4);
    }
    EXPECT_EQ(Counted::counts().Live(), 0);
}

TEST(ZoArrayTest, ArraysOfListsDrawEveryNodeFromOnePool)
{
    Counted::ResetCounts();
    {
        ZoArrayOfLists<Counted, 0x21, 0> lists(3, 4);
        const auto pool = lists.GetPlexManager();
        for (uint32_t i = 0; i < 3; ++i)
            for (int k = 0; k < 3; ++k)
                lists[i].AddTail(Counted(static_cast<int>(i) * 10 + k));
        EXPECT_EQ(pool->GetBlockCount(), 3u); // 9 nodes at 4 per block: shared, not one block per list
        // Growth moves the lists into new storage; they keep their nodes and the pool.
        for (int i = 0; i < 30; ++i)
            lists.Add(lists[0]);
        lists.InsertBefore(1u, 1, 1);
        ASSERT_EQ(lists.GetCount(), 34u);
        for (uint32_t i = 0; i < lists.GetCount(); ++i)
            EXPECT_EQ(lists[i].GetPlexManager(), pool) << i;
        EXPECT_TRUE(lists[1].IsEmpty() && lists[33].GetTail().Value() == 2);
        const uint32_t blocks = pool->GetBlockCount();
        lists[2].MoveToTail(lists[3]);
        EXPECT_TRUE(lists[2].GetCount() == 6u && lists[3].IsEmpty());
        EXPECT_EQ(pool->GetBlockCount(), blocks);
        ZoList<Counted, 0x21> outside(1, Counted(99));
        lists.Add(outside);
        const ZoArrayOfLists<Counted, 0x21, 0> copy(lists);
        EXPECT_TRUE(copy.GetPlexManager() == pool && copy[copy.GetCount() - 1].GetPlexManager() == pool);
        EXPECT_TRUE(copy[2].GetCount() == 6u && copy[copy.GetCount() - 1].GetHead().Value() == 99);
    }
    EXPECT_EQ(Counted::counts().Live(), 0);
}

std::vector<unsigned char> elementBytes(const ZoArrayDynamicSize& array)
{
    return std::vector<unsigned char>(array[0], array[0] + array.GetCount() * array.GetElementSize());
}

TEST(ZoArrayTest, DynamicSizeArraysWorkInWholeElementsAndSerializeCountSizeAndBytes)
{
    ZoArrayDynamicSize records(3, 4);
    for (uint32_t i = 0; i < 3; ++i)
        for (uint32_t b = 0; b < 4; ++b)
            records[i][b] = static_cast<unsigned char>(i * 16 + b);
    EXPECT_EQ(records.GetMemoryUsage(), 3u * 4u + 52u);
    records.InsertBefore(0u, *records[2], 1, 1);
    EXPECT_TRUE(records[0][3] == 0x23 && records[1][0] == 0x00);
    records.Remove(0);
    ZoArrayDynamicSize reserved(2, 8, 3);
    EXPECT_TRUE(reserved.GetMemoryElementCount() == 8u && reserved.GetCount() == 2u);
    const ZoArrayDynamicSize copied(records);
    ZoArrayDynamicSize narrowed(reserved);
    narrowed = records;
    EXPECT_TRUE(narrowed == copied);
    records.SetElementSize(2, 1);
    EXPECT_EQ(elementBytes(records), Bytes({0x00, 0x01, 0x10, 0x11, 0x20, 0x21}));
    records.Reset();
    EXPECT_EQ(elementBytes(records), std::vector<unsigned char>(6, 0));
    ZoArrayDynamicSize single(1, 2);
    single[0][0] = 7, single[0][1] = 8;
    single.SetElementSize(3, 1);
    EXPECT_TRUE(single[0][0] == 7 && single[0][1] == 8) << "a single element keeps its bytes too";
    // Only the elements in use are carried over: the spare element's old bytes stay behind.
    ZoArrayDynamicSize spare(2, 3, 2);
    spare.SetElementCount(3);
    spare[2][0] = 0xD7, spare[2][1] = 0x3B;
    spare.SetElementCount(2);
    spare.SetElementSize(4, 1);
    spare.SetElementCount(3);
    EXPECT_FALSE(spare[2][0] == 0xD7 && spare[2][1] == 0x3B);
    // The established copy takes count bytes, not count elements; the rest of the copy is zero.
    EXPECT_EQ(narrowed.GetElementSize(), 4u);
    EXPECT_EQ(elementBytes(narrowed), Bytes({0x00, 0x01, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 0}));
    // The binary form: count, element size, the bytes.
    ZoArrayDynamicSize pairs(2, 2), oneByte(1, 1);
    pairs[0][0] = 1, pairs[0][1] = 0xF0, pairs[1][0] = 2, pairs[1][1] = 0xF1, oneByte[0][0] = 0x5A;
    ZoStreamWriteBinaryMemory out, singleOut;
    pairs.Serialize(out);
    oneByte.Serialize(singleOut);
    EXPECT_EQ(out.GetBuffer(), Bytes({2, 0, 0, 0, 2, 0, 0, 0, 1, 0xF0, 2, 0xF1}));
    EXPECT_EQ(singleOut.GetBuffer(), Bytes({1, 0, 0, 0, 1, 0, 0, 0, 0x5A})) << "a single byte of data is written too";
    ZoArrayDynamicSize other(5, 7), same(2, 2);
    for (ZoArrayDynamicSize* read : {&other, &same}) {
        ZoStreamReadBinaryMemory in(out.GetBuffer());
        read->Serialize(in);
        EXPECT_TRUE(read->GetElementSize() == 2u && *read == pairs);
    }
    // Element sizes or counts far beyond the data: the stream exception, no huge allocation.
    for (const auto& bytes : {Bytes({1, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 1, 2, 3}), Bytes({0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 1}),
                              Bytes({2, 0, 0, 0, 2, 0, 0, 0, 1, 0xF0, 2}), Bytes({2, 0, 0})}) {
        ZoArrayDynamicSize damaged;
        ZoStreamReadBinaryMemory damagedIn(bytes);
        EXPECT_THROW(damaged.Serialize(damagedIn), ZoException);
        EXPECT_LE(static_cast<uint64_t>(damaged.GetMemoryElementCount()) * damaged.GetElementSize(), 1u << 20);
    }
}

TEST(ZoArrayTest, RandomOperationsOnManagedAndPlainArraysMatchAVectorModel)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    Counted::ResetCounts();
    {
        ZoArrayManaged<Counted, 0> managed;
        ZoArray<uint32_t, 0> plain;
        managed.SetGrowConstant(3);
        plain.SetGrowConstant(3);
        std::vector<int> model;
        for (int step = 0; step < 4000; ++step) {
            const uint32_t count = static_cast<uint32_t>(model.size());
            const uint32_t at = count == 0 ? 0 : random() % count;
            const bool flip = random() % 2;
            // A quarter of the added values are the arrays' own elements, which must survive a move.
            const uint32_t own = random() % 4 == 0 && count != 0 ? random() % count : count;
            const int value = own < count ? model[own] : static_cast<int>(random() % 1000);
            {
                const Counted fresh(value);
                const uint32_t freshPlain = static_cast<uint32_t>(value);
                const Counted& m = own < count ? managed[own] : fresh;
                const uint32_t& p = own < count ? plain[own] : freshPlain;
                auto both = [&](auto operation) {
                    operation(managed, m);
                    operation(plain, p);
                };
                switch (random() % 9) {
                case 0:
                    both([](auto& array, const auto& v) { array.Add(v); });
                    model.push_back(value);
                    break;
                case 1: { // before any index up to the count itself (which appends), or after an element
                    const uint32_t before = flip || count == 0 ? random() % (count + 1) : at + 1;
                    both([&](auto& array, const auto& v) { flip || count == 0 ? array.InsertBefore(before, v, 1, 1) : array.InsertAfter(at, v, 1, 1); });
                    model.insert(model.begin() + before, value);
                    break;
                }
                case 7: { // a hole: a default element in the managed array, bytes to fill in the plain one
                    const uint32_t before = random() % (count + 1);
                    both([&](auto& array, const auto&) { array.InsertBefore(before, 1, 1); });
                    plain[before] = 0;
                    model.insert(model.begin() + before, 0);
                    break;
                }
                case 2: { // head, tail or one at a random index; at either end an empty array stays empty
                    const uint32_t end = random() % 3;
                    both([&](auto& array, const auto&) { end == 0 ? array.RemoveHead() : end == 1 ? array.RemoveTail() : count != 0 ? array.Remove(at) : void(); });
                    if (count != 0)
                        model.erase(model.begin() + (end == 0 ? 0 : end == 1 ? count - 1 : at));
                    break;
                }
                case 3: {
                    const int places = static_cast<int>(random() % 9) - 4, n = static_cast<int>(count);
                    both([&](auto& array, const auto&) { array.Rotate(places); });
                    if (n != 0)
                        std::rotate(model.begin(), model.end() - ((places % n) + n) % n, model.end());
                    break;
                }
                case 4:
                    both([](auto& array, const auto&) { array.Reverse(); });
                    std::reverse(model.begin(), model.end());
                    break;
                case 5: {
                    const uint32_t newCount = random() % 30;
                    both([&](auto& array, const auto&) { array.SetElementCount(newCount, 1); });
                    for (uint32_t i = count; i < newCount; ++i)
                        plain[i] = 0;
                    model.resize(newCount, 0);
                    break;
                }
                case 6: {
                    const uint32_t memory = random() % 40;
                    both([&](auto& array, const auto&) { array.SetMemoryElementCount(memory, flip); });
                    if (!flip) { // without keep the managed survivors start afresh (the plain bytes survive)
                        model.resize(std::min<size_t>(model.size(), memory));
                        for (uint32_t i = 0; i < model.size(); ++i)
                            managed[i] = Counted(model[i]);
                    }
                    break;
                }
                default: { // another array appended, or the array itself
                    const bool itself = random() % 4 == 0;
                    const uint32_t n = itself ? count : random() % 5;
                    ZoArrayManaged<Counted, 0> tail;
                    ZoArray<uint32_t, 0> plainTail;
                    for (uint32_t i = 0; i < n && !itself; ++i) {
                        tail.Add(Counted(value + static_cast<int>(i)));
                        plainTail.Add(static_cast<uint32_t>(value) + i);
                    }
                    managed.Add(itself ? managed : tail);
                    plain.Add(itself ? plain : plainTail);
                    for (uint32_t i = 0; i < n; ++i)
                        model.push_back(itself ? model[i] : value + static_cast<int>(i));
                    break;
                }
                }
            }
            ASSERT_EQ(values(managed), model) << "step " << step;
            ASSERT_EQ(contents(plain), std::vector<uint32_t>(model.begin(), model.end())) << "step " << step;
            ASSERT_LE(managed.GetCount(), managed.GetMemoryElementCount());
            ASSERT_EQ(Counted::counts().Live(), static_cast<int>(model.size())) << "step " << step;
        }
    }
    EXPECT_EQ(Counted::counts().Live(), 0);
}

} // namespace
