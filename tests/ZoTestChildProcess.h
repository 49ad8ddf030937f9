// Runs a test of this program in a second process (a DISABLED_ test, run only when asked for) that
// reads its instructions from ZO_TEST_CHILD and names any file it writes after its process id.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#if defined(_WIN32)
#include "platform/ZoWindowsTypes.h"

#include <process.h>
#include <stdlib.h>
#else
#include <climits>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace zotest {

inline std::string TestProgramPath()
{
#if defined(_WIN32)
    char path[MAX_PATH];
    const DWORD length = ::GetModuleFileNameA(nullptr, path, MAX_PATH);
    return length > 0 && length < MAX_PATH ? std::string(path, length) : "";
#else
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path - 1);
    return length > 0 ? std::string(path, static_cast<size_t>(length)) : "";
#endif
}

inline unsigned long CurrentProcessId()
{
#if defined(_WIN32)
    return static_cast<unsigned long>(_getpid());
#else
    return static_cast<unsigned long>(getpid());
#endif
}

// True when this Windows program runs under wine, whose system services sometimes differ.
inline bool RunningUnderWine()
{
#if defined(_WIN32)
    const HMODULE ntdll = ::GetModuleHandleA("ntdll.dll");
    return ntdll != nullptr && ::GetProcAddress(ntdll, "wine_get_version") != nullptr;
#else
    return false;
#endif
}

// Null unless this process is a child started by RunChildTest.
inline const char* ChildArgument() { return std::getenv("ZO_TEST_CHILD"); }

// Sets what the next children read from ChildArgument(), before any child starts.
inline void SetChildArgument(const std::string& argument)
{
#if defined(_WIN32)
    _putenv_s("ZO_TEST_CHILD", argument.c_str());
#else
    setenv("ZO_TEST_CHILD", argument.c_str(), 1);
#endif
}

// Runs `test` ("Suite.DISABLED_Name") in a new process, its output in `logBase` + ".log" / ".xml";
// returns its exit code (-1 when it could not be started). Several may run at once.
inline int RunChildTest(const std::string& test, const std::string& logBase)
{
    const std::string command = TestProgramPath() + " --gtest_also_run_disabled_tests --gtest_filter=" + test +
                                " --gtest_output=xml:" + logBase + ".xml > " + logBase + ".log 2>&1";
    const int status = std::system(command.c_str());
#if defined(_WIN32)
    return status;
#else
    return status != -1 && WIFEXITED(status) ? WEXITSTATUS(status) : -1;
#endif
}

} // namespace zotest
