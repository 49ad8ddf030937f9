#pragma once

#include "base/ZoException.h"
#include "base/ZoListPolicyCloseable.h"
#include "base/ZoListPolicyNotCloseable.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <type_traits>

template <class T, int Flags>
using ZoListRingPolicy =
    std::conditional_t<(Flags & 0x02) != 0, ZoListPolicyCloseable<T, Flags>, ZoListPolicyNotCloseable<T, Flags>>;

/// ZoListBaseIntermediate<T, flags>: the list layer that adds and removes at the head, inserts after
/// a position, walks forwards and splices another list onto the tail. The ring policy below it is
/// chosen by the flags: 0x02 closeable (ZoListPolicyCloseable), otherwise never closed
/// (ZoListPolicyNotCloseable). Every operation keeps a closed list's ring linked.
///
/// Preconditions are the caller's and are not checked: element access and removal need a non-empty
/// list, and positions must belong to this list. The one check is SetTailPosition's, which throws.
///
/// Splicing a list whose nodes come from another pool must leave every node owned by a pool that
/// outlives it. When the donor's pool serves no other holder it is merged into this list's pool (the
/// donor keeps an empty pool); when it does and this list's pool does not, this list's pool is merged
/// into the donor's and this list adopts it; when both pools are shared the elements are copied into
/// this list's pool instead and the donor's nodes freed, so positions into the donor do not carry over
/// in that case only.
/// @ingroup containers
template <class T, int Flags>
class ZO_TEMPLATE_API ZoListBaseIntermediate : public ZoListRingPolicy<T, Flags>
{
    typedef ZoListRingPolicy<T, Flags> Base;

public:
    /// The node type: `next`, `prev`, then the element by value.
    typedef typename Base::Node Node;
    /// The node pool type lists and their copies share.
    typedef typename Base::PlexManager PlexManager;
    /// Opaque position: the node itself; null means none or the end.
    typedef typename Base::Position Position;

    /// Requires: the list is not empty (not checked).
    T& GetHead() { return this->m_head->element; }
    /// Const form of GetHead.
    const T& GetHead() const { return this->m_head->element; }
    /// The last element. Requires: the list is not empty (not checked).
    T& GetTail() { return this->m_tail->element; }
    /// Const form of GetTail.
    const T& GetTail() const { return this->m_tail->element; }

    /// The element at `position`; moves `position` to the next node (null after the tail of an open
    /// list, the head again in a ring).
    T& GetNext(Position& position)
    {
        Node* node = this->toNode(position);
        position = node->next;
        return node->element;
    }
    /// Const form of GetNext.
    const T& GetNext(Position& position) const
    {
        const Node* node = this->toNode(position);
        position = node->next;
        return node->element;
    }
    /// The position after `position` (null after the tail of an open list).
    Position GetNextPosition(Position position) const { return this->toNode(position)->next; }
    /// The element at `position`. Requires: a position of this list (not checked).
    T& GetAt(Position position) { return this->toNode(position)->element; }
    /// Const form of GetAt.
    const T& GetAt(Position position) const { return this->toNode(position)->element; }
    /// The element of the node after `position`; requires that there is one.
    T& GetAfter(Position position) { return this->toNode(position)->next->element; }
    /// Const form of GetAfter.
    const T& GetAfter(Position position) const { return this->toNode(position)->next->element; }

    /// Inserts a copy of `value` before the head; returns the stored element. Throws std::bad_alloc when the pool can give no node.
    T& AddHead(const T& value) { return linkNode(nullptr, this->newNode(value))->element; }
    /// Inserts a default-made element before the head and returns it, to be filled in place.
    T& AddHead() { return linkNode(nullptr, this->newNode())->element; }
    /// Appends a copy of `value` after the tail; returns the stored element. Throws std::bad_alloc when the pool can give no node.
    T& AddTail(const T& value) { return linkNode(this->m_tail, this->newNode(value))->element; }
    /// Appends a default-made element after the tail and returns it, to be filled in place.
    T& AddTail() { return linkNode(this->m_tail, this->newNode())->element; }
    /// A null position appends at the tail.
    T& InsertAfter(Position position, const T& value)
    {
        return linkNode(position != nullptr ? this->toNode(position) : this->m_tail, this->newNode(value))->element;
    }
    /// Inserts a default-made element after `position` (null: at the tail) and returns it.
    T& InsertAfter(Position position)
    {
        return linkNode(position != nullptr ? this->toNode(position) : this->m_tail, this->newNode())->element;
    }

    /// Requires: the list is not empty (not checked).
    void RemoveHead() { unlinkAndFree(this->m_head); }
    /// Frees the nodes from head to tail, so the tail's node is the next one the pool hands out.
    void RemoveAll()
    {
        Node* node = this->m_head;
        for (uint32_t i = 0; i < this->m_count; ++i) {
            Node* next = node->next;
            this->freeNode(node);
            node = next;
        }
        this->m_head = nullptr;
        this->m_tail = nullptr;
        this->m_count = 0;
    }

    /// Splices all of `other`'s nodes after the tail; `other` ends empty (it keeps its ring flag).
    void MoveToTail(ZoListBaseIntermediate& other) { spliceAfter(this->m_tail, other); }

    /// Rotates a closed ring so that `position` becomes the tail and its successor the head; no node
    /// moves. Throws ZoException when the list is open or empty (always for lists that cannot close).
    void SetTailPosition(Position position)
    {
        // The method name reads "SetHead", as it always has: reports are filtered on it.
        if (!this->IsClosed() || this->m_count == 0)
            throw ZoException(u"..\\base\\ZoListBaseIntermediate.cpp", u"ZoListBaseIntermediate", u"SetHead", 179);
        this->m_tail = this->toNode(position);
        this->m_head = this->m_tail->next;
    }

protected:
    /// An empty list drawing its nodes from `plexManager`.
    explicit ZoListBaseIntermediate(ZoSmartPointer<PlexManager> plexManager) : Base(std::move(plexManager)) {}
    ~ZoListBaseIntermediate() { RemoveAll(); }

    /// Opens a closed ring for the lifetime of the guard, so the code inside rearranges an open list
    /// with null ends; the ring is tied again on leaving.
    class OpenRing
    {
    public:
        /// Cuts the ring of `list` (nothing for an open list) until the guard is destroyed.
        explicit OpenRing(ZoListBaseIntermediate& list) : m_list(list) { m_list.unlinkRing(); }
        ~OpenRing() { m_list.linkRing(); }
        OpenRing(const OpenRing&) = delete;
        OpenRing& operator=(const OpenRing&) = delete;

    private:
        ZoListBaseIntermediate& m_list;
    };

    /// Links a new node after `position` (null: before the head) and counts it.
    Node* linkNode(Node* position, Node* node)
    {
        OpenRing ring(*this);
        linkRunAfter(position, node, node);
        ++this->m_count;
        return node;
    }
    /// Unlinks `node` from this list and gives it back to the pool.
    void unlinkAndFree(Node* node)
    {
        {
            OpenRing ring(*this);
            unlinkRun(node, node);
            --this->m_count;
        }
        this->freeNode(node);
    }
    /// Open-list surgery; callers hold an OpenRing. A run is from..to inclusive, in list order.
    void unlinkRun(Node* from, Node* to)
    {
        Node* before = from->prev;
        Node* after = to->next;
        if (before != nullptr)
            before->next = after;
        else
            this->m_head = after;
        if (after != nullptr)
            after->prev = before;
        else
            this->m_tail = before;
        from->prev = nullptr;
        to->next = nullptr;
    }
    /// Links the run after `position`, or before the head when `position` is null.
    void linkRunAfter(Node* position, Node* from, Node* to)
    {
        Node* after = position != nullptr ? position->next : this->m_head;
        from->prev = position;
        to->next = after;
        if (position != nullptr)
            position->next = from;
        else
            this->m_head = from;
        if (after != nullptr)
            after->prev = to;
        else
            this->m_tail = to;
    }

    /// Moves every node of `other` after `position` (null: before the head); `other` ends empty.
    void spliceAfter(Node* position, ZoListBaseIntermediate& other)
    {
        if (&other == this || other.m_count == 0)
            return;
        if (!sharePoolWith(other)) {
            copyAfter(position, other);
            other.RemoveAll();
            return;
        }
        Node* first;
        Node* last;
        const uint32_t moved = other.m_count;
        {
            OpenRing otherRing(other);
            first = other.m_head;
            last = other.m_tail;
            other.m_head = nullptr;
            other.m_tail = nullptr;
            other.m_count = 0;
        }
        OpenRing ring(*this);
        linkRunAfter(position, first, last);
        this->m_count += moved;
    }
    /// Makes `other`'s nodes belong to this list's pool, merging pools where that leaves no node with
    /// a pool that may die first. False when both pools serve other holders too (see the class note).
    bool sharePoolWith(ZoListBaseIntermediate& other)
    {
        if (other.m_plexManager == this->m_plexManager)
            return true;
        if (other.m_plexManager->GetReferenceCount() <= 1) {
            this->m_plexManager->Merge(*other.m_plexManager);
            return true;
        }
        if (this->m_plexManager->GetReferenceCount() <= 1) {
            other.m_plexManager->Merge(*this->m_plexManager);
            this->replacePlexManager(other.m_plexManager);
            return true;
        }
        return false;
    }
    /// Copies `other`'s elements, in order, after `position` (null: before the head).
    void copyAfter(Node* position, const ZoListBaseIntermediate& other)
    {
        const Node* source = other.m_head;
        for (uint32_t i = 0; i < other.m_count; ++i, source = source->next)
            position = linkNode(position, this->newNode(source->element));
    }
};
