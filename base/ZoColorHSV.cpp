#include "base/ZoColorHSV.h"

ZoColorHSV::ZoColorHSV() : m_color(), m_hue(0.0f), m_saturation(0.0f), m_value(1.0f)
{
    updateColor();
}

ZoColorHSV::ZoColorHSV(float hue, float saturation, float value)
    : m_color(), m_hue(hue), m_saturation(saturation), m_value(value)
{
    updateColor();
}

ZoColorHSV::ZoColorHSV(const ZoColor& color) : ZoColorHSV()
{
    *this = color;
}

ZoColorHSV& ZoColorHSV::operator=(const ZoColor& color)
{
    ZoColor::RgbToHsv(color.GetRed(), color.GetGreen(), color.GetBlue(), m_hue, m_saturation, m_value);
    updateColor();
    return *this;
}

void ZoColorHSV::Interpolate(const ZoColorHSV& a, const ZoColorHSV& b, float t)
{
    if (a.m_saturation == 0.0f && b.m_saturation > 0.0f)
        m_hue = b.m_hue;
    else if (b.m_saturation == 0.0f && a.m_saturation > 0.0f)
        m_hue = a.m_hue;
    else
        m_hue = a.m_hue + (b.m_hue - a.m_hue) * t;
    m_saturation = a.m_saturation + (b.m_saturation - a.m_saturation) * t;
    m_value = a.m_value + (b.m_value - a.m_value) * t;
    updateColor();
}

void ZoColorHSV::updateColor()
{
    // HsvToRgb leaves a hue it cannot place alone, which keeps the present colour.
    float red = m_color.GetRed(), green = m_color.GetGreen(), blue = m_color.GetBlue();
    ZoColor::HsvToRgb(m_hue, m_saturation, m_value, red, green, blue);
    m_color = ZoColor(red, green, blue, 1.0f);
}
