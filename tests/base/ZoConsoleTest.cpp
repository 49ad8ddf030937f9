// The console facade's two flags through every transition, text reaching standard output only
// while there is a console, and the console stream that attaches one.
#include "base/ZoConsole.h"
#include "base/ZoStreamWriteASCIIConsole.h"

#include <gtest/gtest.h>

namespace {

std::string writeCaptured(const CString& text)
{
    testing::internal::CaptureStdout();
    ZoConsole::Write(text);
    return testing::internal::GetCapturedStdout();
}

void expectFlags(bool hasConsole, bool attached)
{
    EXPECT_EQ(ZoConsole::HasConsole(), hasConsole);
    EXPECT_EQ(ZoConsole::IsAttached(), attached);
}

TEST(ZoConsoleTest, FlagsFollowAttachCreateAndDelete)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the console there is a window of its own, not the captured standard output";
#endif
    ZoConsole::Delete();
    expectFlags(false, false);
    EXPECT_EQ(writeCaptured(u"lost"), "");
    ZoConsole::Attach(0); // standard output is the parent's console, so attaching succeeds
    expectFlags(true, true);
    ZoConsole::Create(); // with a console in use, this changes nothing
    expectFlags(true, true);
    EXPECT_EQ(writeCaptured(u"x = \u00e9\n"), "x = \u00e9\n");
    ZoConsole::Delete();
    expectFlags(false, false);
    // A console of our own is not attached, and a later Attach leaves it so.
    ZoConsole::Create();
    expectFlags(true, false);
    ZoConsole::Attach(1);
    expectFlags(true, false);
    EXPECT_EQ(writeCaptured(u"own"), "own");
    ZoConsole::Delete();

    // The console stream attaches on construction and leaves the console in use.
    testing::internal::CaptureStdout();
    ZoStreamWriteASCIIConsole(u"title") << 1 << u"a" << 2.5 << static_cast<short>(-1);
    EXPECT_TRUE(ZoConsole::HasConsole());
    ZoConsole::Write(u"|");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1a2.5000004294967295|");
    ZoConsole::Delete();
}

} // namespace
