/// @class ZoAttributeDefinition
/// ZoAttributeDefinition: describes one run-time attribute of the records of a ZoAttributeContainer:
/// how many bytes it takes in every record, the unique ID it is found by, how its bytes are made and
/// torn down, and whether it is written when records are serialized. The container fills in where it
/// placed the attribute (byte offset inside the record and container number); until then both read
/// 0xFFFFFFFF and Exists() is false.
///
/// Always handled through ZoSmartPointer. A copy takes every field (placement included) and starts
/// with a reference count of its own.
/// @ingroup graphs
#pragma once

#include "base/ZoConstructor.h"
#include "base/ZoDestructor.h"
#include "base/ZoReferenceCountedClass.h"
#include "base/ZoSmartPointer.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZoArrayDynamicSize;

class ZO_API ZoAttributeDefinition : public ZoReferenceCountedClass<ZoAttributeDefinition>
{
public:
    /// The offset and container number of a definition not placed in any container.
    static const uint32_t sc_uiNotPlaced = 0xFFFFFFFFu;

    /// Size 0, unique ID 0xFFFFFFFF, no constructor or destructor, not serialized, not placed.
    ZoAttributeDefinition();
    /// `serialize` sets both the serialize and the serialize-standard flag. Not placed.
    ZoAttributeDefinition(uint32_t elementSize, uint32_t uniqueID, ZoSmartPointer<const ZoConstructor> constructor,
                          ZoSmartPointer<const ZoDestructor> destructor, int serialize, const CString& name = CString());
    /// Copies every field, placement included; the copy has a reference count of its own.
    ZoAttributeDefinition(const ZoAttributeDefinition& other);
    /// Copies every field, placement included; the reference count stays this object's.
    ZoAttributeDefinition& operator=(const ZoAttributeDefinition& other);
    ~ZoAttributeDefinition() override;

    /// Placed in a container (an index is set) or bound to an array.
    virtual int Exists() const;

    /// The name given at construction; empty by default.
    const CString& GetName() const { return m_name; }
    /// Bytes the attribute takes in every record.
    uint32_t GetElementSize() const { return m_elementSize; }
    /// The ID the attribute is found by in its container.
    uint32_t GetUniqueID() const { return m_uniqueID; }
    /// Nonzero when the attribute is written with the records.
    int IsSerialize() const { return m_serialize; }
    /// Turns writing with the records on (nonzero) or off; the serialize-standard flag stays.
    void SetSerialize(int serialize) { m_serialize = serialize; }
    /// Nonzero when the attribute's bytes are written as they are (set with the constructor's flag).
    int IsSerializeStandard() const { return m_serializeStandard; }
    /// Makes the attribute's bytes in a new record; null: the bytes stay as they are.
    const ZoSmartPointer<const ZoConstructor>& GetConstructor() const { return m_constructor; }
    /// Tears the attribute's bytes down; null: nothing to tear down.
    const ZoSmartPointer<const ZoDestructor>& GetDestructor() const { return m_destructor; }
    /// Byte offset inside the record; sc_uiNotPlaced while not placed.
    uint32_t GetIndex() const { return m_index; }
    /// Set by the container when it places or moves the attribute.
    void SetIndex(uint32_t index) { m_index = index; }
    /// Container number; sc_uiNotPlaced while not placed.
    uint32_t GetContainer() const { return m_container; }
    /// Set by the container when it places the attribute.
    void SetContainer(uint32_t container) { m_container = container; }
    /// The array the attribute is bound to, if any (not owned); null otherwise.
    ZoArrayDynamicSize* GetArray() const { return m_array; }
    /// Binds the attribute to an array (not owned; null unbinds).
    void SetArray(ZoArrayDynamicSize* array) { m_array = array; }

private:
    CString m_name;
    uint32_t m_elementSize;
    uint32_t m_uniqueID;
    int m_serialize;
    int m_serializeStandard;
    ZoSmartPointer<const ZoConstructor> m_constructor;
    ZoSmartPointer<const ZoDestructor> m_destructor;
    uint32_t m_index;
    uint32_t m_container;
    ZoArrayDynamicSize* m_array;
};
