#include "base/ZoAttributeDefinitionList.h"

ZoAttributeDefinitionList::ZoAttributeDefinitionList() : Base(10)
{
}

// A copy gets a node pool of its own, so that copies can live in different threads.
ZoAttributeDefinitionList::ZoAttributeDefinitionList(const ZoAttributeDefinitionList& other) : Base(other, 0)
{
}

ZoAttributeDefinitionList& ZoAttributeDefinitionList::operator=(const ZoAttributeDefinitionList& other)
{
    Base::operator=(other);
    return *this;
}

ZoAttributeDefinitionList::~ZoAttributeDefinitionList() = default;

uint32_t ZoAttributeDefinitionList::GetTotalSize() const
{
    uint32_t total = 0;
    for (Position position = GetHeadPosition(); position != nullptr;)
        total += GetNext(position)->GetElementSize();
    return total;
}

uint32_t ZoAttributeDefinitionList::GetNumSerializableItems() const
{
    uint32_t count = 0;
    for (Position position = GetHeadPosition(); position != nullptr;)
        if (GetNext(position)->IsSerialize() != 0)
            ++count;
    return count;
}

ZoSmartPointer<ZoAttributeDefinition> ZoAttributeDefinitionList::Get(uint32_t uniqueID)
{
    for (Position position = GetHeadPosition(); position != nullptr;) {
        const ZoSmartPointer<ZoAttributeDefinition>& definition = GetNext(position);
        if (definition->GetUniqueID() == uniqueID)
            return definition;
    }
    return nullptr;
}

ZoSmartPointer<const ZoAttributeDefinition> ZoAttributeDefinitionList::Get(uint32_t uniqueID) const
{
    return const_cast<ZoAttributeDefinitionList*>(this)->Get(uniqueID);
}

void ZoAttributeDefinitionList::SortByElementSize()
{
    BubbleSort([](const ZoSmartPointer<ZoAttributeDefinition>& first, const ZoSmartPointer<ZoAttributeDefinition>& second) {
        if (first->GetElementSize() < second->GetElementSize())
            return -1;
        return first->GetElementSize() > second->GetElementSize() ? 1 : 0;
    });
}
