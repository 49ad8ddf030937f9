// The diagnostics stream through the process-wide client. The failure test runs in a fresh process
// of its own, since the client makes one load attempt per process.
#include "base/ZoStreamWriteASCIITraceDiagnostic.h"
#include "platform/ZoOS.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

TEST(ZoStreamWriteASCIITraceDiagnosticTest, WithoutTheViewerTheUserIsToldOnceAndWritesAreDropped)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the message is a message box there, not text on standard error";
#endif
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            testing::internal::CaptureStderr();
            ZoStreamWriteASCIITraceDiagnostic() << u"first" << 2;
            ZoStreamWriteASCIITraceDiagnostic() << 3.5;
            const std::string shown = testing::internal::GetCapturedStderr();
            std::fprintf(stderr, "%s", shown.c_str());
            std::exit(shown == "Error: ZoDiagnosticsClient: Could not load library libDiagnosticsClient.so\n" ? 0 : 1);
        },
        testing::ExitedWithCode(0), "");
}

TEST(ZoStreamWriteASCIITraceDiagnosticTest, EachWriteIsOneMessageToTheViewer)
{
    // Loaded by its full path first, the stand-in is what the client's lookup by plain name finds.
    std::u16string path = CString(ZO_TEST_DIAGNOSTICS_CLIENT).GetStdString();
    for (char16_t& c : path)
        c = c == u'/' ? ZoOS::GetPathSeparator() : c;
    const ZoOS::LibraryHandle standIn = ZoOS::LoadDynamicLibrary(CString(path));
    ASSERT_NE(standIn, nullptr);
    const auto count = reinterpret_cast<int (*)()>(ZoOS::GetDynamicEntry(standIn, "StandInTraceCount"));
    const auto last = reinterpret_cast<const char16_t* (*)()>(ZoOS::GetDynamicEntry(standIn, "StandInLastTrace"));

    testing::internal::CaptureStderr();
    ZoStreamWriteASCIITraceDiagnostic stream;
    const int before = count();
    stream << 42;
    EXPECT_EQ(CString(last()), CString(u"42"));
    stream << CString(u"100%% of %s");
    EXPECT_EQ(CString(last()), CString(u"100% of %s"));
    stream << static_cast<short>(-1);
    EXPECT_EQ(CString(last()), CString(u"4294967295"));
    EXPECT_EQ(count(), before + 3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
