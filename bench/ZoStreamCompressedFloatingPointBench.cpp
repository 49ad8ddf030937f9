// The compressed floating-point streams on a smooth 1024 x 1024 float field (4 MB), each value
// predicted from its left, upper and upper-left neighbours, beside zlib (level 6) and xz (preset 6)
// on the same bytes: compression ratio and speed. All three are exact.
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"

#include <benchmark/benchmark.h>
#include <lzma.h>
#include <zlib.h>

#include <cmath>
#include <cstring>
#include <vector>

namespace {

const uint32_t kSide = 1024;

const std::vector<float>& field()
{
    static const std::vector<float> values = [] {
        std::vector<float> data(kSide * kSide);
        for (uint32_t y = 0; y < kSide; ++y)
            for (uint32_t x = 0; x < kSide; ++x)
                data[y * kSide + x] = 100.0f + 20.0f * std::sin(x * 0.011f) * std::cos(y * 0.007f) +
                                      5.0f * std::sin((x + 2.0f * y) * 0.003f);
        return data;
    }();
    return values;
}

const size_t kBytes = kSide * kSide * sizeof(float);

// The value predicted for (x, y) from neighbours already coded; the reader computes the same.
float predict(const float* values, uint32_t x, uint32_t y)
{
    if (y == 0)
        return x == 0 ? 0.0f : values[x - 1];
    const float up = values[(y - 1) * kSide + x];
    if (x == 0)
        return up;
    return values[y * kSide + x - 1] + up - values[(y - 1) * kSide + x - 1];
}

std::vector<unsigned char> encodeField(const std::vector<float>& data)
{
    ZoStreamWriteBinaryMemory target;
    {
        ZoStreamWriteCompressedFloatingPoint writer(target, static_cast<uint32_t>(kBytes / 2));
        for (uint32_t y = 0; y < kSide; ++y)
            for (uint32_t x = 0; x < kSide; ++x)
                writer.WriteValue(data[y * kSide + x], predict(data.data(), x, y));
    }
    return target.GetBuffer();
}

const unsigned char* fieldBytes() { return reinterpret_cast<const unsigned char*>(field().data()); }

} // namespace

static void ZoStreamCompressedFloatingPointEncode(benchmark::State& state)
{
    size_t coded = 0;
    for (auto _ : state)
        coded = encodeField(field()).size();
    state.SetBytesProcessed(state.iterations() * kBytes);
    state.counters["ratio"] = double(kBytes) / coded;
}
BENCHMARK(ZoStreamCompressedFloatingPointEncode)->Unit(benchmark::kMillisecond);

static void ZoStreamCompressedFloatingPointDecode(benchmark::State& state)
{
    const std::vector<unsigned char> coded = encodeField(field());
    std::vector<float> decoded(kSide * kSide);
    for (auto _ : state) {
        ZoStreamReadBinaryMemory source(coded);
        ZoStreamReadCompressedFloatingPoint reader(source);
        for (uint32_t y = 0; y < kSide; ++y)
            for (uint32_t x = 0; x < kSide; ++x)
                decoded[y * kSide + x] = reader.ReadValue(predict(decoded.data(), x, y));
        benchmark::DoNotOptimize(decoded.data());
    }
    if (std::memcmp(decoded.data(), field().data(), kBytes) != 0)
        state.SkipWithError("decoded field differs");
    state.SetBytesProcessed(state.iterations() * kBytes);
}
BENCHMARK(ZoStreamCompressedFloatingPointDecode)->Unit(benchmark::kMillisecond);

static void ZlibLevel6Compress(benchmark::State& state)
{
    std::vector<unsigned char> packed(compressBound(kBytes));
    uLongf size = 0;
    for (auto _ : state) {
        size = packed.size();
        if (compress2(packed.data(), &size, fieldBytes(), kBytes, 6) != Z_OK)
            state.SkipWithError("zlib failed");
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
    state.counters["ratio"] = double(kBytes) / size;
}
BENCHMARK(ZlibLevel6Compress)->Unit(benchmark::kMillisecond);

static void ZlibLevel6Uncompress(benchmark::State& state)
{
    std::vector<unsigned char> packed(compressBound(kBytes));
    uLongf packedSize = packed.size();
    if (compress2(packed.data(), &packedSize, fieldBytes(), kBytes, 6) != Z_OK)
        state.SkipWithError("zlib failed");
    std::vector<unsigned char> restored(kBytes);
    for (auto _ : state) {
        uLongf size = restored.size();
        if (uncompress(restored.data(), &size, packed.data(), packedSize) != Z_OK)
            state.SkipWithError("zlib failed");
    }
    if (std::memcmp(restored.data(), fieldBytes(), kBytes) != 0)
        state.SkipWithError("zlib output differs");
    state.SetBytesProcessed(state.iterations() * kBytes);
}
BENCHMARK(ZlibLevel6Uncompress)->Unit(benchmark::kMillisecond);

static void XzPreset6Compress(benchmark::State& state)
{
    std::vector<unsigned char> packed(lzma_stream_buffer_bound(kBytes));
    size_t size = 0;
    for (auto _ : state) {
        size = 0;
        if (lzma_easy_buffer_encode(6, LZMA_CHECK_CRC64, nullptr, fieldBytes(), kBytes, packed.data(), &size,
                                    packed.size()) != LZMA_OK)
            state.SkipWithError("xz failed");
    }
    state.SetBytesProcessed(state.iterations() * kBytes);
    state.counters["ratio"] = double(kBytes) / size;
}
BENCHMARK(XzPreset6Compress)->Unit(benchmark::kMillisecond);

static void XzPreset6Decompress(benchmark::State& state)
{
    std::vector<unsigned char> packed(lzma_stream_buffer_bound(kBytes));
    size_t packedSize = 0;
    if (lzma_easy_buffer_encode(6, LZMA_CHECK_CRC64, nullptr, fieldBytes(), kBytes, packed.data(), &packedSize,
                                packed.size()) != LZMA_OK)
        state.SkipWithError("xz failed");
    std::vector<unsigned char> restored(kBytes);
    for (auto _ : state) {
        uint64_t memoryLimit = UINT64_MAX;
        size_t in = 0, out = 0;
        if (lzma_stream_buffer_decode(&memoryLimit, 0, nullptr, packed.data(), &in, packedSize, restored.data(), &out,
                                      restored.size()) != LZMA_OK)
            state.SkipWithError("xz failed");
    }
    if (std::memcmp(restored.data(), fieldBytes(), kBytes) != 0)
        state.SkipWithError("xz output differs");
    state.SetBytesProcessed(state.iterations() * kBytes);
}
BENCHMARK(XzPreset6Decompress)->Unit(benchmark::kMillisecond);
