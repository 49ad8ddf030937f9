#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"

#include "CodecTestSupport.h"

#include <gtest/gtest.h>

using CodecTest::Bytes;

namespace {

class ZoDecompressZIPTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_data = CodecTest::MixedBytes(200000, 3);
        ZoCompressZIP compressor;
        ASSERT_EQ(compressor.Compress(m_data.data(), static_cast<uint32_t>(m_data.size())), 1);
        m_packed = CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
    }

    uint32_t DataSize() const { return static_cast<uint32_t>(m_data.size()); }
    uint32_t PackedSize() const { return static_cast<uint32_t>(m_packed.size()); }

    Bytes m_data;
    Bytes m_packed;
};

TEST_F(ZoDecompressZIPTest, ZeroSizeKeepsTheEarlierOutputAndTooSmallASizeEmptiesTheObject)
{
    ZoDecompressZIP decompressor;
    ASSERT_EQ(decompressor.Decompress(m_packed.data(), PackedSize(), DataSize()), 1);
    const unsigned char* earlier = decompressor.GetOutputBuffer();

    EXPECT_EQ(decompressor.Decompress(m_packed.data(), PackedSize(), 0), 0);
    EXPECT_EQ(decompressor.GetOutputBuffer(), earlier);
    EXPECT_EQ(decompressor.GetOutputSize(), DataSize());
    EXPECT_TRUE(CodecTest::Copy(decompressor.GetOutputBuffer(), decompressor.GetOutputSize()) == m_data);
    for (uint32_t room : {DataSize() - 1, 1u}) {
        SCOPED_TRACE(room);
        EXPECT_EQ(decompressor.Decompress(m_packed.data(), PackedSize(), room), 0);
        EXPECT_EQ(decompressor.GetOutputBuffer(), nullptr);
        EXPECT_EQ(decompressor.GetOutputSize(), 0u);
    }
}

// Every truncation, single-bit damage through the stream, and plain noise: each fails with 0 and
// an empty object, never a crash or a read beyond the input (the sanitizer build watches that).
TEST_F(ZoDecompressZIPTest, DamagedInputFailsAndLeavesTheObjectEmpty)
{
    ZoDecompressZIP decompressor;
    auto expectFailure = [&](const Bytes& input) {
        const Bytes exact(input.begin(), input.end()); // no slack past the end for a stray read
        EXPECT_EQ(decompressor.Decompress(exact.data(), static_cast<uint32_t>(exact.size()), DataSize()), 0);
        EXPECT_EQ(decompressor.GetOutputBuffer(), nullptr);
        EXPECT_EQ(decompressor.GetOutputSize(), 0u);
    };
    for (size_t length = 0; length < m_packed.size(); length += 1 + length / 16) {
        SCOPED_TRACE(length);
        expectFailure(Bytes(m_packed.begin(), m_packed.begin() + static_cast<std::ptrdiff_t>(length)));
    }
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 generator(seed);
    for (int trial = 0; trial < 200; ++trial) {
        Bytes damaged = m_packed;
        damaged[generator() % damaged.size()] ^= static_cast<unsigned char>(1u << (generator() % 8));
        SCOPED_TRACE(trial);
        expectFailure(damaged);
        expectFailure(CodecTest::RandomBytes(generator() % 5000, generator()));
    }
}

} // namespace
