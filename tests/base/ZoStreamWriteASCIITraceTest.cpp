#include "base/ZoStreamWriteASCIITrace.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(ZoStreamWriteASCIITraceTest, TextReachesTheTraceOutputWholeInDebugBuildsOnly)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the trace output there is the debugger's, not standard error";
#endif
    // Long enough to be passed on in three pieces; the pieces must join up seamlessly.
    std::string longText;
    for (int i = 0; i < 2100; ++i)
        longText += static_cast<char>('a' + i % 26);

    testing::internal::CaptureStderr();
    {
        ZoStreamWriteASCIITrace stream;
        stream << u"" << 12 << u" " << CString(longText) << u"\n";
    }
    const std::string traced = testing::internal::GetCapturedStderr();
#if defined(NDEBUG)
    EXPECT_EQ(traced, "");
#else
    EXPECT_EQ(traced, "12 " + longText + "\n");
#endif
}

} // namespace
