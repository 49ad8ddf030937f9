// The POSIX implementation of the OS layer's console, debug trace and user messages. A process
// always has standard output, so "the console" is standard output and attaching or allocating one
// only records that it is in use.
#include "platform/ZoOS.h"

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace ZoOS {

namespace {
bool writeAll(int file, const std::string& bytes)
{
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t written = ::write(file, bytes.data() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += static_cast<size_t>(written);
    }
    return true;
}
} // namespace

bool HasProcessConsole()
{
    return true;
}

bool AttachParentConsole()
{
    SetLastErrorCode(0);
    return true;
}

bool AllocateProcessConsole()
{
    SetLastErrorCode(0);
    return true;
}

bool FreeProcessConsole()
{
    SetLastErrorCode(0);
    return true;
}

bool WriteConsoleText(const CString& text)
{
    std::fflush(stdout);
    return writeAll(STDOUT_FILENO, text.ToUtf8());
}

bool SetConsoleTitleText(const CString& title)
{
    // The terminal's title escape, only when standard output is a terminal.
    if (!::isatty(STDOUT_FILENO))
        return false;
    return writeAll(STDOUT_FILENO, "\033]0;" + title.ToUtf8() + "\007");
}

void WriteDebugTrace(const CString& text)
{
#if !defined(NDEBUG)
    writeAll(STDERR_FILENO, text.ToUtf8());
#else
    (void)text;
#endif
}

void ShowMessage(const CString& text, const CString& caption, uint32_t)
{
    writeAll(STDERR_FILENO, caption.ToUtf8() + ": " + text.ToUtf8() + "\n");
}

void BreakIntoDebugger()
{
    ::raise(SIGTRAP);
}

} // namespace ZoOS
