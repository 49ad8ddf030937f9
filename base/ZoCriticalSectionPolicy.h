/// @class ZoCriticalSectionPolicy
/// ZoCriticalSectionPolicy<n>: the locking policy a class derives from to guard its own state, so
/// that the class's code is written once and the choice of lock is made by the template argument.
///
/// - n = 0: a recursive lock of the object's own (ZoCriticalSection with the default spin count), for
///   objects shared between threads. A copy gets a fresh lock of its own: a lock is never shared
///   between objects, nor copied while held.
/// - n = 1: no lock, for objects one thread owns; Lock and Unlock do nothing.
///
///     class Cache : private ZoCriticalSectionPolicy<0>
///     {
///         void Put(...) { Guard guard(*this); ... }
///     };
/// @ingroup concurrency
#pragma once

#include "base/ZoCriticalSection.h"

template <int n>
class ZoCriticalSectionPolicy;

/// The locking form: a recursive lock of the object's own, for objects shared between threads.
/// @ingroup concurrency
template <>
class ZoCriticalSectionPolicy<0>
{
public:
    /// Holds the policy's lock for a scope.
    class Guard
    {
    public:
        /// Blocks until the policy's lock is held; the destructor releases it. `policy` must outlive
        /// the guard.
        explicit Guard(const ZoCriticalSectionPolicy& policy) : m_policy(policy) { m_policy.Lock(); }
        ~Guard() { m_policy.Unlock(); }
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;

    private:
        const ZoCriticalSectionPolicy& m_policy;
    };

    ZoCriticalSectionPolicy() = default;
    ///@{
    /// Copies nothing: the object keeps (or gets) a fresh lock of its own, so a held lock is never
    /// copied. The derived class copies its state under whatever locking it needs.
    ZoCriticalSectionPolicy(const ZoCriticalSectionPolicy&) {}
    ZoCriticalSectionPolicy& operator=(const ZoCriticalSectionPolicy&) { return *this; }
    ///@}

    ///@{
    /// Enters or leaves the lock; recursive, so a thread may lock again and must unlock as often.
    /// const so that const members can lock too.
    void Lock() const { m_lock.Enter(); }
    void Unlock() const { m_lock.Leave(); }
    ///@}
    /// The lock itself, for waits that must release it.
    ZoCriticalSection& GetLock() const { return m_lock; }

protected:
    ~ZoCriticalSectionPolicy() = default;

private:
    mutable ZoCriticalSection m_lock;
};

/// The form without a lock, for objects one thread owns: the same interface, doing nothing.
/// @ingroup concurrency
template <>
class ZoCriticalSectionPolicy<1>
{
public:
    /// Stands in for the locking form's guard; holds nothing.
    class Guard
    {
    public:
        /// Does nothing.
        explicit Guard(const ZoCriticalSectionPolicy&) {}
        Guard(const Guard&) = delete;
        Guard& operator=(const Guard&) = delete;
    };

    ///@{
    /// Do nothing.
    void Lock() const {}
    void Unlock() const {}
    ///@}

protected:
    ~ZoCriticalSectionPolicy() = default;
};
