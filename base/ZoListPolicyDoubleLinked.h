#pragma once

#include "base/ZoException.h"
#include "base/ZoListBaseIntermediate.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <utility>

/// ZoListPolicyDoubleLinked<T, flags>: the list layer of the operations that need back links:
/// walking backwards, inserting before and removing at any position, moving runs of nodes within
/// and between lists, extracting a run into another list, reversing, and rotating a ring by its head.
/// Every operation keeps a closed list's ring linked and moves nodes by relinking them, never by
/// copying elements (except a splice between two shared pools, see ZoListBaseIntermediate).
///
/// A run is given by its first and last node, in list order (`from` not after `to`); positions must
/// belong to the list named. None of this is checked.
/// @ingroup containers
template <class T, int Flags>
class ZO_TEMPLATE_API ZoListPolicyDoubleLinked : public ZoListBaseIntermediate<T, Flags>
{
    typedef ZoListBaseIntermediate<T, Flags> Base;

public:
    /// The node type: `next`, `prev`, then the element by value.
    typedef typename Base::Node Node;
    /// The node pool type lists and their copies share.
    typedef typename Base::PlexManager PlexManager;
    /// Opaque position: the node itself; null means none or the end.
    typedef typename Base::Position Position;
    using Base::MoveToTail;

    /// The element at `position`; moves `position` to the previous node (null before the head of an
    /// open list, the tail again in a ring).
    T& GetPrev(Position& position)
    {
        Node* node = this->toNode(position);
        position = node->prev;
        return node->element;
    }
    /// Const form of GetPrev.
    const T& GetPrev(Position& position) const
    {
        const Node* node = this->toNode(position);
        position = node->prev;
        return node->element;
    }
    /// The position before `position` (null before the head of an open list).
    Position GetPrevPosition(Position position) const { return this->toNode(position)->prev; }
    /// The element of the node before `position`; requires that there is one.
    T& GetBefore(Position position) { return this->toNode(position)->prev->element; }
    /// Const form of GetBefore.
    const T& GetBefore(Position position) const { return this->toNode(position)->prev->element; }

    /// A null position inserts at the head.
    T& InsertBefore(Position position, const T& value) { return this->linkNode(nodeBefore(position), this->newNode(value))->element; }
    /// Inserts a default-made element before `position` (null: at the head) and returns it.
    T& InsertBefore(Position position) { return this->linkNode(nodeBefore(position), this->newNode())->element; }

    /// Requires: `position` belongs to this list (not checked).
    void RemoveAt(Position position) { this->unlinkAndFree(this->toNode(position)); }
    /// Requires: the list is not empty (not checked).
    void RemoveTail() { RemoveAt(this->m_tail); }

    /// Moves the run from..to before the head; nothing happens when it already starts there.
    void MoveToHead(Position from, Position to)
    {
        if (from == this->m_head)
            return;
        typename Base::OpenRing ring(*this);
        this->unlinkRun(this->toNode(from), this->toNode(to));
        this->linkRunAfter(nullptr, this->toNode(from), this->toNode(to));
    }
    /// Moves the run from..to after the tail; nothing happens when it already ends there.
    void MoveToTail(Position from, Position to)
    {
        if (to == this->m_tail)
            return;
        typename Base::OpenRing ring(*this);
        this->unlinkRun(this->toNode(from), this->toNode(to));
        this->linkRunAfter(this->m_tail, this->toNode(from), this->toNode(to));
    }
    /// Splices all of `other`'s nodes before the head; `other` ends empty.
    void MoveToHead(ZoListPolicyDoubleLinked& other) { this->spliceAfter(nullptr, other); }
    /// Moves the single node `node` of this list to just after `position`. In a ring, moving the
    /// head after the tail makes it the tail, as in an open list.
    void MoveToAfter(Position position, Position node)
    {
        if (node == position || (position != this->m_tail && this->toNode(position)->next == node))
            return;
        typename Base::OpenRing ring(*this);
        this->unlinkRun(this->toNode(node), this->toNode(node));
        this->linkRunAfter(this->toNode(position), this->toNode(node), this->toNode(node));
    }
    /// Splices all of `other`'s nodes after `position`; `other` ends empty.
    void MoveToAfter(Position position, ZoListPolicyDoubleLinked& other) { this->spliceAfter(this->toNode(position), other); }

    /// Empties `target` (its nodes go back to its own pool), makes it share this list's pool and moves
    /// the run from..to into it. The target keeps its own open/closed state.
    void ExtractToList(Position from, Position to, ZoListPolicyDoubleLinked& target)
    {
        target.RemoveAll();
        target.replacePlexManager(this->m_plexManager);
        Node* first = this->toNode(from);
        Node* last = this->toNode(to);
        uint32_t moved = 1;
        for (const Node* node = first; node != last; node = node->next)
            ++moved;
        {
            typename Base::OpenRing ring(*this);
            this->unlinkRun(first, last);
            this->m_count -= moved;
        }
        typename Base::OpenRing targetRing(target);
        target.linkRunAfter(nullptr, first, last);
        target.m_count = moved;
    }

    /// Reverses the list by exchanging head and tail and each node's two links.
    void Reverse()
    {
        Node* node = this->m_head;
        for (uint32_t i = 0; i < this->m_count; ++i) {
            Node* next = node->next;
            std::swap(node->next, node->prev);
            node = next;
        }
        std::swap(this->m_head, this->m_tail);
    }
    /// Reverses the run from..to in place; its outer neighbours are linked to its new ends.
    void ReverseFromTo(Position from, Position to)
    {
        if (from == to)
            return;
        typename Base::OpenRing ring(*this);
        Node* first = this->toNode(from);
        Node* last = this->toNode(to);
        Node* before = first->prev;
        Node* after = last->next;
        for (Node* node = first;;) {
            Node* next = node->next;
            std::swap(node->next, node->prev);
            if (node == last)
                break;
            node = next;
        }
        last->prev = before;
        first->next = after;
        if (before != nullptr)
            before->next = last;
        else
            this->m_head = last;
        if (after != nullptr)
            after->prev = first;
        else
            this->m_tail = first;
    }

    /// Rotates a closed ring so that `position` becomes the head and its predecessor the tail; no
    /// node moves. Throws ZoException when the list is open or empty (always for lists that cannot
    /// close).
    void SetHeadPosition(Position position)
    {
        if (!this->IsClosed() || this->m_count == 0)
            throw ZoException(u"..\\base\\ZoListPolicyDoubleLinked.cpp", u"ZoListPolicyDoubleLinked", u"SetHead", 215);
        this->m_head = this->toNode(position);
        this->m_tail = this->m_head->prev;
    }

protected:
    /// An empty list drawing its nodes from `plexManager`.
    explicit ZoListPolicyDoubleLinked(ZoSmartPointer<PlexManager> plexManager) : Base(std::move(plexManager)) {}
    ~ZoListPolicyDoubleLinked() = default;

private:
    /// The node a new node goes after to land before `position`; null (the head) for a null position.
    Node* nodeBefore(Position position) const
    {
        if (position == nullptr || position == this->m_head)
            return nullptr;
        return this->toNode(position)->prev;
    }
};
