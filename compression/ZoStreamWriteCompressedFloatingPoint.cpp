#include "compression/ZoStreamWriteCompressedFloatingPoint.h"

#include "compression/ZoFloatingPointQuantizationLogarithmic.h"

ZoStreamWriteCompressedFloatingPoint::ZoStreamWriteCompressedFloatingPoint(ZoStreamWriteBinary& target,
                                                                           ZoFloatingPointQuantization& quantization,
                                                                           int ownsQuantization, uint32_t sizeHint)
    : ZoStreamWritePredictiveCoder(target, quantization.GetBitCount(), sizeHint, 0), m_quantization(&quantization),
      m_ownsQuantization(ownsQuantization)
{
}

ZoStreamWriteCompressedFloatingPoint::ZoStreamWriteCompressedFloatingPoint(ZoStreamWriteBinary& target,
                                                                           uint32_t sizeHint)
    : ZoStreamWritePredictiveCoder(target, 32, sizeHint, 0),
      m_quantization(new ZoFloatingPointQuantizationLogarithmic<23, 8>()), m_ownsQuantization(1)
{
}

ZoStreamWriteCompressedFloatingPoint::~ZoStreamWriteCompressedFloatingPoint()
{
    // The quantization goes first; the base then writes the version record and the block.
    if (m_ownsQuantization)
        delete m_quantization;
}
