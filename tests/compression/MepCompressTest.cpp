// The LZMA codec library's calling contract, entered directly through the OS layer as the LZMA
// classes enter it.
#include "platform/ZoOS.h"

#include "CodecTestSupport.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

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
        ASSERT_NE(m_compress, nullptr);
        ASSERT_NE(m_decompress, nullptr);
    }
    void TearDown() override
    {
        if (m_library != nullptr)
            ZoOS::FreeDynamicLibrary(m_library);
    }

    Bytes Compress(const Bytes& data)
    {
        Bytes output(data.size() + 1000);
        const unsigned char* input = data.data();
        unsigned char* target = output.data();
        uint32_t size = static_cast<uint32_t>(output.size());
        EXPECT_EQ(m_compress(&input, &target, static_cast<uint32_t>(data.size()), &size, 0), 0);
        output.resize(size);
        return output;
    }
    // The status of a size query; `size` receives the answer.
    int32_t SizeQuery(const Bytes& input, uint32_t& size)
    {
        const unsigned char* source = input.data();
        unsigned char* noBuffer = nullptr;
        size = 12345;
        return m_decompress(&source, &noBuffer, static_cast<uint32_t>(input.size()), &size, 0);
    }
    // Decompresses into `room` bytes followed by guard bytes that must survive.
    int32_t Decompress(const Bytes& input, uint32_t room, Bytes& output)
    {
        Bytes buffer(room + 64, 0xA5);
        const unsigned char* source = input.data();
        unsigned char* target = buffer.data();
        uint32_t size = room;
        const int32_t status = m_decompress(&source, &target, static_cast<uint32_t>(input.size()), &size, 0);
        EXPECT_TRUE(std::all_of(buffer.begin() + room, buffer.end(), [](unsigned char b) { return b == 0xA5; }));
        EXPECT_LE(size, room);
        output.assign(buffer.begin(), buffer.begin() + size);
        return status;
    }

    ZoOS::LibraryHandle m_library = nullptr;
    Entry m_compress = nullptr;
    Entry m_decompress = nullptr;
};

TEST_F(MepCompressTest, SizeQueryAnswersFromTheHeaderWithoutDecoding)
{
    const Bytes data = CodecTest::MixedBytes(100000, 6);
    Bytes packed = Compress(data);
    uint32_t size = 0;
    EXPECT_EQ(SizeQuery(packed, size), -1);
    EXPECT_EQ(size, 100000u);
    // The payload is not looked at: garbage behind a sound header still gets its answer.
    std::memset(packed.data() + 13, 0x77, packed.size() - 13);
    EXPECT_EQ(SizeQuery(packed, size), -1);
    EXPECT_EQ(size, 100000u);
    Bytes output;
    EXPECT_GT(Decompress(packed, size, output), 0);
}

// Neither entry writes past the room it is given; short of room, both fail and report 0 bytes.
TEST_F(MepCompressTest, NeitherEntryWritesPastItsRoom)
{
    const Bytes data = CodecTest::RandomBytes(50000, 2);
    for (uint32_t room : {0u, 12u, 13u, 100u, 49999u}) {
        SCOPED_TRACE(room);
        Bytes buffer(room + 64, 0xA5);
        const unsigned char* input = data.data();
        unsigned char* target = buffer.data();
        uint32_t size = room;
        EXPECT_GT(m_compress(&input, &target, 50000, &size, 0), 0);
        EXPECT_EQ(size, 0u);
        EXPECT_TRUE(std::all_of(buffer.begin() + room, buffer.end(), [](unsigned char b) { return b == 0xA5; }));
    }

    const Bytes packed = Compress(data);
    Bytes output;
    EXPECT_GT(Decompress(packed, 49999, output), 0);
    EXPECT_GT(Decompress(packed, 0, output), 0);
    EXPECT_EQ(Decompress(packed, 60000, output), 0);
    EXPECT_TRUE(output == data);
}

// Headers that cannot be true are damage, answered with a positive status (never the size
// query's -1), so that no caller allocates what the header claims.
TEST_F(MepCompressTest, ImpossibleHeadersAreDamagedInput)
{
    const Bytes sound = Compress(CodecTest::MixedBytes(3000, 1));
    const uint64_t payload = sound.size() - 13;
    auto withSize = [&](uint64_t size) {
        Bytes header = sound;
        for (int i = 0; i < 8; ++i)
            header[5 + i] = static_cast<unsigned char>(size >> (8 * i));
        return header;
    };
    auto withProperties = [&](unsigned char properties) {
        Bytes header = sound;
        header[0] = properties;
        return header;
    };
    Bytes headerOnly = withSize(1);
    headerOnly.resize(13);
    const std::pair<const char*, Bytes> cases[] = {
        {"empty", Bytes()},
        {"shorter than a header", Bytes(sound.begin(), sound.begin() + 12)},
        {"unknown size", withSize(UINT64_MAX)},
        {"size beyond 32 bits", withSize(UINT64_C(1) << 32)},
        {"more than the payload can hold", withSize(payload * 8192 + 1)},
        {"no payload but a size", headerOnly},
        {"properties past pb=4", withProperties(225)},
        {"lc + lp above 4", withProperties(4 * 9 + 1)},
    };
    for (const auto& [name, input] : cases) {
        SCOPED_TRACE(name);
        uint32_t size = 0;
        const int32_t status = SizeQuery(input, size);
        EXPECT_GT(status, 0);
        Bytes output;
        EXPECT_GT(Decompress(input, 4096, output), 0);
    }
    // The limit itself is still a size the query answers.
    uint32_t size = 0;
    EXPECT_EQ(SizeQuery(withSize(payload * 8192), size), -1);
    EXPECT_EQ(size, payload * 8192);
}

TEST_F(MepCompressTest, NullArgumentsAreRefused)
{
    const Bytes data = {1, 2, 3};
    const unsigned char* input = data.data();
    const unsigned char* noInput = nullptr;
    unsigned char buffer[100];
    unsigned char* target = buffer;
    uint32_t size = sizeof buffer;
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
    // There, but not a library.
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

} // namespace
