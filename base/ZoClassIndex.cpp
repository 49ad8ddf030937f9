#include "base/ZoClassIndex.h"

#include "base/ZoStreamRead.h"
#include "base/ZoStreamWrite.h"

void ZoClassIndex::Serialize(ZoStreamRead& stream)
{
    unsigned int index = 0;
    stream >> index;
    m_index = index;
}

void ZoClassIndex::Serialize(ZoStreamWrite& stream) const
{
    stream << static_cast<unsigned int>(m_index);
}
