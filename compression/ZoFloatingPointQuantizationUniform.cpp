#include "compression/ZoFloatingPointQuantizationUniform.h"

#include <cmath>

namespace {

// Whole numbers stay as they are, others go to floor(x + 0.5); then truncation to an integer.
// A value outside the 32-bit range (or NaN) gives the integer-indefinite value 0x80000000, as
// the processor's truncating conversion does, instead of undefined behaviour.
int32_t roundStep(float x)
{
    double rounded = x;
    if (std::floor(rounded) != rounded)
        rounded = std::floor(rounded + 0.5);
    if (!(rounded >= -2147483648.0 && rounded < 2147483648.0))
        return INT32_MIN;
    return static_cast<int32_t>(rounded);
}

} // namespace

ZoFloatingPointQuantizationUniform::ZoFloatingPointQuantizationUniform(float minimum, float maximum, float scale)
    : ZoFloatingPointQuantization(1), m_scale(scale), m_minimum(roundStep(minimum * scale)),
      m_maximum(static_cast<uint32_t>(roundStep(maximum * scale)) - static_cast<uint32_t>(m_minimum))
{
    uint32_t bits = 1;
    while (bits < 32 && (m_maximum >> bits) != 0)
        ++bits;
    m_bitCount = bits;
}

uint32_t ZoFloatingPointQuantizationUniform::Map(float value) const
{
    auto step = static_cast<int32_t>(static_cast<uint32_t>(roundStep(value * m_scale)) - static_cast<uint32_t>(m_minimum));
    // The upper clamp compares signed, so a range wider than 2^31 steps clamps its top half to 0.
    if (step >= static_cast<int32_t>(m_maximum))
        step = static_cast<int32_t>(m_maximum);
    return step < 0 ? 0 : static_cast<uint32_t>(step);
}

float ZoFloatingPointQuantizationUniform::Unmap(uint32_t mapped) const
{
    return static_cast<float>(static_cast<int32_t>(static_cast<uint32_t>(m_minimum) + mapped)) / m_scale;
}
