// The text writers: the text of every value type (logs and dumps are compared against it), the string, file,
// trace and console streams, the console's flags, and the debug dump's names.
#include "base/ZoClassSerialization.h"
#include "base/ZoConsole.h"
#include "base/ZoDebugSerialization.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamWriteASCIIConsole.h"
#include "base/ZoStreamWriteASCIIFile.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoStreamWriteASCIITrace.h"
#include "platform/CArchive.h"
#include "platform/CMemFile.h"

#include "ZoTestSupport.h"

#include <climits>
#include <filesystem>
#include <functional>

namespace {

using zotest::Bytes;

// The text of one value, written through the abstract interface so that the overrides run.
template <class T>
std::string textOf(T value)
{
    ZoStreamWriteASCIIString stream;
    static_cast<ZoStreamWrite&>(stream) << value;
    return stream.GetText().ToUtf8();
}

std::string fileText(const std::string& path)
{
    const std::vector<unsigned char> bytes = zotest::ReadBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

TEST(ZoStreamWriteASCIITest, EveryValueTypeKeepsItsHistoricText)
{
    const bool wideLong = sizeof(long) == 8;
    const std::pair<std::string, const char*> cases[] = {
        // Small signed types are sign-extended and printed unsigned.
        {textOf<short>(-1), "4294967295"}, {textOf<signed char>(-2), "4294967294"},
        {textOf<unsigned short>(USHRT_MAX), "65535"}, {textOf<unsigned char>(UCHAR_MAX), "255"},
        {textOf<int>(INT_MIN), "-2147483648"}, {textOf<unsigned int>(UINT_MAX), "4294967295"},
        // 64-bit values print their low 32 bits as a signed number.
        {textOf<long long>(4294967297LL), "1"}, {textOf<unsigned long long>(2147483648ULL), "-2147483648"},
        {textOf<unsigned long long>(ULLONG_MAX), "-1"}, {textOf<uint32_t>(0x80000000u), "2147483648"},
        // `long` takes the row of its width: 64-bit on Linux, 32-bit on Windows.
        {textOf<long>(wideLong ? static_cast<long>(4294967297LL) : LONG_MIN), wideLong ? "1" : "-2147483648"},
        {textOf<unsigned long>(wideLong ? 0xFFFFFFFFul : ULONG_MAX), wideLong ? "-1" : "4294967295"},
        {textOf<long>(-7), "-7"},
        {textOf<float>(1.5f), "1.500000"}, {textOf<double>(1e10), "10000000000.000000"},
        {textOf<bool>(true), "true"}, {textOf<bool>(false), "false"},
        // A string is written as it stands, never read as a format.
        {textOf<CString>(CString(u"h\u00e9 %d %%")), "h\u00e9 %d %%"},
    };
    for (const auto& [actual, expected] : cases)
        EXPECT_EQ(actual, expected);
    ZoStreamWriteASCIIString stream;
    stream.WriteAddress(reinterpret_cast<const void*>(uintptr_t{0xABCDEF})).WriteAddress(nullptr);
    // Values follow each other with nothing between; the UTF-16 text overload stays visible.
    stream << 1 << CString(u"a") << u"|" << true;
    EXPECT_EQ(stream.GetText().ToUtf8(), "0x0000000000ABCDEF0x00000000000000001a|true");
}

TEST(ZoStreamWriteASCIIStringTest, CountsEmptiesCopiesAndWritesItself)
{
    ZoStreamWriteASCIIString original;
    original << u"a\U0001F600" << 12;
    EXPECT_EQ(original.GetLength(), 5u); // code units: a, a surrogate pair, 1, 2
    original.Empty();
    EXPECT_EQ(original.GetLength(), 0u);
    original << u"ab";
    ZoStreamWriteASCIIString copy(original), assigned;
    copy << u"-copy";
    assigned << u"old";
    assigned = original;
    original << u"!";
    EXPECT_EQ(copy.GetText(), CString(u"ab-copy"));
    EXPECT_EQ(static_cast<const CString&>(assigned), CString(u"ab"));
    assigned << 0 << copy;
    EXPECT_EQ(assigned.GetText(), CString(u"ab0ab-copy"));
    // A stream written into itself, directly or through Serialize, doubles its text once.
    copy << copy;
    EXPECT_EQ(copy.GetText(), CString(u"ab-copyab-copy"));
    original.Serialize(original);
    EXPECT_EQ(original.GetText(), CString(u"ab!ab!"));
}

TEST(ZoStreamWriteASCIIFileTest, EachWriteReachesTheFileAtOnceInTheAnsiCodePage)
{
    zotest::TempFolder folder;
    const std::string path = folder.Path("sub/log.txt"); // the folder is made on the way
    {
        ZoStreamWriteASCIIFile stream{CString(path)};
        stream << u"n=" << static_cast<short>(-1);
        EXPECT_EQ(fileText(path), "n=4294967295") << "nothing waits in a buffer";
        stream << u" \u00e9\u20ac" << 1.5f << u"\n";
    }
    EXPECT_FALSE(zotest::IsFileOpen(path)) << "the stream owns the archive it opened and closes it";
    EXPECT_EQ(zotest::ReadBytes(path), Bytes({'n', '=', '4', '2', '9', '4', '9', '6', '7', '2', '9', '5', ' ', 0xE9,
                                              0x80, '1', '.', '5', '0', '0', '0', '0', '0', '\n'}));
    ZoStreamWriteASCIIFile(CString(path), ZoStreamWriteASCIIFile::eAccessAppend) << 2;
    EXPECT_EQ(fileText(path).substr(23), "\n2");
    ZoStreamWriteASCIIFile(CString(path)) << u"new";
    EXPECT_EQ(fileText(path), "new");
    ZoStreamWriteASCIIFile(folder.CPath("fresh.txt"), ZoStreamWriteASCIIFile::eAccessAppend) << true; // creates it
    EXPECT_EQ(fileText(folder.Path("fresh.txt")), "true");
    {
        zotest::ScopedSystemTemporary redirected(folder);
        ZoStreamWriteASCIIFile(ZoClassSerialization::eTemporary, u"in-temp.txt") << 42;
    }
    EXPECT_FALSE(zotest::IsFileOpen(folder.Path("in-temp.txt")));
    EXPECT_EQ(fileText(folder.Path("in-temp.txt")), "42");

    zotest::WriteBytes(folder.Path("plain-file"), Bytes({'x'}));
    const std::function<void()> failures[] = { // a file stands where the folder should be; modes past append
        [&] { ZoStreamWriteASCIIFile stream(folder.CPath("plain-file/log.txt")); },
        [&] { ZoStreamWriteASCIIFile stream(folder.CPath("log.txt"), ZoStreamWriteASCIIFile::EAccessMode(2)); },
        [&] { ZoStreamWriteASCIIFile stream(ZoClassSerialization::eTemporary, u"x.txt", ZoStreamWriteASCIIFile::EAccessMode(-1)); },
    };
    for (const auto& failure : failures)
        zotest::ExpectThrowSite<ZoExceptionStream>(failure, "..\\base\\ZoStreamWriteASCIIFile.cpp", "ZoStreamWriteASCIIFile",
                                                   "openFile", 109);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("log.txt")));
}

TEST(ZoStreamWriteASCIIFileTest, ACallersArchiveIsFlushedButStaysTheCallers)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    {
        ZoStreamWriteASCIIFile stream(archive);
        stream << u"abc" << -3;
        ASSERT_EQ(file.GetLength(), 5u);
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(file.GetBuffer()), 5), "abc-3");
    }
    archive.Write("!", 1);
    archive.Close();
    EXPECT_EQ(file.GetLength(), 6u);
}

TEST(ZoStreamWriteASCIITraceTest, TextReachesTheTraceOutputWholeInDebugBuildsOnly)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the trace output there is the debugger's, not standard error";
#endif
    std::string longText; // passed on in three pieces, which must join up seamlessly
    for (int i = 0; i < 2100; ++i)
        longText += static_cast<char>('a' + i % 26);
    testing::internal::CaptureStderr();
    ZoStreamWriteASCIITrace() << u"" << 12 << u" " << CString(longText) << u"\n";
    const std::string traced = testing::internal::GetCapturedStderr();
#if defined(NDEBUG)
    EXPECT_EQ(traced, "");
#else
    EXPECT_EQ(traced, "12 " + longText + "\n");
#endif
}

TEST(ZoDebugSerializationTest, NamesFileNamesAndLines)
{
    EXPECT_EQ(ZoDebugSerialization::ElementName(u"values", 3), CString(u"values[3]"));
    EXPECT_EQ(ZoDebugSerialization::NumberedName(u"node", -7), CString(u"node(-7)"));
    EXPECT_EQ(ZoDebugSerialization::MakeName(u"a|b\"c?d*e>f]g<h[i:j"), CString(u"a_b_c_d_e_f_g_h[i:j"));
    const ZoDebugSerialization dump(u"mesh<1>");
    EXPECT_EQ(dump.GetFileName(u"out/", u"grid*", u"cells[2]", u"txt"), CString(u"out/mesh_1__grid__cells[2_.txt"));
    ZoStreamWriteASCIIString text;
    dump.Write(text, ZoDebugSerialization::ElementName(u"size", 0), u"12");
    EXPECT_EQ(text.GetText(), CString(u"mesh<1>.size[0] = 12\n"));
}

void expectConsole(bool hasConsole, bool attached, const CString& text, const char* shown)
{
    EXPECT_EQ(ZoConsole::HasConsole(), hasConsole);
    EXPECT_EQ(ZoConsole::IsAttached(), attached);
    testing::internal::CaptureStdout();
    ZoConsole::Write(text);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), shown);
}

// The console's two flags through every transition; text reaches standard output only while there is a console.
TEST(ZoConsoleTest, FlagsFollowAttachCreateAndDeleteAndTheConsoleStreamAttaches)
{
#if defined(_WIN32)
    GTEST_SKIP() << "the console there is a window of its own, not the captured standard output";
#endif
    ZoConsole::Delete();
    expectConsole(false, false, u"lost", "");
    ZoConsole::Attach(0); // standard output is the parent's console, so attaching succeeds
    ZoConsole::Create();  // with a console in use, this changes nothing
    expectConsole(true, true, u"x = \u00e9\n", "x = \u00e9\n");
    ZoConsole::Delete();
    expectConsole(false, false, u"", "");
    ZoConsole::Create(); // a console of our own is not attached, and a later Attach leaves it so
    ZoConsole::Attach(1);
    expectConsole(true, false, u"own", "own");
    ZoConsole::Delete();
    testing::internal::CaptureStdout();
    ZoStreamWriteASCIIConsole(u"title") << 1 << u"a" << 2.5 << static_cast<short>(-1);
    EXPECT_TRUE(ZoConsole::HasConsole()) << "the console stream attaches and leaves the console in use";
    ZoConsole::Write(u"|");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "1a2.5000004294967295|");
    ZoConsole::Delete();
}

} // namespace
