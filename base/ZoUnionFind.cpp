#include "base/ZoUnionFind.h"

#include <algorithm>

ZoUnionFind::ZoUnionFind()
{
    m_entries.SetGrowConstant(10);
}

ZoUnionFind::ZoUnionFind(uint32_t count) : ZoUnionFind()
{
    InitElements(count);
}

ZoUnionFind::ZoUnionFind(const ZoUnionFind& other) : m_entries(other.m_entries)
{
}

ZoUnionFind& ZoUnionFind::operator=(const ZoUnionFind& other)
{
    m_entries = other.m_entries;
    return *this;
}

ZoUnionFind::~ZoUnionFind() = default;

void ZoUnionFind::InitElements(uint32_t count)
{
    m_entries.SetElementCount(count, 0);
    for (uint32_t i = 0; i < count; ++i)
        m_entries[i] = i;
}

uint32_t ZoUnionFind::GetRoot(uint32_t i) const
{
    while (m_entries[i] != i)
        i = m_entries[i];
    return i;
}

void ZoUnionFind::collapsePath(uint32_t i, uint32_t root)
{
    for (;;) {
        const uint32_t parent = m_entries[i];
        m_entries[i] = root;
        if (parent == i)
            return;
        i = parent;
    }
}

void ZoUnionFind::AddPair(uint32_t a, uint32_t b)
{
    const uint32_t root = std::min(GetRoot(a), GetRoot(b));
    collapsePath(a, root);
    collapsePath(b, root);
}

uint32_t ZoUnionFind::CreateSetNumbers()
{
    const uint32_t count = m_entries.GetCount();
    for (uint32_t i = 0; i < count; ++i)
        collapsePath(i, GetRoot(i));
    // A root is smaller than every other member of its set, so it is numbered before them.
    uint32_t sets = 0;
    for (uint32_t i = 0; i < count; ++i)
        m_entries[i] = m_entries[i] == i ? sets++ : m_entries[m_entries[i]];
    return sets;
}
