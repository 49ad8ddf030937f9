/// @class ZoCriticalSectionAuto
/// ZoCriticalSectionAuto: enters a ZoCriticalSection for the lifetime of a scope. LeaveEarly()
/// releases the lock before the scope ends; the destructor then leaves nothing, and a second
/// LeaveEarly() does nothing.
/// @ingroup concurrency
#pragma once

#include "base/ZoCriticalSection.h"
#include "platform/ZoExport.h"

class ZO_API ZoCriticalSectionAuto
{
public:
    ///@{
    /// Blocks until the lock is held. The lock must outlive the guard; the pointer must not be null.
    explicit ZoCriticalSectionAuto(ZoCriticalSection& lock);
    explicit ZoCriticalSectionAuto(ZoCriticalSection* lock);
    ///@}
    ~ZoCriticalSectionAuto();
    ZoCriticalSectionAuto(const ZoCriticalSectionAuto&) = delete;
    ZoCriticalSectionAuto& operator=(const ZoCriticalSectionAuto&) = delete;

    /// Leaves the lock now (once; later calls do nothing) so that the rest of the scope runs unlocked.
    void LeaveEarly();

private:
    ZoCriticalSection* m_lock;
    bool m_leftEarly;
};
