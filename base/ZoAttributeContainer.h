/// @class ZoAttributeContainer
/// ZoAttributeContainer: attaches run-time typed attributes to the records of a fixed number of
/// numbered containers. Each container is an array of equal-sized records; every attribute placed
/// in it (Assert) owns the same byte range in every record and is constructed there; removing one
/// (Destroy) tears it down and either leaves a reusable hole or repacks the records.
///
/// Records are handed out by address (CreateElement) and released (ReleaseElement) onto a free list
/// from which the most recently released record is reused first. Whenever records move to a new
/// block the container calls onElementsMoved with the old and the new block, so that holders of
/// record addresses can rebase them (address - old base) / old size * new size + new base; the
/// container rebases its own free list that way.
///
/// Invariant: every live record holds a constructed instance of every placed attribute; released
/// records hold none, so placing or removing an attribute leaves them alone. Destruction frees the
/// records without tearing their attributes down: call ReleaseAllElements first for attribute kinds
/// that own resources. Container numbers are not range-checked. Not synchronised.
/// @ingroup graphs
#pragma once

#include "base/ZoArray.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoAttributeDefinition.h"
#include "base/ZoAttributeDefinitionList.h"
#include "base/ZoAttributeParameter.h"
#include "base/ZoList.h"
#include "base/ZoMap.h"
#include "base/ZoMemoryBlock.h"
#include "base/ZoSmartPointer.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <functional>

class ZO_API ZoAttributeContainer
{
public:
    /// A hole left in every record by a removed attribute.
    struct SFreeAttribute
    {
        /// First byte of the hole within each record.
        uint32_t offset;
        /// Bytes of the hole.
        uint32_t size;
        /// Same offset and size.
        bool operator==(const SFreeAttribute& other) const { return offset == other.offset && size == other.size; }
    };

    /// One numbered container: the record array (record size = element size) with its layout.
    class ZO_API ZoContainer : public ZoArrayDynamicSize
    {
    public:
        /// An empty container whose record array grows by `growFactor` records.
        explicit ZoContainer(uint32_t growFactor);
        /// Copies every record byte for byte, with copies of the definitions (each container needs its
        /// own offsets) and shared parameters; the free records are rebased onto the copy.
        ZoContainer(const ZoContainer& other);
        ZoContainer& operator=(const ZoContainer&) = delete;
        ~ZoContainer() override;

        /// The attributes placed in this container, each with its byte offset.
        ZoAttributeDefinitionList m_definitions;
        /// Parameters by the definitions' unique IDs.
        ZoMap<uint32_t, ZoSmartPointer<ZoAttributeParameter>> m_parameters;
        /// Holes left by removed attributes, in the order they were left.
        ZoList<SFreeAttribute, 0x21> m_freeAttributes;
        /// Released records, reused most recent first.
        ZoList<unsigned char*, 0x22> m_freeRecords;

        /// Storage of the same record capacity in a fresh block of `recordSize`-byte records (bytes
        /// uninitialised); returns the old block, which keeps the old records readable.
        ZoSmartPointer<ZoMemoryBlock> renewBlock(uint32_t recordSize);
    };

    /// Throws ZoExceptionContainer (line 38) for a zero container count or grow factor.
    ZoAttributeContainer(uint32_t containerCount, uint32_t growFactor);
    /// Copies every container's records byte for byte (attributes are not copied by their own
    /// means) with copies of the definitions; parameters are shared with `other`.
    ZoAttributeContainer(const ZoAttributeContainer& other);
    /// Replaces every container by a copy of the other's, as the copy constructor does.
    ZoAttributeContainer& operator=(const ZoAttributeContainer& other);
    virtual ~ZoAttributeContainer();

    /// The number of containers, fixed at construction.
    uint32_t GetContainerCount() const { return m_containers.GetCount(); }
    /// Live records: records made minus released ones.
    uint32_t GetCount(uint32_t c) const;
    /// Attributes placed in container c.
    uint32_t GetAttributeCount(uint32_t c) const { return m_containers[c]->m_definitions.GetCount(); }
    /// Bytes per record of container c (0 before the first attribute).
    uint32_t getElementSize(uint32_t c) const { return m_containers[c]->GetElementSize(); }
    /// Records added at once when container c grows.
    uint32_t GetGrowFactor(uint32_t c) const { return m_containers[c]->GetGrowFactor(); }
    /// Sets how many records container c adds at once when it grows.
    void SetGrowFactor(uint32_t c, uint32_t growFactor) { m_containers[c]->SetGrowFactor(growFactor); }
    /// The definitions placed in container c.
    const ZoAttributeDefinitionList& GetAttributeDefinitions(uint32_t c) const { return m_containers[c]->m_definitions; }
    /// The holes of container c, in the order they were left.
    const ZoList<SFreeAttribute, 0x21>& GetFreeAttributes(uint32_t c) const { return m_containers[c]->m_freeAttributes; }
    /// Throws ZoExceptionContainer (line 1011) when no definition of container c has that ID.
    ZoSmartPointer<ZoAttributeDefinition> GetAttributeDefinition(uint32_t c, uint32_t uniqueID) const;

    ///@{
    /// The attribute's bytes within `record` (record + the definition's offset); unchecked.
    unsigned char* GetData(unsigned char* record, const ZoAttributeDefinition& definition) const { return record + definition.GetIndex(); }
    const unsigned char* GetData(const unsigned char* record, const ZoAttributeDefinition& definition) const
    {
        return record + definition.GetIndex();
    }
    ///@}

    /// Places the definition in container c (nothing when it is placed already): in the best-fitting
    /// hole, else at the end of an enlarged record; then constructs it in every live record. A
    /// container without memory gets `initialCount` records.
    void Assert(uint32_t c, uint32_t initialCount, ZoSmartPointer<ZoAttributeDefinition> definition);
    /// Sorts `definitions` in place by ascending size, fills holes with them in that order until one
    /// does not fit, and places the rest after one enlargement.
    void Assert(uint32_t c, uint32_t initialCount, ZoAttributeDefinitionList& definitions);
    /// Tears the attribute down in every live record and removes it. With keepHole nonzero its bytes
    /// stay as a hole; otherwise the records are repacked without it (size 0 when it was the last).
    /// The definition is unplaced afterwards. Nothing happens for a definition that is not placed.
    void Destroy(ZoSmartPointer<ZoAttributeDefinition> definition, int keepHole);

    /// A record with every attribute constructed, or null when the record size is 0.
    unsigned char* CreateElement(uint32_t c);
    /// Tears down the record's attributes and puts it on the free list.
    void ReleaseElement(uint32_t c, unsigned char* record);
    /// Tears down every live record, empties the container and closes all holes.
    void ReleaseAllElements(uint32_t c);
    /// Room for `extra` records beyond those on the free list.
    void SetMemoryElementCount(uint32_t c, uint32_t extra);
    /// Copies the source record's bytes over the target's (raw bytes; attributes are not copied by
    /// their own means).
    void Copy(uint32_t c, const unsigned char* source, unsigned char* target) const;

    /// Stores the parameter under the definition's container and unique ID, replacing an earlier one.
    void SetAttributeParameter(const ZoAttributeDefinition& definition, ZoSmartPointer<ZoAttributeParameter> parameter);
    /// A null handle when none is stored.
    ZoSmartPointer<ZoAttributeParameter> GetAttributeParameter(const ZoAttributeDefinition& definition) const;

protected:
    /// Records of container c moved to a new block (or were repacked); called after the copy.
    virtual void onElementsMoved(uint32_t c, uint32_t oldSize, const ZoSmartPointer<ZoMemoryBlock>& oldBlock, uint32_t newSize,
                                 const ZoSmartPointer<ZoMemoryBlock>& newBlock);
    /// Container c, which had no memory, got its first block.
    virtual void onElementsCreated(uint32_t c, uint32_t size, const ZoSmartPointer<ZoMemoryBlock>& block);
    /// The last byte of container c's record layout was removed.
    virtual void onContainerEmptied(uint32_t c);

private:
    void placeAppended(ZoContainer& container, const ZoSmartPointer<ZoAttributeDefinition>& definition);
    bool placeInHole(ZoContainer& container, ZoAttributeDefinition& definition);
    void enlarge(uint32_t c, ZoContainer& container, uint32_t addedSize, uint32_t initialCount);
    void repack(uint32_t c, ZoContainer& container, uint32_t newSize);
    void renumberIndexes(ZoContainer& container);
    void rebaseFreeRecords(ZoContainer& container, const unsigned char* oldBase, uint32_t oldSize);
    void forEachLiveRecord(ZoContainer& container, const std::function<void(unsigned char*)>& action) const;
    void copyFrom(const ZoAttributeContainer& other);
    void deleteContainers();

    ZoArray<ZoContainer*, 0> m_containers;
};
