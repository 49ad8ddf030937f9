/// @class ZoCriticalSection
/// ZoCriticalSection: the library's recursive lock. The owning thread may enter it again; each
/// Enter() needs a matching Leave(). A waiting thread spins `spinCount` times (4000 by default)
/// before it blocks, which keeps short hand-overs between processors cheap.
///
/// Assignment copies the lock's configuration, not its ownership, and is only safe while neither
/// lock is held. On Windows it copies the raw system lock words, as the class always has; on POSIX it
/// copies the spin count only, because a mutex copied byte for byte is undefined there.
/// @ingroup concurrency
#pragma once

#include "platform/ZoExport.h"
#include "platform/ZoOS.h"

#include <cstdint>

class ZO_API ZoCriticalSection
{
public:
    /// The spin count of the library's own locks: long enough to ride out a short hold on another
    /// core without sleeping.
    static const uint32_t sc_uiDefaultSpinCount = 4000;

    /// Throws ZoException when the system cannot create the lock.
    explicit ZoCriticalSection(uint32_t spinCount = sc_uiDefaultSpinCount);
    ~ZoCriticalSection();
    ZoCriticalSection(const ZoCriticalSection&) = delete;
    /// Copies what the platform allows: the raw lock words on Windows, as the class always has, the
    /// spin count only on POSIX (a mutex copied byte for byte is undefined there). Never assign a lock
    /// that is in use.
    ZoCriticalSection& operator=(const ZoCriticalSection& other);

    /// Blocks until the lock is free or already owned by the caller.
    void Enter();
    /// Requires: the calling thread holds the lock (not checked).
    void Leave();
    /// Enters without blocking; false when another thread holds the lock.
    bool TryEnter();
    /// How many times the owner has entered without leaving; 0 for a free lock.
    int32_t GetRecursionCount() const;
    /// The spin count in effect.
    uint32_t GetSpinCount() const;

private:
    ZoOS::LockStorage m_lock;
};

// Guards singleton creation (ZoSingleton<T>::GetInstance). Built on first use with spin count 4000
// and destroyed at process exit; the library's static initialisers make the first call, before
// any thread of a user exists.
ZO_API ZoCriticalSection& GetCriticalSectionSingleton();
// Set aside for weak-pointer bookkeeping: holders that share ZoWeakPointer objects between threads
// hold it while they read or reset them.
ZO_API ZoCriticalSection& GetCriticalSectionWeakPointerBase();
