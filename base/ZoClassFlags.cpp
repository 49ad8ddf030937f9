#include "base/ZoClassFlags.h"

#include "base/ZoStreamRead.h"
#include "base/ZoStreamWrite.h"

void ZoClassFlags::Serialize(ZoStreamRead& stream)
{
    unsigned int flags = 0;
    stream >> flags;
    m_flags = flags;
}

void ZoClassFlags::Serialize(ZoStreamWrite& stream) const
{
    stream << static_cast<unsigned int>(m_flags);
}
