// ZoClassIndex: one 32-bit index stored beside objects by the serialization layer.
#pragma once

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

private:
    uint32_t m_index;
};
