/// @class ZoColorHSV
/// ZoColorHSV: a colour kept together with its hue, saturation and value, so that colours can be
/// interpolated in HSV space (colour maps and ramps do this).
///
/// Invariant: the colour is always HsvToRgb of the three values with alpha forced to opaque; every
/// change of hue, saturation or value recomputes it. Assigning a ZoColor therefore drops its alpha.
/// @ingroup values
#pragma once

#include "base/ZoColor.h"
#include "platform/ZoExport.h"

class ZO_API ZoColorHSV
{
public:
    /// White: hue 0, saturation 0, value 1.
    ZoColorHSV();
    /// Hue in degrees 0..360, saturation and value 0..1 (not checked; a hue outside 0..360 keeps the
    /// previous colour, white for a new object).
    ZoColorHSV(float hue, float saturation, float value);
    /// Takes the colour's hue, saturation and value; its alpha is dropped (the colour becomes opaque).
    ZoColorHSV(const ZoColor& color);
    /// Copies the three values and the colour made from them.
    ZoColorHSV(const ZoColorHSV& other) = default;

    /// Takes the colour's hue, saturation and value; its alpha is dropped (the colour becomes opaque).
    ZoColorHSV& operator=(const ZoColor& color);
    /// Copies the three values and the colour made from them.
    ZoColorHSV& operator=(const ZoColorHSV& other) = default;

    /// The opaque colour the three values give.
    const ZoColor& GetColor() const { return m_color; }
    /// Hue in degrees, as set or interpolated (0..360 when it came from a colour).
    float GetHue() const { return m_hue; }
    ///@{
    /// 0..1 when it came from a colour; values set by the caller are kept as given.
    float GetSaturation() const { return m_saturation; }
    float GetValue() const { return m_value; }
    ///@}

    /// Sets this object between a (t = 0) and b (t = 1). Saturation and value are linear; the hue is
    /// linear too, without a turn through 360 (240 to 0 passes 120), except that a grey end (saturation
    /// 0) takes the other end's hue, so fading a colour to grey keeps its hue.
    void Interpolate(const ZoColorHSV& a, const ZoColorHSV& b, float t);

protected:
    /// Recomputes the colour from the three values; a hue outside 0..360 keeps the present colour.
    void updateColor();

private:
    ZoColor m_color;
    float m_hue;
    float m_saturation;
    float m_value;
};
