// The Win32 implementation of the OS layer's events, threads and waits: each function is the system
// call of the same purpose, its result translated to the layer's conventions.
#include "platform/ZoOS.h"

#include <process.h>

namespace ZoOS {

namespace {

bool succeedIf(BOOL result)
{
    if (result == 0)
        return false;
    ::SetLastError(0);
    return true;
}

} // namespace

// ---- events -----------------------------------------------------------------------------------

HANDLE CreateEventObject(bool manualReset, bool initiallySignalled)
{
    HANDLE event = ::CreateEventW(nullptr, manualReset ? TRUE : FALSE, initiallySignalled ? TRUE : FALSE, nullptr);
    if (event != nullptr)
        ::SetLastError(0);
    return event;
}

bool SetEventObject(HANDLE event)
{
    return succeedIf(::SetEvent(event));
}

bool ResetEventObject(HANDLE event)
{
    return succeedIf(::ResetEvent(event));
}

bool PulseEventObject(HANDLE event)
{
    return succeedIf(::PulseEvent(event));
}

uint32_t WaitForObject(HANDLE object, uint32_t timeoutMs)
{
    return ::WaitForSingleObject(object, timeoutMs);
}

uint32_t WaitForObjects(uint32_t count, const HANDLE* objects, bool waitAll, uint32_t timeoutMs)
{
    return ::WaitForMultipleObjects(count, objects, waitAll ? TRUE : FALSE, timeoutMs);
}

HANDLE DuplicateObjectHandle(HANDLE object, bool inheritable)
{
    HANDLE duplicate = nullptr;
    const HANDLE process = ::GetCurrentProcess();
    if (!::DuplicateHandle(process, object, process, &duplicate, 0, inheritable ? TRUE : FALSE, DUPLICATE_SAME_ACCESS))
        return nullptr;
    ::SetLastError(0);
    return duplicate;
}

bool CloseObjectHandle(HANDLE object)
{
    return succeedIf(::CloseHandle(object));
}

// ---- threads ----------------------------------------------------------------------------------

namespace {

struct ThreadStart
{
    ThreadRoutine routine;
    void* argument;
};

// The C library's thread entry, so that the library's per-thread data is set up and released
// around the routine, as for every thread a program makes through the C library.
unsigned __stdcall threadEntry(void* argument)
{
    const ThreadStart start = *static_cast<ThreadStart*>(argument);
    delete static_cast<ThreadStart*>(argument);
    return start.routine(start.argument);
}

} // namespace

HANDLE CreateThreadObject(ThreadRoutine routine, void* argument, uint32_t stackSize, bool suspended, uint32_t& threadId)
{
    auto* start = new ThreadStart{routine, argument};
    unsigned int id = 0;
    const uintptr_t thread = ::_beginthreadex(nullptr, stackSize, &threadEntry, start, suspended ? CREATE_SUSPENDED : 0, &id);
    if (thread == 0) {
        delete start;
        // _beginthreadex reports through errno; the system's error is the one callers read.
        if (::GetLastError() == 0)
            ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return nullptr;
    }
    threadId = id;
    ::SetLastError(0);
    return reinterpret_cast<HANDLE>(thread);
}

uint32_t SuspendThreadObject(HANDLE thread)
{
    const DWORD previous = ::SuspendThread(thread);
    if (previous != static_cast<DWORD>(-1)) {
        // SuspendThread only asks; reading the thread's context waits until it has stopped, so the
        // thread is stopped when this returns, as on POSIX.
        CONTEXT context;
        context.ContextFlags = CONTEXT_CONTROL;
        ::GetThreadContext(thread, &context);
        ::SetLastError(0);
    }
    return previous;
}

uint32_t ResumeThreadObject(HANDLE thread)
{
    const DWORD previous = ::ResumeThread(thread);
    if (previous != static_cast<DWORD>(-1))
        ::SetLastError(0);
    return previous;
}

bool TerminateThreadObject(HANDLE thread, uint32_t exitCode)
{
    return succeedIf(::TerminateThread(thread, exitCode));
}

bool GetThreadExitCode(HANDLE thread, uint32_t& exitCode)
{
    DWORD code = 0;
    if (!::GetExitCodeThread(thread, &code))
        return false;
    exitCode = code;
    ::SetLastError(0);
    return true;
}

bool SetThreadPriorityLevel(HANDLE thread, int32_t priority)
{
    return succeedIf(::SetThreadPriority(thread, priority));
}

int32_t GetThreadPriorityLevel(HANDLE thread)
{
    const int priority = ::GetThreadPriority(thread);
    if (priority != THREAD_PRIORITY_ERROR_RETURN)
        ::SetLastError(0);
    return priority;
}

void RethrowThreadCancellation()
{
    // A terminated Windows thread stops without unwinding: there is nothing to pass on.
}

ThreadTerminationDeferral::ThreadTerminationDeferral() : m_previousState(0)
{
}

ThreadTerminationDeferral::~ThreadTerminationDeferral()
{
}

} // namespace ZoOS
