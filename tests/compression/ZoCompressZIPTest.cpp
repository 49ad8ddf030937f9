#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"

#include "CodecTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

using CodecTest::Bytes;

namespace {

Bytes CompressZIP(const Bytes& data)
{
    ZoCompressZIP compressor;
    EXPECT_EQ(compressor.Compress(data.data(), static_cast<uint32_t>(data.size())), 1);
    return CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

TEST(ZoCompressZIPTest, EmptyInputFitsTwelveBytesAsAValidStream)
{
    ZoCompressZIP compressor;
    ASSERT_EQ(compressor.Compress(nullptr, 0), 1);
    // zlib header (deflate, 32 KB window, default level), an empty final fixed block, Adler-32 of
    // nothing: the whole stream fits the 12 bytes that the capacity formula gives an empty input.
    const Bytes expected = {0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01};
    EXPECT_EQ(CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize()), expected);

    ZoDecompressZIP decompressor;
    ASSERT_EQ(decompressor.Decompress(expected.data(), 8, 1), 1);
    EXPECT_EQ(decompressor.GetOutputSize(), 0u);
}

// Random bytes do not compress: deflate falls back to stored blocks, its worst case, which must
// still fit 12 + trunc(1.1 * size) bytes for every size, small ones above all. Mixed data shrinks.
TEST(ZoCompressZIPTest, RandomDataFitsTheCapacityMixedDataShrinksAndBothRoundTrip)
{
    for (uint32_t size : {0u, 1u, 2u, 11u, 12u, 13u, 100u, 16383u, 16384u, 65537u, 1000000u, 10u * 1024 * 1024}) {
        SCOPED_TRACE(size);
        const bool random = size != 0 && size < 10u * 1024 * 1024;
        const Bytes data = random ? CodecTest::RandomBytes(size, size) : CodecTest::MixedBytes(size, 7);
        const Bytes packed = CompressZIP(data);
        EXPECT_LE(packed.size(), 12 + static_cast<size_t>(std::trunc(size * 1.1)));
        if (!random && size > 1) {
            EXPECT_LT(packed.size(), data.size());
        }
        // An exact size, and a generous one: the output size is what was produced.
        for (uint32_t room : {size, size + 100}) {
            if (room == 0)
                continue;
            ZoDecompressZIP decompressor;
            ASSERT_EQ(decompressor.Decompress(packed.data(), static_cast<uint32_t>(packed.size()), room), 1);
            EXPECT_EQ(decompressor.GetOutputSize(), size);
            EXPECT_TRUE(CodecTest::Copy(decompressor.GetOutputBuffer(), decompressor.GetOutputSize()) == data);
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

} // namespace
