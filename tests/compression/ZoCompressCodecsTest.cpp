// The deflate (ZIP) and LZMA codec classes, and the codec library the LZMA classes load.
#include "compression/ZoCompressLZMA.h"
#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressLZMA.h"
#include "compression/ZoDecompressZIP.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"
#include "base/ZoException.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>

#if !defined(_WIN32)
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

// Tests of the LZMA data format itself (rather than of the calling contract) skip in builds whose
// codec library is the stand-in that stores instead of compressing.
#if defined(ZO_TEST_LZMA_STAND_IN)
#define ZO_REQUIRE_REAL_LZMA_CODEC()                                                                   \
    GTEST_SKIP() << "this build has no liblzma for its target and tests the calling contract with a stand-in codec"
#else
#define ZO_REQUIRE_REAL_LZMA_CODEC() static_cast<void>(0)
#endif

namespace {

typedef std::vector<unsigned char> Bytes;

Bytes RandomBytes(size_t size, uint32_t seed)
{
    std::mt19937 generator(seed);
    Bytes bytes(size);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(generator());
    return bytes;
}

// Alternating 64 KB stretches of word salad (compresses well) and random bytes (does not), so a
// round trip crosses both the codecs' match paths and their literal paths many times.
Bytes MixedBytes(size_t size, uint32_t seed)
{
    static const char* const s_words[] = {"alpha ", "beta ", "gamma ", "delta ", "archive ", "stream ",
                                          "codec ", "buffer ", "\n", "0123456789 "};
    std::mt19937 generator(seed);
    Bytes bytes;
    while (bytes.size() < size) {
        const char* word = s_words[generator() % 10];
        if ((bytes.size() >> 16) % 2 == 1)
            bytes.push_back(static_cast<unsigned char>(generator()));
        else
            bytes.insert(bytes.end(), word, word + std::strlen(word));
    }
    bytes.resize(size);
    return bytes;
}

Bytes Copy(const unsigned char* data, uint64_t size) { return data == nullptr ? Bytes() : Bytes(data, data + size); }

Bytes CompressZIP(const Bytes& data)
{
    ZoCompressZIP compressor;
    EXPECT_EQ(compressor.Compress(data.data(), static_cast<uint32_t>(data.size())), 1);
    return Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

Bytes Output(const ZoDecompressZIP& decompressor)
{
    return Copy(decompressor.GetOutputBuffer(), decompressor.GetOutputSize());
}

// Stored blocks (random data) must fit 12 + trunc(1.1 * size) bytes; one compressor makes every
// output, each call replacing the last; a copy's shared buffer outlives the original.
TEST(ZoCompressZIPTest, OutputFitsTheCapacityRoundTripsAndCopiesShareIt)
{
    EXPECT_EQ(CompressZIP({}), Bytes({0x78, 0x9C, 0x03, 0x00, 0x00, 0x00, 0x00, 0x01}));
    ZoCompressZIP compressor;
    for (uint32_t size : {0u, 1u, 2u, 11u, 12u, 13u, 100u, 16383u, 16384u, 65537u, 1000000u, 10u * 1024 * 1024}) {
        SCOPED_TRACE(size);
        const bool random = size != 0 && size < 10u * 1024 * 1024;
        const Bytes data = random ? RandomBytes(size, size) : MixedBytes(size, 7);
        ASSERT_EQ(compressor.Compress(data.data(), size), 1);
        const Bytes packed = Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
        EXPECT_LE(packed.size(), 12 + static_cast<size_t>(std::trunc(size * 1.1)));
        EXPECT_TRUE(random || size <= 1 || packed.size() < data.size());
        // An exact size and a generous one (the empty input's 1 is generous too): the output size
        // is what was produced.
        for (uint32_t room : {std::max(size, 1u), size + 100}) {
            ZoDecompressZIP decompressor;
            ASSERT_EQ(decompressor.Decompress(packed.data(), static_cast<uint32_t>(packed.size()), room), 1);
            EXPECT_EQ(decompressor.GetOutputSize(), size);
            EXPECT_TRUE(Output(decompressor) == data);
        }
    }
    auto copy = std::make_unique<ZoCompressZIP>(compressor);
    EXPECT_EQ(copy->GetOutputBuffer(), compressor.GetOutputBuffer());
    const Bytes expected = Copy(copy->GetOutputBuffer(), copy->GetOutputSize());
    ASSERT_EQ(compressor.Compress(expected.data(), 300), 1);
    EXPECT_TRUE(Copy(copy->GetOutputBuffer(), copy->GetOutputSize()) == expected);
    copy.reset();
    EXPECT_EQ(Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize()),
              CompressZIP(Bytes(expected.begin(), expected.begin() + 300)));
}

// A zero size keeps the earlier output; too small a size, every truncation, single-bit damage and
// plain noise fail with 0 and an empty object (or, for damage that changes nothing, give the data
// itself), never a crash or a read beyond the input.
TEST(ZoDecompressZIPTest, ZeroSizeKeepsTheOutputAndFailuresEmptyTheObject)
{
    const Bytes data = MixedBytes(200000, 3);
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
        // A flip in bits the format ignores (the padding of the last byte) decodes to the data itself.
        const Bytes exact(damaged);
        if (decompressor.Decompress(exact.data(), static_cast<uint32_t>(exact.size()), size) == 1)
            EXPECT_TRUE(Output(decompressor) == data);
        else
            EXPECT_TRUE(decompressor.GetOutputBuffer() == nullptr && decompressor.GetOutputSize() == 0u);
        expectFailure(RandomBytes(generator() % 5000, generator()), size);
    }
}

typedef int32_t (*Entry)(const unsigned char**, unsigned char**, uint32_t, uint32_t*, int32_t);
#if defined(_WIN32)
const char16_t sc_libraryPath[] = u"./MepCompress.dll";
#else
const char16_t sc_libraryPath[] = u"./libMepCompress.so";
#endif

// The codec library entered directly: the size query answers from the header alone, no entry writes
// past its room, and impossible headers are damage (never the size query's -1).
TEST(MepCompressTest, CallingContract)
{
    ZO_REQUIRE_REAL_LZMA_CODEC();
    const std::unique_ptr<void, void (*)(ZoOS::LibraryHandle)> library(ZoOS::LoadDynamicLibrary(sc_libraryPath),
                                                                       ZoOS::FreeDynamicLibrary);
    ASSERT_NE(library, nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u);
    const auto compress = reinterpret_cast<Entry>(ZoOS::GetDynamicEntry(library.get(), 1u));
    const auto decompress = reinterpret_cast<Entry>(ZoOS::GetDynamicEntry(library.get(), 2u));
    ASSERT_TRUE(compress != nullptr && decompress != nullptr);
    // `room` bytes of output (or a null buffer: the size query) followed by guard bytes that must survive.
    uint32_t size = 0;
    Bytes output;
    auto call = [&](Entry entry, const Bytes& input, uint32_t room, bool query = false) {
        Bytes buffer(room + 64, 0xA5);
        const unsigned char* source = input.data();
        unsigned char* target = query ? nullptr : buffer.data();
        size = room;
        const int32_t status = entry(&source, &target, static_cast<uint32_t>(input.size()), &size, 0);
        EXPECT_TRUE(std::all_of(buffer.begin() + room, buffer.end(), [](unsigned char b) { return b == 0xA5; }));
        output.assign(buffer.begin(), buffer.begin() + std::min(size, room));
        return status;
    };
    const Bytes data = RandomBytes(50000, 2);
    ASSERT_EQ(call(compress, data, 51000), 0);
    Bytes packed = output;
    for (uint32_t room : {0u, 12u, 13u, 100u, 49999u}) {
        EXPECT_TRUE(call(compress, data, room) > 0 && size == 0) << room;
        EXPECT_TRUE(call(decompress, packed, room) > 0 && size == 0) << room;
    }
    EXPECT_EQ(call(decompress, packed, 60000), 0);
    EXPECT_TRUE(output == data);
    std::memset(packed.data() + 13, 0x77, packed.size() - 13); // the payload is not looked at
    EXPECT_EQ(call(decompress, packed, 0, true), -1);
    EXPECT_EQ(size, 50000u);
    EXPECT_GT(call(decompress, packed, 50000), 0);
    ASSERT_EQ(call(compress, MixedBytes(3000, 1), 4000), 0);
    const Bytes sound = output;
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
        {"empty", Bytes()}, {"shorter than a header", Bytes(sound.begin(), sound.begin() + 12)},
        {"unknown size", with(UINT64_MAX)}, {"size beyond 32 bits", with(UINT64_C(1) << 32)},
        {"more than the payload can hold", with(payload * 8192 + 1)}, {"no payload but a size", headerOnly},
        {"properties past pb=4", with(3000, 225)}, {"lc + lp above 4", with(3000, 4 * 9 + 1)}};
    for (const auto& [name, input] : cases)
        EXPECT_TRUE(call(decompress, input, 0, true) > 0 && call(decompress, input, 4096) > 0) << name;
    EXPECT_EQ(call(decompress, with(payload * 8192), 0, true), -1) << "the limit itself is a size";
    EXPECT_EQ(size, payload * 8192);
    const unsigned char* input = sound.data();
    const unsigned char* noInput = nullptr;
    unsigned char buffer[100];
    unsigned char* target = buffer;
    size = sizeof buffer;
    for (Entry entry : {compress, decompress}) {
        EXPECT_GT(entry(nullptr, &target, 3, &size, 0), 0);
        EXPECT_GT(entry(&input, nullptr, 3, &size, 0), 0);
        EXPECT_GT(entry(&input, &target, 3, nullptr, 0), 0);
        EXPECT_GT(entry(&noInput, &target, 3, &size, 0), 0);
    }
}

// Both classes name the decompressor in their reports.
template <class Codec>
void ExpectConstructionThrows(const char* file, uint32_t line)
{
    zotest::ExpectThrowSite<ZoException>([] { Codec codec; }, file, "ZoDecompressLZMA", "ZoDecompressLZMA", line);
}

// No codec library, a file that is none, and a library without the two entries (zlib, which the
// process has loaded): the OS layer's last error and the constructors' throw sites.
TEST(ZoCompressLZMATest, MissingLibraryOrEntries)
{
#if defined(_WIN32)
    // Windows searches the program's folder too, which holds the codec library, and hands back a
    // library of that name that is already loaded: a missing one cannot be staged.
    GTEST_SKIP() << "Windows also searches the program's folder, which holds the codec library";
#endif
    zotest::ScopedCurrentFolder emptyFolder;
    EXPECT_EQ(ZoOS::LoadDynamicLibrary(sc_libraryPath), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), static_cast<uint32_t>(ENOENT));
    ExpectConstructionThrows<ZoCompressLZMA>("..\\compression\\ZoCompressLZMA.cpp", 49);
    ExpectConstructionThrows<ZoDecompressLZMA>("..\\compression\\ZoDecompressLZMA.cpp", 54);
    const std::string staged = emptyFolder.folder.Path("libMepCompress.so");
    std::ofstream(staged) << "not a library";
    EXPECT_EQ(ZoOS::LoadDynamicLibrary(sc_libraryPath), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), static_cast<uint32_t>(ENOEXEC));
    std::string zlib; // the process has loaded it, and Linux lists it in /proc/self/maps
    std::ifstream maps("/proc/self/maps");
    for (std::string line; zlib.empty() && std::getline(maps, line);)
        zlib = line.find("/libz.so") != std::string::npos ? line.substr(line.find('/')) : "";
    ASSERT_FALSE(zlib.empty());
    ZoOS::LibraryHandle library = ZoOS::LoadDynamicLibrary(zlib.c_str());
    ASSERT_NE(library, nullptr);
    EXPECT_NE(ZoOS::GetDynamicEntry(library, "zlibVersion"), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u);
    EXPECT_EQ(ZoOS::GetDynamicEntry(library, 1u), nullptr);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), static_cast<uint32_t>(ENOSYS));
    ZoOS::FreeDynamicLibrary(library);
    EXPECT_EQ(ZoOS::GetLastErrorCode(), 0u);
    std::filesystem::copy_file(zlib, staged, std::filesystem::copy_options::overwrite_existing);
    ExpectConstructionThrows<ZoCompressLZMA>("..\\compression\\ZoCompressLZMA.cpp", 56);
    ExpectConstructionThrows<ZoDecompressLZMA>("..\\compression\\ZoDecompressLZMA.cpp", 61);
}

Bytes CompressLZMA(const Bytes& data)
{
    ZoCompressLZMA compressor;
    EXPECT_EQ(compressor.Compress(data.data(), static_cast<uint32_t>(data.size()), 0), 1);
    return Copy(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

// The 64 MB of zeros are the densest input there is: their claimed size must stay within what the
// decoder believes a payload can expand to. Copies share the output and keep the library loaded.
TEST(ZoCompressLZMATest, HeaderRoundTripsAndCopies)
{
#if !defined(ZO_TEST_LZMA_STAND_IN)
    // lc=3 lp=0 pb=2, the smallest dictionary (4 KB), then the size as 8 little-endian bytes.
    const Bytes packedAbc = CompressLZMA({'a', 'b', 'c'});
    ASSERT_GT(packedAbc.size(), 13u);
    EXPECT_EQ(Bytes(packedAbc.begin(), packedAbc.begin() + 13), Bytes({0x5D, 0, 0x10, 0, 0, 3, 0, 0, 0, 0, 0, 0, 0}));
#endif
    auto compressor = std::make_unique<ZoCompressLZMA>();
    auto decompressor = std::make_unique<ZoDecompressLZMA>();
    Bytes data, packed;
    for (uint32_t size : {0u, 1u, 64u << 20, 10u << 20}) {
        SCOPED_TRACE(size);
        data = size == (64u << 20) ? Bytes(size, 0) : MixedBytes(size, 5);
        ASSERT_EQ(compressor->Compress(data.data(), size, 0), 1);
        packed = Copy(compressor->GetOutputBuffer(), compressor->GetOutputSize());
#if !defined(ZO_TEST_LZMA_STAND_IN)
        EXPECT_TRUE(size <= 1 || packed.size() < data.size());
#endif
        ASSERT_EQ(decompressor->Decompress(packed.data(), static_cast<uint32_t>(packed.size())), 1);
        EXPECT_EQ(decompressor->GetOutputSize(), size);
        EXPECT_TRUE(Copy(decompressor->GetOutputBuffer(), decompressor->GetOutputSize()) == data);
    }
    ZoCompressLZMA copy(*compressor);
    EXPECT_EQ(copy.GetOutputBuffer(), compressor->GetOutputBuffer());
    compressor.reset();
    EXPECT_TRUE(Copy(copy.GetOutputBuffer(), copy.GetOutputSize()) == packed);
    EXPECT_EQ(copy.Compress(data.data(), 20000, 0), 1);
    ZoDecompressLZMA decompressorCopy(*decompressor);
    decompressor.reset();
    ASSERT_EQ(decompressorCopy.Decompress(packed.data(), static_cast<uint32_t>(packed.size())), 1);
    EXPECT_TRUE(Copy(decompressorCopy.GetOutputBuffer(), decompressorCopy.GetOutputSize()) == data);
}

// An output buffer that cannot be had fails the call: a child caps its address space first (not in
// sanitizer builds, which reserve terabytes of it).
#if !defined(_WIN32) && !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
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

// A failed size query keeps the earlier output; truncations and noise end in 0, never a crash, a
// hang or an overrun; a payload that does not decode keeps the new buffer with an output size of 0.
TEST(ZoDecompressLZMATest, FailuresAndDamagedInput)
{
    const Bytes data = MixedBytes(150000, 4), packed = CompressLZMA(data);
    ZoDecompressLZMA decompressor;
    auto decompress = [&](const Bytes& input) {
        const Bytes exact(input); // an exact-size copy: the sanitizer build catches a read past its end
        return decompressor.Decompress(exact.data(), static_cast<uint32_t>(exact.size()));
    };
    auto output = [&] { return Copy(decompressor.GetOutputBuffer(), decompressor.GetOutputSize()); };
    ASSERT_EQ(decompress(packed), 1);
    const unsigned char* earlier = decompressor.GetOutputBuffer();
    Bytes unknownSize = packed;
    std::memset(unknownSize.data() + 5, 0xFF, 8);
    for (const Bytes& input : {Bytes(), Bytes(packed.begin(), packed.begin() + 12), unknownSize}) {
        EXPECT_EQ(decompress(input), 0);
        EXPECT_TRUE(decompressor.GetOutputBuffer() == earlier && output() == data);
    }
    for (size_t length = 0; length < packed.size(); length += 1 + length / 16)
        EXPECT_EQ(decompress(Bytes(packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(length))), 0) << length;
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 generator(seed);
    for (int trial = 0; trial < 100; ++trial) {
        SCOPED_TRACE(trial);
        EXPECT_EQ(decompress(RandomBytes(generator() % 5000, generator())), 0);
        // A sound header over noise gets past the size query into the decoder itself; LZMA has
        // no checksum, so noise may decode, but only to exactly the size the header gives.
        Bytes noise = RandomBytes(14 + generator() % 3000, generator());
        std::memcpy(noise.data(), packed.data(), 5);
        const uint32_t claimed = generator() % 20000;
        for (int i = 0; i < 8; ++i)
            noise[5 + i] = static_cast<unsigned char>(static_cast<uint64_t>(claimed) >> (8 * i));
        noise[13] = 0;
        EXPECT_TRUE(decompress(noise) == 0 || decompressor.GetOutputSize() == claimed) << claimed;
    }
    ZO_REQUIRE_REAL_LZMA_CODEC();
    Bytes damaged = packed;
    damaged[13] = 0x80; // the range coder's first byte is always 0
    EXPECT_EQ(decompress(damaged), 0);
    EXPECT_TRUE(decompressor.GetOutputBuffer() != nullptr && decompressor.GetOutputSize() == 0);
    // Data from another encoder that ends with an end marker although its header gives the size.
    const Bytes foreign = {
        0x5D, 0x00, 0x00, 0x04, 0x00, 0x4C, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x2D, 0x1B, 0xC0, 0x06,
        0x33, 0xB6, 0xA2, 0x0B, 0x37, 0x16, 0x6B, 0x6D, 0x6A, 0x5F, 0x84, 0x8F, 0x3D, 0xF5, 0xCA, 0x43, 0xBD, 0xA5,
        0xE9, 0xA1, 0x9B, 0xA8, 0xE9, 0x92, 0x11, 0x5D, 0x32, 0xD1, 0x67, 0x95, 0x6B, 0x1B, 0xAA, 0xE3, 0xCD, 0xE2,
        0x0C, 0x47, 0xA7, 0xB3, 0xD2, 0x21, 0xA8, 0xBE, 0x4F, 0xF7, 0x87, 0x0B, 0x78, 0xB3, 0xFC, 0xDB, 0x1A, 0xF0,
        0xD0, 0x4B, 0x8F, 0xFB, 0x1A, 0x9C, 0xE8, 0x89, 0x0E, 0x3C, 0x97, 0x4A, 0xFF, 0xE1, 0x64, 0xB8, 0x00};
    ASSERT_EQ(decompress(foreign), 1);
    EXPECT_EQ(std::string(decompressor.GetOutputBuffer(), decompressor.GetOutputBuffer() + decompressor.GetOutputSize()),
              "Zo codec test: the end marker is accepted where the size says the data ends.");
}

} // namespace
