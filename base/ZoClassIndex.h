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
    ///@{
    /// Takes the index as given (0 by default); nothing checks it against any container.
    ZoClassIndex() : m_index(0) {}
    explicit ZoClassIndex(uint32_t index) : m_index(index) {}
    ZoClassIndex& operator=(uint32_t index)
    {
        m_index = index;
        return *this;
    }
    void SetIndex(uint32_t index) { m_index = index; }
    ///@}
    /// The index last set, 0 for a new object.
    uint32_t GetIndex() const { return m_index; }

    ///@{
    /// Reads or writes the index as an unsigned 32-bit value through the stream, without version or
    /// marker. Throws what the stream throws; a failed read leaves the index unchanged.
    void Serialize(ZoStreamRead& stream);
    void Serialize(ZoStreamWrite& stream) const;
    ///@}

private:
    uint32_t m_index;
};
