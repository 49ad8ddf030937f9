/// @class ZoStreamWritePredictiveCoder
/// ZoStreamWritePredictiveCoder: codes n-bit unsigned integers as differences from predictions the
/// caller supplies. The magnitude class of each difference (equal, or the position k of its leading
/// one and its sign) is a symbol of an adaptive model of 2n+1 symbols — n for "equal", n+1+k above,
/// n-1-k below — and the k bits under the leading one follow raw, since they are close to
/// uniformly distributed. Good predictions thus cost a fraction of a bit per value.
///
/// Nothing reaches the target until destruction, which writes the version record and then the
/// range coder's block. The binary-stream operators inherited here write nothing: only WriteValue
/// codes. ZoStreamReadPredictiveCoder reads the data back given the same n, version and predictions.
/// @ingroup compression
#pragma once

#include "base/ZoStreamWriteBinary.h"
#include "compression/ZoCompressRangeCoder.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoStreamWritePredictiveCoder : public ZoStreamWriteBinary
{
public:
    /// n: value width in bits, 1 .. 32. sizeHint: expected size of the coded data in bytes (a
    /// quarter of it is reserved up front). The target must outlive the writer.
    ZoStreamWritePredictiveCoder(ZoStreamWriteBinary& target, uint32_t n, uint32_t sizeHint);
    /// Writes the version record and the coded block (see ZoCompressRangeCoder on a failing target).
    ~ZoStreamWritePredictiveCoder() override;
    ZoStreamWritePredictiveCoder(const ZoStreamWritePredictiveCoder&) = delete;
    ZoStreamWritePredictiveCoder& operator=(const ZoStreamWritePredictiveCoder&) = delete;

    /// Requires: value and prediction below 2^n (not checked; a larger difference would code a
    /// symbol outside the model).
    void WriteValue(uint32_t value, uint32_t prediction);

protected:
    /// For derived streams that write a version record of their own number.
    ZoStreamWritePredictiveCoder(ZoStreamWriteBinary& target, uint32_t n, uint32_t sizeHint, uint32_t version);

    /// Swallows whatever the inherited operators send: the stream codes only through WriteValue.
    ZoStreamWriteBinary& write(const void* buffer, uint64_t size) override;

private:
    ZoCompressRangeCoder m_coder;
    ZoStreamWriteBinary& m_target;
    uint32_t m_n;
    uint32_t m_version;
};
