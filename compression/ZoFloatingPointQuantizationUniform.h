/// @class ZoFloatingPointQuantizationUniform
/// ZoFloatingPointQuantizationUniform: a fixed step of 1/scale over [minimum, maximum]. Values are
/// rounded to the nearest step (halves upwards) and clamped into the range, so the mapping is lossy
/// by design: Unmap(Map(x)) is x to within half a step when x lies inside the range.
/// @ingroup compression
#pragma once

#include "compression/ZoFloatingPointQuantization.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoFloatingPointQuantizationUniform : public ZoFloatingPointQuantization
{
public:
    /// scale = steps per unit. The bit count is that of the largest mapped value (1 for 0).
    ZoFloatingPointQuantizationUniform(float minimum, float maximum, float scale);

    /// The step index of value above the minimum, clamped to 0 .. GetMaxValue(). A product beyond
    /// the 32-bit range, infinity or NaN converts as the processor's truncation does, to the
    /// integer-indefinite 0x80000000, and so usually clamps to 0: data that relied on it maps alike.
    uint32_t Map(float value) const override;
    /// The value of step `mapped`: (round(minimum · scale) + mapped) / scale, the sum taken in 32-bit
    /// integers.
    float Unmap(uint32_t mapped) const override;

    /// minimum · scale, rounded.
    int32_t GetMinValue() const { return m_minimum; }
    /// The largest mapped value: maximum · scale rounded, less GetMinValue().
    uint32_t GetMaxValue() const { return m_maximum; }

private:
    float m_scale;
    int32_t m_minimum;
    uint32_t m_maximum;
};
