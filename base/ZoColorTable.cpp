#include "base/ZoColorTable.h"

#include "base/ZoColorMap.h"

ZoColorTable::ZoColorTable(uint32_t entries) : ZoColorTable(entries, 0.0f, 1.0f) {}

ZoColorTable::ZoColorTable(uint32_t entries, float minimum, float maximum)
    : m_entries(entries, 0xFFFFFFFFu), m_minimum(minimum), m_maximum(maximum), m_underflowColor(ZoColor::c_BLUE),
      m_overflowColor(ZoColor::c_RED)
{
}

ZoColorTable::ZoColorTable(const ZoColorTable& other)
    : ZoReferenceCountedClass<ZoColorTable>(), m_entries(other.m_entries), m_minimum(other.m_minimum),
      m_maximum(other.m_maximum), m_underflowColor(other.m_underflowColor), m_overflowColor(other.m_overflowColor)
{
}

ZoColorTable& ZoColorTable::operator=(const ZoColorTable& other)
{
    m_entries = other.m_entries;
    m_minimum = other.m_minimum;
    m_maximum = other.m_maximum;
    m_underflowColor = other.m_underflowColor;
    m_overflowColor = other.m_overflowColor;
    return *this;
}

ZoColorTable::~ZoColorTable() = default;

void ZoColorTable::SetMinMax(float minimum, float maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
}

void ZoColorTable::GetMinMax(float& minimum, float& maximum) const
{
    minimum = m_minimum;
    maximum = m_maximum;
}

uint32_t ZoColorTable::getEntry(float value) const
{
    const uint32_t count = GetEntryCount();
    if (count == 0)
        return 0;
    const float position = (value - m_minimum) * static_cast<float>(count) / (m_maximum - m_minimum);
    // NaN (an empty range, a NaN value) fails the first test and lands on entry 0.
    if (!(position > 0.0f))
        return 0;
    if (position >= static_cast<float>(count - 1))
        return count - 1;
    return static_cast<uint32_t>(position);
}

float ZoColorTable::getValue(uint32_t index) const
{
    return static_cast<float>(index) / static_cast<float>(GetEntryCount() - 1) * (m_maximum - m_minimum) + m_minimum;
}

void ZoColorTable::AddColorValue(const ZoColor& color, float from, float to)
{
    if (m_entries.empty())
        return;
    for (uint32_t i = getEntry(from), last = getEntry(to); i <= last; ++i)
        m_entries[i] = color.GetDWORD();
}

void ZoColorTable::AddColorRamp(const ZoColor& first, float from, const ZoColor& last, float to)
{
    if (m_entries.empty())
        return;
    ZoColorMap ramp(from, to);
    ramp.SetMinColor(first);
    ramp.SetUnderflowColor(first);
    ramp.SetMaxColor(last);
    ramp.SetOverflowColor(last);
    for (uint32_t i = getEntry(from), end = getEntry(to); i <= end; ++i)
        m_entries[i] = ramp.GetColorValue(getValue(i)).GetDWORD();
}

ZoColor ZoColorTable::GetColorValue(float value) const
{
    if (value < m_minimum)
        return m_underflowColor;
    if (value > m_maximum)
        return m_overflowColor;
    if (m_entries.empty())
        return ZoColor();
    return ZoColor(m_entries[getEntry(value)]);
}

void ZoColorTable::Dump(ZoStreamWrite& stream) const
{
    for (uint32_t i = 0; i < GetEntryCount(); ++i) {
        if (i != 0 && m_entries[i] == m_entries[i - 1])
            continue;
        const ZoColor color(m_entries[i]);
        stream << i << u":\t(" << color.GetRed() << u", " << color.GetGreen() << u", " << color.GetBlue() << u")\n";
    }
}

void ZoColorTable::Serialize(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
    stream << GetEntryCount() << m_minimum << m_maximum;
    m_underflowColor.Serialize(stream);
    m_overflowColor.Serialize(stream);
    for (uint32_t entry : m_entries)
        stream << entry;
}

void ZoColorTable::Serialize(ZoStreamReadBinary& stream)
{
    stream.ReadAndCompareVersion(0);
    uint32_t count = 0;
    float minimum = 0.0f, maximum = 0.0f;
    ZoColor underflow, overflow;
    stream >> count >> minimum >> maximum;
    underflow.Serialize(stream);
    overflow.Serialize(stream);
    // Grown as values arrive: a damaged count ends in the stream's exception, not in a huge block.
    std::vector<uint32_t> entries;
    for (uint32_t i = 0; i < count; ++i) {
        uint32_t entry = 0;
        stream >> entry;
        entries.push_back(entry);
    }
    m_entries.swap(entries);
    m_minimum = minimum;
    m_maximum = maximum;
    m_underflowColor = underflow;
    m_overflowColor = overflow;
}
