#include "base/ZoAttributeContainer.h"

#include "base/ZoExceptionContainer.h"

#include <cstring>
#include <vector>

namespace {
const char16_t kSource[] = u"..\\base\\ZoAttributeContainer.cpp";
const char16_t kClass[] = u"ZoAttributeContainer";

void construct(const ZoAttributeDefinition& definition, unsigned char* attribute)
{
    if (!definition.GetConstructor().IsNull())
        definition.GetConstructor()->Init(attribute, definition.GetElementSize());
}

void destruct(const ZoAttributeDefinition& definition, unsigned char* attribute)
{
    if (!definition.GetDestructor().IsNull())
        definition.GetDestructor()->Destroy(attribute, definition.GetElementSize());
}
} // namespace

// ---------------------------------------------------------------------------------------------
// ZoContainer

ZoAttributeContainer::ZoContainer::ZoContainer(uint32_t growFactor)
{
    SetGrowFactor(growFactor);
}

// The byte array's own copy takes only GetCount() bytes, so the records are copied here in full and
// the free records rebased onto the copy's block.
ZoAttributeContainer::ZoContainer::ZoContainer(const ZoContainer& other)
    : ZoArrayDynamicSize(), m_parameters(other.m_parameters), m_freeAttributes(other.m_freeAttributes, 0), m_freeRecords(10)
{
    // Definitions hold their offsets, so each container needs its own: a later repack of one copy
    // must not move the other's attributes.
    for (ZoAttributeDefinitionList::Position position = other.m_definitions.GetHeadPosition(); position != nullptr;)
        m_definitions.AddTail(ZoSmartPointer<ZoAttributeDefinition>(new ZoAttributeDefinition(*other.m_definitions.GetNext(position))));
    SetGrowFactor(other.GetGrowFactor());
    SetElementSize(other.GetElementSize(), 0);
    SetElementCount(other.GetCount(), 0);
    const size_t bytes = byteCount(m_count);
    if (bytes != 0 && m_data != nullptr && other.GetData() != nullptr)
        std::memcpy(m_data, other.GetData(), bytes);
    for (ZoList<unsigned char*, 0x22>::Position position = other.m_freeRecords.GetHeadPosition(); position != nullptr;)
        m_freeRecords.AddTail(m_data + (other.m_freeRecords.GetNext(position) - other.GetData()));
}

ZoAttributeContainer::ZoContainer::~ZoContainer() = default;

ZoSmartPointer<ZoMemoryBlock> ZoAttributeContainer::ZoContainer::renewBlock(uint32_t recordSize)
{
    ZoSmartPointer<ZoMemoryBlock> oldBlock = GetMemoryBlock();
    if (recordSize != GetElementSize()) {
        SetElementSize(recordSize, 0);
    } else {
        const uint32_t memoryCount = m_memoryCount;
        release();
        m_memoryCount = memoryCount;
        allocate();
    }
    return oldBlock;
}

// ---------------------------------------------------------------------------------------------
// ZoAttributeContainer

ZoAttributeContainer::ZoAttributeContainer(uint32_t containerCount, uint32_t growFactor)
{
    if (containerCount == 0 || growFactor == 0)
        throw ZoExceptionContainer(kSource, kClass, u"_ZoAttributeContainer", 38);
    m_containers.SetGrowFactor(10);
    for (uint32_t c = 0; c < containerCount; ++c)
        m_containers.Add(new ZoContainer(growFactor));
}

ZoAttributeContainer::ZoAttributeContainer(const ZoAttributeContainer& other)
{
    m_containers.SetGrowFactor(10);
    copyFrom(other);
}

ZoAttributeContainer& ZoAttributeContainer::operator=(const ZoAttributeContainer& other)
{
    if (this != &other) {
        deleteContainers();
        copyFrom(other);
    }
    return *this;
}

ZoAttributeContainer::~ZoAttributeContainer()
{
    deleteContainers();
}

void ZoAttributeContainer::copyFrom(const ZoAttributeContainer& other)
{
    for (uint32_t c = 0; c < other.m_containers.GetCount(); ++c)
        m_containers.Add(new ZoContainer(*other.m_containers[c]));
}

void ZoAttributeContainer::deleteContainers()
{
    for (uint32_t c = 0; c < m_containers.GetCount(); ++c)
        delete m_containers[c];
    m_containers.RemoveAll();
}

uint32_t ZoAttributeContainer::GetCount(uint32_t c) const
{
    const ZoContainer& container = *m_containers[c];
    return container.GetCount() - container.m_freeRecords.GetCount();
}

ZoSmartPointer<ZoAttributeDefinition> ZoAttributeContainer::GetAttributeDefinition(uint32_t c, uint32_t uniqueID) const
{
    ZoSmartPointer<ZoAttributeDefinition> definition = m_containers[c]->m_definitions.Get(uniqueID);
    if (definition.IsNull())
        throw ZoExceptionContainer(kSource, kClass, u"GetAttributeDefinition", 1011);
    return definition;
}

void ZoAttributeContainer::forEachLiveRecord(ZoContainer& container, const std::function<void(unsigned char*)>& action) const
{
    const uint32_t count = container.GetCount();
    const uint32_t size = container.GetElementSize();
    if (count == 0 || size == 0 || container.GetData() == nullptr)
        return;
    std::vector<char> released(count, 0);
    for (ZoList<unsigned char*, 0x22>::Position position = container.m_freeRecords.GetHeadPosition(); position != nullptr;)
        released[static_cast<size_t>(container.m_freeRecords.GetNext(position) - container.GetData()) / size] = 1;
    for (uint32_t i = 0; i < count; ++i)
        if (!released[i])
            action(container[i]);
}

bool ZoAttributeContainer::placeInHole(ZoContainer& container, ZoAttributeDefinition& definition)
{
    // Best fit: an exact hole is taken at once; otherwise the smallest hole that is large enough,
    // the earlier one on a tie.
    typedef ZoList<SFreeAttribute, 0x21>::Position Position;
    const uint32_t size = definition.GetElementSize();
    Position chosen = nullptr;
    for (Position position = container.m_freeAttributes.GetHeadPosition(); position != nullptr;) {
        const Position current = position;
        const SFreeAttribute& hole = container.m_freeAttributes.GetNext(position);
        if (hole.size == size) {
            chosen = current;
            break;
        }
        if (hole.size > size && (chosen == nullptr || container.m_freeAttributes.GetAt(chosen).size > hole.size))
            chosen = current;
    }
    if (chosen == nullptr)
        return false;
    SFreeAttribute& hole = container.m_freeAttributes.GetAt(chosen);
    definition.SetIndex(hole.offset);
    if (hole.size == size) {
        container.m_freeAttributes.RemoveAt(chosen);
    } else {
        hole.offset += size;
        hole.size -= size;
    }
    return true;
}

void ZoAttributeContainer::placeAppended(ZoContainer& container, const ZoSmartPointer<ZoAttributeDefinition>& definition)
{
    container.m_definitions.AddTail(definition);
    container.m_parameters[definition->GetUniqueID()] = ZoSmartPointer<ZoAttributeParameter>(new ZoAttributeParameter());
    const ZoAttributeDefinition& placed = *definition;
    forEachLiveRecord(container, [&placed](unsigned char* record) { construct(placed, record + placed.GetIndex()); });
}

void ZoAttributeContainer::Assert(uint32_t c, uint32_t initialCount, ZoSmartPointer<ZoAttributeDefinition> definition)
{
    if (definition.IsNull() || definition->Exists())
        return;
    ZoContainer& container = *m_containers[c];
    definition->SetContainer(c);
    if (!placeInHole(container, *definition)) {
        enlarge(c, container, definition->GetElementSize(), initialCount);
        definition->SetIndex(container.m_definitions.GetTotalSize());
    }
    placeAppended(container, definition);
}

void ZoAttributeContainer::Assert(uint32_t c, uint32_t initialCount, ZoAttributeDefinitionList& definitions)
{
    typedef ZoAttributeDefinitionList::Position Position;
    ZoContainer& container = *m_containers[c];
    definitions.SortByElementSize();
    Position position = definitions.GetHeadPosition();
    while (position != nullptr) {
        const ZoSmartPointer<ZoAttributeDefinition>& definition = definitions.GetAt(position);
        if (!definition->Exists()) {
            definition->SetContainer(c);
            if (!placeInHole(container, *definition)) {
                definition->SetContainer(ZoAttributeDefinition::sc_uiNotPlaced);
                break;
            }
            placeAppended(container, definition);
        }
        definitions.GetNext(position);
    }
    // What found no hole is placed after one enlargement for all of it, in the sorted order.
    std::vector<ZoSmartPointer<ZoAttributeDefinition>> rest;
    uint32_t restSize = 0;
    for (; position != nullptr;) {
        const ZoSmartPointer<ZoAttributeDefinition>& definition = definitions.GetNext(position);
        if (!definition->Exists()) {
            bool listed = false;
            for (const auto& other : rest)
                listed = listed || other == definition;
            if (!listed) {
                rest.push_back(definition);
                restSize += definition->GetElementSize();
            }
        }
    }
    if (rest.empty())
        return;
    enlarge(c, container, restSize, initialCount);
    uint32_t offset = container.m_definitions.GetTotalSize();
    for (const auto& definition : rest) {
        definition->SetContainer(c);
        definition->SetIndex(offset);
        offset += definition->GetElementSize();
        placeAppended(container, definition);
    }
}

void ZoAttributeContainer::enlarge(uint32_t c, ZoContainer& container, uint32_t addedSize, uint32_t initialCount)
{
    // With holes the records are repacked on the way, which closes them: the record then needs only
    // its definitions' bytes, and the new attributes go right after them.
    const bool closeHoles = !container.m_freeAttributes.IsEmpty();
    const uint32_t newSize = (closeHoles ? container.m_definitions.GetTotalSize() : container.GetElementSize()) + addedSize;
    if (container.HasMemoryBlock()) {
        if (closeHoles) {
            repack(c, container, newSize);
            return;
        }
        const uint32_t oldSize = container.GetElementSize();
        const unsigned char* oldBase = container.GetData();
        const ZoSmartPointer<ZoMemoryBlock> oldBlock = container.GetMemoryBlock();
        container.SetElementSize(newSize, 1);
        rebaseFreeRecords(container, oldBase, oldSize);
        onElementsMoved(c, oldSize, oldBlock, newSize, container.GetMemoryBlock());
        return;
    }
    if (closeHoles)
        renumberIndexes(container);
    container.SetElementSize(newSize, 0);
    container.SetElementCount(initialCount, 0);
    container.m_freeRecords.RemoveAll();
    if (container.HasMemoryBlock()) {
        // The new records are blank: the attributes placed before get constructed in them here, the
        // new ones by the caller.
        for (ZoAttributeDefinitionList::Position position = container.m_definitions.GetHeadPosition(); position != nullptr;) {
            const ZoAttributeDefinition& placed = *container.m_definitions.GetNext(position);
            forEachLiveRecord(container, [&placed](unsigned char* record) { construct(placed, record + placed.GetIndex()); });
        }
        onElementsCreated(c, newSize, container.GetMemoryBlock());
    }
}

void ZoAttributeContainer::repack(uint32_t c, ZoContainer& container, uint32_t newSize)
{
    const uint32_t oldSize = container.GetElementSize();
    const unsigned char* oldBase = container.GetData();
    const uint32_t count = container.GetCount();
    const ZoSmartPointer<ZoMemoryBlock> oldBlock = container.renewBlock(newSize);
    container.m_freeAttributes.RemoveAll();
    uint32_t offset = 0;
    for (ZoAttributeDefinitionList::Position position = container.m_definitions.GetHeadPosition(); position != nullptr;) {
        ZoAttributeDefinition& definition = *container.m_definitions.GetNext(position);
        const uint32_t size = definition.GetElementSize();
        if (container.GetData() != nullptr && oldBase != nullptr)
            for (uint32_t i = 0; i < count; ++i)
                std::memcpy(container[i] + offset, oldBase + static_cast<size_t>(i) * oldSize + definition.GetIndex(), size);
        definition.SetIndex(offset);
        offset += size;
    }
    rebaseFreeRecords(container, oldBase, oldSize);
    onElementsMoved(c, oldSize, oldBlock, newSize, container.GetMemoryBlock());
}

void ZoAttributeContainer::renumberIndexes(ZoContainer& container)
{
    container.m_freeAttributes.RemoveAll();
    uint32_t offset = 0;
    for (ZoAttributeDefinitionList::Position position = container.m_definitions.GetHeadPosition(); position != nullptr;) {
        ZoAttributeDefinition& definition = *container.m_definitions.GetNext(position);
        definition.SetIndex(offset);
        offset += definition.GetElementSize();
    }
}

void ZoAttributeContainer::rebaseFreeRecords(ZoContainer& container, const unsigned char* oldBase, uint32_t oldSize)
{
    unsigned char* newBase = container.GetData();
    const uint32_t newSize = container.GetElementSize();
    if (oldBase == newBase && oldSize == newSize)
        return;
    for (ZoList<unsigned char*, 0x22>::Position position = container.m_freeRecords.GetHeadPosition(); position != nullptr;) {
        unsigned char*& record = container.m_freeRecords.GetNext(position);
        record = newBase + static_cast<size_t>(record - oldBase) / oldSize * newSize;
    }
}

void ZoAttributeContainer::Destroy(ZoSmartPointer<ZoAttributeDefinition> definition, int keepHole)
{
    if (definition.IsNull() || !definition->Exists())
        return;
    const uint32_t c = definition->GetContainer();
    ZoContainer& container = *m_containers[c];
    const ZoAttributeDefinition& removed = *definition;
    forEachLiveRecord(container, [&removed](unsigned char* record) { destruct(removed, record + removed.GetIndex()); });
    const ZoAttributeDefinitionList::Position listed = container.m_definitions.FindPos(definition);
    if (listed != nullptr)
        container.m_definitions.RemoveAt(listed);
    container.m_parameters.RemoveKey(definition->GetUniqueID());
    const uint32_t index = definition->GetIndex();
    const uint32_t size = definition->GetElementSize();
    // Unplaced again, so that the definition can be asserted anew.
    definition->SetIndex(ZoAttributeDefinition::sc_uiNotPlaced);
    definition->SetContainer(ZoAttributeDefinition::sc_uiNotPlaced);

    if (keepHole != 0) {
        container.m_freeAttributes.AddTail(SFreeAttribute{index, size});
        return;
    }
    const uint32_t remaining = container.m_definitions.GetTotalSize();
    if (container.GetElementSize() <= size || remaining == 0) {
        container.SetElementSize(0, 0);
        container.RemoveAll();
        container.m_freeAttributes.RemoveAll();
        onContainerEmptied(c);
        container.m_freeRecords.RemoveAll();
        return;
    }
    // The repack closes every hole, so the record shrinks to the remaining definitions' bytes.
    if (container.HasMemoryBlock()) {
        repack(c, container, remaining);
    } else {
        container.SetElementSize(remaining, 0);
        renumberIndexes(container);
    }
}

unsigned char* ZoAttributeContainer::CreateElement(uint32_t c)
{
    ZoContainer& container = *m_containers[c];
    const uint32_t size = container.GetElementSize();
    if (size == 0)
        return nullptr;
    unsigned char* record;
    if (!container.m_freeRecords.IsEmpty()) {
        record = container.m_freeRecords.GetTail();
        container.m_freeRecords.RemoveTail();
    } else {
        const unsigned char* oldBase = container.GetData();
        const ZoSmartPointer<ZoMemoryBlock> oldBlock = container.GetMemoryBlock();
        const uint32_t oldCount = container.GetCount();
        container.Grow(1);
        if (container.GetData() != oldBase) {
            rebaseFreeRecords(container, oldBase, size);
            onElementsMoved(c, size, oldBlock, size, container.GetMemoryBlock());
        }
        record = container[oldCount];
    }
    for (ZoAttributeDefinitionList::Position position = container.m_definitions.GetHeadPosition(); position != nullptr;) {
        const ZoAttributeDefinition& definition = *container.m_definitions.GetNext(position);
        construct(definition, record + definition.GetIndex());
    }
    return record;
}

void ZoAttributeContainer::ReleaseElement(uint32_t c, unsigned char* record)
{
    ZoContainer& container = *m_containers[c];
    // Every destructor gets the start of the record, not its attribute's own bytes. Attribute kinds
    // written against this container expect exactly that address here, so it stays.
    for (ZoAttributeDefinitionList::Position position = container.m_definitions.GetHeadPosition(); position != nullptr;)
        destruct(*container.m_definitions.GetNext(position), record);
    container.m_freeRecords.AddTail(record);
}

void ZoAttributeContainer::ReleaseAllElements(uint32_t c)
{
    ZoContainer& container = *m_containers[c];
    for (ZoAttributeDefinitionList::Position position = container.m_definitions.GetHeadPosition(); position != nullptr;) {
        const ZoAttributeDefinition& definition = *container.m_definitions.GetNext(position);
        forEachLiveRecord(container, [&definition](unsigned char* record) { destruct(definition, record + definition.GetIndex()); });
    }
    container.RemoveAll();
    container.m_freeRecords.RemoveAll();
    const bool hadHoles = !container.m_freeAttributes.IsEmpty();
    renumberIndexes(container);
    if (hadHoles)
        container.SetElementSize(container.m_definitions.GetTotalSize(), 0);
}

void ZoAttributeContainer::SetMemoryElementCount(uint32_t c, uint32_t extra)
{
    ZoContainer& container = *m_containers[c];
    const uint32_t wanted = container.m_freeRecords.GetCount() + extra;
    if (!container.HasMemoryBlock()) {
        container.ZoArrayDynamicSize::SetMemoryElementCount(extra, 1);
        return;
    }
    const unsigned char* oldBase = container.GetData();
    const ZoSmartPointer<ZoMemoryBlock> oldBlock = container.GetMemoryBlock();
    container.ZoArrayDynamicSize::SetMemoryElementCount(wanted, 1);
    if (container.GetData() != oldBase) {
        const uint32_t size = container.GetElementSize();
        rebaseFreeRecords(container, oldBase, size);
        onElementsMoved(c, size, oldBlock, size, container.GetMemoryBlock());
    }
}

void ZoAttributeContainer::Copy(uint32_t c, const unsigned char* source, unsigned char* target) const
{
    if (source != target)
        std::memmove(target, source, m_containers[c]->GetElementSize());
}

void ZoAttributeContainer::SetAttributeParameter(const ZoAttributeDefinition& definition, ZoSmartPointer<ZoAttributeParameter> parameter)
{
    m_containers[definition.GetContainer()]->m_parameters[definition.GetUniqueID()] = parameter;
}

ZoSmartPointer<ZoAttributeParameter> ZoAttributeContainer::GetAttributeParameter(const ZoAttributeDefinition& definition) const
{
    const ZoSmartPointer<ZoAttributeParameter>* found = m_containers[definition.GetContainer()]->m_parameters.Find(definition.GetUniqueID());
    return found != nullptr ? *found : nullptr;
}

void ZoAttributeContainer::onElementsMoved(uint32_t, uint32_t, const ZoSmartPointer<ZoMemoryBlock>&, uint32_t, const ZoSmartPointer<ZoMemoryBlock>&)
{
}

void ZoAttributeContainer::onElementsCreated(uint32_t, uint32_t, const ZoSmartPointer<ZoMemoryBlock>&)
{
}

void ZoAttributeContainer::onContainerEmptied(uint32_t)
{
}
