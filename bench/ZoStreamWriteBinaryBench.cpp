// The binary encoding written to memory against std::ostringstream's unformatted writes of the
// same bytes.
#include "base/ZoStreamWriteBinaryMemory.h"

#include <benchmark/benchmark.h>

#include <sstream>

static void ZoStreamWriteBinaryScalars(benchmark::State& state)
{
    for (auto _ : state) {
        ZoStreamWriteBinaryMemory stream;
        for (int i = 0; i < state.range(0); ++i)
            stream << i << 0.5 * i;
        benchmark::DoNotOptimize(stream.GetData());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(ZoStreamWriteBinaryScalars)->Arg(1 << 14);

static void StdOstringstreamScalars(benchmark::State& state)
{
    for (auto _ : state) {
        std::ostringstream stream;
        for (int i = 0; i < state.range(0); ++i) {
            const double d = 0.5 * i;
            stream.write(reinterpret_cast<const char*>(&i), sizeof i);
            stream.write(reinterpret_cast<const char*>(&d), sizeof d);
        }
        benchmark::DoNotOptimize(stream.tellp());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0) * 2);
}
BENCHMARK(StdOstringstreamScalars)->Arg(1 << 14);

// Through a file: 10 million scalars (5 million int and double pairs, 60 MB) written with
// ZoStreamWriteBinaryFile and read back with ZoStreamReadBinaryFile, against fwrite and fread of
// the same bytes one scalar per call. Then a compressed archive of 64 MiB of text-like bytes
// against zlib's gzip writer at level 6 (gzwrite, in this process) on the same bytes.
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"

#include <zlib.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace {

const int sc_iPairs = 5000000;
const size_t sc_archiveSize = size_t(64) << 20;

struct ScratchFolder
{
    ScratchFolder()
    {
#if !defined(_WIN32)
        folder = std::filesystem::temp_directory_path() / ("zo-bench-streams-" + std::to_string(getpid()));
#else
        folder = std::filesystem::temp_directory_path() / "zo-bench-streams";
#endif
        std::filesystem::create_directories(folder);
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::filesystem::path folder;
} s_scratch;

CString scratchName(const char* name) { return CString((s_scratch.folder / name).u16string()); }
std::string scratchPath(const char* name) { return (s_scratch.folder / name).string(); }

const std::vector<unsigned char>& archiveBytes()
{
    static const std::vector<unsigned char> bytes = [] {
        static const char* const words[] = {"the", "stream", "archive", "of", "a", "map", "list", "node",
                                            "buffer", "writes", "reads", "and", "colour", "thread", "pool"};
        std::vector<unsigned char> data;
        data.reserve(sc_archiveSize + 16);
        uint32_t x = 12345;
        while (data.size() < sc_archiveSize) {
            x = x * 1103515245u + 12345u;
            const char* word = words[(x >> 16) % 15];
            data.insert(data.end(), word, word + std::strlen(word));
            data.push_back((x & 0x1F) == 0 ? '\n' : ' ');
        }
        data.resize(sc_archiveSize);
        return data;
    }();
    return bytes;
}

} // namespace

static void ZoStreamWriteBinaryFileScalars(benchmark::State& state)
{
    const CString name = scratchName("scalars.bin");
    for (auto _ : state) {
        ZoStreamWriteBinaryFile stream(name);
        for (int i = 0; i < sc_iPairs; ++i)
            stream << i << 0.5 * i;
        stream.Close();
    }
    state.SetItemsProcessed(state.iterations() * sc_iPairs * 2);
}
BENCHMARK(ZoStreamWriteBinaryFileScalars)->Unit(benchmark::kMillisecond);

static void FwriteScalars(benchmark::State& state)
{
    const std::string name = scratchPath("scalars-fwrite.bin");
    for (auto _ : state) {
        std::FILE* file = std::fopen(name.c_str(), "wb");
        for (int i = 0; i < sc_iPairs; ++i) {
            const double d = 0.5 * i;
            std::fwrite(&i, sizeof i, 1, file);
            std::fwrite(&d, sizeof d, 1, file);
        }
        std::fclose(file);
    }
    state.SetItemsProcessed(state.iterations() * sc_iPairs * 2);
}
BENCHMARK(FwriteScalars)->Unit(benchmark::kMillisecond);

static void ZoStreamReadBinaryFileScalars(benchmark::State& state)
{
    const CString name = scratchName("scalars-read.bin");
    {
        ZoStreamWriteBinaryFile stream(name);
        for (int i = 0; i < sc_iPairs; ++i)
            stream << i << 0.5 * i;
    }
    double sum = 0;
    for (auto _ : state) {
        ZoStreamReadBinaryFile stream(name);
        int value = 0;
        double d = 0;
        for (int i = 0; i < sc_iPairs; ++i) {
            stream >> value >> d;
            sum += value + d;
        }
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * sc_iPairs * 2);
}
BENCHMARK(ZoStreamReadBinaryFileScalars)->Unit(benchmark::kMillisecond);

static void FreadScalars(benchmark::State& state)
{
    const std::string name = scratchPath("scalars-fread.bin");
    {
        std::FILE* file = std::fopen(name.c_str(), "wb");
        for (int i = 0; i < sc_iPairs; ++i) {
            const double d = 0.5 * i;
            std::fwrite(&i, sizeof i, 1, file);
            std::fwrite(&d, sizeof d, 1, file);
        }
        std::fclose(file);
    }
    double sum = 0;
    for (auto _ : state) {
        std::FILE* file = std::fopen(name.c_str(), "rb");
        int value = 0;
        double d = 0;
        for (int i = 0; i < sc_iPairs; ++i) {
            if (std::fread(&value, sizeof value, 1, file) != 1 || std::fread(&d, sizeof d, 1, file) != 1)
                state.SkipWithError("fread failed");
            sum += value + d;
        }
        std::fclose(file);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * sc_iPairs * 2);
}
BENCHMARK(FreadScalars)->Unit(benchmark::kMillisecond);

static void ZoStreamWriteBinaryFileCompressed64MiB(benchmark::State& state)
{
    const std::vector<unsigned char>& data = archiveBytes();
    const CString name = scratchName("archive.zoz");
    for (auto _ : state) {
        ZoStreamWriteBinaryFile stream(name, ZoStreamWriteBinaryFile::eCompressionZIP);
        stream.WriteBuffer(data.data(), data.size());
        stream.Close();
    }
    state.SetBytesProcessed(state.iterations() * int64_t(sc_archiveSize));
    state.counters["ratio"] = double(sc_archiveSize) / std::filesystem::file_size(scratchPath("archive.zoz"));
}
BENCHMARK(ZoStreamWriteBinaryFileCompressed64MiB)->Unit(benchmark::kMillisecond);

static void GzwriteLevel6_64MiB(benchmark::State& state)
{
    const std::vector<unsigned char>& data = archiveBytes();
    const std::string name = scratchPath("archive.gz");
    for (auto _ : state) {
        gzFile file = gzopen(name.c_str(), "wb6");
        if (file == nullptr || gzwrite(file, data.data(), static_cast<unsigned>(data.size())) != int(data.size()))
            state.SkipWithError("gzwrite failed");
        gzclose(file);
    }
    state.SetBytesProcessed(state.iterations() * int64_t(sc_archiveSize));
    state.counters["ratio"] = double(sc_archiveSize) / std::filesystem::file_size(name);
}
BENCHMARK(GzwriteLevel6_64MiB)->Unit(benchmark::kMillisecond);
