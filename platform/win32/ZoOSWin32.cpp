// The Win32 implementation of the OS layer's last error, thread identity and recursive lock.
#include "platform/ZoOS.h"

#include <cstring>

namespace ZoOS {

uint32_t GetLastErrorCode()
{
    return ::GetLastError();
}

void SetLastErrorCode(uint32_t code)
{
    ::SetLastError(code);
}

CString GetErrorText(uint32_t code)
{
    // FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, the user's default language; the
    // system's text keeps its trailing line break. Without a text the message stays empty.
    wchar_t* buffer = nullptr;
    ::FormatMessageW(0x1100, nullptr, code, 0x0400, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    CString text;
    if (buffer != nullptr) {
        text = CString(reinterpret_cast<const char16_t*>(buffer));
        ::LocalFree(buffer);
    }
    return text;
}

uint32_t GetCurrentThreadIdentifier()
{
    return ::GetCurrentThreadId();
}

bool InitializeLock(LockStorage& lock, uint32_t spinCount)
{
    if (!::InitializeCriticalSectionAndSpinCount(&lock, spinCount))
        return false;
    ::SetLastError(0);
    return true;
}

void DeleteLock(LockStorage& lock)
{
    ::DeleteCriticalSection(&lock);
}

void EnterLock(LockStorage& lock)
{
    ::EnterCriticalSection(&lock);
}

bool TryEnterLock(LockStorage& lock)
{
    return ::TryEnterCriticalSection(&lock) != 0;
}

void LeaveLock(LockStorage& lock)
{
    ::LeaveCriticalSection(&lock);
}

int32_t GetLockRecursionCount(const LockStorage& lock)
{
    return static_cast<int32_t>(lock.RecursionCount);
}

uint32_t GetLockSpinCount(const LockStorage& lock)
{
    // The high bits of the field carry the system's own flags.
    return static_cast<uint32_t>(lock.SpinCount & 0x00FFFFFF);
}

void AssignLock(LockStorage& target, const LockStorage& source)
{
    // The lock's words are copied as they stand: assigned locks have always shared the source's
    // state this way, and callers assign only while neither lock is held.
    std::memcpy(static_cast<void*>(&target), &source, sizeof target);
}

} // namespace ZoOS
