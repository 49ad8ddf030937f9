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
    typedef Key KeyType;

    ZoHeapElementSimple() : m_position(0), m_key(), m_data() {}
    ZoHeapElementSimple(const Key& key, const T& data) : m_position(0), m_key(key), m_data(data) {}

    uint32_t GetPosition() const { return m_position; }
    void SetPosition(uint32_t position) { m_position = position; }
    const Key& GetKey() const { return m_key; }
    void SetKey(const Key& key) { m_key = key; }
    const T& GetData() const { return m_data; }
    void SetData(const T& data) { m_data = data; }

private:
    uint32_t m_position;
    Key m_key;
    T m_data;
};
