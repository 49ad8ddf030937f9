/// @class ZoStreamReadPredictiveCoder
/// ZoStreamReadPredictiveCoder: reads what ZoStreamWritePredictiveCoder wrote, given the same value
/// width, version and predictions in the same order. The whole coded block is read when the
/// stream is constructed; the binary-stream operators inherited here read nothing (they throw their
/// short-read exception).
///
/// Damaged data throws ZoExceptionWrongFileVersion (a version above the expected one) or the range
/// decoder's ZoExceptionStream ("Initialize", "normalize"); damaged bytes that do not run out decode
/// as other values.
/// @ingroup compression
#pragma once

#include "base/ZoStreamReadBinary.h"
#include "compression/ZoDecompressRangeCoder.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>

class ZO_API ZoStreamReadPredictiveCoder : public ZoStreamReadBinary
{
public:
    /// n: value width in bits, 1 .. 32. Reads the version record (0) and the block.
    ZoStreamReadPredictiveCoder(ZoStreamReadBinary& source, uint32_t n);
    ~ZoStreamReadPredictiveCoder() override;
    ZoStreamReadPredictiveCoder(const ZoStreamReadPredictiveCoder&) = delete;
    ZoStreamReadPredictiveCoder& operator=(const ZoStreamReadPredictiveCoder&) = delete;

    /// Returns the value written with this prediction (arithmetic wraps modulo 2^32).
    uint32_t ReadValue(uint32_t prediction);

protected:
    /// Leaves initialize(source) to the derived class.
    ZoStreamReadPredictiveCoder(uint32_t n, uint32_t version);
    /// Reads and checks the version record, then the coded block.
    void initialize(ZoStreamReadBinary& source);

    /// Reads nothing (returns 0): the stream decodes only through ReadValue.
    uint64_t read(void* buffer, uint64_t size) override;

private:
    std::unique_ptr<ZoDecompressRangeCoder> m_decoder;
    uint32_t m_n;
    uint32_t m_version;
};
