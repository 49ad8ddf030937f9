// The range coder on 4 MB of skewed bytes (a geometric distribution over the 256 byte values):
// encode and decode speed, and the coded size beside the data's order-0 entropy.
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

const std::vector<unsigned char>& skewedBytes()
{
    static const std::vector<unsigned char> bytes = [] {
        std::mt19937 random(12345);
        std::geometric_distribution<int> skewed(0.08);
        std::vector<unsigned char> data(4 << 20);
        for (unsigned char& byte : data)
            byte = static_cast<unsigned char>(skewed(random) % 256);
        return data;
    }();
    return bytes;
}

double entropyBytes(const std::vector<unsigned char>& data)
{
    double counts[256] = {};
    for (unsigned char byte : data)
        counts[byte] += 1;
    double bits = 0;
    for (double count : counts)
        if (count > 0)
            bits -= count * std::log2(count / data.size());
    return bits / 8;
}

std::vector<unsigned char> encode(const std::vector<unsigned char>& data)
{
    ZoStreamWriteBinaryMemory target;
    {
        ZoCompressRangeCoder coder(target, 256, static_cast<uint32_t>(data.size() / 2));
        for (unsigned char byte : data)
            coder << byte;
    }
    return target.GetBuffer();
}

} // namespace

static void ZoCompressRangeCoderEncode(benchmark::State& state)
{
    const auto& data = skewedBytes();
    size_t coded = 0;
    for (auto _ : state)
        coded = encode(data).size();
    state.SetBytesProcessed(state.iterations() * data.size());
    state.counters["ratio"] = double(data.size()) / coded;
    state.counters["coded_per_entropy"] = coded / (entropyBytes(data) + 12);
}
BENCHMARK(ZoCompressRangeCoderEncode)->Unit(benchmark::kMillisecond);

static void ZoDecompressRangeCoderDecode(benchmark::State& state)
{
    const auto& data = skewedBytes();
    const std::vector<unsigned char> block = encode(data);
    std::vector<unsigned char> decoded(data.size());
    for (auto _ : state) {
        ZoStreamReadBinaryMemory source(block);
        ZoDecompressRangeCoder decoder(source, 256);
        for (unsigned char& byte : decoded)
            decoder >> byte;
        benchmark::DoNotOptimize(decoded.data());
    }
    if (decoded != data)
        state.SkipWithError("decoded bytes differ");
    state.SetBytesProcessed(state.iterations() * data.size());
}
BENCHMARK(ZoDecompressRangeCoderDecode)->Unit(benchmark::kMillisecond);
