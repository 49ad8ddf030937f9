#include "base/ZoAttributeContainer.h"
#include "base/ZoConstructorDefault.h"
#include "base/ZoExceptionContainer.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "ZoContainerTestSupport.h"
#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

typedef ZoSmartPointer<ZoAttributeDefinition> Definition;

Definition plain(uint32_t size, uint32_t id) { return Definition(new ZoAttributeDefinition(size, id, nullptr, nullptr, 0)); }

// Constructors write a fresh serial, destructors must find a live one: lost or doubled calls show.
struct Counting
{
    std::set<uint32_t> live;
    uint32_t serial = 0;
    int badDestructions = 0;
    std::vector<unsigned char*> destroyedAt;
};

struct CountingConstructor : ZoConstructor
{
    explicit CountingConstructor(Counting& counting) : m_counting(counting) {}
    void Init(unsigned char* memory, uint32_t) const override
    {
        std::memcpy(memory, &++m_counting.serial, 4);
        m_counting.live.insert(m_counting.serial);
    }
    Counting& m_counting;
};

struct CountingDestructor : ZoDestructor
{
    explicit CountingDestructor(Counting& counting) : m_counting(counting) {}
    void Destroy(unsigned char* memory, uint32_t) const override
    {
        uint32_t id = 0;
        std::memcpy(&id, memory, 4);
        m_counting.destroyedAt.push_back(memory);
        m_counting.badDestructions += m_counting.live.erase(id) == 1 ? 0 : 1;
    }
    Counting& m_counting;
};

Definition counted(Counting& counting, uint32_t size, uint32_t id)
{
    return Definition(new ZoAttributeDefinition(size, id, new CountingConstructor(counting), new CountingDestructor(counting), 1));
}

// Records every hook call and rebases the record addresses the test holds, as a real holder does.
class Recording : public ZoAttributeContainer
{
public:
    explicit Recording(uint32_t containers = 1, uint32_t growFactor = 4) : ZoAttributeContainer(containers, growFactor) {}

    struct Move
    {
        uint32_t c, oldSize, newSize;
        ZoSmartPointer<ZoMemoryBlock> oldBlock, newBlock;
    };
    std::vector<Move> moves;
    std::vector<uint32_t> created, emptied;
    std::vector<unsigned char*> records;

protected:
    void onElementsMoved(uint32_t c, uint32_t oldSize, const ZoSmartPointer<ZoMemoryBlock>& oldBlock, uint32_t newSize,
                         const ZoSmartPointer<ZoMemoryBlock>& newBlock) override
    {
        moves.push_back({c, oldSize, newSize, oldBlock, newBlock});
        const unsigned char* oldBase = oldBlock.IsNull() ? nullptr : oldBlock->GetData();
        for (unsigned char*& record : records)
            record = newBlock->GetData() + (record - oldBase) / oldSize * newSize;
    }
    void onElementsCreated(uint32_t c, uint32_t, const ZoSmartPointer<ZoMemoryBlock>&) override { created.push_back(c); }
    void onContainerEmptied(uint32_t c) override { emptied.push_back(c); }
};

TEST(ZoAttributeContainerTest, HolesAreFilledBestFitOneByOneOrSmallestFirstFromAList)
{
    Recording container;
    Definition a8 = plain(8, 1), b4 = plain(4, 2), c4 = plain(4, 3), d4 = plain(4, 4);
    for (const Definition& definition : {a8, b4, c4, d4})
        container.Assert(0, 3, definition);
    EXPECT_TRUE(container.getElementSize(0) == 20u && container.GetCount(0) == 3u);
    EXPECT_EQ(container.created, std::vector<uint32_t>{0});
    container.Destroy(a8, 1);
    container.Destroy(b4, 1);
    container.Destroy(c4, 1);
    EXPECT_TRUE(!a8->Exists() && container.getElementSize(0) == 20u);
    const size_t movesBefore = container.moves.size();
    auto holesOf = [](const ZoAttributeContainer& of) {
        std::vector<std::pair<uint32_t, uint32_t>> holes;
        for (auto position = of.GetFreeAttributes(0).GetHeadPosition(); position != nullptr; of.GetFreeAttributes(0).GetNext(position))
            holes.emplace_back(of.GetFreeAttributes(0).GetAt(position).offset, of.GetFreeAttributes(0).GetAt(position).size);
        return holes;
    };
    // Holes 8@0, 4@8, 4@12: 2 bytes take the first of the smallest fitting holes (tried on a copy).
    ZoAttributeContainer copy(container);
    Definition early2 = plain(2, 8);
    copy.Assert(0, 0, early2);
    EXPECT_EQ(early2->GetIndex(), 8u);
    EXPECT_EQ(holesOf(copy), (std::vector<std::pair<uint32_t, uint32_t>>{{0, 8}, {10, 2}, {12, 4}}));
    // 4 bytes take the first 4-byte hole exactly, then 2 bytes the one hole of 4 left, leaving 2@14.
    Definition x4 = plain(4, 5), y2 = plain(2, 6);
    container.Assert(0, 0, x4);
    container.Assert(0, 0, y2);
    EXPECT_TRUE(x4->GetIndex() == 8u && y2->GetIndex() == 12u);
    EXPECT_EQ(holesOf(container), (std::vector<std::pair<uint32_t, uint32_t>>{{0, 8}, {14, 2}}));
    EXPECT_EQ(container.moves.size(), movesBefore); // reusing holes moves no record
    EXPECT_EQ(container.getElementSize(0), 20u);
    EXPECT_EQ(container.GetAttributeDefinition(0, 6), y2);
    // One that fits no hole repacks: the holes close and the record is the definitions' bytes.
    Definition z16 = plain(16, 7);
    container.Assert(0, 0, z16);
    EXPECT_EQ(container.moves.size(), movesBefore + 1);
    EXPECT_EQ((std::vector<uint32_t>{d4->GetIndex(), x4->GetIndex(), y2->GetIndex(), z16->GetIndex()}), (std::vector<uint32_t>{0, 4, 8, 10}));
    EXPECT_TRUE(container.getElementSize(0) == 26u && container.GetFreeAttributes(0).IsEmpty());
    zotest::ExpectThrowSite<ZoExceptionContainer>([&] { container.GetAttributeDefinition(0, 1); }, nullptr, "ZoAttributeContainer",
                                                  "GetAttributeDefinition", 1011);
    for (const auto& arguments : {std::pair<uint32_t, uint32_t>{0, 1}, {1, 0}})
        zotest::ExpectThrowSite<ZoExceptionContainer>([&] { ZoAttributeContainer bad(arguments.first, arguments.second); },
                                                      "..\\base\\ZoAttributeContainer.cpp", "ZoAttributeContainer",
                                                      "_ZoAttributeContainer", 38);
    // A list of definitions is placed smallest first, the rest after one enlargement.
    Recording lists;
    Definition a4 = plain(4, 1), b2 = plain(2, 2), keep = plain(4, 3);
    for (const Definition& definition : {a4, b2, keep})
        lists.Assert(0, 2, definition);
    lists.Destroy(a4, 1); // hole 4@0
    lists.Destroy(b2, 1); // hole 2@4
    const size_t listMoves = lists.moves.size();
    ZoAttributeDefinitionList list;
    Definition big = plain(8, 10), one = plain(1, 11), two = plain(2, 12), three = plain(3, 13);
    for (const Definition& definition : {big, three, one, two})
        list.AddTail(definition);
    lists.Assert(0, 0, list);
    // Sorted 1, 2, 3, 8: 1 and 2 fill holes, 3 fits none (2@2 remains): 3 and 8 after one enlargement.
    std::vector<uint32_t> order;
    for (auto position = list.GetHeadPosition(); position != nullptr;)
        order.push_back(list.GetNext(position)->GetElementSize());
    EXPECT_EQ(order, (std::vector<uint32_t>{1, 2, 3, 8}));
    EXPECT_TRUE(lists.moves.size() == listMoves + 1 && lists.GetAttributeCount(0) == 5u);
    EXPECT_EQ(lists.getElementSize(0), 4u + 1 + 2 + 3 + 8);
    EXPECT_TRUE(list.GetTotalSize() == 14u && list.GetNumSerializableItems() == 0u);
    std::set<uint32_t> bytes;
    for (const Definition& definition : {keep, one, two, three, big})
        for (uint32_t i = 0; i < definition->GetElementSize(); ++i)
            EXPECT_TRUE(bytes.insert(definition->GetIndex() + i).second) << "overlap at " << definition->GetIndex() + i;
}

TEST(ZoAttributeContainerTest, MovesCarryOldAndNewBlocksAndReleasedRecordsAreReusedLastFirst)
{
    Recording container(2, 2);
    Definition value = Definition(new ZoAttributeDefinition(4, 1, new ZoConstructorDefault(), nullptr, 0)), other = plain(4, 2);
    ZoAttributeDefinition assigned;
    assigned = *plain(8, 9);
    EXPECT_TRUE(assigned.GetElementSize() == 8u && assigned.GetUniqueID() == 9u) << "assignment copies the definition";
    container.Assert(1, 0, value);
    auto valueOf = [&](const unsigned char* at) {
        uint32_t stored = 0;
        std::memcpy(&stored, at, 4);
        return stored;
    };
    for (uint32_t i = 0; i < 7; ++i) {
        container.records.push_back(container.CreateElement(1));
        const uint32_t stored = 100 + i;
        std::memcpy(container.GetData(container.records.back(), *value), &stored, 4);
    }
    ASSERT_FALSE(container.moves.empty());
    for (const Recording::Move& move : container.moves)
        ASSERT_TRUE(move.c == 1u && !move.newBlock.IsNull());
    const size_t movesBefore = container.moves.size();
    container.Assert(1, 0, other);
    ASSERT_EQ(container.moves.size(), movesBefore + 1);
    const Recording::Move& move = container.moves.back();
    EXPECT_TRUE(move.oldSize == 4u && move.newSize == 8u && move.oldBlock.Get() != move.newBlock.Get());
    for (uint32_t i = 0; i < 7; ++i) {
        EXPECT_EQ(valueOf(move.oldBlock->GetData() + 4 * i), 100 + i);
        EXPECT_EQ(valueOf(container.GetData(container.records[i], *value)), 100 + i);
    }
    EXPECT_TRUE(container.emptied.empty());
    container.ReleaseElement(1, container.records[2]);
    container.ReleaseElement(1, container.records[5]);
    EXPECT_EQ(container.GetCount(1), 5u);
    // A move while records are free rebases the free list too.
    container.SetMemoryElementCount(1, 40);
    EXPECT_EQ(container.CreateElement(1), container.records[5]);
    EXPECT_EQ(container.CreateElement(1), container.records[2]);
    EXPECT_EQ(valueOf(container.GetData(container.records[2], *value)), 0u);
    EXPECT_EQ(container.GetCount(0), 0u);
    container.Destroy(other, 0);
    container.Destroy(value, 0);
    EXPECT_TRUE(container.getElementSize(1) == 0u && container.CreateElement(1) == nullptr);
    EXPECT_EQ(container.emptied, std::vector<uint32_t>{1});
}

TEST(ZoAttributeContainerTest, EveryConstructedAttributeIsDestroyedOnce)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed);
    std::mt19937 random(seed);
    Counting counting;
    {
        Recording container(1, 3);
        std::vector<Definition> placed, unplaced;
        for (uint32_t id = 0; id < 8; ++id)
            unplaced.push_back(id % 3 == 0 ? plain(2 + id % 5, id) : counted(counting, 4 * (1 + id % 3), id));
        uint32_t live = 0;
        for (int step = 0; step < 400; ++step) {
            const uint32_t operation = random() % 6;
            if (operation < 2 && !(operation == 0 ? unplaced : placed).empty()) { // assert or destroy one
                std::vector<Definition>& from = operation == 0 ? unplaced : placed;
                const size_t pick = random() % from.size();
                const Definition definition = from[pick];
                from.erase(from.begin() + pick);
                const uint32_t argument = random();
                operation == 0 ? container.Assert(0, argument % 3, definition) : container.Destroy(definition, argument % 2);
                (operation == 0 ? placed : unplaced).push_back(definition);
                live = container.GetCount(0);
            }
            if (operation == 2 || operation == 3)
                live += container.CreateElement(0) != nullptr ? 1 : 0;
            else if (operation == 4)
                container.SetMemoryElementCount(0, random() % 20);
            else if (operation == 5 && random() % 4 == 0) {
                container.ReleaseAllElements(0);
                live = 0;
            }
            ASSERT_TRUE(container.GetCount(0) == live && counting.badDestructions == 0) << "step " << step;
            uint32_t countedPlaced = 0;
            for (const Definition& definition : placed)
                countedPlaced += definition->GetConstructor().IsNull() ? 0 : 1;
            ASSERT_EQ(counting.live.size(), size_t(live) * countedPlaced) << "step " << step;
        }
        container.ReleaseAllElements(0);
    }
    EXPECT_TRUE(counting.live.empty() && counting.badDestructions == 0);
}

TEST(ZoAttributeContainerTest, ReleaseHandsDestructorsTheRecordStartAndCopiesKeepRecordsAndParameters)
{
    Counting counting;
    ZoAttributeContainer destroying(1, 10);
    destroying.Assert(0, 0, counted(counting, 4, 1));
    destroying.Assert(0, 0, counted(counting, 4, 2));
    unsigned char* first = destroying.CreateElement(0);
    counting.destroyedAt.clear();
    destroying.ReleaseElement(0, first);
    EXPECT_EQ(counting.destroyedAt, (std::vector<unsigned char*>{first, first}));

    ZoAttributeParameter parameter;
    ZoStreamWriteBinaryMemory written;
    parameter.Serialize(written);
    EXPECT_EQ(written.GetBuffer(), zotest::Bytes({0, 0, 0, 0}));
    ZoStreamReadBinaryMemory newer(zotest::Bytes({1, 0, 0, 0}));
    EXPECT_THROW(parameter.Serialize(newer), ZoExceptionWrongFileVersion);
    ZoAttributeContainer container(2, 10);
    Definition value = plain(4, 9);
    container.Assert(0, 0, value);
    ASSERT_FALSE(container.GetAttributeParameter(*value).IsNull());
    ZoSmartPointer<ZoAttributeParameter> own(new ZoAttributeParameter());
    container.SetAttributeParameter(*value, own);
    EXPECT_EQ(container.GetAttributeParameter(*value), own);

    unsigned char* record = container.CreateElement(0);
    std::memcpy(record, "abcd", 4);
    container.ReleaseElement(0, container.CreateElement(0));
    const ZoAttributeContainer copy(container);
    EXPECT_TRUE(copy.GetCount(0) == 1u && copy.getElementSize(0) == 4u);
    ZoAttributeContainer assigned(3, 1);
    assigned = copy;
    EXPECT_TRUE(assigned.GetContainerCount() == 2u && assigned.CreateElement(0) != nullptr && assigned.GetCount(0) == 2u);
    unsigned char* target = container.CreateElement(0);
    container.Copy(0, record, target);
    EXPECT_EQ(std::memcmp(target, "abcd", 4), 0);
}

} // namespace
