#pragma once

#include "platform/ZoExport.h"
#include "platform/ZoOS.h"
#include "platform/ZoWindowsTypes.h"

#include <cstdint>

/// ZoThreadPolicyMFC: the policy by which ZoThread makes its threads. It starts a thread through the
/// platform's thread factory (the C library's thread start on Windows, so per-thread library data is
/// set up; pthreads on POSIX) and offers a hook that runs first on every new thread.
///
/// The policy is empty and held by value inside every ZoThread; it keeps no state of its own.
/// @ingroup concurrency
class ZO_API ZoThreadPolicyMFC
{
public:
    /// The flag that makes a thread wait for its first resume before it runs (CREATE_SUSPENDED).
    static constexpr uint32_t sc_uiCreateSuspended = 4;

    /// Starts a thread that calls routine(argument): suspended when `createFlags` holds
    /// sc_uiCreateSuspended, with the given stack size (0: the default) and priority (0 leaves the
    /// inherited one). Returns the factory's handle of the thread, which the caller closes when it
    /// no longer needs it (closing does not end the thread), and sets `threadId`; null on failure,
    /// with the OS layer's last error set.
    HANDLE BeginThread(ZoOS::ThreadRoutine routine, void* argument, int32_t priority, uint32_t stackSize,
                       uint32_t createFlags, uint32_t& threadId);
    /// Runs first on every thread the policy made, before anything else of the thread's. Empty.
    void onThreadStart() {}
};
