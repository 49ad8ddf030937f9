// The Win32 implementation of the OS layer's console, debug trace and user messages.
#include "platform/ZoOS.h"

namespace ZoOS {

bool HasProcessConsole()
{
    return ::GetConsoleWindow() != nullptr;
}

// A console program already has its console; attaching or allocating then counts as done.
bool AttachParentConsole()
{
    return ::GetConsoleWindow() != nullptr || ::AttachConsole(ATTACH_PARENT_PROCESS) != 0;
}

bool AllocateProcessConsole()
{
    return ::GetConsoleWindow() != nullptr || ::AllocConsole() != 0;
}

bool FreeProcessConsole()
{
    return ::FreeConsole() != 0;
}

bool WriteConsoleText(const CString& text)
{
    DWORD written = 0;
    return ::WriteConsoleW(::GetStdHandle(STD_OUTPUT_HANDLE), text.GetString(), static_cast<DWORD>(text.GetLength()),
                           &written, nullptr) != 0;
}

bool SetConsoleTitleText(const CString& title)
{
    return ::SetConsoleTitleW(reinterpret_cast<const wchar_t*>(title.GetString())) != 0;
}

void WriteDebugTrace(const CString& text)
{
#if !defined(NDEBUG)
    ::OutputDebugStringW(reinterpret_cast<const wchar_t*>(text.GetString()));
#else
    (void)text;
#endif
}

void ShowMessage(const CString& text, const CString& caption, uint32_t style)
{
    ::MessageBoxW(nullptr, reinterpret_cast<const wchar_t*>(text.GetString()),
                  reinterpret_cast<const wchar_t*>(caption.GetString()), style);
}

void BreakIntoDebugger()
{
    ::DebugBreak();
}

} // namespace ZoOS
