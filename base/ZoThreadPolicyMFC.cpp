#include "base/ZoThreadPolicyMFC.h"

HANDLE ZoThreadPolicyMFC::BeginThread(ZoOS::ThreadRoutine routine, void* argument, int32_t priority, uint32_t stackSize,
                                      uint32_t createFlags, uint32_t& threadId)
{
    const bool suspended = (createFlags & sc_uiCreateSuspended) != 0;
    HANDLE thread = ZoOS::CreateThreadObject(routine, argument, stackSize, suspended, threadId);
    if (thread != nullptr && priority != 0)
        ZoOS::SetThreadPriorityLevel(thread, priority);
    return thread;
}
