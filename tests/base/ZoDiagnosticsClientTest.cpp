// The diagnostics client against a missing library, a library without the viewer's entries, and
// the tests' stand-in viewer library. Each test makes a client of its own, so that the single load
// attempt of one does not decide the others.
#include "base/ZoDiagnosticsClient.h"
#include "platform/ZoOS.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <thread>
#include <vector>

namespace {

// Windows loads libraries only by backslash paths.
CString nativePath(const char* path)
{
    std::u16string text = CString(path).GetStdString();
    for (char16_t& c : text)
        c = c == u'/' ? ZoOS::GetPathSeparator() : c;
    return CString(text);
}

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
    const ZoOS::LibraryHandle standIn = ZoOS::LoadDynamicLibrary(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    ASSERT_NE(standIn, nullptr);
    const auto count = reinterpret_cast<int (*)()>(ZoOS::GetDynamicEntry(standIn, "StandInTraceCount"));
    const auto last = reinterpret_cast<const char16_t* (*)()>(ZoOS::GetDynamicEntry(standIn, "StandInLastTrace"));

    ZoDiagnosticsClient client(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    const int before = count();
    client.Trace(u"50%% done, %d left %s");
    EXPECT_TRUE(client.IsConnected());
    EXPECT_EQ(count(), before + 1);
    // "%%" becomes a percent sign; directives without arguments stay as they are.
    EXPECT_EQ(CString(last()), CString(u"50% done, %d left %s"));

    const struct
    {
        CString text;
        CString sent;
    } cuts[] = {
        {CString(), CString()},
        {CString(u'x', 5000), CString(u'x', 2047)},
        // The cut counts formatted text: 2047 percent signs come from 4094 units.
        {CString(u'%', 5000), CString(u'%', 2047)},
        // A surrogate pair is never split in two at the cut.
        {CString(u'y', 2046) + u"\U0001F600z", CString(u'y', 2046)},
    };
    for (const auto& cut : cuts) {
        client.Trace(cut.text);
        EXPECT_EQ(CString(last()), cut.sent);
    }
    EXPECT_EQ(count(), before + 5);
}

TEST(ZoDiagnosticsClientConcurrentTest, FirstTracesFromSeveralThreadsAtOnceLoadTheLibraryOnce)
{
    const ZoOS::LibraryHandle standIn = ZoOS::LoadDynamicLibrary(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    ASSERT_NE(standIn, nullptr);
    const auto count = reinterpret_cast<int (*)()>(ZoOS::GetDynamicEntry(standIn, "StandInTraceCount"));

    ZoDiagnosticsClient client(nativePath(ZO_TEST_DIAGNOSTICS_CLIENT));
    const int before = count();
    const int threads = 4;
    const int tracesEach = 50;
    std::vector<std::thread> tracers;
    for (int i = 0; i < threads; ++i)
        tracers.emplace_back([&client] {
            for (int trace = 0; trace < tracesEach; ++trace)
                client.Trace(u"line");
        });
    for (std::thread& tracer : tracers)
        tracer.join();
    EXPECT_TRUE(client.IsConnected());
    EXPECT_EQ(count(), before + threads * tracesEach) << "every thread's traces reach the viewer";
}

} // namespace
