#pragma once

#include "base/ZoArray.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoUnionFind: a disjoint-set forest over the elements 0..GetCount()-1. Pairs are merged with
/// AddPair; CreateSetNumbers then numbers the resulting sets densely, 0, 1, ... in the order of
/// their smallest elements.
///
/// Entry i is the parent of element i until CreateSetNumbers runs and i's set number afterwards.
/// AddPair keeps the root of every set its smallest element (so every parent index is at most its
/// child's) and flattens both paths it walks; GetRoot itself does not compress. After
/// CreateSetNumbers, AddPair and GetRoot must not be used before a new InitElements. Element
/// numbers are not checked against GetCount().
/// @ingroup containers
class ZO_API ZoUnionFind
{
public:
    ZoUnionFind();
    /// `count` elements, each its own set.
    explicit ZoUnionFind(uint32_t count);
    /// Copies the entries.
    ZoUnionFind(const ZoUnionFind& other);
    /// Replaces the entries with a copy of `other`'s.
    ZoUnionFind& operator=(const ZoUnionFind& other);
    ~ZoUnionFind();

    /// `count` elements, each its own set; earlier merges are forgotten.
    void InitElements(uint32_t count);
    /// Number of elements.
    uint32_t GetCount() const { return m_entries.GetCount(); }
    /// The root of i's set, following parents without changing them.
    uint32_t GetRoot(uint32_t i) const;
    /// Merges the sets of a and b under the smaller of their roots.
    void AddPair(uint32_t a, uint32_t b);
    /// Replaces every entry by its set number; returns the number of sets.
    uint32_t CreateSetNumbers();
    /// i's set number; meaningful after CreateSetNumbers.
    uint32_t GetSetNumber(uint32_t i) const { return m_entries[i]; }

protected:
    /// Points i and every element on its way up to its current root, that root included, at `root`.
    void collapsePath(uint32_t i, uint32_t root);

private:
    ZoArray<uint32_t, 0> m_entries;
};
