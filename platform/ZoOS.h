// ZoOS: the narrow operating-system layer. base/ and compression/ reach the system only through
// these functions; platform/posix/ and platform/win32/ implement them, one file per target.
//
// Every function that can fail sets the calling thread's last error: 0 on success, the system's
// error number on failure (errno on POSIX, GetLastError on Windows), so that ZoLatestError reads
// the cause of the latest failure on either target.
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoWindowsTypes.h"

#include <cstdint>

#if !defined(_WIN32)
#  include <atomic>
#  include <mutex>
#endif

namespace ZoOS {

// ---- last error -------------------------------------------------------------------------------
ZO_API uint32_t GetLastErrorCode();
ZO_API void SetLastErrorCode(uint32_t code);
// The system's message for an error number, with the system's trailing line break; empty when the
// system has no text for it.
ZO_API CString GetErrorText(uint32_t code);

// ---- threads ----------------------------------------------------------------------------------
// The calling thread's system-wide id; never 0.
ZO_API uint32_t GetCurrentThreadIdentifier();

// ---- recursive lock ---------------------------------------------------------------------------
// A recursive lock that spins `spinCount` attempts before it blocks. Held by value in
// ZoCriticalSection, so the type is complete here; its members are the implementation's.
#if defined(_WIN32)
typedef CRITICAL_SECTION LockStorage;
#else
struct LockStorage
{
    std::mutex mutex;
    std::atomic<uint32_t> owner{0};
    std::atomic<int32_t> recursionCount{0};
    uint32_t spinCount = 0;
};
#endif

// False when the system cannot make the lock (last error says why).
ZO_API bool InitializeLock(LockStorage& lock, uint32_t spinCount);
ZO_API void DeleteLock(LockStorage& lock);
ZO_API void EnterLock(LockStorage& lock);
ZO_API bool TryEnterLock(LockStorage& lock);
// Requires: the calling thread holds the lock (not checked).
ZO_API void LeaveLock(LockStorage& lock);
// How many times the owner has entered; 0 when the lock is free.
ZO_API int32_t GetLockRecursionCount(const LockStorage& lock);
ZO_API uint32_t GetLockSpinCount(const LockStorage& lock);
// What assigning one ZoCriticalSection to another copies. Windows copies the raw words, as the
// class has always done; POSIX copies the spin count only, since a mutex copied byte for byte is
// undefined there.
ZO_API void AssignLock(LockStorage& target, const LockStorage& source);

} // namespace ZoOS
