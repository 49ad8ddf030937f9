#include "base/ZoClassName.h"

#include "base/ZoStreamRead.h"
#include "base/ZoStreamWrite.h"

void ZoClassName::Serialize(ZoStreamRead& stream)
{
    stream >> m_name;
}

void ZoClassName::Serialize(ZoStreamWrite& stream) const
{
    stream << m_name;
}
