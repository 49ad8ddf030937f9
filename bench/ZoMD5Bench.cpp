// ZoMD5 against OpenSSL's MD5 on the same 64 MiB, and ZoPersistentOptions' reads and writes per
// second on a store of its own (each one opens the store, does one transaction and closes it).
#include "base/ZoMD5.h"
#include "base/ZoPersistentOptions.h"

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#if !defined(_WIN32)
#include <unistd.h>
#endif

namespace {

const size_t sc_size = size_t(64) << 20;

const std::vector<unsigned char>& data()
{
    static const std::vector<unsigned char> bytes = [] {
        std::vector<unsigned char> made(sc_size);
        uint32_t x = 12345;
        for (unsigned char& byte : made) {
            x = x * 1103515245 + 12345;
            byte = static_cast<unsigned char>(x >> 24);
        }
        return made;
    }();
    return bytes;
}

void ZoMD5_64MiB(benchmark::State& state)
{
    const std::vector<unsigned char>& bytes = data();
    for (auto _ : state)
        benchmark::DoNotOptimize(ZoMD5::GetChecksum(bytes.data(), static_cast<uint32_t>(bytes.size())));
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * sc_size));
}
BENCHMARK(ZoMD5_64MiB)->Unit(benchmark::kMillisecond);

void OpenSslMD5_64MiB(benchmark::State& state)
{
    const std::vector<unsigned char>& bytes = data();
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    for (auto _ : state) {
        EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_md5(), nullptr);
        benchmark::DoNotOptimize(digest);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * sc_size));
}
BENCHMARK(OpenSslMD5_64MiB)->Unit(benchmark::kMillisecond);

// The options go to a scratch store (POSIX) or a scratch key (Windows), removed at the end.
struct ScratchOptions
{
    ScratchOptions()
    {
#if !defined(_WIN32)
        folder = std::filesystem::temp_directory_path() / ("zo-bench-options-" + std::to_string(getpid()));
        std::filesystem::create_directories(folder);
        setenv("XDG_CONFIG_HOME", folder.c_str(), 1);
#endif
    }
    ~ScratchOptions()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    std::filesystem::path folder;
} s_scratch;

const CString sc_key(u"Software\\ZoBench");

void ZoPersistentOptionsWrite(benchmark::State& state)
{
    int32_t i = 0;
    for (auto _ : state)
        if (!ZoPersistentOptions::WriteOption(sc_key, u"Value", ++i, ZoPersistentOptions::eCurrentUser))
            state.SkipWithError("write failed");
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ZoPersistentOptionsWrite);

void ZoPersistentOptionsRead(benchmark::State& state)
{
    ZoPersistentOptions::WriteOption(sc_key, u"Value", int32_t(1), ZoPersistentOptions::eCurrentUser);
    int32_t value = 0;
    for (auto _ : state)
        if (!ZoPersistentOptions::ReadOption(sc_key, u"Value", value, ZoPersistentOptions::eCurrentUser))
            state.SkipWithError("read failed");
    state.SetItemsProcessed(state.iterations());
}
BENCHMARK(ZoPersistentOptionsRead);

} // namespace
