// Writes or checks the library's file formats so that one target's files can be read by the
// other: `zo-cross-file write FOLDER` makes scalars.bin (a plain binary stream of every fixed-width
// kind) and archive.bin (the same values and a long series in a compressed archive);
// `zo-cross-file read FOLDER` reads both back and says "cross-file ok" when every value matches.
// `long` is left out on purpose: its width is the platform's. colours.bin holds a colour table and a
// date (its tick count), checked field by field; coded.bin holds a range-coded block and a compressed
// float stream (see writeCoded).
#include "base/ZoClassSerialization.h"
#include "base/ZoColorTable.h"
#include "base/ZoDateTime.h"
#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"
#include "platform/ZoOS.h"

#include <cstdio>
#include <cstring>
#include <limits>

namespace {

const uint32_t kSeriesLength = 50000;

void writeValues(ZoStreamWriteBinary& out)
{
    out.WriteVersion(7);
    out << true << static_cast<signed char>(-100) << static_cast<unsigned char>(200) << static_cast<int16_t>(-30000)
        << static_cast<uint16_t>(60000) << std::numeric_limits<int32_t>::min() << std::numeric_limits<uint32_t>::max()
        << std::numeric_limits<int64_t>::min() << std::numeric_limits<uint64_t>::max() << 3.25f << -1.0e300
        << CString(u"plain ASCII") << CString(u"\u00e4\u00f6\u00fc \u4e16\u754c \U0001F600") << CString(u'x', 300);
}

bool checkValues(ZoStreamReadBinary& in, const char* file)
{
    bool b = false;
    signed char sc = 0;
    unsigned char uc = 0;
    int16_t s = 0;
    uint16_t us = 0;
    int32_t i = 0;
    uint32_t ui = 0;
    int64_t i64 = 0;
    uint64_t u64 = 0;
    float f = 0;
    double d = 0;
    CString ascii, wide, repeated;
    const unsigned int version = in.ReadAndCompareVersion(7);
    in >> b >> sc >> uc >> s >> us >> i >> ui >> i64 >> u64 >> f >> d >> ascii >> wide >> repeated;
    const bool ok = version == 7 && b && sc == -100 && uc == 200 && s == -30000 && us == 60000 &&
                    i == std::numeric_limits<int32_t>::min() && ui == std::numeric_limits<uint32_t>::max() &&
                    i64 == std::numeric_limits<int64_t>::min() && u64 == std::numeric_limits<uint64_t>::max() &&
                    f == 3.25f && d == -1.0e300 && ascii == CString(u"plain ASCII") &&
                    wide == CString(u"\u00e4\u00f6\u00fc \u4e16\u754c \U0001F600") && repeated == CString(u'x', 300);
    if (!ok)
        std::printf("%s: a value differs from what was written\n", file);
    return ok;
}

CString join(const char* folder, const char16_t* name)
{
    CString path(folder);
    if (!path.IsEmpty() && path[path.GetLength() - 1] != ZoOS::GetPathSeparator())
        path += ZoOS::GetPathSeparator();
    return path + name;
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

void writeColorsAndDate(const char* folder)
{
    ZoStreamWriteBinaryFile out(join(folder, u"colours.bin"));
    sampleColorTable().Serialize(out);
    out << static_cast<uint64_t>(ZoDateTime(kDateTicks));
    out.Close();
}

bool checkColorsAndDate(const char* folder)
{
    ZoStreamReadBinaryFile in(join(folder, u"colours.bin"));
    ZoColorTable table(1);
    table.Serialize(in);
    uint64_t ticks = 0;
    in >> ticks;
    const ZoColorTable expected = sampleColorTable();
    bool ok = table.GetEntryCount() == expected.GetEntryCount() &&
              table.GetUnderflowColor() == expected.GetUnderflowColor();
    for (float value = -1.0f; value <= 2.0f && ok; value += 0.25f)
        ok = table.GetColorValue(value) == expected.GetColorValue(value);
    const ZoDateTime date(ticks);
    ok = ok && ticks == kDateTicks && date.GetYear() == 2009 && date.GetMonth() == 3 && date.GetDay() == 5 &&
         date.GetHour() == 10 && date.GetMinute() == 0 && date.GetSecond() == 30 && date.GetMillisecond() == 250;
    if (!ok)
        std::printf("colours.bin: the colour table or the date differs from what was written\n");
    return ok;
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

void writeCoded(const CString& path)
{
    ZoStreamWriteBinaryFile out(path);
    {
        ZoCompressRangeCoder coder(out, 300, 0);
        for (uint32_t i = 0; i < kSeriesLength; ++i)
            coder << codedSymbol(i);
        for (uint32_t width = 1; width <= 32; ++width)
            coder.WriteRawBits(0x9E3779B9u * width, width);
        coder << -1.0e300 << 2.5f;
    }
    {
        ZoStreamWriteCompressedFloatingPoint floats(out, 0);
        for (uint32_t i = 1; i < kSeriesLength; ++i)
            floats.WriteValue(codedFloat(i), codedFloat(i - 1));
    }
    out.Close();
}

bool checkCoded(const CString& path)
{
    ZoStreamReadBinaryFile in(path);
    ZoDecompressRangeCoder decoder(in, 300);
    bool ok = true;
    for (uint32_t i = 0; i < kSeriesLength; ++i) {
        uint32_t symbol = 0;
        decoder >> symbol;
        ok = ok && symbol == codedSymbol(i);
    }
    for (uint32_t width = 1; width <= 32; ++width)
        ok = ok && decoder.ReadRawBits(width) == ((0x9E3779B9u * width) & (0xFFFFFFFFu >> (32 - width)));
    double d = 0;
    float f = 0;
    decoder >> d >> f;
    ok = ok && d == -1.0e300 && f == 2.5f;
    ZoStreamReadCompressedFloatingPoint floats(in);
    for (uint32_t i = 1; i < kSeriesLength; ++i) {
        const float value = floats.ReadValue(codedFloat(i - 1));
        const float expected = codedFloat(i);
        ok = ok && std::memcmp(&value, &expected, 4) == 0;
    }
    if (!ok)
        std::printf("coded.bin: a value differs from what was coded\n");
    return ok;
}

int write(const char* folder)
{
    writeColorsAndDate(folder);
    {
        ZoStreamWriteBinaryFile out(join(folder, u"scalars.bin"));
        writeValues(out);
        out.Close();
    }
    ZoStreamWriteBinaryFile out(join(folder, u"archive.bin"), ZoStreamWriteBinaryFile::eCompressionZIP);
    writeValues(out);
    for (uint32_t i = 0; i < kSeriesLength; ++i)
        out << i % 1000;
    out.Close();
    writeCoded(join(folder, u"coded.bin"));
    std::printf("cross-file written\n");
    return 0;
}

int read(const char* folder)
{
    ZoStreamReadBinaryFile scalars(join(folder, u"scalars.bin"));
    bool ok = checkValues(scalars, "scalars.bin");
    ZoStreamReadBinaryFile archive(join(folder, u"archive.bin"));
    ok = checkValues(archive, "archive.bin") && ok;
    for (uint32_t i = 0; i < kSeriesLength && ok; ++i) {
        uint32_t value = 0;
        archive >> value;
        if (value != i % 1000) {
            std::printf("archive.bin: series value %u differs\n", i);
            ok = false;
        }
    }
    ok = checkColorsAndDate(folder) && ok;
    ok = checkCoded(join(folder, u"coded.bin")) && ok;
    if (ok)
        std::printf("cross-file ok\n");
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
        return std::strcmp(argv[1], "write") == 0 ? write(argv[2]) : read(argv[2]);
    } catch (const ZoException& e) {
        std::printf("%s", e.GetTraceString().ToUtf8().c_str());
        return 1;
    }
}
