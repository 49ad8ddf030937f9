#include "compression/ZoStreamReadCompressedFloatingPoint.h"

#include "compression/ZoFloatingPointQuantizationLogarithmic.h"

#include <memory>

ZoStreamReadCompressedFloatingPoint::ZoStreamReadCompressedFloatingPoint(ZoStreamReadBinary& source,
                                                                         ZoFloatingPointQuantization& quantization,
                                                                         int ownsQuantization)
    : ZoStreamReadPredictiveCoder(quantization.GetBitCount(), 0), m_quantization(&quantization),
      m_ownsQuantization(ownsQuantization)
{
    try {
        initialize(source);
    } catch (...) {
        // The destructor does not run for a half-built object: an owned quantization is freed here.
        if (m_ownsQuantization)
            delete m_quantization;
        throw;
    }
}

ZoStreamReadCompressedFloatingPoint::ZoStreamReadCompressedFloatingPoint(ZoStreamReadBinary& source)
    : ZoStreamReadPredictiveCoder(32, 0), m_quantization(nullptr), m_ownsQuantization(1)
{
    std::unique_ptr<ZoFloatingPointQuantization> quantization(new ZoFloatingPointQuantizationLogarithmic<23, 8>());
    initialize(source);
    m_quantization = quantization.release();
}

ZoStreamReadCompressedFloatingPoint::~ZoStreamReadCompressedFloatingPoint()
{
    if (m_ownsQuantization)
        delete m_quantization;
}
