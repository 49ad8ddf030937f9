/// @class ZoAttributeDefinitionList
/// ZoAttributeDefinitionList: a sorted list of attribute definitions, as a container keeps the
/// definitions it placed and as callers hand several definitions to ZoAttributeContainer::Assert.
/// Nodes come in blocks of 10.
/// @ingroup graphs
#pragma once

#include "base/ZoAttributeDefinition.h"
#include "base/ZoListSorted.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoAttributeDefinitionList
    : public ZoListSorted<ZoSmartPointer<ZoAttributeDefinition>, ZoSmartPointer<ZoAttributeDefinition>, 0x21>
{
    typedef ZoListSorted<ZoSmartPointer<ZoAttributeDefinition>, ZoSmartPointer<ZoAttributeDefinition>, 0x21> Base;

public:
    ZoAttributeDefinitionList();
    /// Shares the definitions (not copies of them) in a node pool of its own, so that the copy may
    /// be used on another thread than the source.
    ZoAttributeDefinitionList(const ZoAttributeDefinitionList& other);
    /// Replaces the entries with the other list's definitions (shared, not copied).
    ZoAttributeDefinitionList& operator=(const ZoAttributeDefinitionList& other);
    ~ZoAttributeDefinitionList();

    /// Sum of the element sizes; 0 for an empty list.
    uint32_t GetTotalSize() const;
    /// Definitions whose serialize flag is set.
    uint32_t GetNumSerializableItems() const;
    ///@{
    /// The first definition with that unique ID from the head, or a null handle.
    ZoSmartPointer<ZoAttributeDefinition> Get(uint32_t uniqueID);
    ZoSmartPointer<const ZoAttributeDefinition> Get(uint32_t uniqueID) const;
    ///@}
    /// Stable sort by ascending element size.
    void SortByElementSize();
};
