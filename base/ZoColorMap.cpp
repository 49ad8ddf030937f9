#include "base/ZoColorMap.h"

#include <limits>

ZoColorMap::ZoColorMap() : ZoColorMap(0.0f, 1.0f) {}

ZoColorMap::ZoColorMap(float minimum, float maximum)
    : m_minimum(minimum), m_maximum(maximum), m_minColor(ZoColor::c_BLUE), m_maxColor(ZoColor::c_RED),
      m_underflowColor(ZoColor::c_BLUE), m_overflowColor(ZoColor::c_RED)
{
}

ZoColorMap::ZoColorMap(const float* values, uint32_t count)
    : ZoColorMap(std::numeric_limits<float>::max(), -std::numeric_limits<float>::max())
{
    for (uint32_t i = 0; i < count; ++i) {
        if (values[i] < m_minimum)
            m_minimum = values[i];
        if (values[i] > m_maximum)
            m_maximum = values[i];
    }
}

ZoColorMap::~ZoColorMap() = default;

void ZoColorMap::SetMinMaxValues(float minimum, float maximum)
{
    m_minimum = minimum;
    m_maximum = maximum;
}

ZoColor ZoColorMap::GetColorValue(float value) const
{
    if (value < m_minimum)
        return m_underflowColor.GetColor();
    if (value > m_maximum)
        return m_overflowColor.GetColor();
    if (m_maximum == m_minimum)
        return m_underflowColor.GetColor();
    ZoColorHSV color;
    color.Interpolate(m_minColor, m_maxColor, (value - m_minimum) / (m_maximum - m_minimum));
    return color.GetColor();
}
