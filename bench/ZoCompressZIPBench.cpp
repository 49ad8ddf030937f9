// ZoCompressZIP and ZoDecompressZIP against calling zlib's compress() and uncompress() directly on
// the same 16 MiB of text-like bytes, each side allocating its output buffer per call as a caller
// of zlib would: the difference is the classes' own overhead.
#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"

#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstring>
#include <memory>
#include <vector>

namespace {

const uint32_t sc_uiSize = 16u << 20;

// Words drawn with a skew from a small vocabulary, separated by spaces and the odd newline.
const std::vector<unsigned char>& textBytes()
{
    static const std::vector<unsigned char> bytes = [] {
        static const char* const words[] = {"the",    "stream", "archive", "of",     "a",      "map",
                                            "list",   "node",   "buffer",  "writes", "reads",  "and",
                                            "colour", "thread", "pool",    "task",   "version"};
        const size_t wordCount = sizeof(words) / sizeof(words[0]);
        std::vector<unsigned char> data;
        data.reserve(sc_uiSize + 16);
        uint32_t x = 12345;
        while (data.size() < sc_uiSize) {
            x = x * 1103515245u + 12345u;
            const size_t pick = ((x >> 16) % wordCount) * ((x >> 8) & 1) + ((x >> 20) & 3);
            const char* word = words[pick % wordCount];
            data.insert(data.end(), word, word + std::strlen(word));
            data.push_back((x & 0x1F) == 0 ? '\n' : ' ');
        }
        data.resize(sc_uiSize);
        return data;
    }();
    return bytes;
}

std::vector<unsigned char> zlibPacked()
{
    const std::vector<unsigned char>& data = textBytes();
    std::vector<unsigned char> packed(compressBound(sc_uiSize));
    uLongf size = packed.size();
    compress(packed.data(), &size, data.data(), sc_uiSize);
    packed.resize(size);
    return packed;
}

} // namespace

static void ZoCompressZIPCompress(benchmark::State& state)
{
    const std::vector<unsigned char>& data = textBytes();
    uint32_t size = 0;
    for (auto _ : state) {
        ZoCompressZIP codec;
        if (codec.Compress(data.data(), sc_uiSize) != 1)
            state.SkipWithError("compress failed");
        size = codec.GetOutputSize();
    }
    state.SetBytesProcessed(state.iterations() * int64_t(sc_uiSize));
    state.counters["ratio"] = double(sc_uiSize) / size;
}
BENCHMARK(ZoCompressZIPCompress)->Unit(benchmark::kMillisecond);

static void ZlibCompress(benchmark::State& state)
{
    const std::vector<unsigned char>& data = textBytes();
    uLongf size = 0;
    for (auto _ : state) {
        size = compressBound(sc_uiSize);
        std::unique_ptr<unsigned char[]> packed(new unsigned char[size]);
        if (compress(packed.get(), &size, data.data(), sc_uiSize) != Z_OK)
            state.SkipWithError("zlib failed");
        benchmark::DoNotOptimize(packed.get());
    }
    state.SetBytesProcessed(state.iterations() * int64_t(sc_uiSize));
    state.counters["ratio"] = double(sc_uiSize) / size;
}
BENCHMARK(ZlibCompress)->Unit(benchmark::kMillisecond);

static void ZoDecompressZIPDecompress(benchmark::State& state)
{
    const std::vector<unsigned char> packed = zlibPacked();
    bool same = false;
    for (auto _ : state) {
        ZoDecompressZIP codec;
        if (codec.Decompress(packed.data(), static_cast<uint32_t>(packed.size()), sc_uiSize) != 1)
            state.SkipWithError("decompress failed");
        same = codec.GetOutputSize() == sc_uiSize && std::memcmp(codec.GetOutputBuffer(), textBytes().data(), 64) == 0;
    }
    if (!same)
        state.SkipWithError("decompressed bytes differ");
    state.SetBytesProcessed(state.iterations() * int64_t(sc_uiSize));
}
BENCHMARK(ZoDecompressZIPDecompress)->Unit(benchmark::kMillisecond);

static void ZlibUncompress(benchmark::State& state)
{
    const std::vector<unsigned char> packed = zlibPacked();
    for (auto _ : state) {
        uLongf size = sc_uiSize;
        std::unique_ptr<unsigned char[]> restored(new unsigned char[size]);
        if (uncompress(restored.get(), &size, packed.data(), packed.size()) != Z_OK || size != sc_uiSize)
            state.SkipWithError("zlib failed");
        benchmark::DoNotOptimize(restored.get());
    }
    state.SetBytesProcessed(state.iterations() * int64_t(sc_uiSize));
}
BENCHMARK(ZlibUncompress)->Unit(benchmark::kMillisecond);
