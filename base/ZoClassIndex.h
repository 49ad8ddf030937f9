/// @class ZoClassIndex
/// ZoClassIndex: one 32-bit index stored beside objects by the serialization layer.
/// @ingroup objectmodel
#pragma once

class ZoStreamRead;
class ZoStreamWrite;

#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoClassIndex
{
public:
    ZoClassIndex() : m_index(0) {}
    explicit ZoClassIndex(uint32_t index) : m_index(index) {}
    ZoClassIndex& operator=(uint32_t index)
    {
        m_index = index;
        return *this;
    }

    void SetIndex(uint32_t index) { m_index = index; }
    uint32_t GetIndex() const { return m_index; }

    /// Reads or writes the index as an unsigned 32-bit value through the stream.
    void Serialize(ZoStreamRead& stream);
    void Serialize(ZoStreamWrite& stream) const;

private:
    uint32_t m_index;
};
