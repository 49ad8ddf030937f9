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
    explicit ZoCriticalSectionAuto(ZoCriticalSection& lock);
    explicit ZoCriticalSectionAuto(ZoCriticalSection* lock);
    ~ZoCriticalSectionAuto();
    ZoCriticalSectionAuto(const ZoCriticalSectionAuto&) = delete;
    ZoCriticalSectionAuto& operator=(const ZoCriticalSectionAuto&) = delete;

    void LeaveEarly();

private:
    ZoCriticalSection* m_lock;
    bool m_leftEarly;
};
