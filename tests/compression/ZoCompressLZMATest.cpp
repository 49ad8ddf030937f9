// The LZMA classes and the codec library they load: its calling contract entered directly, the
// header, round trips, what a failed call leaves behind, and damaged input.
#include "compression/ZoCompressLZMA.h"
#include "compression/ZoDecompressLZMA.h"
#include "platform/ZoOS.h"

#include "CodecTestSupport.h"
#include "base/ZoException.h"

#include <cerrno>
#include <cstring>
#include <memory>

#if !defined(_WIN32)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

using CodecTest::Bytes;

namespace {

typedef int32_t (*Entry)(const unsigned char**, unsigned char**, uint32_t, uint32_t*, int32_t);
#if defined(_WIN32)
const char16_t sc_libraryPath[] = u"./MepCompress.dll";
#else
const char16_t sc_libraryPath[] = u"./libMepCompress.so";
#endif

class MepCompressTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        ZO_REQUIRE_REAL_LZMA_CODEC();
        m_library = ZoOS::LoadDynamicLibrary(sc_libraryPath);
        ASSERT_NE(m_library, nullptr);
        EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u);
        m_compress = reinterpret_cast<Entry>(ZoOS::GetDynamicEntry(m_library, 1u));
        m_decompress = reinterpret_cast<Entry>(ZoOS::GetDynamicEntry(m_library, 2u));
        ASSERT_TRUE(m_compress != nullptr && m_decompress != nullptr);
    }
    void TearDown() override
    {
        if (m_library != nullptr)
            ZoOS::FreeDynamicLibrary(m_library);
    }
    // Calls `entry` with `room` bytes of output (or a null buffer: the size query) followed by
    // guard bytes that must survive; `size` and `output` receive what it reports.
    int32_t Call(Entry entry, const Bytes& input, uint32_t room, uint32_t& size, Bytes& output, bool query = false)
    {
        Bytes buffer(room + 64, 0xA5);
        const unsigned char* source = input.data();
        unsigned char* target = query ? nullptr : buffer.data();
        size = room;
        const int32_t status = entry(&source, &target, static_cast<uint32_t>(input.size()), &size, 0);
        EXPECT_TRUE(std::all_of(buffer.begin() + room, buffer.end(), [](unsigned char b) { return b == 0xA5; }));
        output.assign(buffer.begin(), buffer.begin() + std::min(size, room));
        return status;
    }

    ZoOS::LibraryHandle m_library = nullptr;
    Entry m_compress = nullptr;
    Entry m_decompress = nullptr;
};

// The size query answers from the header alone; neither entry writes past its room, and short of
// room both fail and report 0 bytes.
TEST_F(MepCompressTest, SizeQueryAndRoom)
{
    const Bytes data = CodecTest::RandomBytes(50000, 2);
    Bytes packed, output;
    uint32_t size = 0;
    ASSERT_EQ(Call(m_compress, data, 51000, size, packed), 0);
    for (uint32_t room : {0u, 12u, 13u, 100u, 49999u}) {
        SCOPED_TRACE(room);
        EXPECT_GT(Call(m_compress, data, room, size, output), 0);
        EXPECT_EQ(size, 0u);
        EXPECT_GT(Call(m_decompress, packed, room, size, output), 0);
        EXPECT_EQ(size, 0u);
    }
    EXPECT_EQ(Call(m_decompress, packed, 60000, size, output), 0);
    EXPECT_TRUE(output == data);
    std::memset(packed.data() + 13, 0x77, packed.size() - 13); // the payload is not looked at
    EXPECT_EQ(Call(m_decompress, packed, 0, size, output, true), -1);
    EXPECT_EQ(size, 50000u);
    EXPECT_GT(Call(m_decompress, packed, 50000, size, output), 0);
}

// Headers that cannot be true are damage, answered with a positive status (never the size
// query's -1), so that no caller allocates what the header claims.
TEST_F(MepCompressTest, ImpossibleHeadersAndNullArgumentsAreRefused)
{
    Bytes sound, output;
    uint32_t size = 0;
    ASSERT_EQ(Call(m_compress, CodecTest::MixedBytes(3000, 1), 4000, size, sound), 0);
    const uint64_t payload = sound.size() - 13;
    auto with = [&](uint64_t claimed, unsigned char properties = 0x5D) {
        Bytes header = sound;
        header[0] = properties;
        for (int i = 0; i < 8; ++i)
            header[5 + i] = static_cast<unsigned char>(claimed >> (8 * i));
        return header;
    };
    Bytes headerOnly = with(1);
    headerOnly.resize(13);
    const std::pair<const char*, Bytes> cases[] = {
        {"empty", Bytes()},
        {"shorter than a header", Bytes(sound.begin(), sound.begin() + 12)},
        {"unknown size", with(UINT64_MAX)},
        {"size beyond 32 bits", with(UINT64_C(1) << 32)},
        {"more than the payload can hold", with(payload * 8192 + 1)},
        {"no payload but a size", headerOnly},
        {"properties past pb=4", with(3000, 225)},
        {"lc + lp above 4", with(3000, 4 * 9 + 1)},
    };
    for (const auto& [name, input] : cases) {
        SCOPED_TRACE(name);
        EXPECT_GT(Call(m_decompress, input, 0, size, output, true), 0);
        EXPECT_GT(Call(m_decompress, input, 4096, size, output), 0);
    }
    EXPECT_EQ(Call(m_decompress, with(payload * 8192), 0, size, output, true), -1) << "the limit itself is a size";
    EXPECT_EQ(size, payload * 8192);

    const unsigned char* input = sound.data();
    const unsigned char* noInput = nullptr;
    unsigned char buffer[100];
    unsigned char* target = buffer;
    size = sizeof buffer;
    for (Entry entry : {m_compress, m_decompress}) {
        EXPECT_GT(entry(nullptr, &target, 3, &size, 0), 0);
        EXPECT_GT(entry(&input, nullptr, 3, &size, 0), 0);
        EXPECT_GT(entry(&input, &target, 3, nullptr, 0), 0);
        EXPECT_GT(entry(&noInput, &target, 3, &size, 0), 0);
    }
}

TEST(ZoOSLibraryTest, LoadingAndLookupSetTheLastError)
{
    ZO_REQUIRE_LIBRARY_SEARCH_BY_PATH_ONLY();
    CodecTest::ScopedCurrentFolder emptyFolder;
    EXPECT_EQ(ZoOS::LoadDynamicLibrary(sc_libraryPath), nullptr);
    EXPECT_NE(ZoOS::GetLastErrorCode(), 0u);
#if !defined(_WIN32)
    EXPECT_EQ(ZoOS::GetLastErrorCode(), static_cast<uint32_t>(ENOENT));
    std::ofstream(emptyFolder.Folder() / "libMepCompress.so") << "not a library";
    EXPECT_EQ(ZoOS::LoadDynamicLibrary(sc_libraryPath), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), static_cast<uint32_t>(ENOEXEC));

    const std::string zlib = CodecTest::LoadedLibraryPath("/libz.so");
    ASSERT_FALSE(zlib.empty());
    ZoOS::LibraryHandle library = ZoOS::LoadDynamicLibrary(zlib.c_str());
    ASSERT_NE(library, nullptr);
    EXPECT_NE(ZoOS::GetDynamicEntry(library, "zlibVersion"), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u);
    EXPECT_EQ(ZoOS::GetDynamicEntry(library, 1u), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), static_cast<uint32_t>(ENOSYS));
    ZoOS::FreeDynamicLibrary(library);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u);
#endif
}

Bytes CompressLZMA(const Bytes& data)
{
    ZoCompressLZMA compressor;
    EXPECT_EQ(compressor.Compress(data.data(), static_cast<uint32_t>(data.size()), 0), 1);
    return CodecTest::Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

// Both classes name the decompressor in their reports.
template <class Codec>
void ExpectConstructionThrows(const char* file, uint32_t line)
{
    zotest::ExpectThrowSite<ZoException>([] { Codec codec; }, file, "ZoDecompressLZMA", "ZoDecompressLZMA", line);
}

TEST(ZoCompressLZMATest, ConstructorsThrowWithoutTheCodecLibraryOrItsEntries)
{
    ZO_REQUIRE_LIBRARY_SEARCH_BY_PATH_ONLY();
    CodecTest::ScopedCurrentFolder emptyFolder;
    ExpectConstructionThrows<ZoCompressLZMA>("..\\compression\\ZoCompressLZMA.cpp", 49);
    ExpectConstructionThrows<ZoDecompressLZMA>("..\\compression\\ZoDecompressLZMA.cpp", 54);
    // Any loadable library without the two entries will do: zlib, which the process has loaded.
    const std::string zlib = CodecTest::LoadedLibraryPath("/libz.so");
    ASSERT_FALSE(zlib.empty());
    std::filesystem::copy_file(zlib, emptyFolder.Folder() / "libMepCompress.so");
    ExpectConstructionThrows<ZoCompressLZMA>("..\\compression\\ZoCompressLZMA.cpp", 56);
    ExpectConstructionThrows<ZoDecompressLZMA>("..\\compression\\ZoDecompressLZMA.cpp", 61);
}

// The 64 MB of zeros are the densest input there is: their claimed size must stay within what the
// decoder believes a payload can expand to, or valid data would be refused as damaged.
TEST(ZoCompressLZMATest, HeaderAndRoundTrips)
{
#if !defined(ZO_TEST_LZMA_STAND_IN)
    // lc=3 lp=0 pb=2, the smallest dictionary (4 KB), then the size as 8 little-endian bytes.
    const Bytes header = {0x5D, 0x00, 0x10, 0x00, 0x00, 0x03, 0, 0, 0, 0, 0, 0, 0};
    const Bytes packed = CompressLZMA({'a', 'b', 'c'});
    ASSERT_GT(packed.size(), header.size());
    EXPECT_EQ(Bytes(packed.begin(), packed.begin() + 13), header);
#endif
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
    EXPECT_EQ(CodecTest::Copy(copy.GetOutputBuffer(), copy.GetOutputSize()), packed);
    ASSERT_EQ(copy.Compress(data.data(), 20000, 0), 1);

    auto decompressor = std::make_unique<ZoDecompressLZMA>();
    ZoDecompressLZMA decompressorCopy(*decompressor);
    decompressor.reset();
    ASSERT_EQ(decompressorCopy.Decompress(packed.data(), static_cast<uint32_t>(packed.size())), 1);
    EXPECT_EQ(CodecTest::Copy(decompressorCopy.GetOutputBuffer(), decompressorCopy.GetOutputSize()), data);
}

#if !defined(_WIN32) && !defined(ZO_TEST_SANITIZED)
// An output buffer that cannot be had fails the call: a child caps its address space first.
TEST(ZoCompressLZMATest, AnOutputBufferThatCannotBeAllocatedFails)
{
    ZoCompressLZMA compressor;
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        long pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlim_t cap = static_cast<rlim_t>(pages) * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + (rlim_t(256) << 20);
        const rlimit limit = {cap, cap};
        // The size is all that is read before the allocation fails.
        _exit(setrlimit(RLIMIT_AS, &limit) != 0 ? 2 : compressor.Compress(nullptr, 1u << 30, 0));
    }
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
}
#endif

class ZoDecompressLZMATest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_data = CodecTest::MixedBytes(150000, 4);
        m_packed = CompressLZMA(m_data);
    }
    int Decompress(const Bytes& input)
    {
        const Bytes exact(input); // an exact-size copy: the sanitizer build catches a read past its end
        return m_decompressor.Decompress(exact.data(), static_cast<uint32_t>(exact.size()));
    }
    Bytes Output() const { return CodecTest::Copy(m_decompressor.GetOutputBuffer(), m_decompressor.GetOutputSize()); }

    Bytes m_data;
    Bytes m_packed;
    ZoDecompressLZMA m_decompressor;
};

// A failed size query keeps the earlier output; a header that sizes fine over a payload that does
// not decode keeps the new buffer, partly written, with an output size of 0.
TEST_F(ZoDecompressLZMATest, WhatAFailedCallLeaves)
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
    ZO_REQUIRE_REAL_LZMA_CODEC();
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
    ASSERT_EQ(Decompress(packed), 1);
    const Bytes output = Output();
    EXPECT_EQ(std::string(output.begin(), output.end()),
              "Zo codec test: the end marker is accepted where the size says the data ends.");
}

// Truncations and noise all end in 0, never a crash, a hang or an overrun.
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
        const uint32_t expected = Decompress(noise) == 1 ? claimed : 0u;
        EXPECT_EQ(m_decompressor.GetOutputSize(), expected);
    }
}

} // namespace
