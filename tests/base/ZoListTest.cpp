#include "base/ZoIterator.h"
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

// Walks the list forwards and backwards and checks the links agree with the count and the ring
// state; returns the elements in order.
template <class List>
std::vector<typename std::decay_t<decltype(std::declval<List&>().GetHead())>> walk(const List& list)
{
    typedef std::decay_t<decltype(list.GetHead())> T;
    std::vector<T> forward;
    typename List::Position position = list.GetHeadPosition();
    for (uint32_t i = 0; i < list.GetCount(); ++i) {
        EXPECT_NE(position, nullptr) << "the chain ends after " << i << " of " << list.GetCount();
        if (position == nullptr)
            return forward;
        forward.push_back(list.GetNext(position));
    }
    std::vector<T> backward;
    position = list.GetTailPosition();
    for (uint32_t i = 0; i < list.GetCount() && position != nullptr; ++i)
        backward.insert(backward.begin(), list.GetPrev(position));
    EXPECT_EQ(backward, forward) << "back links disagree with forward links";
    if (list.GetCount() != 0) {
        const bool closed = list.IsClosed() != 0;
        EXPECT_EQ(list.GetNextPosition(list.GetTailPosition()), closed ? list.GetHeadPosition() : nullptr);
        EXPECT_EQ(list.GetPrevPosition(list.GetHeadPosition()), closed ? list.GetTailPosition() : nullptr);
    } else {
        EXPECT_EQ(list.GetHeadPosition(), nullptr);
        EXPECT_EQ(list.GetTailPosition(), nullptr);
    }
    return forward;
}

// The shared suite runs over both ring policies.
template <class Flags>
class ZoListPolicyTest : public testing::Test
{
};
typedef testing::Types<std::integral_constant<int, 0x21>, std::integral_constant<int, 0x22>> Policies;
TYPED_TEST_SUITE(ZoListPolicyTest, Policies);

TYPED_TEST(ZoListPolicyTest, SearchesAndIndexLookupsStopAtTheEnds)
{
    typedef ZoList<int, TypeParam::value> List;
    List list;
    for (int v : {5, 7, 5, 9})
        list.AddTail(v);
    const auto second = list.FindIndexPos(1);
    EXPECT_EQ(list.Find(5), &list.GetHead());
    EXPECT_EQ(list.Find(5, list.GetHeadPosition()), &list.GetAt(list.FindIndexPos(2)));
    EXPECT_EQ(list.Find(7, second), nullptr);
    EXPECT_EQ(list.FindPos(9), list.GetTailPosition());
    EXPECT_EQ(list.FindPos(5, second), list.FindIndexPos(2));
    EXPECT_EQ(list.FindPos(5, list.GetTailPosition()), nullptr);
    EXPECT_EQ(list.FindPos(4), nullptr);
    EXPECT_TRUE(list.Exists(9));
    EXPECT_FALSE(list.Exists(8));
    EXPECT_EQ(list.FindIndexPos(4), nullptr);
    EXPECT_EQ(list.FindIndexPos(3), list.GetTailPosition());
    List other;
    other.AddTail(5);
    EXPECT_EQ(list.FindIndex(other.GetHeadPosition()), 0xFFFFFFFFu);
    EXPECT_EQ(List().FindIndex(nullptr), 0xFFFFFFFFu);
    EXPECT_EQ(List().Find(1), nullptr);
}

TYPED_TEST(ZoListPolicyTest, NodesComeFromThePoolAndTheTailNodeIsReusedFirst)
{
    typedef ZoList<int, TypeParam::value> List;
    typedef typename List::Node Node;
    List list(4);
    const auto& pool = list.GetPlexManager();
    std::vector<typename List::Position> positions;
    for (int i = 0; i < 10; ++i) {
        list.AddTail(i);
        positions.push_back(list.GetTailPosition());
    }
    EXPECT_EQ(pool->GetBlockCount(), 3u);
    EXPECT_EQ(pool->GetFreeNodeCount(), 2u);
    // How a pool hands out and counts its nodes is ZoPlexManager's own test; here the list's use of it.
    EXPECT_EQ(static_cast<Node*>(positions[1]) + 1, static_cast<Node*>(positions[0]));
    EXPECT_EQ(list.GetMemoryUsage(), sizeof(List) + pool->GetMemoryUsage());
    // RemoveAll frees head to tail, so the old tail's node comes back first.
    const auto oldTail = list.GetTailPosition();
    list.RemoveAll();
    EXPECT_EQ(pool->GetFreeNodeCount(), 12u);
    list.AddTail(1);
    EXPECT_EQ(list.GetHeadPosition(), oldTail);
    EXPECT_EQ(pool->GetBlockCount(), 3u);
    // A pool that can hand out nothing is reported, not dereferenced.
    List none(0);
    EXPECT_THROW(none.AddTail(1), std::bad_alloc);
}

TYPED_TEST(ZoListPolicyTest, CopiesShareThePoolUnlessAskedAndCopyInOrder)
{
    typedef ZoList<int, TypeParam::value> List;
    List source(3, 1, 2, 3);
    const List shared(source);
    const List own(source, 0);
    EXPECT_EQ(shared.GetPlexManager(), source.GetPlexManager());
    EXPECT_NE(own.GetPlexManager(), source.GetPlexManager());
    EXPECT_EQ(own.GetPlexManager()->GetNodesPerBlock(), 3u);
    EXPECT_EQ(walk(own), (std::vector<int>{1, 2, 3}));
    List target(2);
    target.AddTail(9);
    target = source;
    EXPECT_EQ(walk(target), (std::vector<int>{1, 2, 3}));
    target.AddHead(own);
    target.AddTail(own);
    EXPECT_EQ(walk(target), (std::vector<int>{1, 2, 3, 1, 2, 3, 1, 2, 3}));
    target.AddTail(target);
    target.AddHead(target);
    EXPECT_EQ(target.GetCount(), 36u);
    walk(target);
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
            // Watched without a reference of its own: a second holder would count as sharing.
            const typename List::PlexManager* pool = donor.GetPlexManager().Get();
            receiver.MoveToTail(donor);
            EXPECT_TRUE(donor.IsEmpty());
            EXPECT_EQ(pool->GetBlockCount(), 0u);
            EXPECT_EQ(pool->GetFreeNodeCount(), 0u);
        } // the donor dies here; it must free none of the moved nodes
        EXPECT_EQ(receiver.GetPlexManager()->GetBlockCount(), 1u + 2u);
        std::vector<int> seen;
        for (const Counted& c : walk(receiver))
            seen.push_back(c.Value());
        EXPECT_EQ(seen, (std::vector<int>{1, 2, 3, 4, 5}));

        // A donor whose pool also serves others keeps it; the receiver adopts that pool instead.
        List a(2), b(a.GetPlexManager());
        a.AddTail(Counted(10));
        b.AddTail(Counted(11));
        List lone(4);
        lone.AddTail(Counted(12));
        lone.MoveToTail(a);
        EXPECT_EQ(lone.GetPlexManager(), b.GetPlexManager());
        // Both pools shared: the elements are copied, every list keeps its own pool.
        List c(b.GetPlexManager());
        c.AddTail(Counted(13));
        List d(3), e(d.GetPlexManager());
        d.AddTail(Counted(14));
        e.AddTail(Counted(15));
        d.MoveToHead(c);
        EXPECT_TRUE(c.IsEmpty());
        EXPECT_EQ(d.GetHead().Value(), 13);
        EXPECT_EQ(d.GetPlexManager(), e.GetPlexManager());
        EXPECT_EQ(Counted::counts().Live(), 11);
    }
    EXPECT_EQ(Counted::counts().Live(), 0);
}

TYPED_TEST(ZoListPolicyTest, PositionSettersThrowOnOpenLists)
{
    typedef ZoList<int, TypeParam::value> List;
    List list(3, 1, 2, 3);
    zotest::ExpectThrowSite<ZoException>([&] { list.SetTailPosition(list.GetHeadPosition()); },
                                         "..\\base\\ZoListBaseIntermediate.cpp", "ZoListBaseIntermediate", "SetHead", 179);
    zotest::ExpectThrowSite<ZoException>([&] { list.SetHeadPosition(list.GetTailPosition()); },
                                         "..\\base\\ZoListPolicyDoubleLinked.cpp", "ZoListPolicyDoubleLinked", "SetHead", 215);
    EXPECT_EQ(walk(list), (std::vector<int>{1, 2, 3}));
}

TEST(ZoListTest, FindStopsAtTheHeadOfARingWhileFindPosSearchesIt)
{
    ZoList<int, 0x22> ring(2, 1, 2);
    ring.SetClosed();
    EXPECT_TRUE(ring.IsClosed());
    EXPECT_EQ(ring.Find(1), nullptr);
    EXPECT_EQ(ring.Find(2), nullptr);
    EXPECT_FALSE(ring.Exists(2));
    EXPECT_EQ(ring.FindPos(2), ring.GetTailPosition());
    EXPECT_EQ(ring.FindPos(1, ring.GetTailPosition()), ring.GetHeadPosition()); // wraps past the tail
    EXPECT_EQ(ring.Find(2, ring.GetHeadPosition()), &ring.GetTail());           // a start inside the ring
    EXPECT_EQ(ring.Find(1, ring.GetTailPosition()), nullptr);
    // Walks wrap.
    auto position = ring.GetTailPosition();
    EXPECT_EQ(ring.GetNext(position), 2);
    EXPECT_EQ(position, ring.GetHeadPosition());
    ring.SetOpen();
    EXPECT_EQ(ring.Find(2), &ring.GetTail());
}

// Moves, reversals and head rotation on rings are in the model test; these are the ring cases
// it never reaches: an empty or single-node ring, sorted insertion, copies and closed targets.
TEST(ZoListTest, RingsStayLinkedWhenBuiltCopiedAndSplicedInto)
{
    ZoListSorted<int, int, 0x22> ring(3);
    ring.SetClosed(); // closing an empty list only sets the flag
    ring.AddTail(2);
    EXPECT_EQ(walk(ring), (std::vector<int>{2}));
    ring.AddHead(1);
    ring.InsertAfter(ring.GetTailPosition(), 4);
    ring.InsertSorted([](int a, int b) { return a - b; }, 3);
    EXPECT_EQ(walk(ring), (std::vector<int>{1, 2, 3, 4}));
    ZoListSorted<int, int, 0x22> copy(ring, 0);
    EXPECT_TRUE(copy.IsClosed());
    EXPECT_EQ(walk(copy), (std::vector<int>{1, 2, 3, 4}));
    ZoList<int, 0x22> open(3, 7, 8, 9);
    ZoList<int, 0x22> target(3);
    target.SetClosed();
    open.ExtractToList(open.FindIndexPos(1), open.GetTailPosition(), target);
    EXPECT_TRUE(target.IsClosed());
    EXPECT_EQ(walk(target), (std::vector<int>{8, 9}));
    EXPECT_EQ(walk(open), (std::vector<int>{7}));
    ring.MoveToTail(target);
    EXPECT_EQ(walk(ring), (std::vector<int>{1, 2, 3, 4, 8, 9}));
    while (!ring.IsEmpty())
        ring.RemoveHead();
    walk(ring);
}

struct Item
{
    int key;
    int id;
    bool operator==(const Item& other) const { return key == other.key && id == other.id; }
};

int byKey(Item a, Item b)
{
    return a.key - b.key;
}

std::vector<int> ids(const std::vector<Item>& items)
{
    std::vector<int> result;
    for (const Item& item : items)
        result.push_back(item.id);
    return result;
}

// Ascending sorted insertion and sorting are checked against std::list in the model test.
TEST(ZoListTest, DescendingInsertionAndSortingAreStableAndRelinkNodes)
{
    const Item items[] = {{2, 0}, {1, 1}, {2, 2}, {3, 3}, {1, 4}, {2, 5}};
    ZoListSorted<Item, int, 0x21> descending(10);
    for (const Item& item : items) {
        const auto position = descending.InsertSorted(byKey, item, 1);
        EXPECT_EQ(descending.GetAt(position), item);
    }
    EXPECT_EQ(ids(walk(descending)), (std::vector<int>{3, 0, 2, 5, 1, 4}));

    ZoListSorted<Item, int, 0x21> unsorted(4);
    for (const Item& item : items)
        unsorted.AddTail(item);
    const auto firstTwo = unsorted.FindPos(items[2]);
    unsorted.BubbleSort([](Item a, Item b) { return b.key - a.key; });
    EXPECT_EQ(ids(walk(unsorted)), (std::vector<int>{3, 0, 2, 5, 1, 4}));
    EXPECT_EQ(unsorted.GetAt(firstTwo).id, 2); // nodes were relinked, not overwritten
}

// A minimal iterator over a list, as the graph and file iterators are built.
class IntIterator : public ZoIterator<int&, IntIterator>
{
public:
    explicit IntIterator(ZoList<int, 0x21>& list) : ZoIterator(list.GetHeadPosition()), m_list(list) {}
    int& GetNext() { return m_list.GetNext(m_position); }

private:
    ZoList<int, 0x21>& m_list;
};

TEST(ZoListTest, IteratorsAdvanceThroughTheDerivedGetNext)
{
    ZoList<int, 0x21> list(3, 4, 5, 6);
    std::vector<int> seen;
    IntIterator it(list);
    while (!!it)
        seen.push_back(it++);
    EXPECT_EQ(seen, (std::vector<int>{4, 5, 6}));
    EXPECT_FALSE(it);
    IntIterator again(list);
    ++again;
    EXPECT_TRUE(again);
    EXPECT_EQ(again.GetPosition(), list.FindIndexPos(1));
}

TEST(ZoListTest, PooledListsConstructAndDestroyEachElementOnce)
{
    Counted::ResetCounts();
    {
        ZoList<Counted, 0x22> list(4);
        for (int i = 0; i < 9; ++i)
            list.AddTail(Counted(i));
        list.AddHead();
        list.InsertAfter(list.GetHeadPosition());
        list.SetClosed();
        ZoList<Counted, 0x22> copy(list);
        copy.RemoveAt(copy.FindIndexPos(4));
        copy.RemoveHead();
        list = copy;
        ZoList<Counted, 0x22> moved(std::move(copy));
        EXPECT_TRUE(copy.IsEmpty());
        EXPECT_TRUE(moved.IsClosed());
        EXPECT_EQ(Counted::counts().Live(), 2 * 9);
        list.RemoveAll();
        EXPECT_EQ(Counted::counts().Live(), 9);
    }
    EXPECT_EQ(Counted::counts().Live(), 0);
}

// Drives a list and a second one for splices, both with a std::list model, through random
// operations, comparing contents and links after every step.
template <int Flags>
void runRandomListModel(unsigned seed)
{
    typedef ZoListSorted<Item, int, Flags> List;
    typedef typename List::Position Position;
    std::mt19937 random(seed);
    List list(3);
    List other(3);
    std::list<Item> model;
    std::list<Item> otherModel;
    int nextId = 0;
    auto item = [&] { return Item{static_cast<int>(random() % 8), nextId++}; };
    auto pick = [&](const List& l, const std::list<Item>& m, uint32_t& index) -> Position {
        index = m.empty() ? 0 : random() % m.size();
        return l.FindIndexPos(index);
    };
    auto iteratorAt = [](std::list<Item>& m, uint32_t index) { return std::next(m.begin(), index); };
    for (int step = 0; step < 3000; ++step) {
        const uint32_t operation = random() % 19;
        uint32_t i = 0;
        uint32_t j = 0;
        if (model.empty() && operation > 2 && operation < 14) {
            list.AddTail(item());
            model.push_back(list.GetTail());
            continue;
        }
        switch (operation) {
        // A quarter of the adds take the default-valued form, which hands out the new element.
        case 0:
            model.push_front(random() % 4 == 0 ? list.AddHead() = item() : list.AddHead(item()));
            break;
        case 1:
            model.push_back(random() % 4 == 0 ? list.AddTail() = item() : list.AddTail(item()));
            break;
        case 2: {
            const Item value = item();
            list.InsertSorted(byKey, value);
            auto at = std::find_if(model.begin(), model.end(), [&](const Item& e) { return e.key > value.key; });
            model.insert(at, value);
            break;
        }
        // A null anchor inserts at the tail, or before the head.
        case 3: {
            const Position at = random() % 6 == 0 ? nullptr : pick(list, model, i);
            model.insert(at == nullptr ? model.end() : std::next(iteratorAt(model, i)), list.InsertAfter(at, item()));
            break;
        }
        case 4: {
            const Position at = random() % 6 == 0 ? nullptr : pick(list, model, i);
            model.insert(at == nullptr ? model.begin() : iteratorAt(model, i), list.InsertBefore(at, item()));
            break;
        }
        case 5:
            list.RemoveAt(pick(list, model, i));
            model.erase(iteratorAt(model, i));
            break;
        case 6:
            if (random() % 2) {
                list.RemoveHead();
                model.pop_front();
            } else {
                list.RemoveTail();
                model.pop_back();
            }
            break;
        case 7:
        case 8: {
            const Position from = pick(list, model, i);
            j = i + random() % (static_cast<uint32_t>(model.size()) - i);
            const Position to = list.FindIndexPos(j);
            std::list<Item> run;
            run.splice(run.begin(), model, iteratorAt(model, i), iteratorAt(model, j + 1));
            if (operation == 7) {
                list.MoveToHead(from, to);
                model.splice(model.begin(), run);
            } else {
                list.MoveToTail(from, to);
                model.splice(model.end(), run);
            }
            break;
        }
        case 9: {
            const Position node = pick(list, model, i);
            const Position after = pick(list, model, j);
            list.MoveToAfter(after, node);
            if (i != j) {
                const Item moved = *iteratorAt(model, i);
                const Item anchor = *iteratorAt(model, j);
                model.erase(iteratorAt(model, i));
                model.insert(std::next(std::find(model.begin(), model.end(), anchor)), moved);
            }
            break;
        }
        case 10:
            list.Reverse();
            model.reverse();
            break;
        case 11: {
            const Position from = pick(list, model, i);
            j = i + random() % (static_cast<uint32_t>(model.size()) - i);
            list.ReverseFromTo(from, list.FindIndexPos(j));
            std::reverse(iteratorAt(model, i), iteratorAt(model, j + 1));
            break;
        }
        case 12: {
            const Position from = pick(list, model, i);
            j = i + random() % (static_cast<uint32_t>(model.size()) - i);
            list.ExtractToList(from, list.FindIndexPos(j), other);
            otherModel.clear();
            otherModel.splice(otherModel.begin(), model, iteratorAt(model, i), iteratorAt(model, j + 1));
            break;
        }
        case 13:
            if constexpr ((Flags & 0x02) != 0) {
                // Rotating a closed ring by its head, then reopening it half of the time.
                list.SetClosed();
                const Position head = pick(list, model, i);
                list.SetHeadPosition(head);
                std::rotate(model.begin(), iteratorAt(model, i), model.end());
                if (random() % 2)
                    list.SetOpen();
            }
            break;
        case 14:
            // Fills the other list, sometimes on a fresh pool of its own so the splice merges.
            if (random() % 2) {
                other.RemoveAll();
                otherModel.clear();
                other.ReplacePlexManager(ZoSmartPointer<typename List::PlexManager>(new typename List::PlexManager(3)));
            }
            for (uint32_t n = random() % 4; n > 0; --n)
                otherModel.push_back(other.AddTail(item()));
            if (random() % 2) {
                list.MoveToTail(other);
                model.splice(model.end(), otherModel);
            } else {
                list.MoveToHead(other);
                model.splice(model.begin(), otherModel);
            }
            break;
        case 15:
            if (!model.empty()) {
                for (uint32_t n = random() % 4; n > 0; --n)
                    otherModel.push_back(other.AddTail(item()));
                const Position at = pick(list, model, i);
                list.MoveToAfter(at, other);
                model.splice(std::next(iteratorAt(model, i)), otherModel);
            }
            break;
        case 16:
            if (model.size() < 40) {
                list.BubbleSort(byKey);
                model.sort([](const Item& a, const Item& b) { return a.key < b.key; });
            }
            break;
        case 17:
            if constexpr ((Flags & 0x02) != 0) {
                if (list.IsClosed())
                    list.SetOpen();
                else
                    list.SetClosed();
            }
            break;
        case 18:
            if (random() % 8 == 0) {
                list.RemoveAll();
                model.clear();
            }
            break;
        }
        ASSERT_EQ(ids(walk(list)), ids(std::vector<Item>(model.begin(), model.end()))) << "step " << step
                                                                                         << " operation " << operation;
        ASSERT_EQ(ids(walk(other)), ids(std::vector<Item>(otherModel.begin(), otherModel.end()))) << "step "
                                                                                                   << step;
        ASSERT_FALSE(testing::Test::HasFailure()) << "step " << step << " operation " << operation;
        if (!model.empty()) {
            const uint32_t index = random() % model.size();
            const Position position = list.FindIndexPos(index);
            ASSERT_EQ(list.FindIndex(position), index);
            if (index + 1 < model.size()) {
                ASSERT_EQ(list.GetAfter(position).id, std::next(model.begin(), index + 1)->id);
            }
            if (index > 0) {
                ASSERT_EQ(list.GetBefore(position).id, std::next(model.begin(), index - 1)->id);
            }
        }
    }
    // Every node of every pool in play is either in a list or free.
    std::set<const typename List::PlexManager*> pools{list.GetPlexManager().Get(), other.GetPlexManager().Get()};
    uint32_t blocks = 0;
    uint32_t free = 0;
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
