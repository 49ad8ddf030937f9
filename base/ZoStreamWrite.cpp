#include "base/ZoStreamWrite.h"

ZO_IMPLEMENT_RTTI(ZoStreamWrite, nullptr, nullptr);

ZoStreamWrite::~ZoStreamWrite() = default;

ZoStreamWrite& ZoStreamWrite::operator<<(const char16_t* text)
{
    return *this << CString(text);
}

void ZoStreamWrite::WriteVersion(unsigned int version)
{
    *this << version;
}
