#include "base/ZoAssertDialog.h"

#include <gtest/gtest.h>

namespace {

TEST(ZoAssertDialogTest, ReportsFileLineAndExpressionThenFollowsThePolicy)
{
    EXPECT_EQ(ZoAssertDialog::FormatReport("lib/a.cpp", 42, "count > 0"),
              CString(u"Assertion failed: count > 0, file lib/a.cpp, line 42"));
    EXPECT_EQ(ZoAssertDialog::GetPolicy(), ZoAssertDialog::eAbort) << "the default";
#if defined(_WIN32)
    GTEST_SKIP() << "the report is a message box there, not text on standard error";
#else
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eContinue);
    testing::internal::CaptureStderr();
    int evaluated = 0;
    ZO_ASSERT(++evaluated == 1);
    ZO_ASSERT(evaluated == 2);
    const std::string shown = testing::internal::GetCapturedStderr();
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eAbort);
    EXPECT_EQ(evaluated, 1) << "the expression is evaluated once";
    EXPECT_EQ(shown, "Assertion: Assertion failed: evaluated == 2, file " __FILE__ ", line " + std::to_string(__LINE__ - 4) + "\n");

    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_DEATH(ZO_ASSERT(evaluated == 3), "Assertion failed: evaluated == 3");
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eBreak);
    EXPECT_EXIT(ZO_ASSERT(evaluated == 4), testing::KilledBySignal(SIGTRAP), "evaluated == 4");
    ZoAssertDialog::SetPolicy(ZoAssertDialog::eAbort);
#endif
}

} // namespace
