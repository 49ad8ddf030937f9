#include "compression/ZoStreamWritePredictiveCoder.h"

#include "platform/ZoOS.h"

ZoStreamWritePredictiveCoder::ZoStreamWritePredictiveCoder(ZoStreamWriteBinary& target, uint32_t n, uint32_t sizeHint)
    : ZoStreamWritePredictiveCoder(target, n, sizeHint, 0)
{
}

ZoStreamWritePredictiveCoder::ZoStreamWritePredictiveCoder(ZoStreamWriteBinary& target, uint32_t n, uint32_t sizeHint,
                                                           uint32_t version)
    : m_coder(target, 2 * n + 1, sizeHint / 4), m_target(target), m_n(n), m_version(version)
{
}

ZoStreamWritePredictiveCoder::~ZoStreamWritePredictiveCoder()
{
    // The version record goes first; the coder's block follows when the member is destroyed.
    try {
        m_target.WriteVersion(m_version);
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
    }
}

void ZoStreamWritePredictiveCoder::WriteValue(uint32_t value, uint32_t prediction)
{
    if (value == prediction) {
        m_coder << m_n;
        return;
    }
    const bool above = value > prediction;
    const uint32_t difference = above ? value - prediction : prediction - value;
    const uint32_t k = 31 - static_cast<uint32_t>(__builtin_clz(difference));
    m_coder << (above ? m_n + k + 1 : m_n - k - 1);
    // Also for k = 0, which codes no bits: the call still normalises, and the reader mirrors it.
    m_coder.WriteRawBits(difference - (uint32_t(1) << k), k);
}

ZoStreamWriteBinary& ZoStreamWritePredictiveCoder::write(const void*, uint64_t)
{
    return *this;
}
