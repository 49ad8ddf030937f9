// The diagnostics client against a missing library, one without the viewer's entries and the tests' stand-in
// viewer, each test with a client of its own (one load attempt each); then the stream through the process's client.
#include "base/ZoDiagnosticsClient.h"
#include "base/ZoStreamWriteASCIITraceDiagnostic.h"
#include "platform/ZoOS.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

namespace {

CString nativePath(const char* path) // Windows loads libraries only by backslash paths
{
    std::u16string text = CString(path).GetStdString();
    std::replace(text.begin(), text.end(), u'/', ZoOS::GetPathSeparator());
    return CString(text);
}

// The stand-in viewer, loaded by its full path: then the client's lookup by plain name finds it too.
struct StandIn
{
    const ZoOS::LibraryHandle library = ZoOS::LoadDynamicLibrary(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    StandIn() { EXPECT_NE(library, nullptr); }
    int (*count)() = reinterpret_cast<int (*)()>(ZoOS::GetDynamicEntry(library, "StandInTraceCount"));
    const char16_t* (*last)() = reinterpret_cast<const char16_t* (*)()>(ZoOS::GetDynamicEntry(library, "StandInLastTrace"));
};

std::string messagesOf(ZoDiagnosticsClient& client, int traces)
{
    testing::internal::CaptureStderr();
    for (int i = 0; i < traces; ++i)
        client.Trace(u"hello");
    return testing::internal::GetCapturedStderr();
}

TEST(ZoDiagnosticsClientTest, AMissingLibraryOrMissingEntriesAreReportedOnce)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the message is a message box there, not text on standard error";
#endif
    ZoDiagnosticsClient missing(u"libZoNoSuchDiagnosticsClient.so");
    EXPECT_EQ(messagesOf(missing, 3), "Error: ZoDiagnosticsClient: Could not load library libZoNoSuchDiagnosticsClient.so\n");
    EXPECT_EQ(messagesOf(missing, 1), "");
    EXPECT_FALSE(missing.IsConnected());
    // The library itself exports none of the viewer's entries.
    ZoDiagnosticsClient incomplete(nativePath(ZO_TEST_LIBRARY_FILE));
    EXPECT_EQ(messagesOf(incomplete, 2),
              "Error: ZoDiagnosticsClient: Could not find method(s) in library " ZO_TEST_LIBRARY_FILE "\n");
    EXPECT_FALSE(incomplete.IsConnected());
}

TEST(ZoDiagnosticsClientTest, TextIsItsOwnFormatAndIsCutToTheViewersBuffer)
{
    const StandIn standIn;
    ZoDiagnosticsClient client(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    const int before = standIn.count();
    // "%%" is a percent sign, lone directives stay; the cut counts formatted text and never splits a surrogate pair.
    const std::pair<CString, CString> cases[] = {
        {CString(u"50%% done, %d left %s"), CString(u"50% done, %d left %s")}, {CString(), CString()},
        {CString(u'x', 5000), CString(u'x', 2047)}, {CString(u'%', 5000), CString(u'%', 2047)},
        {CString(u'y', 2046) + u"\U0001F600z", CString(u'y', 2046)},
    };
    for (const auto& [text, sent] : cases) {
        client.Trace(text);
        EXPECT_EQ(CString(standIn.last()), sent);
    }
    EXPECT_TRUE(client.IsConnected());
    EXPECT_EQ(standIn.count(), before + 5);
}

TEST(ZoDiagnosticsClientConcurrentTest, FirstTracesFromSeveralThreadsAtOnceLoadTheLibraryOnce)
{
    const StandIn standIn;
    ZoDiagnosticsClient client(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    const int before = standIn.count();
    std::vector<std::thread> tracers;
    for (int i = 0; i < 4; ++i)
        tracers.emplace_back([&client] {
            for (int trace = 0; trace < 50; ++trace)
                client.Trace(u"line");
        });
    for (std::thread& tracer : tracers)
        tracer.join();
    EXPECT_TRUE(client.IsConnected());
    EXPECT_EQ(standIn.count(), before + 4 * 50) << "every thread's traces reach the viewer";
}

// In a fresh process: the process-wide client makes one load attempt per process.
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
    const StandIn standIn;
    testing::internal::CaptureStderr();
    ZoStreamWriteASCIITraceDiagnostic stream;
    const int before = standIn.count();
    stream << 42;
    EXPECT_EQ(CString(standIn.last()), CString(u"42"));
    stream << CString(u"100%% of %s");
    EXPECT_EQ(CString(standIn.last()), CString(u"100% of %s"));
    stream << static_cast<short>(-1);
    EXPECT_EQ(CString(standIn.last()), CString(u"4294967295"));
    EXPECT_EQ(standIn.count(), before + 3);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace
