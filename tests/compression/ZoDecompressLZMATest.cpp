#include "compression/ZoCompressLZMA.h"
#include "compression/ZoDecompressLZMA.h"

#include "CodecTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>

using CodecTest::Bytes;

namespace {

class ZoDecompressLZMATest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_data = CodecTest::MixedBytes(150000, 4);
        ZoCompressLZMA compressor;
        ASSERT_EQ(compressor.Compress(m_data.data(), static_cast<uint32_t>(m_data.size()), 0), 1);
        m_packed = CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
    }

    int Decompress(const Bytes& input)
    {
        // An exact-size copy, so that a read past the end is caught by the sanitizer build.
        const Bytes exact(input);
        return m_decompressor.Decompress(exact.data(), static_cast<uint32_t>(exact.size()));
    }
    Bytes Output() const { return CodecTest::Copy(m_decompressor.GetOutputBuffer(), m_decompressor.GetOutputSize()); }

    Bytes m_data;
    Bytes m_packed;
    ZoDecompressLZMA m_decompressor;
};

TEST_F(ZoDecompressLZMATest, AFailedSizeQueryKeepsTheEarlierOutput)
{
    ASSERT_EQ(Decompress(m_packed), 1);
    const unsigned char* earlier = m_decompressor.GetOutputBuffer();

    Bytes unknownSize = m_packed;
    std::memset(unknownSize.data() + 5, 0xFF, 8);
    for (const Bytes& input : {Bytes(), Bytes(m_packed.begin(), m_packed.begin() + 12), unknownSize}) {
        EXPECT_EQ(Decompress(input), 0);
        EXPECT_EQ(m_decompressor.GetOutputBuffer(), earlier);
        EXPECT_TRUE(Output() == m_data);
    }
}

// A header that sizes fine over a payload that does not decode: the new buffer is kept, partly
// written, with an output size of 0, and the next call frees it.
TEST_F(ZoDecompressLZMATest, AFailedDecodeKeepsTheNewBufferWithSizeZero)
{
    ZO_REQUIRE_REAL_LZMA_CODEC();
    ASSERT_EQ(Decompress(m_packed), 1);
    Bytes damaged = m_packed;
    damaged[13] = 0x80; // the range coder's first byte is always 0
    EXPECT_EQ(Decompress(damaged), 0);
    EXPECT_NE(m_decompressor.GetOutputBuffer(), nullptr);
    EXPECT_EQ(m_decompressor.GetOutputSize(), 0u);

    ASSERT_EQ(Decompress(m_packed), 1);
    EXPECT_TRUE(Output() == m_data);
}

// Data from another encoder that ends with an end marker although its header gives the size.
TEST_F(ZoDecompressLZMATest, AcceptsAnEndMarkerWhereTheSizeEnds)
{
    ZO_REQUIRE_REAL_LZMA_CODEC();
    const Bytes packed = {
        0x5D, 0x00, 0x00, 0x04, 0x00, 0x4C, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x2D, 0x1B, 0xC0, 0x06,
        0x33, 0xB6, 0xA2, 0x0B, 0x37, 0x16, 0x6B, 0x6D, 0x6A, 0x5F, 0x84, 0x8F, 0x3D, 0xF5, 0xCA, 0x43, 0xBD, 0xA5,
        0xE9, 0xA1, 0x9B, 0xA8, 0xE9, 0x92, 0x11, 0x5D, 0x32, 0xD1, 0x67, 0x95, 0x6B, 0x1B, 0xAA, 0xE3, 0xCD, 0xE2,
        0x0C, 0x47, 0xA7, 0xB3, 0xD2, 0x21, 0xA8, 0xBE, 0x4F, 0xF7, 0x87, 0x0B, 0x78, 0xB3, 0xFC, 0xDB, 0x1A, 0xF0,
        0xD0, 0x4B, 0x8F, 0xFB, 0x1A, 0x9C, 0xE8, 0x89, 0x0E, 0x3C, 0x97, 0x4A, 0xFF, 0xE1, 0x64, 0xB8, 0x00};
    const std::string text = "Zo codec test: the end marker is accepted where the size says the data ends.";
    ASSERT_EQ(Decompress(packed), 1);
    const Bytes output = Output();
    EXPECT_EQ(std::string(output.begin(), output.end()), text);
}

// Truncations, bit damage and noise all end in 0, never a crash, a hang or an overrun.
TEST_F(ZoDecompressLZMATest, DamagedInputFails)
{
    for (size_t length = 0; length < m_packed.size(); length += 1 + length / 16) {
        SCOPED_TRACE(length);
        EXPECT_EQ(Decompress(Bytes(m_packed.begin(), m_packed.begin() + static_cast<std::ptrdiff_t>(length))), 0);
    }
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 generator(seed);
    for (int trial = 0; trial < 100; ++trial) {
        SCOPED_TRACE(trial);
        EXPECT_EQ(Decompress(CodecTest::RandomBytes(generator() % 5000, generator())), 0);
        // A sound header over noise gets past the size query into the decoder itself; LZMA has
        // no checksum, so noise may decode, but only to exactly the size the header gives.
        Bytes noise = CodecTest::RandomBytes(14 + generator() % 3000, generator());
        std::memcpy(noise.data(), m_packed.data(), 5);
        const uint32_t claimed = generator() % 20000;
        for (int i = 0; i < 8; ++i)
            noise[5 + i] = static_cast<unsigned char>(static_cast<uint64_t>(claimed) >> (8 * i));
        noise[13] = 0;
        const uint64_t expected = Decompress(noise) == 1 ? claimed : 0;
        EXPECT_EQ(m_decompressor.GetOutputSize(), expected);
    }
}

} // namespace
