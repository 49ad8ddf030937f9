/// @class ZoFloatingPointQuantization
/// ZoFloatingPointQuantization: maps single-precision floats to unsigned integers of at most
/// GetBitCount() bits and back, so that the predictive coder can code them as integer differences.
/// A mapping that preserves order keeps a good float prediction a good integer prediction.
/// @ingroup compression
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoFloatingPointQuantization
{
public:
    /// A mapping whose values need `bitCount` bits.
    explicit ZoFloatingPointQuantization(uint32_t bitCount) : m_bitCount(bitCount) {}
    virtual ~ZoFloatingPointQuantization();

    /// The value's integer code, below 2^GetBitCount(); order-preserving, so that a good prediction
    /// gives a small difference.
    virtual uint32_t Map(float value) const = 0;
    /// The value a code stands for: exact for an exact mapping, the step's value otherwise.
    virtual float Unmap(uint32_t mapped) const = 0;

    /// How many bits the largest mapped value needs.
    uint32_t GetBitCount() const { return m_bitCount; }

protected:
    /// Bits of the largest code.
    uint32_t m_bitCount;
};
