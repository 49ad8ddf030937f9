// The range coder, its quasi-static model and the predictive and floating-point streams on top of it
// (coded size against entropy is the benchmark's).
#include "base/ZoException.h"
#include "base/ZoExceptionPreconditionViolation.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"
#include "compression/ZoFloatingPointQuantizationLogarithmic.h"
#include "compression/ZoFloatingPointQuantizationUniform.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"

#include "ZoTestSupport.h"
#include "base/ZoContainerTestSupport.h"

#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
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


template <class To, class From>
To cast(From from)
{
    To to;
    std::memcpy(&to, &from, 4);
    return to;
}

TEST(ZoStreamPredictiveCoderTest, DifferencesBecomeMagnitudeSymbolsAndRawBits)
{
    struct Case { uint32_t n, value, prediction, symbol, k, raw; };
    const Case cases[] = {
        {32, 5, 5, 32, 0, 0},                            {32, 6, 5, 33, 0, 0},
        {32, 4, 5, 31, 0, 0},                            {32, 1000, 0, 42, 9, 488},
        {32, 0x80000000u, 0, 64, 31, 0},                 {32, 0xFFFFFFFFu, 0, 64, 31, 0x7FFFFFFF},
        {32, 0, 0x80000000u, 0, 31, 0},                  {32, 3, 0xFFFFFFFFu, 0, 31, 0x7FFFFFFC},
        {8, 255, 0, 16, 7, 127},                         {8, 0, 255, 0, 7, 127},
        {1, 1, 0, 2, 0, 0},                              {1, 0, 1, 0, 0, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(::testing::Message() << c.n << ": " << c.value << " for " << c.prediction);
        ZoStreamWriteBinaryMemory target;
        { ZoStreamWritePredictiveCoder writer(target, c.n, 64); writer.WriteValue(c.value, c.prediction); }
        {
            ZoStreamReadBinaryMemory source(target.GetBuffer());
            EXPECT_EQ(source.ReadAndCompareVersion(0), 0u);
            ZoDecompressRangeCoder decoder(source, 2 * c.n + 1);
            uint32_t symbol = 0;
            decoder >> symbol;
            EXPECT_EQ(symbol, c.symbol);
            EXPECT_EQ(decoder.ReadRawBits(c.k), c.raw);
        }
        ZoStreamReadBinaryMemory source(target.GetBuffer());
        ZoStreamReadPredictiveCoder reader(source, c.n);
        EXPECT_EQ(reader.ReadValue(c.prediction), c.value);
    }
    // No value at all: the version record and a block of only the final low.
    ZoStreamWriteBinaryMemory target;
    { ZoStreamWriteCompressedFloatingPoint writer(target, 0); }
    EXPECT_EQ(target.GetBuffer(), zotest::Bytes({0, 0, 0, 0, 0, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(ZoStreamPredictiveCoderTest, Quantizations)
{
    const ZoFloatingPointQuantizationUniform percent(0.0f, 1.0f, 100.0f);
    EXPECT_TRUE(percent.GetMaxValue() == 100u && percent.GetBitCount() == 7u);
    struct Case { float value; uint32_t mapped; };
    for (const Case& c : {Case{1.2f, 100}, Case{-0.3f, 0}, Case{0.5f, 50}, Case{0.005f, 1}, Case{0.304f, 30},
                          Case{0.306f, 31}, Case{std::numeric_limits<float>::infinity(), 0}}) {
        EXPECT_EQ(percent.Map(c.value), c.mapped) << c.value;
    }
    EXPECT_EQ(percent.Unmap(50), 0.5f);
    const ZoFloatingPointQuantizationUniform centred(-1.0f, 1.0f, 10.0f);
    EXPECT_TRUE(centred.GetMinValue() == -10 && centred.GetMaxValue() == 20u && centred.GetBitCount() == 5u);
    EXPECT_EQ(centred.Map(-0.05f), 10u); // -0.5 rounds up to 0
    EXPECT_EQ(centred.Unmap(0), -1.0f);
    EXPECT_EQ(ZoFloatingPointQuantizationUniform(2.0f, 2.0f, 1.0f).GetBitCount(), 1u);
    const ZoFloatingPointQuantizationLogarithmic<23, 8> lossless;
    EXPECT_EQ(lossless.Map(0.0f), 0x80000000u);
    EXPECT_EQ(lossless.Map(-0.0f), 0x7FFFFFFFu);
    const float inf = std::numeric_limits<float>::infinity();
    const float ordered[] = {-inf, -std::numeric_limits<float>::max(), -1.0f, -std::numeric_limits<float>::denorm_min(),
                             -0.0f, 0.0f, std::numeric_limits<float>::denorm_min(), std::numeric_limits<float>::min(),
                             1.0f, std::numeric_limits<float>::max(), inf};
    for (size_t i = 1; i < sizeof ordered / sizeof ordered[0]; ++i)
        EXPECT_LT(lossless.Map(ordered[i - 1]), lossless.Map(ordered[i])) << ordered[i];
}

// Floats with the previous value as prediction, special values among them, come back bit for
// bit; a uniform quantization brings them back to within half a step.
TEST(ZoStreamPredictiveCoderTest, FloatsRoundTrip)
{
    const unsigned seed = zotest::ModelTestSeed();
    std::mt19937 random(seed);
    std::vector<uint32_t> patterns = {0x00000000, 0x80000000, 0x00000001, 0x807FFFFF, 0x7F800000, 0xFF800000,
                                      0x7FC00000, 0x7F800001, 0xFFFFFFFF, 0x7FBADBAD, 0x3F800000};
    float smooth = 0;
    for (int i = 0; i < 20000; ++i) {
        smooth += std::sin(i * 0.01f) * 0.01f;
        patterns.push_back(i % 50 == 0 ? static_cast<uint32_t>(random()) : cast<uint32_t>(smooth));
    }
    ZoStreamWriteBinaryMemory target;
    const ZoFloatingPointQuantizationUniform grid(-10.0f, 10.0f, 1000.0f);
    {
        ZoStreamWriteCompressedFloatingPoint lossless(target, 4096);
        float previous = 0;
        for (uint32_t bits : patterns) {
            lossless.WriteValue(cast<float>(bits), previous);
            previous = cast<float>(bits);
        }
    }
    {
        ZoStreamWriteCompressedFloatingPoint quantized(target, *new ZoFloatingPointQuantizationUniform(grid), 1, 0);
        for (size_t i = 0; i < patterns.size(); i += 11)
            quantized.WriteValue(std::sin(i * 0.001f) * 9, 0.5f);
    }
    ZoStreamReadBinaryMemory source(target.GetBuffer());
    ZoStreamReadCompressedFloatingPoint lossless(source);
    float previous = 0;
    for (size_t i = 0; i < patterns.size(); ++i) {
        const float value = lossless.ReadValue(previous);
        ASSERT_EQ(cast<uint32_t>(value), patterns[i]) << "value " << i << ", seed " << seed;
        previous = value;
    }
    ZoStreamReadCompressedFloatingPoint quantized(source, const_cast<ZoFloatingPointQuantizationUniform&>(grid), 0);
    for (size_t i = 0; i < patterns.size(); i += 11)
        ASSERT_NEAR(quantized.ReadValue(0.5f), std::sin(i * 0.001f) * 9, 0.0006f) << i;
    EXPECT_EQ(source.GetRemaining(), 0u);
}

TEST(ZoStreamPredictiveCoderTest, DamagedDataThrowsTheLibrarysExceptions)
{
    ZoStreamWriteBinaryMemory target;
    {
        ZoStreamWriteCompressedFloatingPoint writer(target, 0);
        for (int i = 0; i < 500; ++i)
            writer.WriteValue(i * 0.25f, (i - 1) * 0.25f);
    }
    const Buffer data = target.GetBuffer();
    auto readAll = [](const Buffer& bytes) {
        ZoStreamReadBinaryMemory source(bytes);
        ZoStreamReadCompressedFloatingPoint reader(source);
        for (int i = 0; i < 500; ++i)
            reader.ReadValue((i - 1) * 0.25f);
    };
    for (size_t size = 0; size < data.size(); size += 3)
        EXPECT_THROW(readAll(Buffer(data.begin(), data.begin() + size)), ZoException) << size;
    Buffer newer = data;
    newer[0] = 1;
    EXPECT_THROW(readAll(newer), ZoException);
}

} // namespace
