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
    /// The range minimum..maximum with the default colours; not checked (minimum > maximum gives
    /// the underflow colour below the minimum and the overflow colour above the maximum, nothing between).
    ZoColorMap(float minimum, float maximum);
    /// The range of `count` values (not checked for NaN). With count 0 the range stays empty (minimum
    /// the largest float, maximum its negative), so every value maps to the underflow colour.
    ZoColorMap(const float* values, uint32_t count);
    /// Copies the range and the four colours.
    ZoColorMap(const ZoColorMap& other) = default;
    /// Copies the range and the four colours.
    ZoColorMap& operator=(const ZoColorMap& other) = default;
    virtual ~ZoColorMap();

    /// Replaces the range; not checked.
    void SetMinMaxValues(float minimum, float maximum);
    /// Colour of the minimum, start of the gradient.
    void SetMinColor(const ZoColor& color) { m_minColor = color; }
    /// Colour of the maximum, end of the gradient.
    void SetMaxColor(const ZoColor& color) { m_maxColor = color; }
    /// Colour of values below the minimum (and of every value when the range is empty).
    void SetUnderflowColor(const ZoColor& color) { m_underflowColor = color; }
    /// Colour of values above the maximum.
    void SetOverflowColor(const ZoColor& color) { m_overflowColor = color; }

    /// Below the minimum: the underflow colour; above the maximum: the overflow colour; an empty range
    /// (minimum = maximum): the underflow colour; otherwise the HSV interpolation of the minimum and
    /// maximum colours. Colours from the gradient are opaque. NaN falls through to the interpolation
    /// and gives whatever HsvToRgb keeps for a hue it cannot place.
    ZoColor GetColorValue(float value) const;

protected:
    /// Lower end of the range.
    float m_minimum;
    /// Upper end of the range.
    float m_maximum;
    /// Gradient start, kept in HSV for the interpolation.
    ZoColorHSV m_minColor;
    /// Gradient end, kept in HSV.
    ZoColorHSV m_maxColor;
    /// Colour below the range.
    ZoColorHSV m_underflowColor;
    /// Colour above the range.
    ZoColorHSV m_overflowColor;
};
