// Predictive coding and the floating-point streams: the symbols and raw bits each difference
// becomes (read back with a bare range decoder), the two quantizations against literal values,
// bit-exact float round trips through the lossless mapping, and damaged data.
#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoDecompressRangeCoder.h"
#include "compression/ZoFloatingPointQuantizationLogarithmic.h"
#include "compression/ZoFloatingPointQuantizationUniform.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"

#include "ZoTestSupport.h"
#include "base/ZoContainerTestSupport.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <random>

namespace {

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
    EXPECT_EQ(percent.GetMaxValue(), 100u);
    EXPECT_EQ(percent.GetBitCount(), 7u);
    struct Case { float value; uint32_t mapped; };
    for (const Case& c : {Case{1.2f, 100}, Case{-0.3f, 0}, Case{0.5f, 50}, Case{0.005f, 1}, Case{0.304f, 30},
                          Case{0.306f, 31}, Case{std::numeric_limits<float>::infinity(), 0}}) {
        EXPECT_EQ(percent.Map(c.value), c.mapped) << c.value;
    }
    EXPECT_EQ(percent.Unmap(50), 0.5f);
    const ZoFloatingPointQuantizationUniform centred(-1.0f, 1.0f, 10.0f);
    EXPECT_EQ(centred.GetMinValue(), -10);
    EXPECT_EQ(centred.GetMaxValue(), 20u);
    EXPECT_EQ(centred.GetBitCount(), 5u);
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
    const std::vector<unsigned char> data = target.GetBuffer();
    auto readAll = [](const std::vector<unsigned char>& bytes) {
        ZoStreamReadBinaryMemory source(bytes);
        ZoStreamReadCompressedFloatingPoint reader(source);
        for (int i = 0; i < 500; ++i)
            reader.ReadValue((i - 1) * 0.25f);
    };
    for (size_t size = 0; size < data.size(); size += 3)
        EXPECT_THROW(readAll(std::vector<unsigned char>(data.begin(), data.begin() + size)), ZoException) << size;
    std::vector<unsigned char> newer = data;
    newer[0] = 1;
    EXPECT_THROW(readAll(newer), ZoException);
}

} // namespace
