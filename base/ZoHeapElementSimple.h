#pragma once

#include "platform/ZoExport.h"

#include <cstdint>

/// ZoHeapElementSimple<T, Key>: an element of a ZoHeap: a key, a payload (a node pointer in the
/// shortest-path search) and the element's current position in the heap, which the heap keeps up to
/// date on every move so that a key can be lowered without a search.
/// @ingroup containers
template <class T, class Key>
class ZO_TEMPLATE_API ZoHeapElementSimple
{
public:
    /// The key type ZoHeap orders by.
    typedef Key KeyType;

    ZoHeapElementSimple() : m_position(0), m_key(), m_data() {}
    /// An element with `key` and `data`, position 0 until a heap places it.
    ZoHeapElementSimple(const Key& key, const T& data) : m_position(0), m_key(key), m_data(data) {}

    /// The element's place in its heap, kept current by the heap.
    uint32_t GetPosition() const { return m_position; }
    /// Called by the heap when it moves the element; not for other callers.
    void SetPosition(uint32_t position) { m_position = position; }
    /// The key the heap orders by.
    const Key& GetKey() const { return m_key; }
    /// Replaces the key without reordering: on an element in a heap use ZoHeap::LowerKey instead.
    void SetKey(const Key& key) { m_key = key; }
    /// The payload.
    const T& GetData() const { return m_data; }
    /// Replaces the payload; the heap order does not depend on it.
    void SetData(const T& data) { m_data = data; }

private:
    uint32_t m_position;
    Key m_key;
    T m_data;
};
