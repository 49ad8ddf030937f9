#pragma once

#include "base/ZoArray.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoHeap<Element>: a binary min-heap of element pointers, the priority queue of the shortest-path
/// search. The heap does not own its elements; each element records its own position, which the heap
/// keeps current, so LowerKey needs no search.
///
/// Storage starts at position 0; the parent of position i is i / 2 and its children are 2i and
/// 2i + 1, so position 0 has the single child 1. Comparisons are strict: an element moves up only
/// past a parent with a greater key and down only below a child with a smaller key, and of two
/// children the second is taken when its key is not greater than the first's. Ties therefore come
/// out in an order the shortest-path results depend on; keep it.
///
/// Element needs GetKey(), SetKey(key), GetPosition() and SetPosition(p) (ZoHeapElementSimple).
/// @ingroup containers
template <class Element>
class ZO_TEMPLATE_API ZoHeap
{
public:
    /// The key type, taken from the element (ZoHeapElementSimple::KeyType); it needs operator>.
    typedef typename Element::KeyType Key;

    /// Number of elements in the heap; 0 when empty.
    uint32_t GetCount() const { return m_elements.GetCount(); }
    /// Non-zero when the heap holds no element.
    int IsEmpty() const { return m_elements.GetCount() == 0; }
    /// Room for `count` elements, so that pushing up to that many never reallocates.
    void Reserve(uint32_t count) { m_elements.SetMemoryElementCount(count, 1); }
    /// Forgets every element (the heap does not delete them) and keeps the reserved room.
    void RemoveAll() { m_elements.RemoveAll(); }
    /// Requires: !IsEmpty() (not checked).
    Element* GetMinimum() const { return m_elements[0]; }

    /// Adds `element` (not owned) and moves it up to its place; records its position in it.
    void Push(Element* element)
    {
        m_elements.Add(element);
        const uint32_t position = m_elements.GetCount() - 1;
        element->SetPosition(position);
        moveUp(position);
    }
    /// Removes and returns the element with the least key. Requires: !IsEmpty() (not checked).
    Element* TakeMinimum()
    {
        Element** elements = m_elements.GetData();
        Element* minimum = elements[0];
        const uint32_t last = m_elements.GetCount() - 1;
        if (last != 0) {
            elements[0] = elements[last];
            elements[0]->SetPosition(0);
        }
        m_elements.RemoveTail();
        if (last > 1)
            moveDown(0);
        return minimum;
    }
    /// Replaces the key of an element in the heap and moves it up. Requires: key <= its old key.
    void LowerKey(Element* element, const Key& key)
    {
        element->SetKey(key);
        moveUp(element->GetPosition());
    }

private:
    void moveUp(uint32_t position)
    {
        Element** elements = m_elements.GetData();
        Element* element = elements[position];
        while (position != 0) {
            const uint32_t parent = position / 2;
            if (!(elements[parent]->GetKey() > element->GetKey()))
                break;
            elements[position] = elements[parent];
            elements[position]->SetPosition(position);
            position = parent;
        }
        elements[position] = element;
        element->SetPosition(position);
    }
    void moveDown(uint32_t position)
    {
        Element** elements = m_elements.GetData();
        const uint32_t count = m_elements.GetCount();
        Element* element = elements[position];
        for (;;) {
            uint32_t child = position == 0 ? 1 : position * 2;
            if (child >= count)
                break;
            if (position != 0 && child + 1 < count && !(elements[child + 1]->GetKey() > elements[child]->GetKey()))
                ++child;
            if (!(element->GetKey() > elements[child]->GetKey()))
                break;
            elements[position] = elements[child];
            elements[position]->SetPosition(position);
            position = child;
        }
        elements[position] = element;
        element->SetPosition(position);
    }

    ZoArray<Element*, 0> m_elements;
};
