#include "base/ZoCheckReturn.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoTask.h"

#include <gtest/gtest.h>

#include <stdexcept>

namespace {

class ScriptedTask : public ZoTask
{
public:
    enum EOutcome
    {
        eSucceed,
        eFail,
        eThrow,
    };
    explicit ScriptedTask(EOutcome outcome) : m_outcome(outcome) {}

    int runs = 0;

protected:
    CheckedBool run() override
    {
        ++runs;
        if (m_outcome == eThrow)
            throw std::runtime_error("task failed");
        return m_outcome == eSucceed;
    }

private:
    EOutcome m_outcome;
};

TEST(ZoTaskTest, RunTurnsResultsAndExceptionsIntoSuccess)
{
    const ScriptedTask::EOutcome outcomes[] = {ScriptedTask::eSucceed, ScriptedTask::eFail, ScriptedTask::eThrow};
    for (ScriptedTask::EOutcome outcome : outcomes) {
        SCOPED_TRACE(testing::Message() << "outcome " << outcome);
        ZoSmartPointer<ScriptedTask> task(new ScriptedTask(outcome));
        EXPECT_FALSE(task->IsSuccessful());
        EXPECT_NO_THROW(task->Run());
        EXPECT_EQ(task->runs, 1);
        EXPECT_EQ(task->IsSuccessful(), outcome == ScriptedTask::eSucceed);
        EXPECT_FALSE(task->WaitUntilTerminate(0)) << "Run itself does not signal the done event";
    }
}

TEST(ZoTaskTest, DoneEventFollowsTheHooks)
{
    ZoSmartPointer<ScriptedTask> task(new ScriptedTask(ScriptedTask::eSucceed));
    task->onAfterRun();
    EXPECT_TRUE(task->WaitUntilTerminate(0));
    EXPECT_TRUE(task->WaitUntilTerminate(INFINITE));
    task->onAdd();
    EXPECT_FALSE(task->WaitUntilTerminate(10));
    task->onBeforeRun();
    task->onCancel();
    EXPECT_FALSE(task->WaitUntilTerminate(0));

    // A copy shares the done event and takes the success flag.
    task->Run();
    ScriptedTask copy(*task);
    EXPECT_TRUE(copy.IsSuccessful());
    task->onAfterRun();
    EXPECT_TRUE(copy.WaitUntilTerminate(0));
    copy.onAdd();
    EXPECT_FALSE(task->WaitUntilTerminate(0));
}

TEST(ZoTaskTest, CheckedResultHandsOnTheDutyToLook)
{
    ZoCheckReturn<bool, ZoCheckReturnPolicyAssert> result(true);
    EXPECT_FALSE(result.IsChecked());
    ZoCheckReturn<bool, ZoCheckReturnPolicyAssert> copy(result);
    EXPECT_TRUE(result.IsChecked()) << "the copy took the duty over";
    EXPECT_FALSE(copy.IsChecked());
    const bool value = copy;
    EXPECT_TRUE(value);
    EXPECT_TRUE(copy.IsChecked());
    ZoCheckReturn<bool, ZoCheckReturnPolicyAssert> ignored(false);
    ignored.Ignore();
    EXPECT_TRUE(ignored.IsChecked());
#if GTEST_HAS_DEATH_TEST && !defined(_WIN32)
    typedef ZoCheckReturn<bool, ZoCheckReturnPolicyAssert> CheckedBool;
    EXPECT_DEBUG_DEATH({ CheckedBool forgotten(true); }, "never looked at");
#endif
}

} // namespace
