#include "base/ZoEvent.h"
#include "base/ZoThread.h"
#include "base/ZoThreadPolicyMFC.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <stdexcept>
#include <thread>

namespace {

const uint32_t sc_uiLongWaitMs = 30000;

// The object whose member function a thread runs; what it does is chosen per test. Waiting for the
// gate, it notes whether its stack was unwound.
struct Job
{
    enum EMode { eSucceed, eReturnZero, eThrow, eWaitForGate };
    explicit Job(EMode jobMode) : mode(jobMode) {}
    int Run()
    {
        ++runs;
        if (mode == eThrow)
            throw std::runtime_error("job failed");
        if (mode == eWaitForGate) {
            struct UnwindProbe
            {
                std::atomic<bool>& flag;
                ~UnwindProbe() { flag = true; }
            } probe{unwound};
            waiting = true;
            gate.Wait(INFINITE);
            passedGate = true;
        }
        return mode == eReturnZero ? 0 : 1;
    }
    const EMode mode;
    ZoEvent gate{true};
    std::atomic<int> runs{0};
    std::atomic<bool> waiting{false}, passedGate{false}, unwound{false};
};

class JobThread : public ZoThread<Job, ZoThreadPolicyMFC>
{
public:
    explicit JobThread(Job& job, EThreadPriority priority = eNormal, bool throwBeforeRun = false, std::atomic<bool>* destroyed = nullptr)
        : ZoThread<Job, ZoThreadPolicyMFC>(job, &Job::Run, CString(u"JobThread"), priority), m_throwBeforeRun(throwBeforeRun),
          m_destroyed(destroyed)
    {
    }
    ~JobThread() override
    {
        if (m_destroyed != nullptr)
            *m_destroyed = true;
    }
    std::atomic<int> beforeRunCalls{0}, afterRunCalls{0};
    std::atomic<bool> startupDone{false};

protected:
    void onBeforeRun() override
    {
        ++beforeRunCalls;
        if (m_throwBeforeRun)
            throw std::runtime_error("start-up failed");
        // Some start-up work that StartAndWait must wait for.
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
        startupDone = true;
    }
    void onAfterRun(uint32_t) override { ++afterRunCalls; }

private:
    const bool m_throwBeforeRun;
    std::atomic<bool>* const m_destroyed;
};

uint32_t exitCodeOf(HANDLE thread)
{
    uint32_t code = 0;
    EXPECT_TRUE(ZoOS::GetThreadExitCode(thread, code));
    return code;
}

TEST(ZoThreadConcurrentTest, TheRoutineRunsTheHooksAndTurnsFailuresIntoExitCodeOne)
{
    const struct
    {
        Job::EMode mode;
        bool throwBeforeRun;
        int expectedRuns;
        bool succeeds;
    } cases[] = {
        {Job::eSucceed, false, 1, true},
        {Job::eReturnZero, false, 1, false}, // a run function returning 0
        {Job::eThrow, false, 1, false},      // an exception from the run function
        {Job::eSucceed, true, 0, false},     // an exception from onBeforeRun skips the run function
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "mode " << c.mode << ", throwing hook " << c.throwBeforeRun);
        Job job(c.mode);
        JobThread thread(job, JobThread::eNormal, c.throwBeforeRun);
        EXPECT_TRUE(thread.GetState() == 0 && thread.WaitUntilTerminate(0)) << "no thread: the failed wait reports true";
        ZoEvent ended(true);
        thread.SetTerminateEvent(ended);
        ASSERT_TRUE(thread.Start());
        EXPECT_NE(thread.GetThreadId(), 0u);
        ASSERT_TRUE(thread.WaitUntilTerminate(sc_uiLongWaitMs) && ended.Wait(sc_uiLongWaitMs) == ZoEvent::eWaitSignaled);
        EXPECT_TRUE(job.runs.load() == c.expectedRuns && thread.beforeRunCalls.load() == 1);
        EXPECT_EQ(thread.afterRunCalls.load(), c.succeeds ? 1 : 0) << "onAfterRun runs only after a successful run function";
        EXPECT_EQ(thread.IsSuccessful() != 0, c.succeeds);
        EXPECT_EQ(exitCodeOf(thread.GetThreadHandle()), c.succeeds ? 0u : 1u);
        EXPECT_EQ(thread.GetState(), JobThread::eStarted | JobThread::eFinished | (c.succeeds ? 0u : JobThread::eFailed));
    }
}

// StartAndWait returns after the start-up hook (even a failing one) but not after the run; Start
// while running changes nothing; a finished object starts a new thread; an auto-delete object
// deletes itself.
TEST(ZoThreadConcurrentTest, StartWaitRestartAndAutoDelete)
{
    Job job(Job::eWaitForGate);
    JobThread thread(job);
    EXPECT_FALSE(thread.Suspend() || thread.Resume()) << "nothing runs yet";
    ASSERT_TRUE(thread.StartAndWait());
    EXPECT_TRUE(thread.startupDone.load());
    ASSERT_TRUE(zotest::WaitUntil([&] { return job.waiting.load(); }));
    EXPECT_TRUE(thread.IsRunning() && exitCodeOf(thread.GetThreadHandle()) == STILL_ACTIVE);
    const HANDLE handle = thread.GetThreadHandle();
    const uint32_t id = thread.GetThreadId();
    EXPECT_FALSE(thread.Start());
    EXPECT_TRUE(thread.GetThreadHandle() == handle && thread.GetThreadId() == id);
    EXPECT_FALSE(thread.WaitUntilTerminate(0));
    // Suspended, the thread does not leave its wait when the gate opens; the OS layer's test shows
    // that a running one stands still.
    ASSERT_TRUE(thread.Suspend());
    EXPECT_TRUE(thread.Suspend() && (thread.GetState() & JobThread::eSuspended)) << "already suspended";
    job.gate.Set();
    EXPECT_FALSE(thread.WaitUntilTerminate(20));
    ASSERT_TRUE(thread.Resume() && !(thread.GetState() & JobThread::eSuspended));
    ASSERT_TRUE(thread.WaitUntilTerminate(sc_uiLongWaitMs));
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(thread.WaitUntilTerminate(sc_uiLongWaitMs));
    EXPECT_TRUE(job.runs.load() == 2 && thread.IsSuccessful());
    Job failing(Job::eSucceed);
    JobThread failingStart(failing, JobThread::eNormal, true);
    EXPECT_TRUE(failingStart.StartAndWait()) << "a failed start-up hook still releases the caller";
    ASSERT_TRUE(failingStart.WaitUntilTerminate(sc_uiLongWaitMs) && !failingStart.IsSuccessful());
    std::atomic<bool> destroyed{false};
    auto* autoDelete = new JobThread(failing, JobThread::eNormal, false, &destroyed);
    autoDelete->AddFlags(JobThread::eAutoDelete);
    ASSERT_TRUE(autoDelete->Start());
    EXPECT_TRUE(zotest::WaitUntil([&] { return destroyed.load(); }));
    EXPECT_EQ(failing.runs.load(), 1);
}

TEST(ZoThreadConcurrentTest, TerminateEndsAWaitingThread)
{
    Job job(Job::eWaitForGate);
    JobThread thread(job);
    ASSERT_TRUE(thread.Start());
    ASSERT_TRUE(zotest::WaitUntil([&] { return job.waiting.load(); }));
    const HANDLE observer = ZoOS::DuplicateObjectHandle(thread.GetThreadHandle(), false);
    ASSERT_NE(observer, nullptr);
    thread.Terminate();
    EXPECT_TRUE(thread.GetThreadHandle() == nullptr && thread.GetState() == uint32_t(JobThread::eFinished) && !thread.IsRunning());
    // The thread ended in its wait: the rest of its routine never ran.
    EXPECT_EQ(ZoOS::WaitForObject(observer, sc_uiLongWaitMs), ZoOS::sc_waitObject0);
    EXPECT_EQ(exitCodeOf(observer), STILL_ACTIVE) << "the code Terminate hands to the system";
    job.gate.Set();
    EXPECT_TRUE(!job.passedGate.load() && thread.afterRunCalls.load() == 0);
#if !defined(_WIN32)
    EXPECT_TRUE(job.unwound.load()) << "a cancelled POSIX thread unwinds its stack";
#endif
    ZoOS::CloseObjectHandle(observer);
    ASSERT_TRUE(thread.Start()) << "a terminated thread object starts again";
    ASSERT_TRUE(thread.WaitUntilTerminate(sc_uiLongWaitMs));
    EXPECT_TRUE(job.passedGate.load());
}

TEST(ZoThreadConcurrentTest, PriorityLadder)
{
    Job job(Job::eWaitForGate);
    JobThread thread(job, JobThread::eBelowNormal);
    EXPECT_FALSE(thread.SetPriority(JobThread::eNormal)) << "no thread yet";
    ASSERT_TRUE(thread.Start());
    EXPECT_EQ(thread.GetPriority(), JobThread::eBelowNormal) << "Start applies the requested priority";
    // From the top down, so that a process that may only lower priorities still walks the ladder;
    // only a raise may be refused (POSIX without the privilege), and the error says why.
    bool mayRaise = true;
    for (const auto priority : {JobThread::eTimeCritical, JobThread::eHighest, JobThread::eAboveNormal, JobThread::eNormal,
                                JobThread::eBelowNormal, JobThread::eLowest, JobThread::eIdle}) {
        const bool set = thread.SetPriority(priority);
        const uint32_t error = ZoOS::GetLastErrorCode();
        EXPECT_TRUE(set ? thread.GetPriority() == priority : priority > JobThread::eBelowNormal && (error == EACCES || error == EPERM))
            << "priority " << priority << ", error " << error;
        mayRaise = mayRaise && set;
    }
    EXPECT_TRUE(!thread.SlowDown() && thread.GetPriority() == JobThread::eIdle) << "the bottom of the ladder";
    EXPECT_EQ(thread.GetRequestedPriority(), JobThread::eBelowNormal) << "SetPriority leaves the request alone";
    if (mayRaise) {
        ASSERT_TRUE(thread.SetPriority(JobThread::eTimeCritical));
        EXPECT_FALSE(thread.SpeedUp()) << "the top of the ladder";
        EXPECT_TRUE(thread.SlowDown() && thread.GetPriority() == JobThread::eHighest);
        EXPECT_TRUE(thread.SpeedUp() && thread.GetPriority() == JobThread::eTimeCritical);
    }
    job.gate.Set();
    ASSERT_TRUE(thread.WaitUntilTerminate(sc_uiLongWaitMs));
    if (!mayRaise)
        GTEST_SKIP() << "this process may not raise thread priorities; the top of the ladder was not checked";
}

// The policy creates a running thread unless asked for a suspended one, and applies a priority
// other than 0 to it.
TEST(ZoThreadConcurrentTest, PolicyCreatesSuspendedOnlyWhenAskedAndAppliesThePriority)
{
    for (const uint32_t flags : {0u, ZoThreadPolicyMFC::sc_uiCreateSuspended}) {
        SCOPED_TRACE(testing::Message() << "flags " << flags);
        Job job(Job::eWaitForGate);
        ZoThreadPolicyMFC policy;
        uint32_t id = 0;
        auto routine = [](void* argument) -> uint32_t { return static_cast<uint32_t>(static_cast<Job*>(argument)->Run()); };
        const HANDLE thread = policy.BeginThread(routine, &job, JobThread::eBelowNormal, 0, flags, id);
        ASSERT_NE(thread, nullptr);
        EXPECT_EQ(ZoOS::ResumeThreadObject(thread), flags != 0 ? 1u : 0u);
        EXPECT_EQ(ZoOS::GetThreadPriorityLevel(thread), int32_t(JobThread::eBelowNormal));
        ASSERT_TRUE(zotest::WaitUntil([&] { return job.waiting.load(); }));
        job.gate.Set();
        EXPECT_TRUE(ZoOS::WaitForObject(thread, sc_uiLongWaitMs) == ZoOS::sc_waitObject0 && exitCodeOf(thread) == 1u);
        ZoOS::CloseObjectHandle(thread);
    }
}

} // namespace
