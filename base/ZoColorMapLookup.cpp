#include "base/ZoColorMapLookup.h"

ZoColorMapLookup::ZoColorMapLookup(uint32_t entries, float minimum, float maximum)
    : ZoColorMap(minimum, maximum), m_entries(entries), m_overflowValue(0), m_underflowValue(0)
{
}

ZoColorMapLookup::ZoColorMapLookup(uint32_t entries, const float* values, uint32_t count)
    : ZoColorMap(values, count), m_entries(entries), m_overflowValue(0), m_underflowValue(0)
{
}

ZoColorMapLookup::~ZoColorMapLookup() = default;

void ZoColorMapLookup::buildTable()
{
    auto table = std::make_shared<std::vector<uint32_t>>(m_entries);
    const float step = (m_maximum - m_minimum) / static_cast<float>(m_entries);
    for (uint32_t i = 0; i < m_entries; ++i)
        (*table)[i] = ZoColorMap::GetColorValue(m_minimum + static_cast<float>(i) * step).GetDWORD();
    m_underflowValue = m_underflowColor.GetColor().GetDWORD();
    m_overflowValue = m_overflowColor.GetColor().GetDWORD();
    m_table = table;
}

uint32_t ZoColorMapLookup::GetColorValue(float value)
{
    if (!m_table)
        buildTable();
    const float position = (value - m_minimum) / (m_maximum - m_minimum) * static_cast<float>(m_entries);
    // Truncation toward zero: (-1, 0) lands on entry 0. NaN (an empty range, or a NaN value) fails
    // every comparison and is treated as below the table.
    if (!(position > -1.0f))
        return m_underflowValue;
    if (position >= static_cast<float>(m_entries))
        return m_overflowValue;
    return (*m_table)[static_cast<uint32_t>(position)];
}
