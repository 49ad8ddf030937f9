#include "compression/ZoCompressRangeCoder.h"

#include "platform/ZoOS.h"

ZoCompressRangeCoder::ZoCompressRangeCoder(ZoStreamWriteBinary& target, uint32_t symbolCount,
                                           uint32_t initialBufferSize)
    : m_low(0), m_range(0xFFFFFFFFu), m_model(new ZoProbabilityModelQuasiStatic(symbolCount, 16, 1024)),
      m_target(target)
{
    m_outputBuffer.SetMemoryElementCount(initialBufferSize, 0);
    reset();
}

ZoCompressRangeCoder::ZoCompressRangeCoder(ZoStreamWriteBinary& target,
                                           ZoSmartPointer<ZoProbabilityModelQuasiStatic> model,
                                           uint32_t initialBufferSize)
    : m_low(0), m_range(0xFFFFFFFFu), m_model(model), m_target(target)
{
    m_outputBuffer.SetMemoryElementCount(initialBufferSize, 0);
    m_outputBuffer.RemoveAll();
}

ZoCompressRangeCoder::~ZoCompressRangeCoder()
{
    try {
        flush();
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
    }
}

void ZoCompressRangeCoder::reset()
{
    m_low = 0;
    m_range = 0xFFFFFFFFu;
    m_model->Reset();
    m_outputBuffer.RemoveAll();
}

void ZoCompressRangeCoder::WriteRawBits(uint32_t value, uint32_t bitCount)
{
    if (bitCount != 32)
        value &= (uint32_t(1) << bitCount) - 1;
    if (bitCount >= 17) {
        m_range >>= bitCount - 16;
        m_low += (value >> 16) * m_range;
        normalize();
        value &= 0xFFFF;
        bitCount = 16;
    }
    m_range >>= bitCount;
    m_low += value * m_range;
    normalize();
}

ZoStreamWriteBinary& ZoCompressRangeCoder::write(const void* data, uint64_t size)
{
    const auto* bytes = static_cast<const unsigned char*>(data);
    for (uint64_t i = 0; i < size; ++i) {
        m_range >>= 8;
        m_low += bytes[i] * m_range;
        normalize();
    }
    return *this;
}

void ZoCompressRangeCoder::flush()
{
    if (m_range == 0)
        return;
    for (int shift = 24; shift >= 0; shift -= 8)
        m_outputBuffer.Add(static_cast<unsigned char>(m_low >> shift));
    // Marked flushed first: a target that throws must not get half a block a second time.
    m_range = 0;
    const uint32_t count = m_outputBuffer.GetCount();
    m_target.WriteVersion(0);
    m_target << count;
    m_target.WriteBuffer(m_outputBuffer.GetData(), count);
}
