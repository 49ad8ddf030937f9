#pragma once

#include "base/ZoListPolicyDoubleLinked.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <utility>

/// ZoList<T, flags>: the library's double-linked list, the top of the layer stack ZoListBase ->
/// ring policy -> ZoListBaseIntermediate -> ZoListPolicyDoubleLinked -> ZoList. Flags 0x22 make a
/// list that may be closed into a ring, 0x21 one that never is; those are the two values in use.
/// Elements are stored by value in the nodes (raw pointers or smart pointers in the library's own
/// use); searches compare them with the element type's ==.
///
/// Nodes come from a reference-counted pool (ZoPlexManager), never from the heap one by one. A list
/// makes its own pool or shares one; copies share the source's pool unless asked otherwise, so
/// lists built from one another splice without copying. Lists sharing a pool are used from one
/// thread at a time.
///
/// Searches keep the ring behaviour the library has always had: Find (and Exists) stop on reaching
/// the node after the tail before comparing anything, so on a closed ring a search from the head
/// finds nothing; FindPos compares first and does work on rings.
/// @ingroup containers
template <class T, int Flags>
class ZO_TEMPLATE_API ZoList : public ZoListPolicyDoubleLinked<T, Flags>
{
    typedef ZoListPolicyDoubleLinked<T, Flags> Base;

public:
    /// The node type: `next`, `prev`, then the element by value.
    typedef typename Base::Node Node;
    /// The node pool type lists and their copies share.
    typedef typename Base::PlexManager PlexManager;
    /// Opaque position: the node itself; null means none or the end.
    typedef typename Base::Position Position;
    using Base::AddHead;
    using Base::AddTail;

    /// A list with a pool of its own; the library builds every list with 10 nodes per block.
    explicit ZoList(uint32_t nodesPerBlock = 10) : Base(ZoSmartPointer<PlexManager>(new PlexManager(nodesPerBlock))) {}
    /// A list drawing its nodes from the given pool.
    explicit ZoList(ZoSmartPointer<PlexManager> plexManager) : Base(std::move(plexManager)) {}
    /// `count` elements appended in order, with a pool of `count` nodes per block (so count >= 1).
    /// Requires: `count` equals the number of elements given; extra elements are ignored.
    template <class... Rest>
    ZoList(uint32_t count, const T& first, const Rest&... rest) : ZoList(count)
    {
        const T values[] = {first, T(rest)...};
        for (uint32_t i = 0; i < count && i < sizeof(values) / sizeof(values[0]); ++i)
            AddTail(values[i]);
    }
    /// Shares `other`'s pool when `sharePlexManager` is nonzero, else makes a pool with the same
    /// nodes per block; then copies the elements and the open/closed state. A plain copy shares the
    /// pool, so the copy and its source must then be used from one thread at a time; pass 0 for a
    /// copy that another thread will own.
    ZoList(const ZoList& other, int sharePlexManager = 1)
        : Base(sharePlexManager ? other.m_plexManager
                                : ZoSmartPointer<PlexManager>(new PlexManager(other.m_plexManager->GetNodesPerBlock())))
    {
        *this = other;
    }
    /// Takes over `other`'s nodes and shares its pool; `other` is left empty and open-or-closed as
    /// it was.
    ZoList(ZoList&& other) noexcept : Base(other.m_plexManager) { stealNodes(other); }
    ~ZoList() = default;

    /// Drops this list's elements (their nodes go back to this list's pool), copies `other`'s in
    /// order and takes its open/closed state.
    ZoList& operator=(const ZoList& other)
    {
        if (this == &other)
            return *this;
        this->RemoveAll();
        this->copyAfter(nullptr, other);
        this->setClosedState(other.IsClosed());
        return *this;
    }
    /// Relinks `other`'s nodes when both lists share a pool; copies otherwise.
    ZoList& operator=(ZoList&& other)
    {
        if (this == &other)
            return *this;
        if (other.m_plexManager != this->m_plexManager)
            return *this = static_cast<const ZoList&>(other);
        this->RemoveAll();
        stealNodes(other);
        return *this;
    }

    /// Exchanges the pool reference only, moving no node: for empty lists.
    void ReplacePlexManager(ZoSmartPointer<PlexManager> plexManager) { this->replacePlexManager(std::move(plexManager)); }

    /// Copies of `other`'s elements ahead of the present ones, in `other`'s order.
    void AddHead(const ZoList& other)
    {
        const Node* node = other.m_tail;
        for (uint32_t i = 0, count = other.m_count; i < count; ++i, node = node->prev)
            AddHead(node->element);
    }
    /// Copies of `other`'s elements after the present ones, in order.
    void AddTail(const ZoList& other)
    {
        const Node* node = other.m_head;
        for (uint32_t i = 0, count = other.m_count; i < count; ++i, node = node->next)
            AddTail(node->element);
    }

    /// The first element equal to `value` after `startAfter` (from the head when null), or null. The
    /// walk stops at the node after the tail, tested before any comparison: on a closed ring that node
    /// is the head, so a search from the head finds nothing. Callers rely on this to tell a ring from
    /// an open list, so it stays.
    T* Find(const T& value, Position startAfter = nullptr) const
    {
        Node* const stop = this->m_tail != nullptr ? this->m_tail->next : nullptr;
        for (Node* node = startAfter != nullptr ? this->toNode(startAfter)->next : this->m_head; node != stop; node = node->next)
            if (node->element == value)
                return &node->element;
        return nullptr;
    }
    /// Nonzero when Find(value) from the head succeeds (so never on a closed ring).
    int Exists(const T& value) const { return Find(value) != nullptr; }
    /// The position of the first element equal to `value` after `startAfter` (from the head when
    /// null), or null. Compares before moving on and stops after the tail, so it works on rings.
    Position FindPos(const T& value, Position startAfter = nullptr) const
    {
        for (Node* node = startAfter != nullptr ? this->toNode(startAfter)->next : this->m_head; node != nullptr; node = node->next) {
            if (node->element == value)
                return node;
            if (node == this->m_tail)
                break;
        }
        return nullptr;
    }
    /// Zero-based index of `position`, or 0xFFFFFFFF when the list is empty or does not hold it.
    uint32_t FindIndex(Position position) const
    {
        uint32_t index = 0;
        for (const Node* node = this->m_head; node != nullptr; node = node->next, ++index) {
            if (node == position)
                return index;
            if (node == this->m_tail)
                break;
        }
        return 0xFFFFFFFFu;
    }
    /// The position `index` steps from the head, or null when index >= GetCount().
    Position FindIndexPos(uint32_t index) const
    {
        if (index >= this->m_count)
            return nullptr;
        Node* node = this->m_head;
        for (uint32_t i = 0; i < index; ++i)
            node = node->next;
        return node;
    }

    /// The list object, the pool object and every block of the pool (each list sharing a pool counts
    /// all of it).
    uint32_t GetMemoryUsage() const { return static_cast<uint32_t>(sizeof(*this)) + this->m_plexManager->GetMemoryUsage(); }

private:
    void stealNodes(ZoList& other)
    {
        this->m_head = other.m_head;
        this->m_tail = other.m_tail;
        this->m_count = other.m_count;
        const int closed = other.IsClosed();
        other.m_head = nullptr;
        other.m_tail = nullptr;
        other.m_count = 0;
        this->setClosedState(closed);
    }
};
