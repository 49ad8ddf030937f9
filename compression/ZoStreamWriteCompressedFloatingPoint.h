/// @class ZoStreamWriteCompressedFloatingPoint
/// ZoStreamWriteCompressedFloatingPoint: predictive coding of single-precision floats. Each value and
/// its prediction are mapped to integers by a quantization — by default the lossless, order-preserving
/// ZoFloatingPointQuantizationLogarithmic<23,8>, so that the data comes back bit for bit — and the
/// integer difference is coded as ZoStreamWritePredictiveCoder codes it. A smooth field with a good
/// predictor (the neighbour, or an interpolation of neighbours) shrinks well below what general
/// byte compressors reach.
///
/// Layout on the target, written at destruction: version record 0, then the range coder's block.
/// @ingroup compression
#pragma once

#include "compression/ZoFloatingPointQuantization.h"
#include "compression/ZoStreamWritePredictiveCoder.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoStreamWriteCompressedFloatingPoint : public ZoStreamWritePredictiveCoder
{
public:
    /// Values of quantization.GetBitCount() bits; ownsQuantization nonzero hands the object over
    /// (deleted with the writer), otherwise it must outlive the writer.
    ZoStreamWriteCompressedFloatingPoint(ZoStreamWriteBinary& target, ZoFloatingPointQuantization& quantization,
                                         int ownsQuantization, uint32_t sizeHint);
    /// Lossless: an owned logarithmic quantization, 32-bit values.
    ZoStreamWriteCompressedFloatingPoint(ZoStreamWriteBinary& target, uint32_t sizeHint);
    ~ZoStreamWriteCompressedFloatingPoint() override;

    /// Codes the value as the difference of its code from the prediction's code; the reader needs
    /// the same prediction to get it back.
    void WriteValue(float value, float prediction)
    {
        const uint32_t mappedPrediction = m_quantization->Map(prediction);
        ZoStreamWritePredictiveCoder::WriteValue(m_quantization->Map(value), mappedPrediction);
    }

private:
    ZoFloatingPointQuantization* m_quantization;
    int m_ownsQuantization;
};
