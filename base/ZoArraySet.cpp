#include "base/ZoArraySet.h"

#include "base/ZoAttributeContainer.h"
#include "base/ZoExceptionContainer.h"

#include <algorithm>

namespace {
const char16_t kSource[] = u"..\\base\\ZoArraySet.cpp";
const char16_t kClass[] = u"ZoArraySet";
const uint32_t kContainer = 0;
// Records are made one at a time as sets arrive; the container grows by this many at once.
const uint32_t kRecordGrowth = 16;

uint32_t lowerBound(const ZoArraySet::Members& members, uint32_t member)
{
    const uint32_t* begin = members.GetData();
    return static_cast<uint32_t>(std::lower_bound(begin, begin + members.GetCount(), member) - begin);
}

bool strictlyAscending(const ZoArraySet::Members& members)
{
    for (uint32_t i = 1; i < members.GetCount(); ++i)
        if (members[i - 1] >= members[i])
            return false;
    return true;
}
} // namespace

// The attribute container that holds one record per set. It keeps the sets' record addresses
// current when the records move, which is how the container expects holders of addresses to work.
class ZoArraySet::Records : public ZoAttributeContainer
{
public:
    explicit Records(std::vector<Set>& sets) : ZoAttributeContainer(1, kRecordGrowth), m_sets(sets) {}

protected:
    void onElementsMoved(uint32_t, uint32_t oldSize, const ZoSmartPointer<ZoMemoryBlock>& oldBlock, uint32_t newSize,
                         const ZoSmartPointer<ZoMemoryBlock>& newBlock) override
    {
        const unsigned char* oldBase = oldBlock.IsNull() ? nullptr : oldBlock->GetData();
        unsigned char* newBase = newBlock.IsNull() ? nullptr : newBlock->GetData();
        for (Set& set : m_sets)
            if (set.record != nullptr && oldBase != nullptr && newBase != nullptr)
                set.record = newBase + static_cast<size_t>(set.record - oldBase) / oldSize * newSize;
    }
    // The container made one record for each set that existed when the first attribute arrived,
    // in set order.
    void onElementsCreated(uint32_t, uint32_t size, const ZoSmartPointer<ZoMemoryBlock>& block) override
    {
        for (size_t i = 0; i < m_sets.size(); ++i)
            m_sets[i].record = block->GetData() + i * size;
    }
    void onContainerEmptied(uint32_t) override
    {
        for (Set& set : m_sets)
            set.record = nullptr;
    }

private:
    std::vector<Set>& m_sets;
};

ZoArraySet::ZoArraySet() : m_records(new Records(m_sets))
{
}

ZoArraySet::~ZoArraySet()
{
    // The container frees records without tearing their attributes down.
    m_records->ReleaseAllElements(kContainer);
}

ZoArraySet::Set& ZoArraySet::at(uint32_t set, const char16_t* method, uint32_t line)
{
    if (set >= m_sets.size())
        throw ZoExceptionContainer(kSource, kClass, method, line);
    return m_sets[set];
}

const ZoArraySet::Set& ZoArraySet::at(uint32_t set, const char16_t* method, uint32_t line) const
{
    return const_cast<ZoArraySet*>(this)->at(set, method, line);
}

void ZoArraySet::appendSet(Members members)
{
    m_sets.push_back(Set{members, nullptr});
    // The record may move the other sets' records, so it is made once the set is in place.
    m_sets.back().record = m_records->CreateElement(kContainer);
}

uint32_t ZoArraySet::AddSet()
{
    appendSet(Members());
    return GetSetCount() - 1;
}

uint32_t ZoArraySet::AddSet(const uint32_t* members, uint32_t count)
{
    std::vector<uint32_t> sorted(members, members + count);
    std::sort(sorted.begin(), sorted.end());
    sorted.erase(std::unique(sorted.begin(), sorted.end()), sorted.end());
    Members kept;
    kept.SetElementCount(static_cast<uint32_t>(sorted.size()), 0);
    std::copy(sorted.begin(), sorted.end(), kept.GetData());
    appendSet(kept);
    return GetSetCount() - 1;
}

void ZoArraySet::RemoveSet(uint32_t set)
{
    Set& removed = at(set, u"RemoveSet", __LINE__);
    if (removed.record != nullptr)
        m_records->ReleaseElement(kContainer, removed.record);
    m_sets.erase(m_sets.begin() + set);
}

void ZoArraySet::RemoveAll()
{
    m_records->ReleaseAllElements(kContainer);
    m_sets.clear();
}

bool ZoArraySet::Insert(uint32_t set, uint32_t member)
{
    Members& members = at(set, u"Insert", __LINE__).members;
    const uint32_t position = lowerBound(members, member);
    if (position < members.GetCount() && members[position] == member)
        return false;
    members.InsertBefore(position, member);
    return true;
}

bool ZoArraySet::Remove(uint32_t set, uint32_t member)
{
    Members& members = at(set, u"Remove", __LINE__).members;
    const uint32_t position = lowerBound(members, member);
    if (position == members.GetCount() || members[position] != member)
        return false;
    members.Remove(position);
    return true;
}

bool ZoArraySet::Contains(uint32_t set, uint32_t member) const
{
    const Members& members = at(set, u"Contains", __LINE__).members;
    const uint32_t position = lowerBound(members, member);
    return position < members.GetCount() && members[position] == member;
}

const ZoArraySet::Members& ZoArraySet::GetMembers(uint32_t set) const
{
    return at(set, u"GetMembers", __LINE__).members;
}

std::vector<uint32_t> ZoArraySet::FindSets(uint32_t member) const
{
    std::vector<uint32_t> found;
    for (uint32_t set = 0; set < GetSetCount(); ++set)
        if (Contains(set, member))
            found.push_back(set);
    return found;
}

bool ZoArraySet::isAssertedHere(const ZoAttributeDefinition& definition) const
{
    // By identity: an equal ID asserted on another set collection is a different attribute.
    const ZoAttributeDefinitionList& placed = m_records->GetAttributeDefinitions(kContainer);
    return placed.Get(definition.GetUniqueID()).Get() == &definition;
}

void ZoArraySet::AssertAttribute(ZoSmartPointer<ZoAttributeDefinition> definition)
{
    m_records->Assert(kContainer, GetSetCount(), definition);
}

void ZoArraySet::DestroyAttribute(ZoSmartPointer<ZoAttributeDefinition> definition)
{
    if (definition.IsNull() || !isAssertedHere(*definition))
        return;
    m_records->Destroy(definition, 0);
}

unsigned char* ZoArraySet::GetAttributeData(uint32_t set, const ZoAttributeDefinition& definition)
{
    Set& found = at(set, u"GetAttributeData", __LINE__);
    if (!isAssertedHere(definition) || found.record == nullptr)
        throw ZoExceptionContainer(kSource, kClass, u"GetAttributeData", __LINE__);
    return m_records->GetData(found.record, definition);
}

void ZoArraySet::CheckConsistency() const
{
    const bool recordsExpected = m_records->getElementSize(kContainer) != 0;
    for (const Set& set : m_sets)
        if (!strictlyAscending(set.members) || (set.record != nullptr) != recordsExpected)
            throw ZoExceptionContainer(kSource, kClass, u"CheckConsistency", __LINE__);
    if (m_records->GetCount(kContainer) != (recordsExpected ? m_sets.size() : 0))
        throw ZoExceptionContainer(kSource, kClass, u"CheckConsistency", __LINE__);
}

void ZoArraySet::Serialize(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
    stream << GetSetCount();
    for (const Set& set : m_sets) {
        stream << set.members.GetCount();
        for (uint32_t i = 0; i < set.members.GetCount(); ++i)
            stream << set.members[i];
    }
}

void ZoArraySet::Serialize(ZoStreamReadBinary& stream)
{
    stream.ReadAndCompareVersion(0);
    uint32_t setCount = 0;
    stream >> setCount;
    // Grown as members arrive: a damaged count ends in the stream's exception, not in a huge block.
    std::vector<Members> loaded;
    for (uint32_t set = 0; set < setCount; ++set) {
        uint32_t memberCount = 0;
        stream >> memberCount;
        Members members;
        for (uint32_t i = 0; i < memberCount; ++i) {
            uint32_t member = 0;
            stream >> member;
            members.Add(member);
        }
        // Readers rely on the order for their binary searches; a file that breaks it is damaged.
        if (!strictlyAscending(members))
            throw ZoExceptionContainer(kSource, kClass, u"Serialize", __LINE__);
        loaded.push_back(members);
    }
    RemoveAll();
    for (const Members& members : loaded)
        appendSet(members);
}
