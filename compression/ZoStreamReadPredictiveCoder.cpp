#include "compression/ZoStreamReadPredictiveCoder.h"

ZoStreamReadPredictiveCoder::ZoStreamReadPredictiveCoder(ZoStreamReadBinary& source, uint32_t n)
    : ZoStreamReadPredictiveCoder(n, 0)
{
    initialize(source);
}

ZoStreamReadPredictiveCoder::ZoStreamReadPredictiveCoder(uint32_t n, uint32_t version) : m_n(n), m_version(version)
{
}

ZoStreamReadPredictiveCoder::~ZoStreamReadPredictiveCoder() = default;

void ZoStreamReadPredictiveCoder::initialize(ZoStreamReadBinary& source)
{
    source.ReadAndCompareVersion(m_version);
    m_decoder.reset(new ZoDecompressRangeCoder(source, 2 * m_n + 1));
}

uint32_t ZoStreamReadPredictiveCoder::ReadValue(uint32_t prediction)
{
    uint32_t symbol = 0;
    *m_decoder >> symbol;
    if (symbol > m_n) {
        const uint32_t k = symbol - m_n - 1;
        return prediction + (uint32_t(1) << k) + m_decoder->ReadRawBits(k);
    }
    if (symbol == m_n)
        return prediction;
    const uint32_t k = m_n - symbol - 1;
    return prediction - (uint32_t(1) << k) - m_decoder->ReadRawBits(k);
}

uint64_t ZoStreamReadPredictiveCoder::read(void*, uint64_t)
{
    return 0;
}
