/// @class ZoColorMap
/// ZoColorMap: maps a scalar range onto a colour gradient interpolated in HSV, for false-colour
/// display of measured values. Values below the range take the underflow colour, values above it the
/// overflow colour. Defaults: range 0..1, minimum and underflow colour blue, maximum and overflow
/// colour red, so the gradient runs blue, cyan, green, yellow, red.
/// @ingroup values
#pragma once

#include "base/ZoColor.h"
#include "base/ZoColorHSV.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoColorMap
{
public:
    ZoColorMap();
    ZoColorMap(float minimum, float maximum);
    /// The range of `count` values (not checked for NaN). With count 0 the range stays empty (minimum
    /// the largest float, maximum its negative), so every value maps to the underflow colour.
    ZoColorMap(const float* values, uint32_t count);
    ZoColorMap(const ZoColorMap& other) = default;
    ZoColorMap& operator=(const ZoColorMap& other) = default;
    virtual ~ZoColorMap();

    void SetMinMaxValues(float minimum, float maximum);
    void SetMinColor(const ZoColor& color) { m_minColor = color; }
    void SetMaxColor(const ZoColor& color) { m_maxColor = color; }
    void SetUnderflowColor(const ZoColor& color) { m_underflowColor = color; }
    void SetOverflowColor(const ZoColor& color) { m_overflowColor = color; }

    /// Below the minimum: the underflow colour; above the maximum: the overflow colour; an empty range
    /// (minimum = maximum): the underflow colour; otherwise the HSV interpolation of the minimum and
    /// maximum colours. Colours from the gradient are opaque. NaN falls through to the interpolation
    /// and gives whatever HsvToRgb keeps for a hue it cannot place.
    ZoColor GetColorValue(float value) const;

protected:
    float m_minimum;
    float m_maximum;
    ZoColorHSV m_minColor;
    ZoColorHSV m_maxColor;
    ZoColorHSV m_underflowColor;
    ZoColorHSV m_overflowColor;
};
