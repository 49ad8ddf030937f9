/// @class ZoDecompressRangeCoder
/// ZoDecompressRangeCoder: decodes the blocks ZoCompressRangeCoder writes; itself a binary read
/// stream. The constructor reads the whole block from the source at once and never touches the
/// source again. The caller repeats the encoder's operations in the same order (symbols with models
/// in the same states, raw bits of the same widths, raw bytes), and >> of an integer decodes a symbol
/// of the decoder's own model; other values are decoded from raw bytes.
///
/// Damaged data cannot make it read outside its block or loop: a block shorter than 4 bytes, or
/// cut off before its byte count, throws ZoExceptionStream ("Initialize"); decoding past the end of
/// the block throws ZoExceptionStream ("normalize"). Damaged bytes that do not run out decode as
/// some other sequence of values; the block carries no checksum.
/// @ingroup compression
#pragma once

#include "base/ZoArray.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamReadBinary.h"
#include "compression/ZoProbabilityModelQuasiStatic.h"
#include "platform/ZoExport.h"

#include <cstddef>
#include <cstdint>

class ZO_API ZoDecompressRangeCoder : private ZoStreamReadBinary
{
public:
    /// Own model of symbolCount symbols (16 total bits, update period up to 1024); reads the block.
    /// Throws the model's ZoExceptionPreconditionViolation for a bad count, ZoExceptionWrongFileVersion
    /// for a block version above 0, ZoExceptionStream as described above.
    ZoDecompressRangeCoder(ZoStreamReadBinary& source, uint32_t symbolCount);
    /// Resets `model`, then reads the block; throws as above.
    ZoDecompressRangeCoder(ZoStreamReadBinary& source, ZoSmartPointer<ZoProbabilityModelQuasiStatic> model);
    ~ZoDecompressRangeCoder() override;
    ZoDecompressRangeCoder(const ZoDecompressRangeCoder&) = delete;
    ZoDecompressRangeCoder& operator=(const ZoDecompressRangeCoder&) = delete;

    /// The next symbol, decoded with `model`, which must be in the state the encoder's model was in
    /// for that symbol; the symbol is then counted in the model, as the encoder counted it.
    uint32_t ReadSymbol(ZoProbabilityModelQuasiStatic& model)
    {
        normalize();
        const uint32_t totalBits = model.GetTotalBits();
        m_range >>= totalBits;
        uint32_t target = (m_code - m_low) / m_range;
        uint32_t frequency = 0;
        const uint32_t symbol = model.GetSymbol(target, frequency);
        m_low += target * m_range;
        m_range *= frequency;
        return symbol;
    }
    /// bitCount 0 .. 32, as written.
    uint32_t ReadRawBits(uint32_t bitCount);
    /// Decodes `size` bytes written by WriteRaw (8 raw bits each).
    void ReadRaw(void* data, size_t size) { read(data, size); }

    ///@{
    /// Symbols of the decoder's own model, truncated to the target's width; the 64-bit targets get
    /// the symbol zero-extended.
    using ZoStreamReadBinary::operator>>;
    ZoDecompressRangeCoder& operator>>(char& value) { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(unsigned char& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(unsigned short& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(int& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(unsigned int& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(long& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(unsigned long& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(long long& value) override { return symbol(value); }
    ZoDecompressRangeCoder& operator>>(unsigned long long& value) override { return symbol(value); }
    ///@}

protected:
    /// Decodes `size` bytes written by the encoder's raw sink; returns size.
    uint64_t read(void* data, uint64_t size) override;

private:
    template <class T>
    ZoDecompressRangeCoder& symbol(T& value)
    {
        value = static_cast<T>(ReadSymbol(*m_model));
        return *this;
    }
    void normalize()
    {
        while (((m_low + m_range) ^ m_low) < sc_top) {
            if (m_position >= m_inputBuffer.GetCount())
                throwExhausted(sc_lineByteStep);
            m_low <<= 8;
            m_range <<= 8;
            m_code = (m_code << 8) + m_inputBuffer[m_position++];
        }
        if (m_range < sc_bottom)
            normalizeTwoBytes();
    }
    void normalizeTwoBytes();
    [[noreturn]] static void throwExhausted(uint32_t line);
    void initialize();
    void reset();

    static constexpr uint32_t sc_top = uint32_t(1) << 24;
    static constexpr uint32_t sc_bottom = uint32_t(1) << 16;
    static constexpr uint32_t sc_lineByteStep = 141;
    static constexpr uint32_t sc_lineTwoByteStep = 160;

    ZoSmartPointer<ZoProbabilityModelQuasiStatic> m_model;
    uint32_t m_code;
    uint32_t m_low;
    uint32_t m_range;
    ZoArray<unsigned char, 1> m_inputBuffer;
    uint32_t m_position;
    ZoStreamReadBinary& m_source;
};
