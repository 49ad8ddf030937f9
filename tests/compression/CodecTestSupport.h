// Shared pieces of the codec tests: reproducible test data and a scratch current folder.
#pragma once

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

// Tests of the LZMA data format itself (rather than of the calling contract) skip in builds whose
// codec library is the stand-in that stores instead of compressing.
#if defined(ZO_TEST_LZMA_STAND_IN)
#define ZO_REQUIRE_REAL_LZMA_CODEC()                                                                   \
    GTEST_SKIP() << "this build has no liblzma for its target and tests the calling contract with a stand-in codec"
#else
#define ZO_REQUIRE_REAL_LZMA_CODEC() static_cast<void>(0)
#endif

// Windows looks for a library named by a relative path in the program's own folder too, and hands
// back a library of that name that is already loaded, so a missing codec library cannot be staged
// while the test program's folder holds one.
#if defined(_WIN32)
#define ZO_REQUIRE_LIBRARY_SEARCH_BY_PATH_ONLY()                                                       \
    GTEST_SKIP() << "Windows also searches the program's folder, which holds the codec library"
#else
#define ZO_REQUIRE_LIBRARY_SEARCH_BY_PATH_ONLY() static_cast<void>(0)
#endif

// Sanitizer builds reserve terabytes of address space, so a test cannot cap it.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZO_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZO_TEST_SANITIZED 1
#endif
#endif

namespace CodecTest {

typedef std::vector<unsigned char> Bytes;

inline Bytes RandomBytes(size_t size, uint32_t seed)
{
    std::mt19937 generator(seed);
    Bytes bytes(size);
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(generator());
    return bytes;
}

// Alternating 64 KB stretches of word salad (compresses well) and random bytes (does not), so a
// round trip crosses both the codecs' match paths and their literal paths many times.
inline Bytes MixedBytes(size_t size, uint32_t seed)
{
    static const char* const s_words[] = {"alpha ", "beta ", "gamma ", "delta ", "archive ", "stream ",
                                          "codec ", "buffer ", "\n", "0123456789 "};
    std::mt19937 generator(seed);
    Bytes bytes;
    bytes.reserve(size);
    const size_t stretch = 64 * 1024;
    while (bytes.size() < size) {
        const size_t end = std::min(size, bytes.size() + stretch);
        const bool random = (bytes.size() / stretch) % 2 == 1;
        while (bytes.size() < end) {
            if (random) {
                bytes.push_back(static_cast<unsigned char>(generator()));
                continue;
            }
            for (const char* word = s_words[generator() % 10]; *word != 0 && bytes.size() < end; ++word)
                bytes.push_back(static_cast<unsigned char>(*word));
        }
    }
    return bytes;
}

inline Bytes Copy(const unsigned char* data, uint64_t size)
{
    return data == nullptr ? Bytes() : Bytes(data, data + size);
}

// Makes a fresh empty folder the current one for its lifetime, then restores the old one. The LZMA
// classes load their codec from the current folder.
class ScopedCurrentFolder
{
public:
    ScopedCurrentFolder() : m_previous(std::filesystem::current_path()) { std::filesystem::current_path(m_folder.Path()); }
    ~ScopedCurrentFolder()
    {
        std::error_code ignored;
        std::filesystem::current_path(m_previous, ignored);
    }
    std::filesystem::path Folder() const { return m_folder.Path(); }

private:
    std::filesystem::path m_previous;
    zotest::TempFolder m_folder;
};

// The file of a loaded shared library whose name contains `fragment`; empty when none is found or
// the system does not list them (/proc/self/maps is Linux's list).
inline std::string LoadedLibraryPath(const std::string& fragment)
{
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        const size_t slash = line.find('/');
        if (slash != std::string::npos && line.find(fragment, slash) != std::string::npos)
            return line.substr(slash);
    }
    return std::string();
}

} // namespace CodecTest
