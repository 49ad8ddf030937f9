// The POSIX (Linux) implementation of the OS layer.
#include "platform/ZoOS.h"

#include <cerrno>
#include <cstring>
#include <sys/syscall.h>
#include <unistd.h>

namespace ZoOS {

namespace {
thread_local uint32_t t_lastError = 0;

// Both strerror_r flavours are handled, so the code builds whichever the C library offers.
[[maybe_unused]] const char* errorTextOf(int result, const char* buffer)
{
    return result == 0 ? buffer : nullptr;
}
[[maybe_unused]] const char* errorTextOf(const char* result, const char*)
{
    return result;
}
} // namespace

uint32_t GetLastErrorCode()
{
    return t_lastError;
}

void SetLastErrorCode(uint32_t code)
{
    t_lastError = code;
}

CString GetErrorText(uint32_t code)
{
    char buffer[256] = {0};
    const char* text = errorTextOf(strerror_r(static_cast<int>(code), buffer, sizeof buffer), buffer);
    if (text == nullptr || *text == 0)
        return CString();
    return CString(text) + u"\n";
}

uint32_t GetCurrentThreadIdentifier()
{
    thread_local const uint32_t id = static_cast<uint32_t>(::syscall(SYS_gettid));
    return id;
}

bool InitializeLock(LockStorage& lock, uint32_t spinCount)
{
    lock.owner.store(0, std::memory_order_relaxed);
    lock.recursionCount.store(0, std::memory_order_relaxed);
    lock.spinCount = spinCount;
    SetLastErrorCode(0);
    return true;
}

void DeleteLock(LockStorage&)
{
}

void EnterLock(LockStorage& lock)
{
    const uint32_t self = GetCurrentThreadIdentifier();
    if (lock.owner.load(std::memory_order_relaxed) == self) {
        lock.recursionCount.fetch_add(1, std::memory_order_relaxed);
        return;
    }
    bool acquired = false;
    for (uint32_t attempt = 0; attempt < lock.spinCount && !acquired; ++attempt)
        acquired = lock.mutex.try_lock();
    if (!acquired)
        lock.mutex.lock();
    lock.owner.store(self, std::memory_order_relaxed);
    lock.recursionCount.store(1, std::memory_order_relaxed);
}

bool TryEnterLock(LockStorage& lock)
{
    const uint32_t self = GetCurrentThreadIdentifier();
    if (lock.owner.load(std::memory_order_relaxed) == self) {
        lock.recursionCount.fetch_add(1, std::memory_order_relaxed);
        return true;
    }
    if (!lock.mutex.try_lock())
        return false;
    lock.owner.store(self, std::memory_order_relaxed);
    lock.recursionCount.store(1, std::memory_order_relaxed);
    return true;
}

void LeaveLock(LockStorage& lock)
{
    if (lock.recursionCount.fetch_sub(1, std::memory_order_relaxed) == 1) {
        lock.owner.store(0, std::memory_order_relaxed);
        lock.mutex.unlock();
    }
}

int32_t GetLockRecursionCount(const LockStorage& lock)
{
    return lock.recursionCount.load(std::memory_order_relaxed);
}

uint32_t GetLockSpinCount(const LockStorage& lock)
{
    return lock.spinCount;
}

void AssignLock(LockStorage& target, const LockStorage& source)
{
    target.spinCount = source.spinCount;
}

} // namespace ZoOS
