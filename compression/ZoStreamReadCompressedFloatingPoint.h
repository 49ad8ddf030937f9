/// @class ZoStreamReadCompressedFloatingPoint
/// ZoStreamReadCompressedFloatingPoint: reads what ZoStreamWriteCompressedFloatingPoint wrote, given an
/// equal quantization and the same predictions in the same order. With the default (logarithmic)
/// quantization every float comes back bit for bit. Damaged data throws as
/// ZoStreamReadPredictiveCoder describes.
/// @ingroup compression
#pragma once

#include "compression/ZoFloatingPointQuantization.h"
#include "compression/ZoStreamReadPredictiveCoder.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoStreamReadCompressedFloatingPoint : public ZoStreamReadPredictiveCoder
{
public:
    /// ownsQuantization nonzero hands the object over; otherwise it must outlive the reader. Both
    /// constructors read the whole coded data at once.
    ZoStreamReadCompressedFloatingPoint(ZoStreamReadBinary& source, ZoFloatingPointQuantization& quantization,
                                        int ownsQuantization);
    /// An owned logarithmic quantization, 32-bit values.
    explicit ZoStreamReadCompressedFloatingPoint(ZoStreamReadBinary& source);
    ~ZoStreamReadCompressedFloatingPoint() override;

    /// The next value, given the same prediction the writer used for it.
    float ReadValue(float prediction)
    {
        return m_quantization->Unmap(ZoStreamReadPredictiveCoder::ReadValue(m_quantization->Map(prediction)));
    }

private:
    ZoFloatingPointQuantization* m_quantization;
    int m_ownsQuantization;
};
