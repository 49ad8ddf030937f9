#include "compression/ZoDecompressRangeCoder.h"

#include "base/ZoExceptionStream.h"

#include <algorithm>

namespace {
const char16_t kSource[] = u"..\\compression\\ZoDecompressRangeCoder.cpp";
const uint32_t kLineInitialize = 93;
// A block's bytes are read in steps of at most what has already arrived (and at least this), so
// a damaged byte count meets the end of the source before anything near its claim is allocated.
const uint32_t kReadStep = uint32_t(1) << 20;
} // namespace

ZoDecompressRangeCoder::ZoDecompressRangeCoder(ZoStreamReadBinary& source, uint32_t symbolCount)
    : m_model(new ZoProbabilityModelQuasiStatic(symbolCount, 16, 1024)), m_code(0), m_low(0),
      m_range(0xFFFFFFFFu), m_position(0), m_source(source)
{
    reset();
    initialize();
}

ZoDecompressRangeCoder::ZoDecompressRangeCoder(ZoStreamReadBinary& source,
                                               ZoSmartPointer<ZoProbabilityModelQuasiStatic> model)
    : m_model(model), m_code(0), m_low(0), m_range(0xFFFFFFFFu), m_position(0), m_source(source)
{
    reset();
    initialize();
}

ZoDecompressRangeCoder::~ZoDecompressRangeCoder() = default;

void ZoDecompressRangeCoder::reset()
{
    m_low = 0;
    m_range = 0xFFFFFFFFu;
    m_code = 0;
    m_inputBuffer.SetMemoryElementCount(0, 0);
    m_position = 0;
    m_model->Reset();
}

void ZoDecompressRangeCoder::initialize()
{
    m_low = 0;
    m_range = 0xFFFFFFFFu;
    m_code = 0;
    m_source.ReadAndCompareVersion(0);
    uint32_t count = 0;
    m_source >> count;
    uint32_t arrived = 0;
    while (arrived < count) {
        const uint32_t wanted = std::min(count - arrived, std::max(arrived, kReadStep));
        m_inputBuffer.SetElementCount(arrived + wanted, 1);
        // A block cut off before its count is damaged like one too short to start: the decoder
        // would otherwise decode bytes that were never written.
        if (m_source.ReadBuffer(m_inputBuffer.GetData() + arrived, wanted) != wanted)
            throw ZoExceptionStream(kSource, u"ZoDecompressRangeCoder", u"Initialize", kLineInitialize);
        arrived += wanted;
    }
    if (count < 4)
        throw ZoExceptionStream(kSource, u"ZoDecompressRangeCoder", u"Initialize", kLineInitialize);
    for (uint32_t i = 0; i < 4; ++i)
        m_code = (m_code << 8) | m_inputBuffer[i];
    m_position = 4;
}

void ZoDecompressRangeCoder::throwExhausted(uint32_t line)
{
    throw ZoExceptionStream(kSource, u"ZoDecompressRangeCoder", u"normalize", line);
}

void ZoDecompressRangeCoder::normalizeTwoBytes()
{
    if (m_position + 1 >= m_inputBuffer.GetCount())
        throwExhausted(sc_lineTwoByteStep);
    m_code = (m_code << 8) + m_inputBuffer[m_position++];
    m_code = (m_code << 8) + m_inputBuffer[m_position++];
    m_low <<= 16;
    m_range = 0u - m_low;
    // The encoder never gets here with the low 16 bits of low all zero (the interval could not
    // straddle a top-byte boundary then), so a zero range means damaged data; going on would
    // divide by zero.
    if (m_range == 0)
        throwExhausted(sc_lineTwoByteStep);
}

uint32_t ZoDecompressRangeCoder::ReadRawBits(uint32_t bitCount)
{
    normalize();
    uint32_t result = 0;
    if (bitCount >= 17) {
        m_range >>= bitCount - 16;
        const uint32_t high = (m_code - m_low) / m_range;
        m_low += high * m_range;
        result = high << 16;
        normalize();
        bitCount = 16;
    }
    m_range >>= bitCount;
    const uint32_t value = (m_code - m_low) / m_range;
    result += value;
    m_low += (value & 0xFFFF) * m_range;
    return result;
}

uint64_t ZoDecompressRangeCoder::read(void* data, uint64_t size)
{
    auto* bytes = static_cast<unsigned char*>(data);
    for (uint64_t i = 0; i < size; ++i) {
        normalize();
        m_range >>= 8;
        const uint32_t value = (m_code - m_low) / m_range;
        bytes[i] = static_cast<unsigned char>(value);
        m_low += (value & 0xFF) * m_range;
    }
    return size;
}
