#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"

#include "CodecTestSupport.h"

#include <cmath>
#include <memory>

using CodecTest::Bytes;

namespace {

Bytes CompressZIP(const Bytes& data)
{
    ZoCompressZIP compressor;
    EXPECT_EQ(compressor.Compress(data.data(), static_cast<uint32_t>(data.size())), 1);
    return CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

Bytes Output(const ZoDecompressZIP& decompressor)
{
    return CodecTest::Copy(decompressor.GetOutputBuffer(), decompressor.GetOutputSize());
}

// Random bytes do not compress: deflate falls back to stored blocks, its worst case, which must
// still fit 12 + trunc(1.1 * size) bytes for every size, small ones above all. Mixed data shrinks.
// Empty input is the zlib header, an empty final fixed block and the Adler-32 of nothing.
TEST(ZoCompressZIPTest, OutputFitsTheCapacityAndRoundTrips)
{
    EXPECT_EQ(CompressZIP({}), Bytes({0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01}));
    for (uint32_t size : {0u, 1u, 2u, 11u, 12u, 13u, 100u, 16383u, 16384u, 65537u, 1000000u, 10u * 1024 * 1024}) {
        SCOPED_TRACE(size);
        const bool random = size != 0 && size < 10u * 1024 * 1024;
        const Bytes data = random ? CodecTest::RandomBytes(size, size) : CodecTest::MixedBytes(size, 7);
        const Bytes packed = CompressZIP(data);
        EXPECT_LE(packed.size(), 12 + static_cast<size_t>(std::trunc(size * 1.1)));
        if (!random && size > 1) {
            EXPECT_LT(packed.size(), data.size());
        }
        // An exact size and a generous one (the empty input's 1 is generous too): the output size
        // is what was produced.
        for (uint32_t room : {std::max(size, 1u), size + 100}) {
            ZoDecompressZIP decompressor;
            ASSERT_EQ(decompressor.Decompress(packed.data(), static_cast<uint32_t>(packed.size()), room), 1);
            EXPECT_EQ(decompressor.GetOutputSize(), size);
            EXPECT_TRUE(Output(decompressor) == data);
        }
    }
}

TEST(ZoCompressZIPTest, ACallReplacesTheOutputAndCopiesShareIt)
{
    const Bytes first = CodecTest::MixedBytes(5000, 1);
    const Bytes second = CodecTest::MixedBytes(300, 2);
    ZoCompressZIP compressor;
    ASSERT_EQ(compressor.Compress(first.data(), 5000), 1);
    ASSERT_EQ(compressor.Compress(second.data(), 300), 1);
    EXPECT_EQ(CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize()), CompressZIP(second));
    // The copy sees the same buffer; it must stay valid when either object goes or moves on.
    auto copy = std::make_unique<ZoCompressZIP>(compressor);
    EXPECT_EQ(copy->GetOutputBuffer(), compressor.GetOutputBuffer());
    const Bytes expected = CodecTest::Copy(copy->GetOutputBuffer(), copy->GetOutputSize());
    ASSERT_EQ(compressor.Compress(first.data(), 5000), 1);
    EXPECT_EQ(CodecTest::Copy(copy->GetOutputBuffer(), copy->GetOutputSize()), expected);
    copy.reset();
    EXPECT_EQ(CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize()), CompressZIP(first));
}

// A zero size keeps the earlier output; too small a size, every truncation, single-bit damage and
// plain noise fail with 0 and an empty object, never a crash or a read beyond the input.
TEST(ZoDecompressZIPTest, ZeroSizeKeepsTheOutputAndFailuresEmptyTheObject)
{
    const Bytes data = CodecTest::MixedBytes(200000, 3);
    const Bytes packed = CompressZIP(data);
    const uint32_t size = static_cast<uint32_t>(data.size());
    ZoDecompressZIP decompressor;
    ASSERT_EQ(decompressor.Decompress(packed.data(), static_cast<uint32_t>(packed.size()), size), 1);
    const unsigned char* earlier = decompressor.GetOutputBuffer();
    EXPECT_EQ(decompressor.Decompress(packed.data(), static_cast<uint32_t>(packed.size()), 0), 0);
    EXPECT_EQ(decompressor.GetOutputBuffer(), earlier);
    EXPECT_TRUE(Output(decompressor) == data);

    auto expectFailure = [&](const Bytes& input, uint32_t room) {
        const Bytes exact(input); // no slack past the end for a stray read
        EXPECT_EQ(decompressor.Decompress(exact.data(), static_cast<uint32_t>(exact.size()), room), 0);
        EXPECT_EQ(decompressor.GetOutputBuffer(), nullptr);
        EXPECT_EQ(decompressor.GetOutputSize(), 0u);
    };
    expectFailure(packed, size - 1);
    expectFailure(packed, 1);
    for (size_t length = 0; length < packed.size(); length += 1 + length / 16) {
        SCOPED_TRACE(length);
        expectFailure(Bytes(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(length)), size);
    }
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 generator(seed);
    for (int trial = 0; trial < 200; ++trial) {
        Bytes damaged = packed;
        damaged[generator() % damaged.size()] ^= static_cast<unsigned char>(1u << (generator() % 8));
        SCOPED_TRACE(trial);
        expectFailure(damaged, size);
        expectFailure(CodecTest::RandomBytes(generator() % 5000, generator()), size);
    }
}

} // namespace
