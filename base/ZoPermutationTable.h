#pragma once

#include "base/ZoMemoryBlock.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoPermutationTable: maps a list of values, possibly repeated, to dense unique numbers in the order
/// of first occurrence (GetUnique) and back (GetOriginal). Built once from the list; read-only after.
///
/// Copies share the two tables of their source rather than duplicating them: code written against
/// this class has always relied on copies referring to the same tables. The tables are released
/// when the last table sharing them goes, so copies may be destroyed in any order.
/// @ingroup containers
class ZO_API ZoPermutationTable
{
public:
    /// 0xFFFFFFFF: what GetUnique returns for a value that does not occur.
    static const uint32_t sc_uiNotPresent = 0xFFFFFFFFu;

    /// Requires: every value is less than `count`, since the unique table is indexed by value and
    /// has `count` entries (not checked).
    ZoPermutationTable(const uint32_t* values, uint32_t count);
    /// Shares `other`'s two tables (reference-counted blocks; neither table changes after construction).
    ZoPermutationTable(const ZoPermutationTable& other);
    /// Shares `other`'s two tables, as the copy constructor does.
    ZoPermutationTable& operator=(const ZoPermutationTable& other);
    virtual ~ZoPermutationTable();

    /// The dense number of `value`, or 0xFFFFFFFF when it does not occur. Requires: value less than
    /// the count given at construction (not checked).
    uint32_t GetUnique(uint32_t value) const { return uniqueTable()[value]; }
    /// The value with dense number `unique`. Requires: unique < GetNumUniqueEntries() (not checked).
    uint32_t GetOriginal(uint32_t unique) const { return valueTable()[unique]; }
    /// Number of distinct values; GetUnique returns 0 up to one less.
    uint32_t GetNumUniqueEntries() const { return m_numUniqueEntries; }

protected:
    /// Empty tables.
    ZoPermutationTable();

private:
    uint32_t* uniqueTable() const { return reinterpret_cast<uint32_t*>(m_uniqueTable->GetData()); }
    uint32_t* valueTable() const { return reinterpret_cast<uint32_t*>(m_valueTable->GetData()); }

    uint32_t m_entryCount;
    ZoSmartPointer<ZoMemoryBlock> m_uniqueTable;
    ZoSmartPointer<ZoMemoryBlock> m_valueTable;
    uint32_t m_numUniqueEntries;
};
