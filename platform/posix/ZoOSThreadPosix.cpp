// The POSIX (Linux) implementation of the OS layer's events, threads and waits.
//
// Events and threads are library objects named through a process-wide handle table. A handle packs
// a slot index with the slot's generation, so a closed handle never reaches a later object that
// reuses the slot: it fails like a closed handle on Windows. All object state is guarded by one
// kernel lock, held only for short sections that never block; a waiting thread registers itself
// with the objects it waits for and sleeps on a semaphore of its own. Whoever signals an object
// decides at once which waits it satisfies and consumes auto-reset signals on their behalf, as the
// Windows kernel does, so a pulse releases exactly the threads waiting at that moment.
//
// Suspension uses a real-time signal whose handler waits on a semaphore. A thread that receives it
// while it holds one of this layer's locks defers the stop until it leaves the lock, so suspending a
// thread never blocks the other users of events. Termination is pthread_cancel: it takes effect at
// the thread's next cancellation point and unwinds the thread's stack. This layer's own blocking
// calls hold cancellation off while they sleep and test for it before and after, and the terminating
// thread wakes a thread that sleeps in one of them: the unwinding then always starts in this file,
// with no system or sanitizer frame in between.
#include "platform/ZoOS.h"
#include "platform/posix/ZoOSPosixSupport.h"

#include <atomic>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstring>
#include <ctime>
#include <cxxabi.h>
#include <memory>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <sys/resource.h>
#include <unistd.h>
#include <vector>

namespace ZoOS {

using posix::fail;
using posix::succeed;

namespace {

struct Waiter;

// An event or a thread. `signalled` and `waiters` are guarded by the kernel lock.
struct KernelObject
{
    KernelObject(bool isThreadObject, bool resetsAutomatically, bool initiallySignalled)
        : isThread(isThreadObject), autoReset(resetsAutomatically), signalled(initiallySignalled)
    {
    }
    virtual ~KernelObject() = default;
    KernelObject(const KernelObject&) = delete;
    KernelObject& operator=(const KernelObject&) = delete;

    const bool isThread;
    const bool autoReset;
    bool signalled;
    // The waits registered on this object, oldest first.
    std::vector<Waiter*> waiters;
};

struct ThreadObject : KernelObject
{
    ThreadObject(ThreadRoutine threadRoutine, void* threadArgument, bool suspended)
        : KernelObject(true, false, false), routine(threadRoutine), argument(threadArgument),
          suspendCount(suspended ? 1 : 0), started(!suspended)
    {
        pthread_mutex_init(&control, nullptr);
        sem_init(&ready, 0, 0);
        sem_init(&start, 0, suspended ? 0 : 1);
        sem_init(&acknowledged, 0, 0);
        sem_init(&resumed, 0, 0);
    }
    ~ThreadObject() override
    {
        sem_destroy(&resumed);
        sem_destroy(&acknowledged);
        sem_destroy(&start);
        sem_destroy(&ready);
        pthread_mutex_destroy(&control);
    }

    const ThreadRoutine routine;
    void* const argument;
    pthread_t thread{};
    // Written by the thread before it posts `ready`; constant afterwards.
    uint32_t threadId = 0;

    // Guarded by the kernel lock. A termination first records its exit code (`terminating`), then
    // requests the cancellation (`cancelled`), then wakes the wait the thread sleeps in.
    uint32_t exitCode = STILL_ACTIVE;
    bool terminating = false;
    uint32_t terminateExitCode = 0;
    bool cancelled = false;
    Waiter* currentWaiter = nullptr;

    // Guarded by `control`: the suspend count, whether the routine was let go, and whether the
    // system thread is (about to be) gone, after which it receives no signal and no priority call.
    pthread_mutex_t control;
    uint32_t suspendCount;
    bool started;
    std::atomic<bool> exited{false};
    // Set by the signal handler when the thread was inside a lock of this layer.
    std::atomic<bool> suspendPending{false};

    sem_t ready;        // the thread has published its id
    sem_t start;        // the first resume lets the routine begin
    sem_t acknowledged; // the thread has stopped for a suspension
    sem_t resumed;      // a stopped thread may go on
};

struct Waiter
{
    Waiter(KernelObject* const* waitedObjects, uint32_t objectCount, bool all)
        : objects(waitedObjects), count(objectCount), waitAll(all)
    {
        sem_init(&wake, 0, 0);
    }
    ~Waiter() { sem_destroy(&wake); }
    Waiter(const Waiter&) = delete;
    Waiter& operator=(const Waiter&) = delete;

    KernelObject* const* const objects;
    const uint32_t count;
    const bool waitAll;
    // Guarded by the kernel lock.
    bool satisfied = false;
    uint32_t index = 0;
    sem_t wake;
};

struct HandleSlot
{
    std::shared_ptr<KernelObject> object;
    uint32_t generation = 1;
};

struct HandleTable
{
    std::vector<HandleSlot> slots;
    std::vector<uint32_t> freeSlots;
};

// Statically initialised, never destroyed: threads may still wait when the process exits.
pthread_mutex_t g_kernelLock = PTHREAD_MUTEX_INITIALIZER;

HandleTable& handleTable()
{
    // Deliberately never freed, for the same reason.
    static HandleTable* const table = new HandleTable;
    return *table;
}

// How many of this layer's locks the calling thread holds, read by the suspension signal's handler.
thread_local volatile sig_atomic_t t_lockDepth __attribute__((tls_model("initial-exec"))) = 0;
// The thread object of a thread this layer started; null on other threads.
thread_local ThreadObject* t_currentThread __attribute__((tls_model("initial-exec"))) = nullptr;

int suspendSignal()
{
    return SIGRTMIN + 4;
}

// Stops the calling thread until ResumeThreadObject lets it go. Cancellation is held off while it
// waits, so a termination never unwinds through the signal handler that may have called this.
void stopUntilResumed(ThreadObject& self)
{
    int cancelState = 0;
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancelState);
    sem_post(&self.acknowledged);
    while (sem_wait(&self.resumed) != 0 && errno == EINTR) {
    }
    pthread_setcancelstate(cancelState, nullptr);
}

void onSuspendSignal(int, siginfo_t* info, void*)
{
    const int savedErrno = errno;
    auto* self = static_cast<ThreadObject*>(info->si_value.sival_ptr);
    if (t_lockDepth > 0)
        self->suspendPending.store(true);
    else
        stopUntilResumed(*self);
    errno = savedErrno;
}

void installSuspendHandler()
{
    static const bool installed = [] {
        struct sigaction action;
        std::memset(&action, 0, sizeof action);
        action.sa_sigaction = &onSuspendSignal;
        action.sa_flags = SA_SIGINFO | SA_RESTART;
        sigemptyset(&action.sa_mask);
        return sigaction(suspendSignal(), &action, nullptr) == 0;
    }();
    (void)installed;
}

// Marks the scope in which the calling thread holds one of this layer's locks; a suspension that
// arrives meanwhile takes effect when the outermost scope ends.
class LockDepthScope
{
public:
    LockDepthScope() { t_lockDepth = t_lockDepth + 1; }
    ~LockDepthScope()
    {
        t_lockDepth = t_lockDepth - 1;
        std::atomic_signal_fence(std::memory_order_seq_cst);
        if (t_lockDepth == 0 && t_currentThread != nullptr && t_currentThread->suspendPending.exchange(false))
            stopUntilResumed(*t_currentThread);
    }
    LockDepthScope(const LockDepthScope&) = delete;
    LockDepthScope& operator=(const LockDepthScope&) = delete;
};

class KernelLock
{
public:
    KernelLock() { pthread_mutex_lock(&g_kernelLock); }
    ~KernelLock() { pthread_mutex_unlock(&g_kernelLock); }
    KernelLock(const KernelLock&) = delete;
    KernelLock& operator=(const KernelLock&) = delete;

private:
    // Declared first, destroyed last: the deferred stop happens after the unlock.
    LockDepthScope m_depth;
};

class ControlLock
{
public:
    explicit ControlLock(ThreadObject& thread) : m_thread(thread) { pthread_mutex_lock(&m_thread.control); }
    ~ControlLock() { pthread_mutex_unlock(&m_thread.control); }
    ControlLock(const ControlLock&) = delete;
    ControlLock& operator=(const ControlLock&) = delete;

private:
    LockDepthScope m_depth;
    ThreadObject& m_thread;
};

// ---- the handle table (kernel lock held) ------------------------------------------------------

HANDLE insertHandle(std::shared_ptr<KernelObject> object)
{
    HandleTable& table = handleTable();
    uint32_t index;
    if (!table.freeSlots.empty()) {
        index = table.freeSlots.back();
        table.freeSlots.pop_back();
    } else {
        index = static_cast<uint32_t>(table.slots.size());
        table.slots.emplace_back();
    }
    HandleSlot& slot = table.slots[index];
    slot.object = std::move(object);
    // Multiples of 4 in the low word, as Windows hands out; the slot's generation in the high word.
    const uintptr_t value = (static_cast<uintptr_t>(slot.generation) << 32) | (static_cast<uintptr_t>(index + 1) << 2);
    return reinterpret_cast<HANDLE>(value);
}

HandleSlot* findSlot(HANDLE handle)
{
    const uintptr_t value = reinterpret_cast<uintptr_t>(handle);
    const uint32_t low = static_cast<uint32_t>(value & 0xFFFFFFFFu);
    const uint32_t generation = static_cast<uint32_t>(value >> 32);
    if (low == 0 || (low & 3) != 0)
        return nullptr;
    const uint32_t index = (low >> 2) - 1;
    HandleTable& table = handleTable();
    if (index >= table.slots.size())
        return nullptr;
    HandleSlot& slot = table.slots[index];
    if (!slot.object || slot.generation != generation)
        return nullptr;
    return &slot;
}

KernelObject* findObject(HANDLE handle)
{
    HandleSlot* slot = findSlot(handle);
    return slot != nullptr ? slot->object.get() : nullptr;
}

// The event behind a handle; null, with EBADF as the last error, for a closed handle or a thread.
KernelObject* findEvent(HANDLE handle)
{
    KernelObject* object = findObject(handle);
    if (object == nullptr || object->isThread) {
        fail(EBADF);
        return nullptr;
    }
    return object;
}

std::shared_ptr<ThreadObject> findThread(HANDLE handle)
{
    KernelLock lock;
    KernelObject* object = findObject(handle);
    if (object == nullptr || !object->isThread)
        return nullptr;
    return std::static_pointer_cast<ThreadObject>(findSlot(handle)->object);
}

// ---- waits (kernel lock held) -----------------------------------------------------------------

void consume(KernelObject& object)
{
    if (object.autoReset)
        object.signalled = false;
}

// Satisfies the wait if its objects allow it now, consuming auto-reset signals.
bool trySatisfy(Waiter& waiter)
{
    if (waiter.waitAll) {
        for (uint32_t i = 0; i < waiter.count; ++i)
            if (!waiter.objects[i]->signalled)
                return false;
        for (uint32_t i = 0; i < waiter.count; ++i)
            consume(*waiter.objects[i]);
        waiter.index = 0;
    } else {
        uint32_t i = 0;
        while (i < waiter.count && !waiter.objects[i]->signalled)
            ++i;
        if (i == waiter.count)
            return false;
        consume(*waiter.objects[i]);
        waiter.index = i;
    }
    waiter.satisfied = true;
    return true;
}

// The object has just become signalled: release the waits it now satisfies, oldest first, until an
// auto-reset signal is consumed.
void releaseWaiters(KernelObject& object)
{
    for (Waiter* waiter : object.waiters) {
        if (!object.signalled)
            break;
        if (!waiter->satisfied && trySatisfy(*waiter))
            sem_post(&waiter->wake);
    }
}

// Keeps a waiter registered with its objects for its lifetime; unregisters on every path, the
// unwinding of a cancelled thread included.
class WaiterRegistration
{
public:
    explicit WaiterRegistration(Waiter& waiter) : m_waiter(waiter)
    {
        for (uint32_t i = 0; i < waiter.count; ++i)
            waiter.objects[i]->waiters.push_back(&waiter);
        if (t_currentThread != nullptr)
            t_currentThread->currentWaiter = &waiter;
    }
    ~WaiterRegistration()
    {
        KernelLock lock;
        if (t_currentThread != nullptr)
            t_currentThread->currentWaiter = nullptr;
        for (uint32_t i = 0; i < m_waiter.count; ++i) {
            std::vector<Waiter*>& waiters = m_waiter.objects[i]->waiters;
            for (auto it = waiters.begin(); it != waiters.end(); ++it) {
                if (*it == &m_waiter) {
                    waiters.erase(it);
                    break;
                }
            }
        }
    }
    WaiterRegistration(const WaiterRegistration&) = delete;
    WaiterRegistration& operator=(const WaiterRegistration&) = delete;

private:
    Waiter& m_waiter;
};

timespec deadlineAfter(uint32_t timeoutMs)
{
    timespec deadline;
    clock_gettime(CLOCK_MONOTONIC, &deadline);
    deadline.tv_sec += static_cast<time_t>(timeoutMs / 1000);
    deadline.tv_nsec += static_cast<long>(timeoutMs % 1000) * 1000000L;
    if (deadline.tv_nsec >= 1000000000L) {
        deadline.tv_sec += 1;
        deadline.tv_nsec -= 1000000000L;
    }
    return deadline;
}

// Waits on the semaphore until the monotonic deadline. The wait itself uses the real-time clock
// (sem_timedwait, which the thread sanitizer knows) and is renewed from the monotonic clock, so
// changes of the system time neither shorten nor stretch it. False on timeout.
bool waitSemaphoreUntil(sem_t& semaphore, const timespec& deadline)
{
    for (;;) {
        timespec now;
        clock_gettime(CLOCK_MONOTONIC, &now);
        int64_t remainingNs = (static_cast<int64_t>(deadline.tv_sec) - now.tv_sec) * 1000000000LL + (deadline.tv_nsec - now.tv_nsec);
        if (remainingNs <= 0)
            return sem_trywait(&semaphore) == 0;
        timespec wallDeadline;
        clock_gettime(CLOCK_REALTIME, &wallDeadline);
        remainingNs += wallDeadline.tv_nsec;
        wallDeadline.tv_sec += static_cast<time_t>(remainingNs / 1000000000LL);
        wallDeadline.tv_nsec = static_cast<long>(remainingNs % 1000000000LL);
        if (sem_timedwait(&semaphore, &wallDeadline) == 0)
            return true;
    }
}

// The wait itself; cancellation is held off by the caller.
uint32_t waitUninterrupted(uint32_t count, const HANDLE* handles, bool waitAll, uint32_t timeoutMs)
{
    if (count == 0 || count > sc_maximumWaitObjects || handles == nullptr) {
        fail(EINVAL);
        return sc_waitFailed;
    }
    // The references keep every object alive while this thread waits, even if its handles are
    // closed meanwhile.
    std::shared_ptr<KernelObject> references[sc_maximumWaitObjects];
    KernelObject* objects[sc_maximumWaitObjects] = {};
    Waiter waiter(objects, count, waitAll);
    // Unregisters (taking the kernel lock itself) when the wait ends, however it ends.
    std::unique_ptr<WaiterRegistration> registration;
    {
        KernelLock lock;
        for (uint32_t i = 0; i < count; ++i) {
            HandleSlot* slot = findSlot(handles[i]);
            if (slot == nullptr) {
                fail(EBADF);
                return sc_waitFailed;
            }
            references[i] = slot->object;
            objects[i] = slot->object.get();
        }
        if (trySatisfy(waiter)) {
            succeed();
            return sc_waitObject0 + waiter.index;
        }
        // A thread being terminated does not go to sleep: it ends at the cancellation test after
        // this wait.
        if (timeoutMs == 0 || (t_currentThread != nullptr && t_currentThread->cancelled)) {
            succeed();
            return sc_waitTimeout;
        }
        registration.reset(new WaiterRegistration(waiter));
    }
    const timespec deadline = deadlineAfter(timeoutMs == INFINITE ? 0 : timeoutMs);
    // A termination posts the semaphore too.
    if (timeoutMs == INFINITE) {
        while (sem_wait(&waiter.wake) != 0 && errno == EINTR) {
        }
    } else {
        waitSemaphoreUntil(waiter.wake, deadline);
    }
    registration.reset();
    bool satisfied;
    uint32_t index;
    {
        KernelLock lock;
        // A signal that arrived together with the timeout was consumed for this wait: honour it.
        satisfied = waiter.satisfied;
        index = waiter.index;
    }
    succeed();
    return satisfied ? sc_waitObject0 + index : sc_waitTimeout;
}

// Every wait of this layer is a cancellation point, before it sleeps and after it wakes.
uint32_t waitForObjects(uint32_t count, const HANDLE* handles, bool waitAll, uint32_t timeoutMs)
{
    pthread_testcancel();
    uint32_t result;
    {
        ThreadTerminationDeferral hold;
        result = waitUninterrupted(count, handles, waitAll, timeoutMs);
    }
    pthread_testcancel();
    return result;
}

// ---- threads ----------------------------------------------------------------------------------

void waitSemaphore(sem_t& semaphore)
{
    while (sem_wait(&semaphore) != 0 && errno == EINTR) {
    }
}

void finishThread(ThreadObject& self, uint32_t exitCode)
{
    {
        KernelLock lock;
        self.exitCode = self.terminating ? self.terminateExitCode : exitCode;
        self.signalled = true;
        releaseWaiters(self);
    }
    ControlLock control(self);
    self.exited.store(true);
}

void* threadMain(void* argument)
{
    auto* transfer = static_cast<std::shared_ptr<ThreadObject>*>(argument);
    const std::shared_ptr<ThreadObject> self(std::move(*transfer));
    delete transfer;
    t_currentThread = self.get();
    self->threadId = GetCurrentThreadIdentifier();
    sem_post(&self->ready);
    uint32_t exitCode = 0;
    try {
        {
            ThreadTerminationDeferral hold;
            waitSemaphore(self->start);
        }
        // A thread terminated before its first resume ends here.
        pthread_testcancel();
        exitCode = self->routine(self->argument);
    } catch (...) {
        // The cancellation's unwinding (nothing else leaves a routine that the library starts):
        // record the end, then let it go on to end the system thread.
        finishThread(*self, exitCode);
        t_currentThread = nullptr;
        throw;
    }
    finishThread(*self, exitCode);
    t_currentThread = nullptr;
    return nullptr;
}

// The Windows priority ladder and the nice value each step maps to.
const int32_t sc_priorityLadder[] = {-15, -2, -1, 0, 1, 2, 15};
const int sc_niceOfStep[] = {19, 10, 5, 0, -5, -10, -20};

int32_t priorityOfNice(int nice)
{
    if (nice >= 15)
        return -15;
    if (nice >= 8)
        return -2;
    if (nice >= 3)
        return -1;
    if (nice > -3)
        return 0;
    if (nice > -8)
        return 1;
    if (nice > -15)
        return 2;
    return 15;
}

} // namespace

// ---- events -----------------------------------------------------------------------------------

HANDLE CreateEventObject(bool manualReset, bool initiallySignalled)
{
    try {
        auto object = std::make_shared<KernelObject>(false, !manualReset, initiallySignalled);
        KernelLock lock;
        HANDLE handle = insertHandle(std::move(object));
        succeed();
        return handle;
    } catch (const std::bad_alloc&) {
        fail(ENOMEM);
        return nullptr;
    }
}

bool SetEventObject(HANDLE event)
{
    KernelLock lock;
    KernelObject* object = findEvent(event);
    if (object == nullptr)
        return false;
    object->signalled = true;
    releaseWaiters(*object);
    return succeed();
}

bool ResetEventObject(HANDLE event)
{
    KernelLock lock;
    KernelObject* object = findEvent(event);
    if (object == nullptr)
        return false;
    object->signalled = false;
    return succeed();
}

bool PulseEventObject(HANDLE event)
{
    KernelLock lock;
    KernelObject* object = findEvent(event);
    if (object == nullptr)
        return false;
    object->signalled = true;
    releaseWaiters(*object);
    object->signalled = false;
    return succeed();
}

uint32_t WaitForObject(HANDLE object, uint32_t timeoutMs)
{
    return waitForObjects(1, &object, false, timeoutMs);
}

uint32_t WaitForObjects(uint32_t count, const HANDLE* objects, bool waitAll, uint32_t timeoutMs)
{
    return waitForObjects(count, objects, waitAll, timeoutMs);
}

HANDLE DuplicateObjectHandle(HANDLE object, bool)
{
    try {
        KernelLock lock;
        HandleSlot* slot = findSlot(object);
        if (slot == nullptr) {
            fail(EBADF);
            return nullptr;
        }
        HANDLE duplicate = insertHandle(slot->object);
        succeed();
        return duplicate;
    } catch (const std::bad_alloc&) {
        fail(ENOMEM);
        return nullptr;
    }
}

bool CloseObjectHandle(HANDLE object)
{
    // The last reference may go here; the object dies after the lock is released.
    std::shared_ptr<KernelObject> released;
    KernelLock lock;
    HandleSlot* slot = findSlot(object);
    if (slot == nullptr)
        return fail(EBADF);
    released = std::move(slot->object);
    ++slot->generation;
    // A slot whose generation would wrap to 0 is retired, so no handle value ever repeats.
    if (slot->generation != 0)
        handleTable().freeSlots.push_back(static_cast<uint32_t>(slot - handleTable().slots.data()));
    return succeed();
}

// ---- threads ----------------------------------------------------------------------------------

HANDLE CreateThreadObject(ThreadRoutine routine, void* argument, uint32_t stackSize, bool suspended, uint32_t& threadId)
{
    installSuspendHandler();
    std::shared_ptr<ThreadObject> object;
    std::shared_ptr<ThreadObject>* transfer = nullptr;
    try {
        object = std::make_shared<ThreadObject>(routine, argument, suspended);
        transfer = new std::shared_ptr<ThreadObject>(object);
    } catch (const std::bad_alloc&) {
        fail(ENOMEM);
        return nullptr;
    }
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    if (stackSize != 0)
        pthread_attr_setstacksize(&attributes, stackSize < PTHREAD_STACK_MIN ? PTHREAD_STACK_MIN : stackSize);
    pthread_t thread;
    const int result = pthread_create(&thread, &attributes, &threadMain, transfer);
    pthread_attr_destroy(&attributes);
    if (result != 0) {
        delete transfer;
        fail(result);
        return nullptr;
    }
    waitSemaphore(object->ready);
    {
        ControlLock control(*object);
        object->thread = thread;
    }
    threadId = object->threadId;
    try {
        KernelLock lock;
        HANDLE handle = insertHandle(object);
        succeed();
        return handle;
    } catch (const std::bad_alloc&) {
        // The thread exists but cannot be named; a suspended one is let go to end at once.
        if (suspended) {
            pthread_cancel(thread);
            ControlLock control(*object);
            object->started = true;
            sem_post(&object->start);
        }
        fail(ENOMEM);
        return nullptr;
    }
}

uint32_t SuspendThreadObject(HANDLE thread)
{
    const std::shared_ptr<ThreadObject> object = findThread(thread);
    if (!object) {
        fail(EBADF);
        return 0xFFFFFFFFu;
    }
    const bool self = object->threadId == GetCurrentThreadIdentifier();
    uint32_t previous;
    bool signalled = false;
    {
        ControlLock control(*object);
        if (object->exited.load()) {
            fail(ESRCH);
            return 0xFFFFFFFFu;
        }
        previous = object->suspendCount;
        // A thread still held before its first resume needs no signal: the count keeps it held.
        if (previous == 0 && object->started) {
            sigval value;
            value.sival_ptr = object.get();
            const int result = pthread_sigqueue(object->thread, suspendSignal(), value);
            if (result != 0) {
                fail(result);
                return 0xFFFFFFFFu;
            }
            signalled = true;
        }
        ++object->suspendCount;
    }
    if (signalled && !self) {
        // Windows returns once the thread is stopped; so does this. The lock is not held meanwhile,
        // so the thread can finish a locked section before it stops, and a thread that ends instead
        // of stopping does not keep this call waiting.
        while (!waitSemaphoreUntil(object->acknowledged, deadlineAfter(10)) && !object->exited.load()) {
        }
    } else if (signalled) {
        // The thread stopped itself and has been resumed: take back its acknowledgement.
        sem_trywait(&object->acknowledged);
    }
    succeed();
    return previous;
}

uint32_t ResumeThreadObject(HANDLE thread)
{
    const std::shared_ptr<ThreadObject> object = findThread(thread);
    if (!object) {
        fail(EBADF);
        return 0xFFFFFFFFu;
    }
    ControlLock control(*object);
    if (object->exited.load()) {
        fail(ESRCH);
        return 0xFFFFFFFFu;
    }
    const uint32_t previous = object->suspendCount;
    if (previous > 0 && --object->suspendCount == 0) {
        if (!object->started) {
            object->started = true;
            sem_post(&object->start);
        } else {
            sem_post(&object->resumed);
        }
    }
    succeed();
    return previous;
}

bool TerminateThreadObject(HANDLE thread, uint32_t exitCode)
{
    const std::shared_ptr<ThreadObject> object = findThread(thread);
    if (!object)
        return fail(EBADF);
    {
        KernelLock lock;
        if (object->signalled)
            return succeed();
        object->terminating = true;
        object->terminateExitCode = exitCode;
    }
    const bool self = object->threadId == GetCurrentThreadIdentifier();
    {
        ControlLock control(*object);
        if (object->exited.load())
            return succeed();
        // Requested first, so that the thread finds the cancellation pending wherever it is woken.
        const int result = pthread_cancel(object->thread);
        if (result != 0)
            return fail(result);
        // A thread held before its first resume, or stopped by a suspension, is let go: it ends at
        // its next cancellation test.
        if (!object->started) {
            object->started = true;
            object->suspendCount = 0;
            sem_post(&object->start);
        } else if (object->suspendCount > 0) {
            object->suspendCount = 0;
            sem_post(&object->resumed);
        }
    }
    {
        KernelLock lock;
        object->cancelled = true;
        if (object->currentWaiter != nullptr)
            sem_post(&object->currentWaiter->wake);
    }
    if (self)
        pthread_testcancel();
    waitForObjects(1, &thread, false, 1000);
    return succeed();
}

bool GetThreadExitCode(HANDLE thread, uint32_t& exitCode)
{
    KernelLock lock;
    KernelObject* object = findObject(thread);
    if (object == nullptr || !object->isThread)
        return fail(EBADF);
    exitCode = static_cast<ThreadObject*>(object)->exitCode;
    return succeed();
}

bool SetThreadPriorityLevel(HANDLE thread, int32_t priority)
{
    const std::shared_ptr<ThreadObject> object = findThread(thread);
    if (!object)
        return fail(EBADF);
    int step = 0;
    while (step < 7 && sc_priorityLadder[step] != priority)
        ++step;
    if (step == 7)
        return fail(EINVAL);
    // Under the control lock the thread cannot leave the system, so its id names no other thread.
    ControlLock control(*object);
    if (object->exited.load())
        return fail(ESRCH);
    if (setpriority(PRIO_PROCESS, static_cast<id_t>(object->threadId), sc_niceOfStep[step]) != 0)
        return fail(errno);
    return succeed();
}

int32_t GetThreadPriorityLevel(HANDLE thread)
{
    const std::shared_ptr<ThreadObject> object = findThread(thread);
    if (!object) {
        fail(EBADF);
        return sc_threadPriorityError;
    }
    ControlLock control(*object);
    if (object->exited.load()) {
        fail(ESRCH);
        return sc_threadPriorityError;
    }
    errno = 0;
    const int nice = getpriority(PRIO_PROCESS, static_cast<id_t>(object->threadId));
    if (nice == -1 && errno != 0) {
        fail(errno);
        return sc_threadPriorityError;
    }
    succeed();
    return priorityOfNice(nice);
}

// The cancellation's unwinding is not a C++ object: the handler's reference binds to nothing, which
// the undefined-behaviour sanitizer would report. Only its type matters here.
__attribute__((no_sanitize_undefined)) void RethrowThreadCancellation()
{
    try {
        throw;
    } catch (abi::__forced_unwind&) {
        throw;
    } catch (...) {
    }
}

ThreadTerminationDeferral::ThreadTerminationDeferral() : m_previousState(PTHREAD_CANCEL_ENABLE)
{
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &m_previousState);
}

ThreadTerminationDeferral::~ThreadTerminationDeferral()
{
    int ignored;
    pthread_setcancelstate(m_previousState, &ignored);
}

} // namespace ZoOS
