#include "base/ZoCriticalSectionAuto.h"

ZoCriticalSectionAuto::ZoCriticalSectionAuto(ZoCriticalSection& lock) : ZoCriticalSectionAuto(&lock) {}

ZoCriticalSectionAuto::ZoCriticalSectionAuto(ZoCriticalSection* lock) : m_lock(lock), m_leftEarly(false)
{
    m_lock->Enter();
}

ZoCriticalSectionAuto::~ZoCriticalSectionAuto()
{
    if (!m_leftEarly)
        m_lock->Leave();
}

void ZoCriticalSectionAuto::LeaveEarly()
{
    if (!m_leftEarly)
        m_lock->Leave();
    m_leftEarly = true;
}
