#include "base/ZoConsole.h"
#include "base/ZoStreamWriteASCIIConsole.h"

#include <gtest/gtest.h>

namespace {

TEST(ZoStreamWriteASCIIConsoleTest, AttachesOnConstructionAndLeavesTheConsoleInUse)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the console there is a window of its own, not the captured standard output";
#endif
    ZoConsole::Delete();
    testing::internal::CaptureStdout();
    ZoStreamWriteASCIIConsole(u"title") << 1 << u"a" << 2.5 << static_cast<short>(-1);
    EXPECT_TRUE(ZoConsole::HasConsole());
    ZoConsole::Write(u"|");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1a2.5000004294967295|");
    ZoConsole::Delete();
}

} // namespace
