// The POSIX implementation of the OS layer's programs and terminals.
#include "platform/ZoOS.h"
#include "platform/posix/ZoOSPosixSupport.h"

#include <cerrno>
#include <cstdio>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

extern char** environ;

namespace ZoOS {

using posix::failed;
using posix::succeeded;

bool MoveFileReplacing(const CString& source, const CString& target)
{
    return ::rename(source.ToUtf8().c_str(), target.ToUtf8().c_str()) == 0 ? succeeded(true) : failed(false);
}

bool IsStandardErrorTerminal()
{
    return ::isatty(STDERR_FILENO) == 1;
}

int RunProgram(const CString& program, const std::vector<CString>& arguments)
{
    std::vector<std::string> texts;
    texts.push_back(program.ToUtf8());
    for (const CString& argument : arguments)
        texts.push_back(argument.ToUtf8());
    std::vector<char*> argv;
    for (std::string& text : texts)
        argv.push_back(&text[0]);
    argv.push_back(nullptr);
    pid_t child = 0;
    const int started = ::posix_spawnp(&child, argv[0], nullptr, nullptr, argv.data(), environ);
    if (started != 0) {
        errno = started;
        return failed(-1);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0) {
        if (errno != EINTR)
            return failed(-1);
    }
    if (WIFEXITED(status))
        return succeeded(WEXITSTATUS(status));
    return succeeded(WIFSIGNALED(status) ? 128 + WTERMSIG(status) : -1);
}

} // namespace ZoOS
