#include "base/ZoStreamRead.h"

#include "base/ZoExceptionWrongFileVersion.h"

ZO_IMPLEMENT_RTTI(ZoStreamRead, nullptr, nullptr);

ZoStreamRead::~ZoStreamRead() = default;

unsigned int ZoStreamRead::ReadAndCompareVersion(unsigned int maxVersion)
{
    unsigned int version = 0;
    *this >> version;
    if (version > maxVersion)
        throw ZoExceptionWrongFileVersion(u"..\\base\\ZoStreamRead.cpp", GetClassNameW(), u"Serialize", 44);
    return version;
}
