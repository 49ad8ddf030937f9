#include "base/ZoCriticalSection.h"

#include "base/ZoException.h"

ZoCriticalSection::ZoCriticalSection(uint32_t spinCount)
{
    if (!ZoOS::InitializeLock(m_lock, spinCount))
        throw ZoException(u"..\\base\\ZoCriticalSection.cpp", u"ZoCriticalSection", u"ZoCriticalSection", 167);
}

ZoCriticalSection::~ZoCriticalSection()
{
    ZoOS::DeleteLock(m_lock);
}

ZoCriticalSection& ZoCriticalSection::operator=(const ZoCriticalSection& other)
{
    if (this != &other)
        ZoOS::AssignLock(m_lock, other.m_lock);
    return *this;
}

void ZoCriticalSection::Enter()
{
    ZoOS::EnterLock(m_lock);
}

void ZoCriticalSection::Leave()
{
    ZoOS::LeaveLock(m_lock);
}

bool ZoCriticalSection::TryEnter()
{
    return ZoOS::TryEnterLock(m_lock);
}

int32_t ZoCriticalSection::GetRecursionCount() const
{
    return ZoOS::GetLockRecursionCount(m_lock);
}

uint32_t ZoCriticalSection::GetSpinCount() const
{
    return ZoOS::GetLockSpinCount(m_lock);
}

// Function-local statics: made on first use whatever the order in which the library's static
// initialisers run, and destroyed after every object registered with atexit later than them (the
// singletons), so no singleton outlives the lock that guards it.
ZoCriticalSection& GetCriticalSectionSingleton()
{
    static ZoCriticalSection lock(ZoCriticalSection::sc_uiDefaultSpinCount);
    return lock;
}

ZoCriticalSection& GetCriticalSectionWeakPointerBase()
{
    static ZoCriticalSection lock(ZoCriticalSection::sc_uiDefaultSpinCount);
    return lock;
}

namespace {
// Makes both locks at load time, before a user's thread can race on their first construction.
[[maybe_unused]] const bool s_processLocksReady = (GetCriticalSectionSingleton(), GetCriticalSectionWeakPointerBase(), true);
} // namespace
