#include "base/ZoList.h"
#include "base/ZoListSorted.h"
#include "ZoContainerTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <random>
#include <set>
#include <vector>

namespace {

using zotest::Counted;

// The elements in order, after checking that back links, count, ends and ring state agree.
template <class List>
auto walk(const List& list)
{
    std::vector<std::decay_t<decltype(list.GetHead())>> forward, backward;
    typename List::Position position = list.GetHeadPosition();
    for (uint32_t i = 0; i < list.GetCount() && position != nullptr; ++i)
        forward.push_back(list.GetNext(position));
    position = list.GetTailPosition();
    for (uint32_t i = 0; i < list.GetCount() && position != nullptr; ++i)
        backward.insert(backward.begin(), list.GetPrev(position));
    EXPECT_EQ(forward.size(), list.GetCount()) << "the chain ends early";
    EXPECT_EQ(backward, forward) << "back links disagree with forward links";
    const bool closed = list.IsClosed() != 0 && list.GetCount() != 0;
    EXPECT_EQ(list.GetHeadPosition() == nullptr || list.GetTailPosition() == nullptr, list.GetCount() == 0);
    if (list.GetCount() != 0) {
        EXPECT_EQ(list.GetNextPosition(list.GetTailPosition()), closed ? list.GetHeadPosition() : nullptr);
        EXPECT_EQ(list.GetPrevPosition(list.GetHeadPosition()), closed ? list.GetTailPosition() : nullptr);
    }
    return forward;
}

template <class Flags>
struct ZoListPolicyTest : testing::Test
{
};
typedef testing::Types<std::integral_constant<int, 0x21>, std::integral_constant<int, 0x22>> Policies;
TYPED_TEST_SUITE(ZoListPolicyTest, Policies);

TYPED_TEST(ZoListPolicyTest, SearchesStopAtTheEndsCopiesCopyInOrderAndOpenListsRefuseNewHeads)
{
    typedef ZoList<int, TypeParam::value> List;
    List list, other, empty;
    for (int v : {5, 7, 5, 9})
        list.AddTail(v);
    other.AddTail(5);
    const auto second = list.FindIndexPos(1);
    EXPECT_EQ(list.Find(5), &list.GetHead());
    EXPECT_EQ(list.Find(5, list.GetHeadPosition()), &list.GetAt(list.FindIndexPos(2)));
    EXPECT_EQ(list.Find(7, second), nullptr);
    EXPECT_EQ(list.FindPos(9), list.GetTailPosition());
    EXPECT_EQ(list.FindPos(5, second), list.FindIndexPos(2));
    EXPECT_EQ(list.FindPos(5, list.GetTailPosition()), nullptr);
    EXPECT_EQ(list.FindPos(4), nullptr);
    EXPECT_TRUE(list.Exists(9) && !list.Exists(8));
    EXPECT_TRUE(list.FindIndexPos(4) == nullptr && list.FindIndexPos(3) == list.GetTailPosition());
    EXPECT_EQ(list.FindIndex(other.GetHeadPosition()), 0xFFFFFFFFu);
    EXPECT_TRUE(empty.FindIndex(nullptr) == 0xFFFFFFFFu && empty.Find(1) == nullptr);
    List source(3, 1, 2, 3), target(2);
    const List shared(source), own(source, 0);
    EXPECT_TRUE(shared.GetPlexManager() == source.GetPlexManager() && own.GetPlexManager() != source.GetPlexManager());
    EXPECT_EQ(own.GetPlexManager()->GetNodesPerBlock(), 3u);
    EXPECT_EQ(walk(own), (std::vector<int>{1, 2, 3}));
    target.AddTail(9);
    target = source;
    EXPECT_EQ(walk(target), (std::vector<int>{1, 2, 3}));
    target.AddHead(own);
    target.AddTail(own);
    EXPECT_EQ(walk(target), (std::vector<int>{1, 2, 3, 1, 2, 3, 1, 2, 3}));
    target.AddTail(target);
    target.AddHead(target);
    EXPECT_EQ(walk(target).size(), 36u);
    // Position setters throw on open lists and change nothing.
    zotest::ExpectThrowSite<ZoException>([&] { source.SetTailPosition(source.GetHeadPosition()); },
                                         "..\\base\\ZoListBaseIntermediate.cpp", "ZoListBaseIntermediate", "SetHead", 179);
    zotest::ExpectThrowSite<ZoException>([&] { source.SetHeadPosition(source.GetTailPosition()); },
                                         "..\\base\\ZoListPolicyDoubleLinked.cpp", "ZoListPolicyDoubleLinked", "SetHead", 215);
    EXPECT_EQ(walk(source), (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(ZoListPolicyTest, NodesComeFromThePoolAndTheTailNodeIsReusedFirst)
{
    typedef ZoList<int, TypeParam::value> List;
    List list(4);
    const auto& pool = list.GetPlexManager();
    for (int i = 0; i < 10; ++i)
        list.AddTail(i);
    EXPECT_TRUE(pool->GetBlockCount() == 3u && pool->GetFreeNodeCount() == 2u);
    EXPECT_EQ(static_cast<typename List::Node*>(list.FindIndexPos(1)) + 1, static_cast<typename List::Node*>(list.GetHeadPosition()));
    // A block is a 16-byte header and its nodes; they are handed out last to first.
    EXPECT_EQ(list.GetMemoryUsage(), sizeof(List) + sizeof(*pool) + 3 * (16 + 4 * sizeof(typename List::Node)));
    // RemoveAll frees head to tail, so the old tail's node comes back first.
    const auto oldTail = list.GetTailPosition();
    list.RemoveAll();
    EXPECT_EQ(pool->GetFreeNodeCount(), 12u);
    list.AddTail(1);
    EXPECT_TRUE(list.GetHeadPosition() == oldTail && pool->GetBlockCount() == 3u);
    List none(0);
    EXPECT_THROW(none.AddTail(1), std::bad_alloc);
}

TYPED_TEST(ZoListPolicyTest, SplicingFromAnotherPoolMergesItAndLeavesTheDonorEmpty)
{
    typedef ZoList<Counted, TypeParam::value> List;
    Counted::ResetCounts();
    {
        List receiver(2);
        receiver.AddTail(Counted(1));
        {
            List donor(3);
            for (int i = 2; i < 6; ++i)
                donor.AddTail(Counted(i));
            const typename List::PlexManager* pool = donor.GetPlexManager().Get();
            receiver.MoveToTail(donor);
            EXPECT_TRUE(donor.IsEmpty());
            EXPECT_EQ(pool->GetBlockCount() + pool->GetFreeNodeCount(), 0u);
        } // the donor dies here; it must free none of the moved nodes
        EXPECT_EQ(receiver.GetPlexManager()->GetBlockCount(), 1u + 2u);
        std::vector<int> seen;
        for (const Counted& c : walk(receiver))
            seen.push_back(c.Value());
        EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4, 5}));
        // A donor whose pool also serves others keeps it; the receiver adopts that pool instead.
        List a(2), b(a.GetPlexManager()), lone(4);
        a.AddTail(Counted(10));
        b.AddTail(Counted(11));
        lone.AddTail(Counted(12));
        lone.MoveToTail(a);
        EXPECT_EQ(lone.GetPlexManager(), b.GetPlexManager());
        // Both pools shared: the elements are copied, every list keeps its own pool.
        List c(b.GetPlexManager()), d(3), e(d.GetPlexManager());
        c.AddTail(Counted(13));
        d.AddTail(Counted(14));
        e.AddTail(Counted(15));
        d.MoveToHead(c);
        EXPECT_TRUE(c.IsEmpty());
        EXPECT_EQ(d.GetHead().Value(), 13);
        EXPECT_EQ(d.GetPlexManager(), e.GetPlexManager());
        List copy(receiver);
        copy.RemoveHead();
        d = copy;
        List moved(std::move(copy));
        EXPECT_TRUE(copy.IsEmpty());
        EXPECT_EQ(walk(moved).size(), 4u);
        EXPECT_EQ(Counted::counts().Live(), 17);
        receiver.RemoveAll();
        EXPECT_EQ(Counted::counts().Live(), 12);
    }
    EXPECT_EQ(Counted::counts().Live(), 0);
}

// Ring cases the model test never reaches: searches stopping at the head, one-node rings, closed targets.
TEST(ZoListTest, RingsSearchFromTheHeadAndStayLinkedWhenBuiltCopiedAndSplicedInto)
{
    ZoList<int, 0x22> pair(2, 1, 2);
    pair.SetClosed();
    EXPECT_TRUE(pair.Find(1) == nullptr && pair.Find(2) == nullptr && !pair.Exists(2));
    EXPECT_EQ(pair.FindPos(2), pair.GetTailPosition());
    EXPECT_EQ(pair.FindPos(1, pair.GetTailPosition()), pair.GetHeadPosition()); // wraps past the tail
    EXPECT_EQ(pair.Find(2, pair.GetHeadPosition()), &pair.GetTail());           // a start inside the ring
    EXPECT_EQ(pair.Find(1, pair.GetTailPosition()), nullptr);
    auto position = pair.GetTailPosition();
    EXPECT_TRUE(pair.GetNext(position) == 2 && position == pair.GetHeadPosition());
    pair.SetOpen();
    EXPECT_EQ(pair.Find(2), &pair.GetTail());

    ZoListSorted<int, int, 0x22> ring(3);
    ring.SetClosed(); // closing an empty list only sets the flag
    ring.AddTail(2);
    EXPECT_EQ(walk(ring), (std::vector<int>{2}));
    ring.AddHead(1);
    ring.InsertAfter(ring.GetTailPosition(), 4);
    ring.InsertSorted([](int a, int b) { return a - b; }, 3);
    const ZoListSorted<int, int, 0x22> copy(ring, 0);
    EXPECT_TRUE(copy.IsClosed());
    EXPECT_EQ(walk(copy), (std::vector<int>{1, 2, 3, 4}));
    ZoList<int, 0x22> open(3, 7, 8, 9), target(3);
    target.SetClosed();
    open.ExtractToList(open.FindIndexPos(1), open.GetTailPosition(), target);
    EXPECT_TRUE(target.IsClosed() && walk(open) == std::vector<int>{7});
    EXPECT_EQ(walk(target), (std::vector<int>{8, 9}));
    ring.MoveToTail(target);
    EXPECT_EQ(walk(ring), (std::vector<int>{1, 2, 3, 4, 8, 9}));
    while (!ring.IsEmpty())
        ring.RemoveHead();
    walk(ring);
}

struct Item
{
    int key, id;
    bool operator==(const Item& other) const { return key == other.key && id == other.id; }
};
int byKey(Item a, Item b) { return a.key - b.key; }
std::vector<int> ids(const std::vector<Item>& items)
{
    std::vector<int> result;
    for (const Item& item : items)
        result.push_back(item.id);
    return result;
}

// A list and a second one for splices against std::list models, contents and links checked every step.
template <int Flags>
void runRandomListModel(unsigned seed)
{
    typedef ZoListSorted<Item, int, Flags> List;
    typedef typename List::Position Position;
    std::mt19937 random(seed);
    List list(3), other(3);
    std::list<Item> model, otherModel;
    int nextId = 0;
    auto item = [&] { return Item{static_cast<int>(random() % 8), nextId++}; };
    auto at = [](std::list<Item>& m, uint32_t index) { return std::next(m.begin(), index); };
    for (int step = 0; step < 3000; ++step) {
        const uint32_t operation = random() % 15;
        const uint32_t count = static_cast<uint32_t>(model.size());
        const uint32_t i = count == 0 ? 0 : random() % count;
        const uint32_t j = count == 0 ? 0 : i + random() % (count - i);
        const Position pos = list.FindIndexPos(i), to = list.FindIndexPos(j);
        bool flip = random() % 2;
        if (count == 0 && operation > 1 && operation < 11) {
            model.push_back(list.AddTail(item()));
            continue;
        }
        switch (operation) {
        case 0: // a quarter of the adds take the default-valued form, which hands out the new element
            if (flip)
                model.push_front(random() % 4 == 0 ? list.AddHead() = item() : list.AddHead(item()));
            else
                model.push_back(random() % 4 == 0 ? list.AddTail() = item() : list.AddTail(item()));
            break;
        case 1: { // ascending or descending, after the equal ones either way
            const Item value = item();
            ASSERT_EQ(list.GetAt(list.InsertSorted(byKey, value, flip)).id, value.id);
            model.insert(std::find_if(model.begin(), model.end(), [&](const Item& e) { return flip ? e.key < value.key : e.key > value.key; }), value);
            break;
        }
        case 2: { // a null anchor inserts at the tail, or before the head
            const bool null = random() % 6 == 0;
            if (flip)
                model.insert(null ? model.end() : std::next(at(model, i)), list.InsertAfter(null ? nullptr : pos, item()));
            else
                model.insert(null ? model.begin() : at(model, i), list.InsertBefore(null ? nullptr : pos, item()));
            break;
        }
        case 3: {
            const uint32_t how = random() % 3;
            how == 0 ? list.RemoveAt(pos) : how == 1 ? list.RemoveHead() : list.RemoveTail();
            model.erase(at(model, how == 0 ? i : how == 1 ? 0 : count - 1));
            break;
        }
        case 4: {
            std::list<Item> run;
            run.splice(run.begin(), model, at(model, i), at(model, j + 1));
            flip ? list.MoveToHead(pos, to) : list.MoveToTail(pos, to);
            model.splice(flip ? model.begin() : model.end(), run);
            break;
        }
        case 5: {
            const uint32_t anchorIndex = random() % count;
            list.MoveToAfter(list.FindIndexPos(anchorIndex), pos);
            if (i != anchorIndex) {
                const Item moved = *at(model, i), anchor = *at(model, anchorIndex);
                model.erase(at(model, i));
                model.insert(std::next(std::find(model.begin(), model.end(), anchor)), moved);
            }
            break;
        }
        case 6:
            flip ? list.Reverse() : list.ReverseFromTo(pos, to);
            std::reverse(flip ? model.begin() : at(model, i), flip ? model.end() : at(model, j + 1));
            break;
        case 7:
            list.ExtractToList(pos, to, other);
            otherModel.clear();
            otherModel.splice(otherModel.begin(), model, at(model, i), at(model, j + 1));
            break;
        case 8: // the other list's elements after a node
            for (uint32_t n = random() % 4; n > 0; --n)
                otherModel.push_back(other.AddTail(item()));
            list.MoveToAfter(pos, other);
            model.splice(std::next(at(model, i)), otherModel);
            break;
        case 9: // rotating a closed ring by its head, then reopening it or not
            if constexpr ((Flags & 0x02) != 0) {
                list.SetClosed();
                list.SetHeadPosition(pos);
                std::rotate(model.begin(), at(model, i), model.end());
                if (flip)
                    list.SetOpen();
            }
            break;
        case 10: // stable either way, and by relinking: a position keeps naming its element
            if (count < 40) {
                const int held = list.GetAt(pos).id;
                list.BubbleSort([&](Item a, Item b) { return flip ? b.key - a.key : a.key - b.key; });
                model.sort([&](const Item& a, const Item& b) { return flip ? a.key > b.key : a.key < b.key; });
                ASSERT_EQ(list.GetAt(pos).id, held);
            }
            break;
        case 11: // fills the other list, sometimes on a fresh pool of its own so the splice merges
            if (flip) {
                other.RemoveAll();
                otherModel.clear();
                other.ReplacePlexManager(ZoSmartPointer<typename List::PlexManager>(new typename List::PlexManager(3)));
            }
            for (uint32_t n = random() % 4; n > 0; --n)
                otherModel.push_back(other.AddTail(item()));
            flip = random() % 2;
            flip ? list.MoveToTail(other) : list.MoveToHead(other);
            model.splice(flip ? model.end() : model.begin(), otherModel);
            break;
        case 12:
            if constexpr ((Flags & 0x02) != 0)
                list.IsClosed() ? list.SetOpen() : list.SetClosed();
            break;
        default:
            if (random() % 8 == 0) {
                list.RemoveAll();
                model.clear();
            }
            break;
        }
        ASSERT_EQ(ids(walk(list)), ids(std::vector<Item>(model.begin(), model.end()))) << "step " << step << " operation " << operation;
        ASSERT_EQ(ids(walk(other)), ids(std::vector<Item>(otherModel.begin(), otherModel.end()))) << "step " << step;
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step << " operation " << operation;
        if (!model.empty()) {
            const uint32_t index = random() % model.size();
            const Position position = list.FindIndexPos(index);
            ASSERT_EQ(list.FindIndex(position), index);
            ASSERT_TRUE(index + 1 == model.size() || list.GetAfter(position).id == std::next(model.begin(), index + 1)->id);
            ASSERT_TRUE(index == 0 || list.GetBefore(position).id == std::prev(std::next(model.begin(), index))->id);
        }
    }
    std::set<const typename List::PlexManager*> pools{list.GetPlexManager().Get(), other.GetPlexManager().Get()};
    uint32_t blocks = 0, free = 0;
    for (const auto* pool : pools) {
        blocks += pool->GetBlockCount();
        free += pool->GetFreeNodeCount();
    }
    EXPECT_EQ(blocks * 3, free + list.GetCount() + other.GetCount());
}

TEST(ZoListTest, RandomOperationsMatchAStdListModel)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    runRandomListModel<0x21>(seed);
    runRandomListModel<0x22>(seed);
}

} // namespace
