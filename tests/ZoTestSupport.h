// Shared helpers for the test suites: scratch folders, waits, whole-file reads and writes, the seed
// of the randomized tests.
#pragma once

#include "platform/CString.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <thread>
#include <vector>

#if defined(_WIN32)
#include <process.h>
#include <stdlib.h>
#else
#include <unistd.h>
#endif

namespace zotest {

// A fresh folder under the test temporary directory, removed with everything in it at the end of
// the scope.
class TempFolder
{
public:
    TempFolder()
    {
        const testing::TestInfo* info = testing::UnitTest::GetInstance()->current_test_info();
        std::string name = std::string("zo-") + (info != nullptr ? info->test_suite_name() + std::string("-") + info->name() : "test");
        // Two builds may run the same test at once: the process id keeps their folders apart.
        name += "-" + std::to_string(currentProcessId());
        for (char& c : name)
            if (c == '/')
                c = '_';
        m_path = (std::filesystem::path(testing::TempDir()) / name).make_preferred();
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    // `name` may use '/' between folders; the result uses the system's separator.
    std::string Path(const std::string& name = "") const
    {
        return name.empty() ? m_path.string() : (m_path / std::filesystem::path(name).make_preferred()).string();
    }
    CString CPath(const std::string& name = "") const { return CString(Path(name)); }

private:
    static unsigned long currentProcessId()
    {
#if defined(_WIN32)
        return static_cast<unsigned long>(_getpid());
#else
        return static_cast<unsigned long>(getpid());
#endif
    }

    std::filesystem::path m_path;
};

// Runs `call`, which must throw `Exception` from the given site: reports show its four literals, so
// each one is checked (a null `file` is not).
template <class Exception, class Call>
void ExpectThrowSite(Call call, const char* file, const char* className, const char* method, uint32_t line)
{
    try {
        call();
        ADD_FAILURE() << "no exception from " << className << "::" << method;
    } catch (const Exception& e) {
        if (file != nullptr) {
            EXPECT_EQ(e.GetFileName().ToUtf8(), file);
        }
        EXPECT_EQ(e.GetThrowingClassName().ToUtf8(), className);
        EXPECT_EQ(e.GetThrowingMethodName().ToUtf8(), method);
        EXPECT_EQ(e.GetCodeLine(), line);
    }
}

// Points the system's temporary folder (TMPDIR; TMP on Windows) at `folder` for its lifetime, so
// that code writing into the special temporary directory writes into a TempFolder.
class ScopedSystemTemporary
{
public:
    explicit ScopedSystemTemporary(const TempFolder& folder)
    {
        const char* previous = std::getenv(sc_variable);
        m_hadPrevious = previous != nullptr;
        m_previous = m_hadPrevious ? previous : "";
        set(folder.Path());
    }
    ~ScopedSystemTemporary() { set(m_hadPrevious ? m_previous : std::string()); }
    ScopedSystemTemporary(const ScopedSystemTemporary&) = delete;
    ScopedSystemTemporary& operator=(const ScopedSystemTemporary&) = delete;

private:
#if defined(_WIN32)
    static constexpr const char* sc_variable = "TMP";
    static void set(const std::string& value) { _putenv_s(sc_variable, value.c_str()); }
#else
    static constexpr const char* sc_variable = "TMPDIR";
    static void set(const std::string& value)
    {
        if (value.empty())
            unsetenv(sc_variable);
        else
            setenv(sc_variable, value.c_str(), 1);
    }
#endif
    bool m_hadPrevious;
    std::string m_previous;
};

// Polls `done` until it holds or the generous deadline passes; false on timeout. Asynchronous
// results are awaited this way, never by sleeping a fixed time.
template <class Predicate>
bool WaitUntil(Predicate done, int timeoutMs = 30000)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
    while (!done()) {
        if (std::chrono::steady_clock::now() > deadline)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// The seed of a randomized test: ZO_TEST_SEED when set (to replay a failure whose seed a test
// printed), otherwise a fresh random one. Tests print it with SCOPED_TRACE.
inline unsigned ModelTestSeed()
{
    if (const char* fixed = std::getenv("ZO_TEST_SEED"))
        return static_cast<unsigned>(std::strtoul(fixed, nullptr, 10));
    return std::random_device{}();
}

// Whether this process has the file open. Linux lists the process's descriptors in /proc; Windows
// refuses to rename a file that is open without delete sharing, which is how the library opens files.
inline bool IsFileOpen(const std::string& path)
{
    std::error_code error;
#if defined(_WIN32)
    const std::string moved = path + ".moved";
    std::filesystem::rename(path, moved, error);
    if (error)
        return true;
    std::filesystem::rename(moved, path, error);
    return false;
#else
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error))
        if (std::filesystem::read_symlink(entry.path(), error) == target)
            return true;
    return false;
#endif
}

inline std::vector<unsigned char> ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    return std::vector<unsigned char>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

inline void WriteBytes(const std::string& path, const std::vector<unsigned char>& bytes)
{
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

inline std::vector<unsigned char> Bytes(std::initializer_list<int> values)
{
    std::vector<unsigned char> bytes;
    for (int value : values)
        bytes.push_back(static_cast<unsigned char>(value));
    return bytes;
}

// Makes a fresh empty folder the current one for its lifetime: for what is found or made relative
// to the current folder (codecs loaded from it, relative paths).
struct ScopedCurrentFolder
{
    ScopedCurrentFolder() { std::filesystem::current_path(folder.Path()); }
    ~ScopedCurrentFolder() { std::error_code ignored; std::filesystem::current_path(previous, ignored); }
    const std::filesystem::path previous = std::filesystem::current_path();
    TempFolder folder;
};

} // namespace zotest
