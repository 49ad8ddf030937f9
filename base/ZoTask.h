#pragma once

#include "base/ZoCheckReturn.h"
#include "base/ZoEvent.h"
#include "base/ZoReferenceCountedClass.h"
#include "platform/ZoExport.h"

#include <atomic>

/// ZoTask: one unit of work for the thread pool or a worker thread. Derived classes put the work in
/// run(); the runners call Run(), which turns run()'s result and any exception into the success flag.
/// Tasks are reference counted and held through ZoSmartPointer<ZoTask> everywhere.
///
/// The done event lets the submitter wait: the pool calls onAdd() (which resets it) when the task is
/// handed over and onAfterRun() (which sets it) after Run(). A worker thread's queue calls neither,
/// so on that path the done event stays as it was.
///
/// Success is written by the running thread and may be read by any thread; read it after
/// WaitUntilTerminate for a settled answer.
/// @ingroup concurrency
class ZO_API ZoTask : public ZoReferenceCountedClass<ZoTask>
{
public:
    /// run()'s result: a bool whose value must be looked at (an unchecked one asserts).
    typedef ZoCheckReturn<bool, ZoCheckReturnPolicyAssert> CheckedBool;

    /// Done event not signalled, success false.
    ZoTask();
    /// Copies the success flag and duplicates the done event (both tasks then share one event); the
    /// reference count is copied as the base class copies it.
    ZoTask(const ZoTask& other);
    /// Copies the success flag and makes this task share `other`'s done event, as the copy constructor does.
    ZoTask& operator=(const ZoTask& other);
    ~ZoTask() override;

protected:
    /// The work. True for success. (Declared here, after the destructor: the slot order of the
    /// virtual operations is part of the class's binary interface.)
    virtual CheckedBool run() = 0;

public:
    /// Calls run(). An exception makes the task unsuccessful and goes no further; otherwise the
    /// result is looked at and becomes the success flag. Does not signal the done event.
    void Run();
    /// The result of the last Run(); false before any run and after one that threw.
    bool IsSuccessful() const { return m_success.load(); }
    /// Blocks up to `timeoutMs` (INFINITE: without limit) on the done event; false only when the
    /// wait timed out.
    CheckedBool WaitUntilTerminate(unsigned int timeoutMs) const;

    /// Resets the done event; the pool calls it when the task is handed over.
    virtual void onAdd();
    /// Empty; the pool calls it on the worker just before Run().
    virtual void onBeforeRun();
    /// Sets the done event; the pool calls it on the worker just after Run().
    virtual void onAfterRun();
    /// Empty; for derived classes that support cancelling.
    virtual void onCancel();

private:
    ZoEvent m_done;
    std::atomic<bool> m_success;
};
