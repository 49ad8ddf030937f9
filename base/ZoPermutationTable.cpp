#include "base/ZoPermutationTable.h"

#include <new>

namespace {
ZoSmartPointer<ZoMemoryBlock> newTable(uint32_t entries)
{
    ZoSmartPointer<ZoMemoryBlock> table(new ZoMemoryBlock(static_cast<size_t>(entries) * sizeof(uint32_t)));
    if (table->GetData() == nullptr)
        throw std::bad_alloc();
    return table;
}
} // namespace

ZoPermutationTable::ZoPermutationTable() : m_entryCount(0), m_numUniqueEntries(0)
{
}

ZoPermutationTable::ZoPermutationTable(const uint32_t* values, uint32_t count)
    : m_entryCount(count), m_uniqueTable(newTable(count)), m_numUniqueEntries(0)
{
    uint32_t* unique = uniqueTable();
    for (uint32_t i = 0; i < count; ++i)
        unique[i] = sc_uiNotPresent;
    for (uint32_t j = 0; j < count; ++j)
        if (unique[values[j]] == sc_uiNotPresent)
            unique[values[j]] = m_numUniqueEntries++;
    m_valueTable = newTable(m_numUniqueEntries);
    uint32_t* original = valueTable();
    for (uint32_t j = 0; j < count; ++j)
        original[unique[values[j]]] = values[j];
}

ZoPermutationTable::ZoPermutationTable(const ZoPermutationTable& other) = default;

ZoPermutationTable& ZoPermutationTable::operator=(const ZoPermutationTable& other) = default;

ZoPermutationTable::~ZoPermutationTable() = default;
