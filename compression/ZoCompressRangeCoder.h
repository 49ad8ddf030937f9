/// @class ZoCompressRangeCoder
/// ZoCompressRangeCoder: a 32-bit carry-less range encoder that is itself a binary write stream.
/// Integers of up to 32 bits written with << are coded as symbols of the coder's own adaptive
/// model; every other value the binary encoding knows (floats, doubles, strings, shorts, ...) reaches
/// the raw sink and is coded as uniformly distributed bytes. WriteSymbol codes with any model,
/// WriteRawBits codes 1..32 bits at uniform probability.
///
/// Nothing reaches the target stream while coding: the coded bytes collect in memory and the
/// destructor hands them over as one block — version record 0, a 32-bit byte count, the bytes (the
/// bytes shifted out of the top of `low`, then the four bytes of the final `low`, most significant
/// first). The target must outlive the coder. ZoDecompressRangeCoder reads the block back and must be
/// driven through the same operations in the same order, with models in the same states.
///
/// The interval is forced to end at 2^32 whenever it grows too small instead of propagating carries,
/// so no byte already emitted ever changes.
/// @ingroup compression
#pragma once

#include "base/ZoArray.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamWriteBinary.h"
#include "compression/ZoProbabilityModelQuasiStatic.h"
#include "platform/ZoExport.h"

#include <cstddef>
#include <cstdint>

class ZO_API ZoCompressRangeCoder : private ZoStreamWriteBinary
{
public:
    /// Codes with a model of its own: symbolCount symbols (2 .. 16384, else the model's
    /// ZoExceptionPreconditionViolation), 16 total bits, update period up to 1024. The output
    /// buffer starts with room for initialBufferSize bytes and doubles when full.
    ZoCompressRangeCoder(ZoStreamWriteBinary& target, uint32_t symbolCount, uint32_t initialBufferSize);
    /// Codes with `model` as it stands (it is not reset): the decoder's model resets, so the model
    /// given here must be in its reset state for the block to decode.
    ZoCompressRangeCoder(ZoStreamWriteBinary& target, ZoSmartPointer<ZoProbabilityModelQuasiStatic> model,
                         uint32_t initialBufferSize);
    /// Writes the block to the target. A target that throws loses the block: a destructor cannot
    /// report, so callers who must know write to a memory stream and copy it on.
    ~ZoCompressRangeCoder() override;
    ZoCompressRangeCoder(const ZoCompressRangeCoder&) = delete;
    ZoCompressRangeCoder& operator=(const ZoCompressRangeCoder&) = delete;

    /// Requires: symbol < the model's symbol count (not checked).
    void WriteSymbol(uint32_t symbol, ZoProbabilityModelQuasiStatic& model)
    {
        uint32_t symbolLow = 0;
        uint32_t frequency = 0;
        model.GetFrequencies(symbol, symbolLow, frequency);
        const uint32_t step = m_range >> model.GetTotalBits();
        m_low += step * symbolLow;
        m_range = step * frequency;
        normalize();
    }
    /// Codes the low bitCount (0 .. 32) bits of value at uniform probability; above 16 bits in two
    /// steps (the high bits, then the low 16), since one step may use at most 16 bits of the range.
    void WriteRawBits(uint32_t value, uint32_t bitCount);
    /// Codes `size` bytes at uniform probability, 8 raw bits each.
    void WriteRaw(const void* data, uint32_t size) { write(data, size); }

    ///@{
    /// Symbols of the coder's own model (requires value < its symbol count; a negative char is
    /// sign-extended and therefore out of range). 16-bit and 8-bit values are zero-extended; the
    /// 64-bit ones give their low 32 bits. Both 64-bit types are symbols, so that uint64_t codes
    /// alike on targets where it is `unsigned long` and where it is `unsigned long long`.
    using ZoStreamWriteBinary::operator<<;
    ZoCompressRangeCoder& operator<<(unsigned char value) override { return symbol(value); }
    ZoCompressRangeCoder& operator<<(char value) { return symbol(static_cast<uint32_t>(static_cast<int32_t>(value))); }
    ZoCompressRangeCoder& operator<<(unsigned short value) override { return symbol(value); }
    ZoCompressRangeCoder& operator<<(int value) override { return symbol(static_cast<uint32_t>(value)); }
    ZoCompressRangeCoder& operator<<(unsigned int value) override { return symbol(value); }
    ZoCompressRangeCoder& operator<<(long value) override { return symbol(static_cast<uint32_t>(value)); }
    ZoCompressRangeCoder& operator<<(unsigned long value) override { return symbol(static_cast<uint32_t>(value)); }
    ZoCompressRangeCoder& operator<<(long long value) override { return symbol(static_cast<uint32_t>(value)); }
    ZoCompressRangeCoder& operator<<(unsigned long long value) override { return symbol(static_cast<uint32_t>(value)); }
    ///@}

private:
    /// The raw sink: every byte at uniform probability (8 raw bits).
    ZoStreamWriteBinary& write(const void* data, uint64_t size) override;

    ZoCompressRangeCoder& symbol(uint32_t value)
    {
        WriteSymbol(value, *m_model);
        return *this;
    }
    void normalize()
    {
        while (((m_low + m_range) ^ m_low) < sc_top) {
            m_outputBuffer.Add(static_cast<unsigned char>(m_low >> 24));
            m_low <<= 8;
            m_range <<= 8;
        }
        if (m_range < sc_bottom) {
            m_outputBuffer.Add(static_cast<unsigned char>(m_low >> 24));
            m_low <<= 8;
            m_outputBuffer.Add(static_cast<unsigned char>(m_low >> 24));
            m_low <<= 8;
            // End the interval exactly at 2^32: no later addition can carry into emitted bytes.
            m_range = 0u - m_low;
        }
    }
    void flush();
    void reset();

    static constexpr uint32_t sc_top = uint32_t(1) << 24;
    static constexpr uint32_t sc_bottom = uint32_t(1) << 16;

    uint32_t m_low;
    /// 0 once flushed: nothing left to write.
    uint32_t m_range;
    ZoSmartPointer<ZoProbabilityModelQuasiStatic> m_model;
    ZoArray<unsigned char, 1> m_outputBuffer;
    ZoStreamWriteBinary& m_target;
};
