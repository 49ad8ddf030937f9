// The Win32 implementation of the OS layer's programs and terminals.
#include "platform/ZoOS.h"

#include <string>
#include <vector>

namespace ZoOS {

namespace {

const wchar_t* wide(const CString& text)
{
    return reinterpret_cast<const wchar_t*>(text.GetString());
}

// One argument quoted the way the C run-time's command-line parser splits it again: backslashes
// are literal unless they precede a quote, when they are doubled.
void appendQuoted(std::wstring& line, const CString& argument)
{
    const std::wstring text(wide(argument), static_cast<size_t>(argument.GetLength()));
    if (!text.empty() && text.find_first_of(L" \t\"") == std::wstring::npos) {
        line += text;
        return;
    }
    line += L'"';
    size_t backslashes = 0;
    for (wchar_t c : text) {
        if (c == L'\\') {
            ++backslashes;
            continue;
        }
        line.append(c == L'"' ? backslashes * 2 + 1 : backslashes, L'\\');
        backslashes = 0;
        line += c;
    }
    line.append(backslashes * 2, L'\\');
    line += L'"';
}

} // namespace

bool MoveFileReplacing(const CString& source, const CString& target)
{
    const bool moved = ::MoveFileExW(wide(source), wide(target), MOVEFILE_REPLACE_EXISTING) != 0;
    SetLastErrorCode(moved ? 0 : ::GetLastError());
    return moved;
}

bool IsStandardErrorTerminal()
{
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_ERROR_HANDLE), &mode) != 0;
}

int RunProgram(const CString& program, const std::vector<CString>& arguments)
{
    std::wstring line;
    appendQuoted(line, program);
    for (const CString& argument : arguments) {
        line += L' ';
        appendQuoted(line, argument);
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof(startup);
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(nullptr, &line[0], nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process)) {
        SetLastErrorCode(::GetLastError());
        return -1;
    }
    ::WaitForSingleObject(process.hProcess, INFINITE);
    DWORD code = 0;
    const bool known = ::GetExitCodeProcess(process.hProcess, &code) != 0;
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    SetLastErrorCode(known ? 0 : ::GetLastError());
    return known ? static_cast<int>(code) : -1;
}

} // namespace ZoOS
