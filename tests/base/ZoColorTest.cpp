// Colours, colour maps, lookups and tables: the packing and its deliberate quirks, the colour-space
// round trips over a grid, the table's dump text and binary form.
#include "base/ZoColor.h"
#include "base/ZoColorHSV.h"
#include "base/ZoColorMap.h"
#include "base/ZoColorMapLookup.h"
#include "base/ZoColorTable.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoStreamWriteBinaryMemory.h"

#include "ZoTestSupport.h"

#include <cmath>
#include <cstdlib>
#include <limits>

namespace {

using zotest::Bytes;

class TableProbe : public ZoColorTable
{
public:
    using ZoColorTable::ZoColorTable;
    using ZoColorTable::getEntry;
    using ZoColorTable::getValue;
};

TEST(ZoColor, PackingAndItsQuirks)
{
    const ZoColor red(255, 0, 0, 255);
    EXPECT_EQ(red.ToString(), CString(u"0xFF0000"));
    EXPECT_EQ(static_cast<uint32_t>(red), 0x0000FFu);
    // Named colours truncate their fractions: half intensity is 0x7F.
    EXPECT_EQ(std::vector<uint32_t>({ZoColor::c_GREEN.GetDWORD(), ZoColor::c_GRAY.GetDWORD(), ZoColor::c_ALICEBLUE.GetDWORD()}),
              std::vector<uint32_t>({0xFF007F00u, 0xFF7F7F7Fu, 0xFFF0F8FFu}));
    EXPECT_EQ(ZoColor::RgbToDword(0.0f, 0.5f, 0.0f, 1.0f), 0xFF007F00u);
    // Channels above 255 spill, out-of-range fractions keep their low byte, NaN gives 0.
    EXPECT_EQ(ZoColor(0u, 256u, 0u, 255u).GetDWORD(), 0xFF010000u);
    EXPECT_EQ(ZoColor::RgbToDword(2.0f, -0.5f, std::nanf(""), 1e30f), 0x00FE8100u);
    ZoColor spill(0x11223344u);
    spill.SetRed(0x1FFu);
    EXPECT_EQ(spill.GetDWORD(), 0x11FF3344u);
    spill.SetGreen(2.0f);
    spill.SetTransparent();
    EXPECT_EQ(spill.GetDWORD(), 0x00FFFE44u);
    // The greyscale sums are no grey levels; stored data depends on them as they are.
    EXPECT_EQ(ZoColor::RgbToGreyscale(1u, 1u, 1u), 0x4C961Du);
    ZoColor white;
    white.ToGreyscale();
    EXPECT_EQ(white.GetDWORD(), 0x4C4986E3u);
    EXPECT_FLOAT_EQ(ZoColor::RgbToGreyscale(1.0f, 0.5f, 0.0f), 0.595f);
    EXPECT_FLOAT_EQ(ZoColor::GetSqrColorDifferenceRGB(ZoColor::c_BLACK, ZoColor::c_WHITE), 3.0f);
    EXPECT_FLOAT_EQ(ZoColor::GetColorDifferenceRGB(ZoColor::c_BLACK, ZoColor::c_WHITE), std::sqrt(3.0f));
    EXPECT_FLOAT_EQ(ZoColor::GetColorDifferenceSumRGB(ZoColor::c_RED, ZoColor::c_BLUE), 0.0f);
    EXPECT_FLOAT_EQ(ZoColor::GetColorDifferenceSumRGB(ZoColor::c_WHITE, ZoColor::c_BLACK), 1.0f);
    EXPECT_EQ(ZoColor::InterpolateRGB(ZoColor::c_WHITE, ZoColor::c_RED, 0.25f).GetDWORD(), 0xFFFFBFBFu);
    // The random colours draw blue first and are opaque.
    std::srand(7);
    float parts[3]; // blue, green, red
    for (float& part : parts)
        part = static_cast<float>((std::rand() % 32768) / 32767.0);
    std::srand(7);
    EXPECT_EQ(ZoColor::CreateRandomColor().GetDWORD(), ZoColor::RgbToDword(parts[2], parts[1], parts[0], 1.0f));
    EXPECT_EQ(ZoColor::CreateRandomColorSaturated().GetDWORD() >> 24, 0xFFu);
}

TEST(ZoColor, HsvAndHslRoundTripsOverAGrid)
{
    float h = -1, s = -1, v = -1, r0, g0, b0, r1, g1, b1;
    ZoColor::RgbToHsv(1, 1, 1, h, s, v);
    EXPECT_TRUE(h == 0 && s == 0 && v == 1);
    ZoColor::HsvToRgb(0, 1, 1, r0, g0, b0);
    ZoColor::HsvToRgb(360, 1, 1, r1, g1, b1);
    EXPECT_TRUE(r0 == r1 && g0 == g1 && b0 == b1);
    r1 = g1 = b1 = 0.25f;
    ZoColor::HsvToRgb(400, 1, 1, r1, g1, b1);
    EXPECT_TRUE(r1 == 0.25f && g1 == 0.25f && b1 == 0.25f) << "a hue beyond 360 leaves the outputs alone";
    for (int i = 0; i < 9 * 9 * 9; ++i) {
        const float r = i % 9 / 8.0f, g = i / 9 % 9 / 8.0f, b = i / 81 / 8.0f;
        for (int hsl = 0; hsl < 2; ++hsl) {
            float x, y, z, rr = -1, gg = -1, bb = -1;
            (hsl ? ZoColor::RgbToHsl : ZoColor::RgbToHsv)(r, g, b, x, y, z);
            (hsl ? ZoColor::HslToRgb : ZoColor::HsvToRgb)(x, y, z, rr, gg, bb);
            EXPECT_TRUE(std::fabs(rr - r) < 1e-5f && std::fabs(gg - g) < 1e-5f && std::fabs(bb - b) < 1e-5f)
                << (hsl ? "HSL" : "HSV") << " of " << r << "," << g << "," << b;
        }
    }
}

TEST(ZoColor, MapsAndLookups)
{
    ZoColorHSV faded;
    faded.Interpolate(ZoColorHSV(ZoColor::c_RED), ZoColorHSV(ZoColor(0x00808080u)), 0.5f);
    EXPECT_EQ(faded.GetHue(), 0.0f) << "a grey end keeps the other end's hue";
    EXPECT_EQ(ZoColorHSV(ZoColor(0x00FF0000u)).GetColor().GetDWORD(), 0xFFFF0000u);
    const ZoColorMap map;
    EXPECT_TRUE(map.GetColorValue(0.0f) == ZoColor::c_BLUE && map.GetColorValue(-0.1f) == ZoColor::c_BLUE);
    EXPECT_TRUE(map.GetColorValue(1.0f) == ZoColor::c_RED && map.GetColorValue(1.1f) == ZoColor::c_RED);
    EXPECT_EQ(map.GetColorValue(0.5f).GetDWORD(), 0xFF00FF00u) << "hue 120 halfway, no turn through 360";
    const float values[] = {3.0f, -2.0f, 7.0f};
    ZoColorMap ranged(values, 3);
    EXPECT_EQ(ranged.GetColorValue(-2.0f), ZoColor::c_BLUE);
    EXPECT_EQ(ranged.GetColorValue(7.5f), ZoColor::c_RED);
    ZoColorMapLookup lookup(4, 1.0f, 2.0f); // a range off zero: the step is (max - min) / entries
    lookup.SetUnderflowColor(ZoColor::c_BLACK);
    lookup.SetOverflowColor(ZoColor::c_WHITE);
    EXPECT_EQ(lookup.GetColorValue(1.0f), ZoColor::c_BLUE.GetDWORD());
    EXPECT_EQ(lookup.GetColorValue(1.5f), 0xFF00FF00u);
    EXPECT_EQ(lookup.GetColorValue(0.9f), ZoColor::c_BLUE.GetDWORD()) << "truncation keeps it in entry 0";
    EXPECT_EQ(lookup.GetColorValue(0.7f), ZoColor::c_BLACK.GetDWORD());
    EXPECT_EQ(lookup.GetColorValue(2.0f), ZoColor::c_WHITE.GetDWORD());
    EXPECT_EQ(lookup.GetColorValue(std::nanf("")), ZoColor::c_BLACK.GetDWORD());
    ZoColorMapLookup copy(lookup);
    copy.SetOverflowColor(ZoColor::c_RED);
    EXPECT_EQ(copy.GetColorValue(3.0f), ZoColor::c_WHITE.GetDWORD()) << "a copy shares the built table";
    ZoColorMapLookup empty(0, 0.0f, 1.0f);
    EXPECT_EQ(empty.GetColorValue(0.5f), ZoColor::c_RED.GetDWORD());
}

TEST(ZoColor, TableFillsAndDumps)
{
    TableProbe ten(10);
    EXPECT_TRUE(ten.getEntry(1.0f) == 9u && ten.getEntry(-5.0f) == 0u && ten.GetColorValue(-5.0f) == ZoColor::c_BLUE);
    EXPECT_TRUE(ten.getValue(9) == 1.0f && TableProbe(4, 2.0f, 4.0f).getEntry(3.0f) == 2u) << "a range off zero";
    TableProbe table(5);
    table.AddColorValue(ZoColor::c_BLACK, 0.0f, 0.2f);
    table.AddColorValue(ZoColor::c_RED, 0.9f, 0.1f); // from above to: nothing
    table.AddColorRamp(ZoColor::c_BLUE, 0.6f, ZoColor::c_RED, 1.0f);
    ZoStreamWriteASCIIString text;
    table.Dump(text);
    EXPECT_EQ(text.GetText(), CString(u"0:\t(0.000000, 0.000000, 0.000000)\n"
                                      u"2:\t(1.000000, 1.000000, 1.000000)\n"
                                      u"3:\t(0.000000, 1.000000, 0.498039)\n"
                                      u"4:\t(1.000000, 0.000000, 0.000000)\n"));
    EXPECT_EQ(table.GetColorValue(0.5f).GetDWORD(), 0xFFFFFFFFu);
    EXPECT_EQ(table.GetColorValue(1.5f), ZoColor::c_RED);
    ZoSmartPointer<ZoColorTable> counted(new ZoColorTable(1));
    const ZoColorTable copy(*counted);
    EXPECT_EQ(copy.GetReferenceCount(), 0) << "a copy starts its own count";
    TableProbe single(1);
    single.AddColorRamp(ZoColor::c_BLUE, 0.0f, ZoColor::c_RED, 1.0f);
    EXPECT_TRUE(std::isnan(single.getValue(0))) << "one entry: 0 / 0";
}

TEST(ZoColor, BinaryForms)
{
    ZoStreamWriteBinaryMemory out;
    ZoColor(0x80FF0102u).Serialize(out);
    ZoColorTable table(2, -1.0f, 1.0f);
    table.AddColorValue(ZoColor::c_BLACK, -1.0f, -1.0f);
    table.Serialize(out);
    const std::vector<unsigned char> expected =
        Bytes({0, 0, 0, 0, 0x02, 0x01, 0xFF, 0x80,                        // colour
               0, 0, 0, 0, 2, 0, 0, 0, 0, 0, 0x80, 0xBF, 0, 0, 0x80, 0x3F, // version, count, range
               0, 0, 0, 0, 0xFF, 0, 0, 0xFF, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF,   // outside colours
               0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF});                      // entries
    ASSERT_EQ(out.GetBuffer(), expected);
    ZoStreamReadBinaryMemory in(expected);
    ZoColor color;
    color.Serialize(in);
    ZoColorTable back(7);
    back.Serialize(in);
    EXPECT_EQ(color.GetDWORD(), 0x80FF0102u);
    ZoStreamWriteASCIIString original, copied;
    table.Dump(original);
    back.Dump(copied);
    EXPECT_EQ(copied.GetText(), original.GetText());
    float minimum = 0, maximum = 0;
    back.GetMinMax(minimum, maximum);
    EXPECT_TRUE(minimum == -1.0f && maximum == 1.0f && back.GetEntryCount() == 2);
    // Cut short, or claiming far more entries than arrive: the stream's exception, table unchanged.
    std::vector<unsigned char> damaged(expected.begin() + 8, expected.end() - 1);
    damaged[4] = 0xFF;
    damaged[7] = 0x7F;
    ZoStreamReadBinaryMemory cut(damaged);
    EXPECT_THROW(back.Serialize(cut), ZoExceptionStream);
    EXPECT_EQ(back.GetEntryCount(), 2u);
    ZoStreamReadBinaryMemory newer(Bytes({1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_THROW(color.Serialize(newer), ZoExceptionWrongFileVersion);
    EXPECT_EQ(color.GetDWORD(), 0x80FF0102u);
}

} // namespace
