// The range coder and its quasi-static model: block format, rebuild schedule, randomized round
// trips against a recorded script, damaged blocks (coded size against entropy is the benchmark's).
#include "base/ZoExceptionPreconditionViolation.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"

#include "ZoTestSupport.h"
#include "base/ZoContainerTestSupport.h"

#include <functional>
#include <random>

namespace {

using Buffer = std::vector<unsigned char>;
using Model = ZoProbabilityModelQuasiStatic;

void expectStreamError(const std::function<void()>& action, const char* method)
{
    try {
        action();
        ADD_FAILURE() << "no exception from " << method;
    } catch (const ZoExceptionStream& e) {
        EXPECT_EQ(e.GetThrowingClassName().ToUtf8(), "ZoDecompressRangeCoder");
        EXPECT_EQ(e.GetThrowingMethodName().ToUtf8(), method);
        const uint32_t line = e.GetCodeLine();
        EXPECT_TRUE(std::string(method) == "Initialize" ? line == 93 : line == 141 || line == 160) << line;
    }
}

// An empty block is the version, the count and the final low; a block beyond the decoder's first
// 1 MB read arrives in several reads.
TEST(ZoCompressRangeCoderTest, EmptyAndLargeBlocks)
{
    ZoStreamWriteBinaryMemory empty;
    { ZoCompressRangeCoder coder(empty, 256, 0); }
    EXPECT_EQ(empty.GetBuffer(), zotest::Bytes({0, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0}));
    std::independent_bits_engine<std::mt19937, 8, unsigned> random(zotest::ModelTestSeed());
    Buffer raw(2500000);
    std::generate(raw.begin(), raw.end(), std::ref(random));
    ZoStreamWriteBinaryMemory target;
    { ZoCompressRangeCoder coder(target, 2, 0); coder.WriteRaw(raw.data(), static_cast<uint32_t>(raw.size())); }
    ZoStreamReadBinaryMemory source(target.GetBuffer());
    ZoDecompressRangeCoder decoder(source, 2);
    Buffer back(raw.size());
    decoder.ReadRaw(back.data(), back.size());
    EXPECT_TRUE(back == raw);
}

TEST(ZoCompressRangeCoderTest, ModelPreconditionAndRebuildSchedule)
{
    struct Case { uint32_t symbols, bits, period; bool valid; };
    for (const Case& c : {Case{2, 16, 1024, true}, Case{16384, 16, 1024, true}, Case{16385, 16, 1024, false},
                          Case{1, 16, 1024, false}, Case{4, 17, 1024, false}, Case{4, 4, 31, true},
                          Case{4, 16, 131071, true}, Case{4, 16, 131072, false}, Case{5, 4, 8, false}}) {
        SCOPED_TRACE(c.symbols);
        try {
            Model model(c.symbols, c.bits, c.period);
            EXPECT_TRUE(c.valid);
        } catch (const ZoExceptionPreconditionViolation& e) {
            EXPECT_FALSE(c.valid);
            EXPECT_EQ(e.GetThrowingMethodName().ToUtf8(), "ZoProbabilityModelQuasiStatic");
            EXPECT_EQ(e.GetCodeLine(), 56u);
        }
    }
    // 256 symbols of 16 bits: counts of 256; the first period is 32 updates, each adding 1024 to
    // the halved count of 128, so the rebuilt table gives symbol 0 exactly 128 + 32 * 1024.
    Model model(256, 16, 1024);
    uint32_t low = 0, frequency = 0;
    for (int i = 0; i < 32; ++i) {
        model.GetFrequencies(0, low, frequency);
        EXPECT_EQ(frequency, 256u);
    }
    model.GetFrequencies(1, low, frequency);
    EXPECT_TRUE(low == 32896u && frequency == 128u) << low << " " << frequency;
    uint32_t target = 70000;
    EXPECT_EQ(model.GetSymbol(target, frequency), 255u);
    EXPECT_EQ(target + frequency, 65536u);
}

// One coded operation of the script: which kind, with what model or width, and the value.
struct Step
{
    int kind; // 0 own-model symbol, 1 symbol of a side model, 2 raw bits, 3 raw bytes, 4 double, 5 char
    uint32_t width;
    uint32_t value;
};

TEST(ZoCompressRangeCoderTest, RandomScriptsRoundTrip)
{
    const unsigned seed = zotest::ModelTestSeed();
    std::mt19937 random(seed);
    for (uint32_t symbols : {2u, 3u, 17u, 256u, 1000u, 16384u}) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed << ", alphabet " << symbols);
        // Skewed symbols, so the model moves away from uniform; side models of other sizes.
        std::geometric_distribution<uint32_t> skewed(symbols > 64 ? 0.01 : 0.3);
        std::vector<Step> script;
        for (int i = 0; i < 60000; ++i) {
            const int kind = i % 7 < 3 ? 0 : static_cast<int>(random() % 6);
            const uint32_t width = kind == 1 ? random() % 2 : kind == 2 ? 1 + random() % 32 : 0;
            uint32_t value = kind == 0 ? skewed(random) % symbols : static_cast<uint32_t>(random());
            if (kind == 1)
                value %= width == 0 ? 2 : 5000;
            if (kind == 5)
                value %= std::min(symbols, 128u);
            script.push_back({kind, width, value});
        }
        auto sideModels = [] {
            return std::vector<ZoSmartPointer<Model>>{new Model(2, 16, 1024), new Model(5000, 16, 1024)};
        };
        ZoStreamWriteBinaryMemory target;
        {
            ZoCompressRangeCoder coder(target, symbols, 16);
            const auto side = sideModels();
            for (const Step& s : script) {
                const uint32_t raw = s.value;
                switch (s.kind) {
                case 0: coder << s.value; break;
                case 1: coder.WriteSymbol(s.value, *side[s.width]); break;
                case 2: coder.WriteRawBits(s.value, s.width); break;
                case 3: coder.WriteRaw(&raw, 3); break;
                case 4: coder << static_cast<double>(s.value) / 7; break;
                default: coder << static_cast<char>(s.value); break;
                }
            }
        }
        ZoStreamReadBinaryMemory source(target.GetBuffer());
        ZoDecompressRangeCoder decoder(source, symbols);
        const auto side = sideModels();
        for (size_t i = 0; i < script.size(); ++i) {
            const Step& s = script[i];
            uint32_t got = 0;
            switch (s.kind) {
            case 0: decoder >> got; break;
            case 1: got = decoder.ReadSymbol(*side[s.width]); break;
            case 2: got = decoder.ReadRawBits(s.width); break;
            case 3: decoder.ReadRaw(&got, 3); break;
            case 4: { double d = 0; decoder >> d; got = d == static_cast<double>(s.value) / 7 ? s.value : ~s.value; break; }
            default: { char c = 0; decoder >> c; got = static_cast<uint32_t>(c); break; }
            }
            const uint32_t expected = s.kind == 2 && s.width < 32 ? s.value & ((1u << s.width) - 1)
                                      : s.kind == 3 ? s.value & 0xFFFFFF : s.value;
            ASSERT_EQ(got, expected) << "step " << i << ", kind " << s.kind;
        }
        EXPECT_EQ(source.GetRemaining(), 0u);
        // Nothing more was coded: the block runs out.
        expectStreamError([&] { unsigned char extra[16]; decoder.ReadRaw(extra, sizeof extra); }, "normalize");
    }
}

TEST(ZoCompressRangeCoderTest, DamagedBlocksThrowStreamExceptions)
{
    ZoStreamWriteBinaryMemory target;
    {
        ZoCompressRangeCoder coder(target, 300, 0);
        for (uint32_t i = 0; i < 2000; ++i)
            coder << (i * i) % 300;
    }
    const Buffer block = target.GetBuffer();
    auto decodeAll = [](const Buffer& bytes) {
        ZoStreamReadBinaryMemory source(bytes);
        ZoDecompressRangeCoder decoder(source, 300);
        for (uint32_t i = 0; i < 2000; ++i) {
            uint32_t symbol = 0;
            decoder >> symbol;
        }
        unsigned char rest[64];
        decoder.ReadRaw(rest, sizeof rest);
    };
    // Cut anywhere: short headers fail in the scalar reads, short blocks in Initialize.
    for (size_t size = 0; size < 12; ++size)
        EXPECT_ANY_THROW(decodeAll(Buffer(block.begin(), block.begin() + size))) << size;
    for (size_t size = 12; size < block.size(); size += 7)
        expectStreamError([&] { decodeAll(Buffer(block.begin(), block.begin() + size)); }, "Initialize");
    for (uint32_t count : {0u, 3u})
        expectStreamError([&] { decodeAll(zotest::Bytes({0, 0, 0, 0, int(count), 0, 0, 0, 1, 2, 3})); }, "Initialize");
    // A block with a shortened count, and blocks of noise: all run out of bytes sooner or later.
    Buffer shortened = block;
    shortened[4] = static_cast<unsigned char>(block.size() / 2 - 8);
    shortened[5] = static_cast<unsigned char>((block.size() / 2 - 8) >> 8);
    expectStreamError([&] { decodeAll(shortened); }, "normalize");
    std::mt19937 random(zotest::ModelTestSeed());
    for (int trial = 0; trial < 300; ++trial) {
        Buffer noise = zotest::Bytes({0, 0, 0, 0, 4 + int(random() % 200), 0, 0, 0});
        while (noise.size() < 8u + noise[4])
            noise.push_back(static_cast<unsigned char>(random()));
        expectStreamError([&] { decodeAll(noise); }, "normalize");
    }
}

} // namespace
