/// @class ZoArraySet
/// ZoArraySet: a numbered collection of sets of 32-bit members (typically element indices: the
/// faces of a region, the nodes of a component), each kept as an ascending array without
/// duplicates, with per-set data attached through the attribute system.
///
/// Sets are numbered 0 .. GetSetCount() - 1 in the order they were added; removing a set moves the
/// later ones down by one. Each set owns one record of an attribute container: an attribute asserted
/// on the set collection is constructed in the record of every set, present and future, and its
/// bytes are reached with GetAttributeData. Record addresses change when attributes are added or
/// removed, so take them afresh after such a call.
///
/// A set number out of range, an attribute that was not asserted here, or a stream whose members are
/// not strictly ascending throw ZoExceptionContainer; nothing is changed then. The binary form is a
/// version record (0), the set count, then per set its member count and members. Attribute bytes are
/// not written: attributes are run-time types whose bytes need not survive a process, so a loaded set
/// collection has every asserted attribute freshly constructed.
///
/// A released set's attributes are torn down by the attribute container's release rule (destructors
/// get the record's start address), so attribute kinds whose destructors need their own bytes
/// belong at offset 0 or should be trivially destructible. Not copyable: records belong to their
/// container. Not synchronised.
/// @ingroup containers
#pragma once

#include "base/ZoArray.h"
#include "base/ZoAttributeDefinition.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>
#include <vector>

class ZO_API ZoArraySet
{
public:
    /// One set's members: ascending, without duplicates.
    typedef ZoArray<uint32_t, 0> Members;

    /// No sets and no attributes.
    ZoArraySet();
    /// Frees the records without running the attributes' destructors on them.
    ~ZoArraySet();
    ZoArraySet(const ZoArraySet&) = delete;
    ZoArraySet& operator=(const ZoArraySet&) = delete;

    /// Sets are numbered 0 .. GetSetCount() - 1.
    uint32_t GetSetCount() const { return static_cast<uint32_t>(m_sets.size()); }
    ///@{
    /// Appends an empty set, or one holding the `count` values at `members` (any order; duplicates
    /// kept once), and returns its number. The new set's record holds every asserted attribute,
    /// freshly constructed; other sets' record addresses may change.
    uint32_t AddSet();
    uint32_t AddSet(const uint32_t* members, uint32_t count);
    ///@}
    /// Removes the set and releases its record; later sets move down by one. Throws
    /// ZoExceptionContainer for a set number out of range.
    void RemoveSet(uint32_t set);
    /// Removes every set and releases all records; asserted attributes stay asserted.
    void RemoveAll();

    /// True when the member was added (false: it was there already). Throws ZoExceptionContainer
    /// for a set number out of range.
    bool Insert(uint32_t set, uint32_t member);
    /// True when the member was there and is removed. Throws ZoExceptionContainer for a set number
    /// out of range.
    bool Remove(uint32_t set, uint32_t member);
    /// Binary search in the set. Throws ZoExceptionContainer for a set number out of range.
    bool Contains(uint32_t set, uint32_t member) const;
    ///@{
    /// The set's members in ascending order, or their count. The reference is valid until the set
    /// changes or is removed. Throws ZoExceptionContainer for a set number out of range.
    const Members& GetMembers(uint32_t set) const;
    uint32_t GetMemberCount(uint32_t set) const { return GetMembers(set).GetCount(); }
    ///@}
    /// The numbers of the sets holding the member, ascending; empty when none does. Looks in every
    /// set (linear in the number of sets).
    std::vector<uint32_t> FindSets(uint32_t member) const;

    /// Places the attribute in the record of every set, present and future (nothing when it is
    /// asserted here already); record addresses change.
    void AssertAttribute(ZoSmartPointer<ZoAttributeDefinition> definition);
    /// Tears the attribute down in every set and removes it; the records shrink. Nothing happens for
    /// a null definition or one not asserted here.
    void DestroyAttribute(ZoSmartPointer<ZoAttributeDefinition> definition);
    /// The attribute's bytes in the set's record; valid until attributes are asserted or destroyed or
    /// sets are added or removed. Throws ZoExceptionContainer for a set number out of range or an
    /// attribute not asserted here (identity counts: an equal ID asserted elsewhere does not).
    unsigned char* GetAttributeData(uint32_t set, const ZoAttributeDefinition& definition);
    /// GetAttributeData() as a T; T must be the attribute's type. Throws as GetAttributeData().
    template <class T>
    T& GetAttribute(uint32_t set, const ZoAttributeDefinition& definition)
    {
        return *reinterpret_cast<T*>(GetAttributeData(set, definition));
    }

    /// Throws ZoExceptionContainer when a set's members are not strictly ascending or a set has no
    /// record although attributes are asserted: the state no public operation should leave.
    void CheckConsistency() const;

    /// Writes version record 0, the set count, then per set its member count and members; attribute
    /// bytes are not written. Throws what the stream throws.
    void Serialize(ZoStreamWriteBinary& stream) const;
    /// Replaces the sets with the stream's; every asserted attribute is freshly constructed in the
    /// loaded sets' records. Throws ZoExceptionWrongFileVersion for a version above 0, the stream's
    /// exception for truncated data, ZoExceptionContainer for members out of order; the sets are
    /// unchanged after a throw.
    void Serialize(ZoStreamReadBinary& stream);

private:
    class Records;
    struct Set
    {
        Members members;
        unsigned char* record = nullptr;
    };

    Set& at(uint32_t set, const char16_t* method, uint32_t line);
    const Set& at(uint32_t set, const char16_t* method, uint32_t line) const;
    void appendSet(Members members);
    bool isAssertedHere(const ZoAttributeDefinition& definition) const;

    std::vector<Set> m_sets;
    std::unique_ptr<Records> m_records;
};
