// The console facade's two flags through every transition, and that text reaches standard output
// only while there is a console.
#include "base/ZoConsole.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::string writeCaptured(const CString& text)
{
    testing::internal::CaptureStdout();
    ZoConsole::Write(text);
    return testing::internal::GetCapturedStdout();
}

TEST(ZoConsoleTest, FlagsFollowAttachCreateAndDelete)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the console there is a window of its own, not the captured standard output";
#endif
    ZoConsole::Delete();
    EXPECT_FALSE(ZoConsole::HasConsole());
    EXPECT_FALSE(ZoConsole::IsAttached());
    EXPECT_EQ(writeCaptured(u"lost"), "");

    // Standard output is the parent's console, so attaching succeeds.
    ZoConsole::Attach(0);
    EXPECT_TRUE(ZoConsole::HasConsole());
    EXPECT_TRUE(ZoConsole::IsAttached());
    // With a console in use, Create changes nothing.
    ZoConsole::Create();
    EXPECT_TRUE(ZoConsole::IsAttached());
    EXPECT_EQ(writeCaptured(u"x = \u00e9\n"), "x = \u00e9\n");

    ZoConsole::Delete();
    EXPECT_FALSE(ZoConsole::HasConsole());
    EXPECT_FALSE(ZoConsole::IsAttached());

    // A console of our own is not attached, and a later Attach leaves it so.
    ZoConsole::Create();
    EXPECT_TRUE(ZoConsole::HasConsole());
    EXPECT_FALSE(ZoConsole::IsAttached());
    ZoConsole::Attach(1);
    EXPECT_FALSE(ZoConsole::IsAttached());
    EXPECT_EQ(writeCaptured(u"own"), "own");
    ZoConsole::Delete();
}

} // namespace
