// One target's files read by the other: `zo-cross-file write FOLDER` writes the files of kFiles, `read FOLDER`
// reads them back and says "cross-file ok" when every value matches. Every fixed-width kind (not `long`: its
// width is the platform's), plain and with a long series in a compressed archive; a colour table and a date;
// a range-coded block and a compressed float stream.
#include "base/ZoColorTable.h"
#include "base/ZoDateTime.h"
#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"
#include "platform/ZoOS.h"

#include <cstdio>
#include <cstring>
#include <limits>
#include <tuple>

namespace {

const uint32_t kSeriesLength = 50000;

// Every fixed-width kind at an edge of its range, and strings of each length form.
const auto kValues = std::make_tuple(
    true, static_cast<signed char>(-100), static_cast<unsigned char>(200), static_cast<int16_t>(-30000),
    static_cast<uint16_t>(60000), std::numeric_limits<int32_t>::min(), std::numeric_limits<uint32_t>::max(),
    std::numeric_limits<int64_t>::min(), std::numeric_limits<uint64_t>::max(), 3.25f, -1.0e300, CString(u"plain ASCII"),
    CString(u"\u00e4\u00f6\u00fc \u4e16\u754c \U0001F600"), CString(u'x', 300));

template <class T>
bool readsAs(ZoStreamReadBinary& in, const T& expected)
{
    T value{};
    return (in >> value, value == expected);
}

void writeValues(ZoStreamWriteBinary& out)
{
    out.WriteVersion(7);
    std::apply([&out](const auto&... value) { ((out << value), ...); }, kValues);
}

bool checkValues(ZoStreamReadBinary& in)
{
    return in.ReadAndCompareVersion(7) == 7 && std::apply([&in](const auto&... value) { return (readsAs(in, value) && ...); }, kValues);
}

// 2009-03-05 10:00:30.250 UTC.
const uint64_t kDateTicks = 128807208302500000ull;

ZoColorTable sampleColorTable()
{
    ZoColorTable table(6, -1.0f, 2.0f);
    table.SetUnderflowColor(ZoColor::c_GREEN);
    table.AddColorValue(ZoColor::c_ALICEBLUE, -1.0f, 0.0f);
    table.AddColorRamp(ZoColor::c_BLUE, 0.5f, ZoColor::c_RED, 2.0f);
    return table;
}

// The table is compared by writing it again; the date field by field.
bool checkColorsAndDate(ZoStreamReadBinary& in)
{
    ZoColorTable table(1);
    ZoStreamWriteBinaryMemory again, expected;
    table.Serialize(in), table.Serialize(again), sampleColorTable().Serialize(expected);
    uint64_t ticks = 0;
    const ZoDateTime date((in >> ticks, ticks));
    return again.GetBuffer() == expected.GetBuffer() && ticks == kDateTicks && date.GetYear() == 2009 && date.GetMonth() == 3 &&
           date.GetDay() == 5 && date.GetHour() == 10 && date.GetMinute() == 0 && date.GetSecond() == 30 && date.GetMillisecond() == 250;
}

// The range-coded values: symbols of a 300-symbol model, raw bits of every width and raw doubles;
// then floats (a smooth series with special patterns among them) through the lossless float stream.
uint32_t codedSymbol(uint32_t i) { return (i * i + 7 * i) % 300; }
float codedFloat(uint32_t i)
{
    const uint32_t special[] = {0x80000000u, 0x00000001u, 0x7F800000u, 0xFF800000u, 0x7FC00123u};
    // Plain arithmetic, which rounds alike everywhere (the C libraries' sin does not).
    float value = static_cast<float>(i % 1000) / 7.0f - static_cast<float>(i / 1000) * 0.125f;
    if (i % 97 == 0)
        std::memcpy(&value, &special[(i / 97) % 5], 4);
    return value;
}

void writeCoded(ZoStreamWriteBinary& out)
{
    {
        ZoCompressRangeCoder coder(out, 300, 0);
        for (uint32_t i = 0; i < kSeriesLength; ++i)
            coder << codedSymbol(i);
        for (uint32_t width = 1; width <= 32; ++width)
            coder.WriteRawBits(0x9E3779B9u * width, width);
        coder << -1.0e300 << 2.5f;
    }
    ZoStreamWriteCompressedFloatingPoint floats(out, 0);
    for (uint32_t i = 1; i < kSeriesLength; ++i)
        floats.WriteValue(codedFloat(i), codedFloat(i - 1));
}

bool checkCoded(ZoStreamReadBinary& in)
{
    ZoDecompressRangeCoder decoder(in, 300);
    bool ok = true;
    for (uint32_t i = 0, symbol = 0; i < kSeriesLength; ++i)
        ok = (decoder >> symbol, ok && symbol == codedSymbol(i));
    for (uint32_t width = 1; width <= 32; ++width)
        ok = ok && decoder.ReadRawBits(width) == ((0x9E3779B9u * width) & (0xFFFFFFFFu >> (32 - width)));
    double d = 0;
    float f = 0;
    decoder >> d >> f;
    ok = ok && d == -1.0e300 && f == 2.5f;
    ZoStreamReadCompressedFloatingPoint floats(in);
    for (uint32_t i = 1; i < kSeriesLength; ++i) {
        const float value = floats.ReadValue(codedFloat(i - 1)), expected = codedFloat(i);
        ok = ok && std::memcmp(&value, &expected, 4) == 0;
    }
    return ok;
}

const struct
{
    const char16_t* name;
    bool compressed;
    void (*write)(ZoStreamWriteBinary&);
    bool (*check)(ZoStreamReadBinary&);
} kFiles[] = {
    {u"scalars.bin", false, writeValues, checkValues},
    {u"archive.bin", true,
     [](ZoStreamWriteBinary& out) {
         writeValues(out);
         for (uint32_t i = 0; i < kSeriesLength; ++i)
             out << i % 1000;
     },
     [](ZoStreamReadBinary& in) {
         bool ok = checkValues(in);
         for (uint32_t i = 0; i < kSeriesLength && ok; ++i)
             ok = readsAs(in, i % 1000);
         return ok;
     }},
    {u"colours.bin", false,
     [](ZoStreamWriteBinary& out) { sampleColorTable().Serialize(out), out << static_cast<uint64_t>(ZoDateTime(kDateTicks)); },
     checkColorsAndDate},
    {u"coded.bin", false, writeCoded, checkCoded},
};

int run(bool writing, const char* folder)
{
    CString base(folder);
    if (!base.IsEmpty() && base[base.GetLength() - 1] != ZoOS::GetPathSeparator())
        base += ZoOS::GetPathSeparator();
    bool ok = true;
    for (const auto& file : kFiles) {
        if (writing) {
            ZoStreamWriteBinaryFile out(base + file.name, file.compressed ? ZoStreamWriteBinaryFile::eCompressionZIP
                                                                          : ZoStreamWriteBinaryFile::eCompressionNone);
            file.write(out);
            out.Close();
        } else if (ZoStreamReadBinaryFile in(base + file.name); !file.check(in)) {
            std::printf("%s: a value differs from what was written\n", CString(file.name).ToUtf8().c_str());
            ok = false;
        }
    }
    if (writing || ok)
        std::puts(writing ? "cross-file written" : "cross-file ok");
    return ok ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3 || (std::strcmp(argv[1], "write") != 0 && std::strcmp(argv[1], "read") != 0)) {
        std::printf("usage: zo-cross-file write|read FOLDER\n");
        return 2;
    }
    try {
        return run(std::strcmp(argv[1], "write") == 0, argv[2]);
    } catch (const ZoException& e) {
        std::printf("%s", e.GetTraceString().ToUtf8().c_str());
        return 1;
    }
}
