#include "compression/ZoCompressLZMA.h"
#include "compression/ZoDecompressLZMA.h"

#include "CodecTestSupport.h"
#include "base/ZoException.h"

#include <gtest/gtest.h>

#include <memory>

using CodecTest::Bytes;

namespace {

Bytes CompressLZMA(const Bytes& data)
{
    ZoCompressLZMA compressor;
    EXPECT_EQ(compressor.Compress(data.data(), static_cast<uint32_t>(data.size()), 0), 1);
    return CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

template <class Codec>
void ExpectConstructionThrows(const char* file, uint32_t line)
{
    // Both classes name the decompressor: reports match these texts.
    zotest::ExpectThrowSite<ZoException>([] { Codec codec; }, file, "ZoDecompressLZMA", "ZoDecompressLZMA", line);
}

TEST(ZoCompressLZMATest, ConstructorsThrowWithoutTheCodecLibrary)
{
    ZO_REQUIRE_LIBRARY_SEARCH_BY_PATH_ONLY();
    CodecTest::ScopedCurrentFolder emptyFolder;
    ExpectConstructionThrows<ZoCompressLZMA>("..\\compression\\ZoCompressLZMA.cpp", 49);
    ExpectConstructionThrows<ZoDecompressLZMA>("..\\compression\\ZoDecompressLZMA.cpp", 54);
}

TEST(ZoCompressLZMATest, ConstructorsThrowWhenTheLibraryLacksTheirEntry)
{
    // Any loadable library without the two entries will do: zlib, which the process has loaded.
    const std::string zlib = CodecTest::LoadedLibraryPath("/libz.so");
    if (zlib.empty())
        GTEST_SKIP() << "this system does not list the loaded libraries";
    CodecTest::ScopedCurrentFolder folder;
    std::filesystem::copy_file(zlib, folder.Folder() / "libMepCompress.so");
    ExpectConstructionThrows<ZoCompressLZMA>("..\\compression\\ZoCompressLZMA.cpp", 56);
    ExpectConstructionThrows<ZoDecompressLZMA>("..\\compression\\ZoDecompressLZMA.cpp", 61);
}

TEST(ZoCompressLZMATest, OutputStartsWithTheHeaderThatCarriesTheSize)
{
    ZO_REQUIRE_REAL_LZMA_CODEC();
    const Bytes packed = CompressLZMA({'a', 'b', 'c'});
    // lc=3 lp=0 pb=2, the smallest dictionary (4 KB), then the size as 8 little-endian bytes.
    const Bytes header = {0x5D, 0x00, 0x10, 0x00, 0x00, 0x03, 0, 0, 0, 0, 0, 0, 0};
    ASSERT_GT(packed.size(), header.size());
    EXPECT_EQ(Bytes(packed.begin(), packed.begin() + 13), header);
}

// The 64 MB of zeros are the densest input there is: their claimed size must stay within what the
// decoder believes a payload can expand to, or valid data would be refused as damaged.
TEST(ZoCompressLZMATest, RoundTripsEmptyOneByteTenMegabytesAndHighlyRepetitiveData)
{
    ZoDecompressLZMA decompressor;
    for (uint32_t size : {0u, 1u, 10u * 1024 * 1024, 64u * 1024 * 1024}) {
        SCOPED_TRACE(size);
        const Bytes data = size < (64u << 20) ? CodecTest::MixedBytes(size, 5) : Bytes(size, 0);
        const Bytes packed = CompressLZMA(data);
#if !defined(ZO_TEST_LZMA_STAND_IN)
        if (size > 1) {
            EXPECT_LT(packed.size(), data.size());
        }
#endif
        ASSERT_EQ(decompressor.Decompress(packed.data(), static_cast<uint32_t>(packed.size())), 1);
        EXPECT_EQ(decompressor.GetOutputSize(), size);
        EXPECT_TRUE(CodecTest::Copy(decompressor.GetOutputBuffer(), decompressor.GetOutputSize()) == data);
    }
}

TEST(ZoCompressLZMATest, CopiesShareTheOutputAndKeepTheLibraryLoaded)
{
    const Bytes data = CodecTest::MixedBytes(20000, 9);
    auto compressor = std::make_unique<ZoCompressLZMA>();
    ASSERT_EQ(compressor->Compress(data.data(), 20000, 0), 1);
    ZoCompressLZMA copy(*compressor);
    EXPECT_EQ(copy.GetOutputBuffer(), compressor->GetOutputBuffer());
    const Bytes packed = CodecTest::Copy(copy.GetOutputBuffer(), copy.GetOutputSize());
    compressor.reset();

    // The source is gone: the copy's buffer and entry still work.
    EXPECT_EQ(CodecTest::Copy(copy.GetOutputBuffer(), copy.GetOutputSize()), packed);
    ASSERT_EQ(copy.Compress(data.data(), 20000, 0), 1);

    auto decompressor = std::make_unique<ZoDecompressLZMA>();
    ZoDecompressLZMA decompressorCopy(*decompressor);
    decompressor.reset();
    ASSERT_EQ(decompressorCopy.Decompress(packed.data(), static_cast<uint32_t>(packed.size())), 1);
    EXPECT_EQ(CodecTest::Copy(decompressorCopy.GetOutputBuffer(), decompressorCopy.GetOutputSize()), data);
}

} // namespace
