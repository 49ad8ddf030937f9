#include "base/ZoStreamWriteASCIIString.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteASCIIString, ZoStreamWriteASCII, nullptr, nullptr);

ZoStreamWriteASCIIString::ZoStreamWriteASCIIString(const ZoStreamWriteASCIIString& other)
    : ZoStreamWriteASCII(other), m_text(other.m_text)
{
}

ZoStreamWriteASCIIString& ZoStreamWriteASCIIString::operator=(const ZoStreamWriteASCIIString& other)
{
    m_text = other.m_text;
    return *this;
}

ZoStreamWriteASCIIString::~ZoStreamWriteASCIIString() = default;

void ZoStreamWriteASCIIString::Serialize(ZoStreamWrite& stream) const
{
    stream << m_text;
}

ZoStreamWriteASCIIString& ZoStreamWriteASCIIString::write(const CString& text)
{
    m_text += text;
    return *this;
}
