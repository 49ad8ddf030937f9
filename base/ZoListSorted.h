#pragma once

#include "base/ZoList.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <utility>

/// ZoListSorted<T, key, flags>: a ZoList kept in an order the caller defines. The comparison is any
/// callable taking two elements by value and returning a signed int (negative, zero, positive);
/// `Key` names what the instantiation orders by and is not used by the list itself.
///
/// Both operations are stable: InsertSorted puts a new element after every element that compares
/// equal to it, in either direction, and BubbleSort never exchanges equal neighbours. BubbleSort
/// relinks nodes rather than swapping elements, so positions keep naming the same elements.
/// @ingroup containers
template <class T, class Key, int Flags>
class ZO_TEMPLATE_API ZoListSorted : public ZoList<T, Flags>
{
    typedef ZoList<T, Flags> Base;

public:
    /// The node type: `next`, `prev`, then the element by value.
    typedef typename Base::Node Node;
    /// The node pool type lists and their copies share.
    typedef typename Base::PlexManager PlexManager;
    /// Opaque position: the node itself; null means none or the end.
    typedef typename Base::Position Position;
    using Base::Base;

    /// A copy of `other` in its order; shares `other`'s pool unless `sharePlexManager` is 0.
    ZoListSorted(const ZoListSorted& other, int sharePlexManager = 1) : Base(other, sharePlexManager) {}
    /// Replaces the elements with copies of `other`'s, as ZoList's assignment does.
    ZoListSorted& operator=(const ZoListSorted& other)
    {
        Base::operator=(other);
        return *this;
    }

    /// Inserts `value` before the first element e with compare(e, value) > 0 (ascending, descending
    /// 0) or < 0 (descending nonzero), else at the tail; returns the new position.
    template <class Compare>
    Position InsertSorted(Compare compare, const T& value, int descending = 0)
    {
        Node* node = this->m_head;
        for (uint32_t i = 0; i < this->m_count; ++i, node = node->next) {
            const int order = compare(node->element, value);
            if (descending ? order < 0 : order > 0)
                return this->linkNode(node == this->m_head ? nullptr : node->prev, this->newNode(value));
        }
        return this->linkNode(this->m_tail, this->newNode(value));
    }

    /// Sorts by repeated passes from head to tail that exchange neighbours (by relinking) while
    /// compare(left, right) > 0, until a pass exchanges none. Lists of fewer than two elements are
    /// left alone.
    template <class Compare>
    void BubbleSort(Compare compare)
    {
        if (this->m_count < 2)
            return;
        typename Base::OpenRing ring(*this);
        bool exchanged = true;
        while (exchanged) {
            exchanged = false;
            Node* left = this->m_head;
            while (left != this->m_tail) {
                Node* right = left->next;
                if (compare(left->element, right->element) > 0) {
                    exchangeNeighbours(left, right);
                    exchanged = true;
                } else {
                    left = right;
                }
            }
        }
    }

private:
    /// Relinks `left` and its successor `right` so that `right` comes first; needs an open list.
    void exchangeNeighbours(Node* left, Node* right)
    {
        Node* before = left->prev;
        Node* after = right->next;
        if (before != nullptr)
            before->next = right;
        else
            this->m_head = right;
        if (after != nullptr)
            after->prev = left;
        else
            this->m_tail = left;
        right->prev = before;
        right->next = left;
        left->prev = right;
        left->next = after;
    }
};
