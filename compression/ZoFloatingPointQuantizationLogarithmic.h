/// @class ZoFloatingPointQuantizationLogarithmic
/// ZoFloatingPointQuantizationLogarithmic<23,8>: the lossless, order-preserving mapping of the IEEE
/// single-precision bit pattern onto 32-bit unsigned integers. Negative numbers map below positive
/// ones and the unsigned order follows the numeric order (-0.0 sits just below +0.0), so the
/// difference of two mapped values grows with the distance of the floats in units of the last
/// place. Every pattern, NaN payloads included, comes back bit for bit.
///
/// The arguments are the mantissa and exponent widths of the format; only <23,8> exists.
/// @ingroup compression
#pragma once

#include "compression/ZoFloatingPointQuantization.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <cstring>

template <int MantissaBits, int ExponentBits>
class ZO_TEMPLATE_API ZoFloatingPointQuantizationLogarithmic : public ZoFloatingPointQuantization
{
    static_assert(MantissaBits == 23 && ExponentBits == 8, "only the IEEE single-precision layout is mapped");

public:
    ZoFloatingPointQuantizationLogarithmic() : ZoFloatingPointQuantization(32) {}

    /// The float's bits made order-preserving (negative values inverted, positive ones with the sign
    /// bit set); exact for every value, NaN included.
    uint32_t Map(float value) const override
    {
        uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        return static_cast<int32_t>(bits) < 0 ? ~bits : bits ^ 0x80000000u;
    }
    /// The exact inverse of Map.
    float Unmap(uint32_t mapped) const override
    {
        const uint32_t bits = static_cast<int32_t>(mapped) >= 0 ? ~mapped : mapped ^ 0x80000000u;
        float value = 0;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
};
