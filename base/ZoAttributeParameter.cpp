#include "base/ZoAttributeParameter.h"

ZO_IMPLEMENT_RTTI(ZoAttributeParameter, &ZoRTTIFactory<ZoAttributeParameter>::Create, &ZoRTTIFactory<ZoAttributeParameter>::Clone);

ZoAttributeParameter::ZoAttributeParameter() : m_valid(true)
{
}

// Built from the derived value, the counting base starts at 0: a clone made by name belongs to
// whoever takes it, not to the holders of the source.
ZoAttributeParameter::ZoAttributeParameter(const ZoAttributeParameter& other)
    : ZoReferenceCountedClass<ZoAttributeParameter>(other), ZoClassRTTI(other), m_valid(other.m_valid)
{
}

ZoAttributeParameter& ZoAttributeParameter::operator=(const ZoAttributeParameter& other)
{
    ZoReferenceCountedClass<ZoAttributeParameter>::operator=(other);
    m_valid = other.m_valid;
    return *this;
}

ZoAttributeParameter::~ZoAttributeParameter() = default;

uint32_t ZoAttributeParameter::GetMemoryUsage() const
{
    return 40;
}

void ZoAttributeParameter::Serialize(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
}

void ZoAttributeParameter::Serialize(ZoStreamReadBinary& stream)
{
    stream.ReadAndCompareVersion(0);
}
