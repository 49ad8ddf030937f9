#include "base/ZoAttributeDefinition.h"

#include <utility>

ZoAttributeDefinition::ZoAttributeDefinition()
    : m_elementSize(0), m_uniqueID(0xFFFFFFFFu), m_serialize(0), m_serializeStandard(0), m_index(sc_uiNotPlaced),
      m_container(sc_uiNotPlaced), m_array(nullptr)
{
}

ZoAttributeDefinition::ZoAttributeDefinition(uint32_t elementSize, uint32_t uniqueID, ZoSmartPointer<const ZoConstructor> constructor,
                                             ZoSmartPointer<const ZoDestructor> destructor, int serialize, const CString& name)
    : m_name(name), m_elementSize(elementSize), m_uniqueID(uniqueID), m_serialize(serialize), m_serializeStandard(serialize),
      m_constructor(std::move(constructor)), m_destructor(std::move(destructor)), m_index(sc_uiNotPlaced),
      m_container(sc_uiNotPlaced), m_array(nullptr)
{
}

// The counting base is built from the derived value, which leaves the copy with a count of its own
// (a verbatim copy of the source's count would keep the copy alive for ever).
ZoAttributeDefinition::ZoAttributeDefinition(const ZoAttributeDefinition& other)
    : ZoReferenceCountedClass<ZoAttributeDefinition>(other), m_name(other.m_name), m_elementSize(other.m_elementSize),
      m_uniqueID(other.m_uniqueID), m_serialize(other.m_serialize), m_serializeStandard(other.m_serializeStandard),
      m_constructor(other.m_constructor), m_destructor(other.m_destructor), m_index(other.m_index),
      m_container(other.m_container), m_array(other.m_array)
{
}

ZoAttributeDefinition& ZoAttributeDefinition::operator=(const ZoAttributeDefinition& other)
{
    if (this == &other)
        return *this;
    ZoReferenceCountedClass<ZoAttributeDefinition>::operator=(other);
    m_name = other.m_name;
    m_elementSize = other.m_elementSize;
    m_uniqueID = other.m_uniqueID;
    m_serialize = other.m_serialize;
    m_serializeStandard = other.m_serializeStandard;
    m_constructor = other.m_constructor;
    m_destructor = other.m_destructor;
    m_index = other.m_index;
    m_container = other.m_container;
    m_array = other.m_array;
    return *this;
}

ZoAttributeDefinition::~ZoAttributeDefinition() = default;

int ZoAttributeDefinition::Exists() const
{
    return m_index != sc_uiNotPlaced || m_array != nullptr;
}
