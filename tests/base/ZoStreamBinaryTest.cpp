// The binary encoding, through the memory streams: exact bytes for every kind of value, and what
// the reader does with damaged input.
#include "base/ZoClassFlags.h"
#include "base/ZoClassIndex.h"
#include "base/ZoClassName.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"

#include "ZoTestSupport.h"

#include <cmath>
#include <limits>
#include <random>

namespace {

using zotest::Bytes;
using Buffer = std::vector<unsigned char>;

template <class T>
Buffer encode(const T& value)
{
    ZoStreamWriteBinaryMemory stream;
    stream << value;
    return stream.GetBuffer();
}

// Runs `read` on a stream over `bytes` and returns the line of the ZoExceptionStream it throws
// (checking its method), or 0 when nothing was thrown.
template <class Read>
uint32_t failingLine(const Buffer& bytes, const char* method, Read read)
{
    ZoStreamReadBinaryMemory stream(bytes);
    try {
        read(stream);
    } catch (const ZoExceptionStream& e) {
        EXPECT_EQ(e.GetThrowingMethodName().ToUtf8(), method);
        EXPECT_EQ(e.GetThrowingClassName(), CString(u"ZoStreamReadBinary"));
        EXPECT_EQ(e.GetFileName(), CString(u"..\\base\\ZoStreamReadBinary.cpp"));
        return e.GetCodeLine();
    }
    return 0;
}

TEST(ZoStreamBinaryTest, ScalarsAreTheirLittleEndianBytes)
{
    EXPECT_EQ(encode(true), Bytes({1}));
    EXPECT_EQ(encode(static_cast<unsigned char>(0xAB)), Bytes({0xAB}));
    EXPECT_EQ(encode(static_cast<signed char>(-2)), Bytes({0xFE}));
    EXPECT_EQ(encode(static_cast<unsigned short>(0x1234)), Bytes({0x34, 0x12}));
    EXPECT_EQ(encode(static_cast<short>(-2)), Bytes({0xFE, 0xFF}));
    EXPECT_EQ(encode(0x12345678u), Bytes({0x78, 0x56, 0x34, 0x12}));
    EXPECT_EQ(encode(-2), Bytes({0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(encode(uint64_t(0x0102030405060708)), Bytes({8, 7, 6, 5, 4, 3, 2, 1}));
    EXPECT_EQ(encode(int64_t(-2)), Bytes({0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(encode(static_cast<long long>(5)), Bytes({5, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(encode(1.5f), Bytes({0x00, 0x00, 0xC0, 0x3F}));
    EXPECT_EQ(encode(-2.0), Bytes({0, 0, 0, 0, 0, 0, 0, 0xC0}));
    // `long` keeps the platform's width, like the C++ type.
    EXPECT_EQ(encode(1L).size(), sizeof(long));
}

TEST(ZoStreamBinaryTest, StringsCarryTheWideMarkerAndALengthPrefix)
{
    EXPECT_EQ(encode(CString(u"abc")), Bytes({0xFF, 0xFE, 0xFF, 0x03, 0x61, 0x00, 0x62, 0x00, 0x63, 0x00}));
    EXPECT_EQ(encode(CString()), Bytes({0xFF, 0xFE, 0xFF, 0x00}));
    const Buffer prefix254 = encode(CString(u'x', 254));
    EXPECT_EQ(Buffer(prefix254.begin(), prefix254.begin() + 4), Bytes({0xFF, 0xFE, 0xFF, 0xFE}));
    const Buffer prefix300 = encode(CString(u'x', 300));
    EXPECT_EQ(Buffer(prefix300.begin(), prefix300.begin() + 6), Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0x2C, 0x01}));
    EXPECT_EQ(prefix300.size(), 6u + 600u);
    const Buffer prefix65534 = encode(CString(u'x', 65534));
    EXPECT_EQ(Buffer(prefix65534.begin(), prefix65534.begin() + 10),
              Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}));
    // The pointer form writes the same as the CString form.
    ZoStreamWriteBinaryMemory stream;
    stream << u"abc";
    EXPECT_EQ(stream.GetBuffer(), encode(CString(u"abc")));
}

TEST(ZoStreamBinaryTest, EverythingWrittenReadsBack)
{
    ZoStreamWriteBinaryMemory out;
    out << true << static_cast<signed char>(-5) << static_cast<unsigned char>(250) << static_cast<short>(-300)
        << static_cast<unsigned short>(60000) << -70000 << 4000000000u << static_cast<long>(-9) << 9UL
        << std::numeric_limits<int64_t>::min() << std::numeric_limits<uint64_t>::max() << 0.1f << 3.14159265358979323846
        << CString(u"h\u00e9llo \u4e16\u754c") << CString(u'z', 1000) << CString();
    out.WriteVersion(3);
    ZoClassFlags(0x81).Serialize(out);
    ZoClassIndex(12).Serialize(out);
    ZoClassName(CString(u"ZoArray")).Serialize(out);

    ZoStreamReadBinaryMemory in(out.GetBuffer());
    bool b;
    signed char sc;
    unsigned char uc;
    short s;
    unsigned short us;
    int i;
    unsigned int ui;
    long l;
    unsigned long ul;
    int64_t i64;
    uint64_t u64;
    float f;
    double d;
    CString text, longText, empty;
    in >> b >> sc >> uc >> s >> us >> i >> ui >> l >> ul >> i64 >> u64 >> f >> d >> text >> longText >> empty;
    EXPECT_TRUE(b);
    EXPECT_EQ(sc, -5);
    EXPECT_EQ(uc, 250);
    EXPECT_EQ(s, -300);
    EXPECT_EQ(us, 60000);
    EXPECT_EQ(i, -70000);
    EXPECT_EQ(ui, 4000000000u);
    EXPECT_EQ(l, -9);
    EXPECT_EQ(ul, 9u);
    EXPECT_EQ(i64, std::numeric_limits<int64_t>::min());
    EXPECT_EQ(u64, std::numeric_limits<uint64_t>::max());
    EXPECT_EQ(f, 0.1f);
    EXPECT_EQ(d, 3.14159265358979323846);
    EXPECT_EQ(text, CString(u"h\u00e9llo \u4e16\u754c"));
    EXPECT_EQ(longText, CString(u'z', 1000));
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(in.ReadAndCompareVersion(3), 3u);
    ZoClassFlags flags;
    ZoClassIndex index;
    ZoClassName name;
    flags.Serialize(in);
    index.Serialize(in);
    name.Serialize(in);
    EXPECT_EQ(flags.GetFlags(), 0x81u);
    EXPECT_EQ(index.GetIndex(), 12u);
    EXPECT_EQ(name.GetName(), CString(u"ZoArray"));
    EXPECT_EQ(in.GetRemaining(), 0u);
}

TEST(ZoStreamBinaryTest, ANewerVersionThanTheReaderKnowsIsRefused)
{
    ZoStreamWriteBinaryMemory out;
    out.WriteVersion(3);
    EXPECT_EQ(out.GetBuffer(), Bytes({3, 0, 0, 0}));
    ZoStreamReadBinaryMemory in(out.GetBuffer());
    zotest::ExpectThrowSite<ZoExceptionWrongFileVersion>([&] { in.ReadAndCompareVersion(2); }, "..\\base\\ZoStreamRead.cpp",
                                                         "ZoStreamReadBinaryMemory", "Serialize", 44);
}

TEST(ZoStreamBinaryTest, ShortReadsReportTheLineOfTheirType)
{
    const Buffer three = Bytes({1, 2, 3});
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { unsigned int v; s >> v; }), 128u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { int v; s >> v; }), 147u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { float v; s >> v; }), 242u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { double v; s >> v; }), 261u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { uint64_t v; s >> v; }), 204u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { int64_t v; s >> v; }), 223u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { long long v; s >> v; }), 223u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { long v; s >> v; }),
              sizeof(long) == 8 ? 223u : 185u);
    EXPECT_EQ(failingLine(three, "operator >>", [](ZoStreamReadBinary& s) { unsigned long v; s >> v; }),
              sizeof(long) == 8 ? 204u : 166u);
    const Buffer one = Bytes({1});
    EXPECT_EQ(failingLine(one, "operator >>", [](ZoStreamReadBinary& s) { short v; s >> v; }), 109u);
    EXPECT_EQ(failingLine(one, "operator >>", [](ZoStreamReadBinary& s) { unsigned short v; s >> v; }), 90u);
    const Buffer none;
    EXPECT_EQ(failingLine(none, "operator >>", [](ZoStreamReadBinary& s) { bool v; s >> v; }), 33u);
    EXPECT_EQ(failingLine(none, "operator >>", [](ZoStreamReadBinary& s) { unsigned char v; s >> v; }), 52u);
    EXPECT_EQ(failingLine(none, "operator >>", [](ZoStreamReadBinary& s) { signed char v; s >> v; }), 71u);
}

TEST(ZoStreamBinaryTest, DamagedStringsAreRefused)
{
    auto readString = [](ZoStreamReadBinary& s) { CString v; s >> v; };
    // No wide marker: a narrow length-prefixed string is not accepted.
    EXPECT_EQ(failingLine(Bytes({0x03, 0x61, 0x62, 0x63}), "readStringLength", readString), 346u);
    EXPECT_EQ(failingLine(Bytes({0xFF, 0xFE}), "readStringLength", readString), 346u);
    EXPECT_EQ(failingLine(Bytes({0xFF, 0xFE, 0xFF}), "readStringLength", readString), 346u);
    EXPECT_EQ(failingLine(Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0x2C}), "readStringLength", readString), 346u);
    // Characters cut short.
    EXPECT_EQ(failingLine(Bytes({0xFF, 0xFE, 0xFF, 0x03, 0x61, 0x00, 0x62}), "operator >> (CString)", readString), 320u);
}

TEST(ZoStreamBinaryTest, TheReaderTakesATwoByteLengthAfterTheLongEscape)
{
    // The writer puts a 32-bit length after FF FFFF; the reader takes only 16 bits of it, then
    // reads that many characters. For 70000 units (0x00011170) it reads 0x1170 = 4464 units.
    const Buffer written = encode(CString(u'q', 70000));
    EXPECT_EQ(Buffer(written.begin(), written.begin() + 10), Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0x70, 0x11, 0x01, 0x00}));
    ZoStreamReadBinaryMemory in(written);
    CString read;
    in >> read;
    EXPECT_EQ(read.GetLength(), 0x1170);
    // The reader's own layout: FF FFFF then a 16-bit length.
    ZoStreamReadBinaryMemory quirk(Bytes({0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0x02, 0x00, 0x41, 0x00, 0x42, 0x00}));
    quirk >> read;
    EXPECT_EQ(read, CString(u"AB"));
}

TEST(ZoStreamBinaryTest, RandomBytesEndInTheLibrarysException)
{
    const unsigned seed = zotest::ModelTestSeed();
    SCOPED_TRACE(testing::Message() << "seed " << seed << " (ZO_TEST_SEED replays it)");
    std::mt19937 random(seed);
    for (int round = 0; round < 2000; ++round) {
        Buffer bytes(random() % 40);
        for (auto& byte : bytes)
            byte = static_cast<unsigned char>(random());
        // Bias towards the string marker so that the length paths are exercised.
        if (bytes.size() >= 3 && random() % 2) {
            bytes[0] = 0xFF;
            bytes[1] = 0xFE;
            bytes[2] = 0xFF;
        }
        ZoStreamReadBinaryMemory in(bytes);
        try {
            for (;;) {
                CString text;
                double d;
                in >> text >> d;
            }
        } catch (const ZoExceptionStream&) {
        } catch (...) {
            FAIL() << "unexpected exception";
        }
    }
}

} // namespace
