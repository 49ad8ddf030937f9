// The text of every value type, which logs and dumps are compared against, and the registration
// of the text writers.
#include "base/ZoRTTI.h"
#include "base/ZoStreamWrite.h"
#include "base/ZoStreamWriteASCII.h"
#include "base/ZoStreamWriteASCIIConsole.h"
#include "base/ZoStreamWriteASCIIFile.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoStreamWriteASCIITrace.h"
#include "base/ZoStreamWriteASCIITraceDiagnostic.h"
#include "base/ZoStreamReadASCII.h"
#include "base/ZoStreamReadASCIIFile.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <string>

namespace {

// The text of one value, written through the abstract interface so that the overrides run.
template <class T>
std::string textOf(T value)
{
    ZoStreamWriteASCIIString stream;
    static_cast<ZoStreamWrite&>(stream) << value;
    return stream.GetText().ToUtf8();
}

TEST(ZoStreamWriteASCIITest, IntegersKeepTheirHistoricText)
{
    // Small signed types are sign-extended and printed unsigned.
    EXPECT_EQ(textOf<short>(-1), "4294967295");
    EXPECT_EQ(textOf<signed char>(-2), "4294967294");
    EXPECT_EQ(textOf<unsigned short>(USHRT_MAX), "65535");
    EXPECT_EQ(textOf<unsigned char>(UCHAR_MAX), "255");
    EXPECT_EQ(textOf<int>(INT_MIN), "-2147483648");
    EXPECT_EQ(textOf<unsigned int>(UINT_MAX), "4294967295");
    // 64-bit values print their low 32 bits as a signed number.
    EXPECT_EQ(textOf<long long>(4294967297LL), "1");
    EXPECT_EQ(textOf<unsigned long long>(2147483648ULL), "-2147483648");
    EXPECT_EQ(textOf<unsigned long long>(ULLONG_MAX), "-1");
    EXPECT_EQ(textOf<uint32_t>(0x80000000u), "2147483648");
    // `long` takes the row of its width: 64-bit on Linux, 32-bit on Windows.
    if (sizeof(long) == 8) {
        EXPECT_EQ(textOf<long>(static_cast<long>(4294967297LL)), "1");
        EXPECT_EQ(textOf<unsigned long>(0xFFFFFFFFul), "-1");
    } else {
        EXPECT_EQ(textOf<long>(LONG_MIN), "-2147483648");
        EXPECT_EQ(textOf<unsigned long>(ULONG_MAX), "4294967295");
    }
    EXPECT_EQ(textOf<long>(-7), "-7");
}

TEST(ZoStreamWriteASCIITest, FloatsBoolsStringsAndAddresses)
{
    EXPECT_EQ(textOf<float>(1.5f), "1.500000");
    EXPECT_EQ(textOf<double>(1e10), "10000000000.000000");
    EXPECT_EQ(textOf<bool>(true), "true");
    EXPECT_EQ(textOf<bool>(false), "false");
    // A string is written as it stands, never read as a format.
    EXPECT_EQ(textOf<CString>(CString(u"h\u00e9 %d %%")), "h\u00e9 %d %%");

    ZoStreamWriteASCIIString stream;
    stream.WriteAddress(reinterpret_cast<const void*>(uintptr_t{0xABCDEF})).WriteAddress(nullptr);
    EXPECT_EQ(stream.GetText().ToUtf8(), "0x0000000000ABCDEF0x0000000000000000");
}

TEST(ZoStreamWriteASCIITest, ValuesFollowEachOtherWithNothingBetween)
{
    ZoStreamWriteASCIIString stream;
    stream << 1 << CString(u"a") << 2;
    EXPECT_EQ(stream.GetText(), CString(u"1a2"));
    // The interface's UTF-16 text overload stays visible on the concrete streams.
    stream << u"|" << true;
    EXPECT_EQ(stream.GetText(), CString(u"1a2|true"));
}

TEST(ZoStreamWriteASCIITest, EveryTextReaderAndWriterIsRegisteredUnderItsBase)
{
    const std::pair<const ZoRTTI*, const ZoRTTI*> classes[] = {
        {&ZoStreamReadASCII::RTTI, &ZoStreamRead::RTTI},
        {&ZoStreamReadASCIIFile::RTTI, &ZoStreamReadASCII::RTTI},
        {&ZoStreamWriteASCII::RTTI, &ZoStreamWrite::RTTI},
        {&ZoStreamWriteASCIIConsole::RTTI, &ZoStreamWriteASCII::RTTI},
        {&ZoStreamWriteASCIIFile::RTTI, &ZoStreamWriteASCII::RTTI},
        {&ZoStreamWriteASCIIString::RTTI, &ZoStreamWriteASCII::RTTI},
        {&ZoStreamWriteASCIITrace::RTTI, &ZoStreamWriteASCII::RTTI},
        {&ZoStreamWriteASCIITraceDiagnostic::RTTI, &ZoStreamWriteASCII::RTTI},
    };
    for (const auto& [rtti, base] : classes) {
        SCOPED_TRACE(rtti->GetName().ToUtf8());
        EXPECT_EQ(ZoRTTI::Find(rtti->GetName()), rtti);
        ASSERT_EQ(rtti->GetBaseCount(), 1u);
        EXPECT_EQ(&rtti->GetBase(0), base);
    }
    EXPECT_EQ(ZoStreamWriteASCIITraceDiagnostic::RTTI.GetName(), CString(u"ZoStreamWriteASCIITraceDiagnostic"));
}

} // namespace
