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
    explicit ZoFloatingPointQuantization(uint32_t bitCount) : m_bitCount(bitCount) {}
    virtual ~ZoFloatingPointQuantization();

    virtual uint32_t Map(float value) const = 0;
    virtual float Unmap(uint32_t mapped) const = 0;

    /// How many bits the largest mapped value needs.
    uint32_t GetBitCount() const { return m_bitCount; }

protected:
    uint32_t m_bitCount;
};
