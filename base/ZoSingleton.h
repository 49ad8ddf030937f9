#pragma once

#include "base/ZoCriticalSection.h"
#include "base/ZoCriticalSectionAuto.h"
#include "platform/ZoExport.h"

#include <atomic>
#include <cstdlib>
#include <new>

/// ZoSingleton<T>: the base of a class T of which the process has at most one instance, made on the
/// first GetInstance() and destroyed at process exit.
///
/// Creation is double-checked under GetCriticalSectionSingleton(). The instance becomes visible to
/// the creating thread before T's constructor body runs, so code that T's constructor calls (and that
/// asks for the instance again) already finds it; other threads wait on the lock until the
/// constructor has finished, so they never see a half-built object. If T's constructor throws, the
/// instance is reset to null, the memory freed and the exception passed on; a later call tries again.
///
/// T derives publicly from ZoSingleton<T>, gives it access to its default constructor (friend
/// ZoSingleton<T>) and is only ever created through GetInstance().
/// @ingroup objectmodel
template <class T>
class ZO_TEMPLATE_API ZoSingleton
{
public:
    /// The instance, made on first call under GetCriticalSectionSingleton() and destroyed at process exit. A T constructor that throws leaves no instance; the exception passes to the caller.
    static T& GetInstance()
    {
        if (s_bConstructed.load(std::memory_order_acquire))
            return *s_pInstance.load(std::memory_order_acquire);
        ZoCriticalSectionAuto guard(GetCriticalSectionSingleton());
        if (!s_bAtExitRegistered) {
            s_bAtExitRegistered = true;
            std::atexit(&destroyAtExit);
        }
        // The lock is recursive: a nested call from T's own constructor arrives here on the same
        // thread and finds the instance that is being built.
        if (T* existing = s_pInstance.load(std::memory_order_acquire))
            return *existing;
        void* memory = ::operator new(sizeof(T));
        s_pInstance.store(static_cast<T*>(memory), std::memory_order_release);
        try {
            new (memory) T();
        } catch (...) {
            s_pInstance.store(nullptr, std::memory_order_release);
            ::operator delete(memory);
            throw;
        }
        s_bConstructed.store(true, std::memory_order_release);
        return *s_pInstance.load(std::memory_order_acquire);
    }

    /// True once the instance exists or is being built; makes nothing.
    static bool HasInstance() { return s_pInstance.load(std::memory_order_acquire) != nullptr; }

protected:
    ZoSingleton() = default;
    /// Clears the instance only when it is this object, so that other objects of T (a test's
    /// stand-in, say) can come and go without touching the process's instance.
    virtual ~ZoSingleton()
    {
        T* instance = s_pInstance.load(std::memory_order_acquire);
        if (instance != nullptr && static_cast<ZoSingleton*>(instance) == this) {
            s_bConstructed.store(false, std::memory_order_release);
            s_pInstance.store(nullptr, std::memory_order_release);
        }
    }
    ZoSingleton(const ZoSingleton&) = delete;
    ZoSingleton& operator=(const ZoSingleton&) = delete;

private:
    static void destroyAtExit()
    {
        ZoCriticalSectionAuto guard(GetCriticalSectionSingleton());
        if (T* instance = s_pInstance.load(std::memory_order_acquire))
            delete instance;
    }

    static std::atomic<T*> s_pInstance;
    static std::atomic<bool> s_bConstructed;
    /// Guarded by GetCriticalSectionSingleton().
    static bool s_bAtExitRegistered;
};

template <class T>
std::atomic<T*> ZoSingleton<T>::s_pInstance{nullptr};
template <class T>
std::atomic<bool> ZoSingleton<T>::s_bConstructed{false};
template <class T>
bool ZoSingleton<T>::s_bAtExitRegistered = false;
