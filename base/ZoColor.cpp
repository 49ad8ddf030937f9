#include "base/ZoColor.h"

#include <cmath>
#include <cstdlib>

namespace {

// A web colour byte as the channel fraction the named colours are written in.
constexpr float web(int byte)
{
    return static_cast<float>(byte) / 255.0f;
}

uint32_t named(float red, float green, float blue)
{
    return ZoColor::RgbToDword(red, green, blue, 1.0f);
}

// rand() is 15 bits wide where the colours were designed; other C libraries give more.
float randomFraction()
{
    return static_cast<float>(static_cast<double>(std::rand() % 32768) / 32767.0);
}

float square(float value)
{
    return value * value;
}

// The hue of RgbToHsv and RgbToHsl, in degrees 0..360; `delta` is max - min and not 0.
float hueOf(float red, float green, float blue, float maximum, float delta)
{
    float hue;
    if (red == maximum)
        hue = (green - blue) / delta;
    else if (green == maximum)
        hue = (blue - red) / delta + 2.0f;
    else
        hue = (red - green) / delta + 4.0f;
    hue *= 60.0f;
    if (hue < 0.0f)
        hue += 360.0f;
    return hue;
}

float hslChannel(float m1, float m2, float x)
{
    if (x <= 0.0f)
        x += 1.0f;
    else if (x >= 1.0f)
        x -= 1.0f;
    float channel;
    if (x < 1.0f / 6.0f)
        channel = m1 + (m2 - m1) * 6.0f * x;
    else if (x < 0.5f)
        channel = m2;
    else if (x < 2.0f / 3.0f)
        channel = m1 + (m2 - m1) * 6.0f * (2.0f / 3.0f - x);
    else
        channel = m1;
    return channel < 0.0f ? 0.0f : (channel > 1.0f ? 1.0f : channel);
}

} // namespace

ZoColor::ZoColor(uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha)
    : m_value(((alpha * 256u + red) * 256u + green) * 256u + blue)
{
}

ZoColor::operator uint32_t() const
{
    return ((m_value >> 16) & 0xFF) | (m_value & 0xFF00) | ((m_value & 0xFF) << 16);
}

uint32_t ZoColor::truncateChannel(float value)
{
    const float scaled = value * 255.0f;
    // NaN fails both comparisons and lands here too.
    if (!(scaled > -2147483648.0f && scaled < 2147483648.0f))
        return 0;
    return static_cast<uint32_t>(static_cast<int32_t>(scaled)) & 0xFF;
}

uint32_t ZoColor::RgbToDword(float red, float green, float blue, float alpha)
{
    return (truncateChannel(alpha) << 24) | (truncateChannel(red) << 16) | (truncateChannel(green) << 8) |
           truncateChannel(blue);
}

float ZoColor::RgbToGreyscale(float red, float green, float blue)
{
    return 0.3f * red + 0.59f * green + 0.11f * blue;
}

uint32_t ZoColor::RgbToGreyscale(uint32_t red, uint32_t green, uint32_t blue)
{
    return red * 0x4C0000u + green * 0x9600u + blue * 29u;
}

void ZoColor::ToGreyscale()
{
    m_value = RgbToGreyscale((m_value >> 16) & 0xFF, (m_value >> 8) & 0xFF, m_value & 0xFF);
}

void ZoColor::RgbToHsv(float red, float green, float blue, float& hue, float& saturation, float& value)
{
    const float maximum = std::fmax(red, std::fmax(green, blue));
    const float minimum = std::fmin(red, std::fmin(green, blue));
    value = maximum;
    hue = 0.0f;
    saturation = 0.0f;
    if (maximum == 0.0f)
        return;
    const float delta = maximum - minimum;
    saturation = delta / maximum;
    if (saturation != 0.0f)
        hue = hueOf(red, green, blue, maximum, delta);
}

void ZoColor::HsvToRgb(float hue, float saturation, float value, float& red, float& green, float& blue)
{
    float x = hue / 360.0f;
    if (x == 1.0f)
        x = 0.0f;
    x *= 6.0f;
    const float sector = std::floor(x);
    // A hue outside 0..360 (or NaN) has no sector: the outputs stay as the caller left them.
    if (!(sector >= 0.0f && sector <= 5.0f))
        return;
    const float f = x - sector;
    const float p = (1.0f - saturation) * value;
    const float q = (1.0f - f * saturation) * value;
    const float t = (1.0f - (1.0f - f) * saturation) * value;
    switch (static_cast<int>(sector)) {
    case 0: red = value; green = t; blue = p; break;
    case 1: red = q; green = value; blue = p; break;
    case 2: red = p; green = value; blue = t; break;
    case 3: red = p; green = q; blue = value; break;
    case 4: red = t; green = p; blue = value; break;
    default: red = value; green = p; blue = q; break;
    }
}

void ZoColor::RgbToHsl(float red, float green, float blue, float& hue, float& saturation, float& lightness)
{
    const float maximum = std::fmax(red, std::fmax(green, blue));
    const float minimum = std::fmin(red, std::fmin(green, blue));
    lightness = (maximum + minimum) / 2.0f;
    hue = 0.0f;
    saturation = 0.0f;
    if (maximum == minimum)
        return;
    const float delta = maximum - minimum;
    saturation = lightness <= 0.5f ? delta / (maximum + minimum) : delta / (2.0f - maximum - minimum);
    hue = hueOf(red, green, blue, maximum, delta);
}

void ZoColor::HslToRgb(float hue, float saturation, float lightness, float& red, float& green, float& blue)
{
    const float m2 = lightness < 0.5f ? lightness * (1.0f + saturation) : lightness + saturation - lightness * saturation;
    const float m1 = 2.0f * lightness - m2;
    const float x = hue / 360.0f;
    red = hslChannel(m1, m2, x + 1.0f / 3.0f);
    green = hslChannel(m1, m2, x);
    blue = hslChannel(m1, m2, x - 1.0f / 3.0f);
}

float ZoColor::GetSqrColorDifferenceRGB(const ZoColor& a, const ZoColor& b)
{
    return square(a.GetRed() - b.GetRed()) + square(a.GetGreen() - b.GetGreen()) + square(a.GetBlue() - b.GetBlue());
}

float ZoColor::GetColorDifferenceRGB(const ZoColor& a, const ZoColor& b)
{
    return std::sqrt(GetSqrColorDifferenceRGB(a, b));
}

float ZoColor::GetColorDifferenceSumRGB(const ZoColor& a, const ZoColor& b)
{
    return ((a.GetRed() - b.GetRed()) + (a.GetGreen() - b.GetGreen()) + (a.GetBlue() - b.GetBlue())) / 3.0f;
}

ZoColor ZoColor::InterpolateRGB(const ZoColor& a, const ZoColor& b, float t)
{
    const float s = 1.0f - t;
    return ZoColor(a.GetRed() * s + b.GetRed() * t, a.GetGreen() * s + b.GetGreen() * t,
                   a.GetBlue() * s + b.GetBlue() * t, 1.0f);
}

ZoColor ZoColor::CreateRandomColor()
{
    const float blue = randomFraction();
    const float green = randomFraction();
    const float red = randomFraction();
    return ZoColor(red, green, blue, 1.0f);
}

ZoColor ZoColor::CreateRandomColorSaturated()
{
    float red = 0.0f, green = 0.0f, blue = 0.0f;
    HsvToRgb(randomFraction() * 360.0f, 1.0f, 1.0f, red, green, blue);
    return ZoColor(red, green, blue, 1.0f);
}

CString ZoColor::ToString() const
{
    return CString::Formatted(u"0x%.2X%.2X%.2X", (m_value >> 16) & 0xFF, (m_value >> 8) & 0xFF, m_value & 0xFF);
}

void ZoColor::Serialize(ZoStreamWriteBinary& stream) const
{
    stream.WriteVersion(0);
    stream << m_value;
}

void ZoColor::Serialize(ZoStreamReadBinary& stream)
{
    stream.ReadAndCompareVersion(0);
    uint32_t value = 0;
    stream >> value;
    m_value = value;
}

// c_GREEN and the other colours the classic tables give as halves keep 0.5, which truncation turns
// into the byte 127: stored pictures and colour tables were made with these values.
const ZoColor ZoColor::c_ALICEBLUE(named(web(240), web(248), 1.0f));
const ZoColor ZoColor::c_ANTIQUEWHITE(named(web(250), web(235), web(215)));
const ZoColor ZoColor::c_AQUAMARINE(named(web(127), 1.0f, web(212)));
const ZoColor ZoColor::c_AZURE(named(web(240), 1.0f, 1.0f));
const ZoColor ZoColor::c_BEIGE(named(web(245), web(245), web(220)));
const ZoColor ZoColor::c_BISQUE(named(1.0f, web(228), web(196)));
const ZoColor ZoColor::c_BLACK(named(0.0f, 0.0f, 0.0f));
const ZoColor ZoColor::c_BLANCHEDALMOND(named(1.0f, web(235), web(205)));
const ZoColor ZoColor::c_BLUE(named(0.0f, 0.0f, 1.0f));
const ZoColor ZoColor::c_BLUEVIOLET(named(web(138), web(43), web(226)));
const ZoColor ZoColor::c_BROWN(named(web(165), web(42), web(42)));
const ZoColor ZoColor::c_BURLYWOOD(named(web(222), web(184), web(135)));
const ZoColor ZoColor::c_CADETBLUE(named(web(95), web(158), web(160)));
const ZoColor ZoColor::c_CHARTREUSE(named(web(127), 1.0f, 0.0f));
const ZoColor ZoColor::c_CHOCOLATE(named(web(210), web(105), web(30)));
const ZoColor ZoColor::c_CORAL(named(1.0f, web(127), web(80)));
const ZoColor ZoColor::c_CORNFLOWERBLUE(named(web(100), web(149), web(237)));
const ZoColor ZoColor::c_CORNSILK(named(1.0f, web(248), web(220)));
const ZoColor ZoColor::c_CRIMSON(named(web(220), web(20), web(60)));
const ZoColor ZoColor::c_CYAN(named(0.0f, 1.0f, 1.0f));
const ZoColor ZoColor::c_DARKBLUE(named(0.0f, 0.0f, web(139)));
const ZoColor ZoColor::c_DARKCYAN(named(0.0f, web(139), web(139)));
const ZoColor ZoColor::c_DARKGOLDENROD(named(web(184), web(134), web(11)));
const ZoColor ZoColor::c_DARKGRAY(named(web(169), web(169), web(169)));
const ZoColor ZoColor::c_DARKGREEN(named(0.0f, web(100), 0.0f));
const ZoColor ZoColor::c_DARKKHAKI(named(web(189), web(183), web(107)));
const ZoColor ZoColor::c_DARKMAGENTA(named(web(139), 0.0f, web(139)));
const ZoColor ZoColor::c_DARKOLIVEGREEN(named(web(85), web(107), web(47)));
const ZoColor ZoColor::c_DARKORANGE(named(1.0f, web(140), 0.0f));
const ZoColor ZoColor::c_DARKORCHID(named(web(153), web(50), web(204)));
const ZoColor ZoColor::c_DARKRED(named(web(139), 0.0f, 0.0f));
const ZoColor ZoColor::c_DARKSALMON(named(web(233), web(150), web(122)));
const ZoColor ZoColor::c_DARKSEAGREEN(named(web(143), web(188), web(143)));
const ZoColor ZoColor::c_DARKSLATEBLUE(named(web(72), web(61), web(139)));
const ZoColor ZoColor::c_DARKSLATEGRAY(named(web(47), web(79), web(79)));
const ZoColor ZoColor::c_DARKTURQUOISE(named(0.0f, web(206), web(209)));
const ZoColor ZoColor::c_DARKVIOLET(named(web(148), 0.0f, web(211)));
const ZoColor ZoColor::c_DEEPPINK(named(1.0f, web(20), web(147)));
const ZoColor ZoColor::c_DEEPSKYBLUE(named(0.0f, web(191), 1.0f));
const ZoColor ZoColor::c_DIMGRAY(named(web(105), web(105), web(105)));
const ZoColor ZoColor::c_DODGERBLUE(named(web(30), web(144), 1.0f));
const ZoColor ZoColor::c_FIREBRICK(named(web(178), web(34), web(34)));
const ZoColor ZoColor::c_FLORALWHITE(named(1.0f, web(250), web(240)));
const ZoColor ZoColor::c_FORESTGREEN(named(web(34), web(139), web(34)));
const ZoColor ZoColor::c_GAINSBORO(named(web(220), web(220), web(220)));
const ZoColor ZoColor::c_GHOSTWHITE(named(web(248), web(248), 1.0f));
const ZoColor ZoColor::c_GOLD(named(1.0f, web(215), 0.0f));
const ZoColor ZoColor::c_GOLDENROD(named(web(218), web(165), web(32)));
const ZoColor ZoColor::c_GRAY(named(0.5f, 0.5f, 0.5f));
const ZoColor ZoColor::c_GREEN(named(0.0f, 0.5f, 0.0f));
const ZoColor ZoColor::c_GREENYELLOW(named(web(173), 1.0f, web(47)));
const ZoColor ZoColor::c_HONEYDEW(named(web(240), 1.0f, web(240)));
const ZoColor ZoColor::c_HOTPINK(named(1.0f, web(105), web(180)));
const ZoColor ZoColor::c_INDIANRED(named(web(205), web(92), web(92)));
const ZoColor ZoColor::c_INDIGO(named(web(75), 0.0f, web(130)));
const ZoColor ZoColor::c_IVORY(named(1.0f, 1.0f, web(240)));
const ZoColor ZoColor::c_KHAKI(named(web(240), web(230), web(140)));
const ZoColor ZoColor::c_LAVENDER(named(web(230), web(230), web(250)));
const ZoColor ZoColor::c_LAVENDERBLUSH(named(1.0f, web(240), web(245)));
const ZoColor ZoColor::c_LAWNGREEN(named(web(124), web(252), 0.0f));
const ZoColor ZoColor::c_LEMONCHIFFON(named(1.0f, web(250), web(205)));
const ZoColor ZoColor::c_LIGHTBLUE(named(web(173), web(216), web(230)));
const ZoColor ZoColor::c_LIGHTCORAL(named(web(240), web(128), web(128)));
const ZoColor ZoColor::c_LIGHTCYAN(named(web(224), 1.0f, 1.0f));
const ZoColor ZoColor::c_LIGHTGOLDENRODYELLOW(named(web(250), web(250), web(210)));
const ZoColor ZoColor::c_LIGHTGRAY(named(web(211), web(211), web(211)));
const ZoColor ZoColor::c_LIGHTGREEN(named(web(144), web(238), web(144)));
const ZoColor ZoColor::c_LIGHTPINK(named(1.0f, web(182), web(193)));
const ZoColor ZoColor::c_LIGHTSALMON(named(1.0f, web(160), web(122)));
const ZoColor ZoColor::c_LIGHTSEAGREEN(named(web(32), web(178), web(170)));
const ZoColor ZoColor::c_LIGHTSKYBLUE(named(web(135), web(206), web(250)));
const ZoColor ZoColor::c_LIGHTSLATEGRAY(named(web(119), web(136), web(153)));
const ZoColor ZoColor::c_LIGHTSTEELBLUE(named(web(176), web(196), web(222)));
const ZoColor ZoColor::c_LIGHTYELLOW(named(1.0f, 1.0f, web(224)));
const ZoColor ZoColor::c_LIME(named(0.0f, 1.0f, 0.0f));
const ZoColor ZoColor::c_LIMEGREEN(named(web(50), web(205), web(50)));
const ZoColor ZoColor::c_LINEN(named(web(250), web(240), web(230)));
const ZoColor ZoColor::c_MAGENTA(named(1.0f, 0.0f, 1.0f));
const ZoColor ZoColor::c_MAROON(named(0.5f, 0.0f, 0.0f));
const ZoColor ZoColor::c_MEDIUMAQUAMARINE(named(web(102), web(205), web(170)));
const ZoColor ZoColor::c_MEDIUMBLUE(named(0.0f, 0.0f, web(205)));
const ZoColor ZoColor::c_MEDIUMORCHID(named(web(186), web(85), web(211)));
const ZoColor ZoColor::c_MEDIUMPURPLE(named(web(147), web(112), web(219)));
const ZoColor ZoColor::c_MEDIUMSEAGREEN(named(web(60), web(179), web(113)));
const ZoColor ZoColor::c_MEDIUMSLATEBLUE(named(web(123), web(104), web(238)));
const ZoColor ZoColor::c_MEDIUMSPRINGGREEN(named(0.0f, web(250), web(154)));
const ZoColor ZoColor::c_MEDIUMTURQUOISE(named(web(72), web(209), web(204)));
const ZoColor ZoColor::c_MEDIUMVIOLETRED(named(web(199), web(21), web(133)));
const ZoColor ZoColor::c_MIDNIGHTBLUE(named(web(25), web(25), web(112)));
const ZoColor ZoColor::c_MINTCREAM(named(web(245), 1.0f, web(250)));
const ZoColor ZoColor::c_MISTYROSE(named(1.0f, web(228), web(225)));
const ZoColor ZoColor::c_MOCCASIN(named(1.0f, web(228), web(181)));
const ZoColor ZoColor::c_NAVAJOWHITE(named(1.0f, web(222), web(173)));
const ZoColor ZoColor::c_NAVY(named(0.0f, 0.0f, 0.5f));
const ZoColor ZoColor::c_OLDLACE(named(web(253), web(245), web(230)));
const ZoColor ZoColor::c_OLIVE(named(0.5f, 0.5f, 0.0f));
const ZoColor ZoColor::c_OLIVEDRAB(named(web(107), web(142), web(35)));
const ZoColor ZoColor::c_ORANGE(named(1.0f, web(165), 0.0f));
const ZoColor ZoColor::c_ORANGERED(named(1.0f, web(69), 0.0f));
const ZoColor ZoColor::c_ORCHID(named(web(218), web(112), web(214)));
const ZoColor ZoColor::c_PALEGOLDENROD(named(web(238), web(232), web(170)));
const ZoColor ZoColor::c_PALEGREEN(named(web(152), web(251), web(152)));
const ZoColor ZoColor::c_PALETURQUOISE(named(web(175), web(238), web(238)));
const ZoColor ZoColor::c_PALEVIOLETRED(named(web(219), web(112), web(147)));
const ZoColor ZoColor::c_PAPAYAWHIP(named(1.0f, web(239), web(213)));
const ZoColor ZoColor::c_PEACHPUFF(named(1.0f, web(218), web(185)));
const ZoColor ZoColor::c_PERU(named(web(205), web(133), web(63)));
const ZoColor ZoColor::c_PINK(named(1.0f, web(192), web(203)));
const ZoColor ZoColor::c_PLUM(named(web(221), web(160), web(221)));
const ZoColor ZoColor::c_POWDERBLUE(named(web(176), web(224), web(230)));
const ZoColor ZoColor::c_PURPLE(named(0.5f, 0.0f, 0.5f));
const ZoColor ZoColor::c_RED(named(1.0f, 0.0f, 0.0f));
const ZoColor ZoColor::c_ROSYBROWN(named(web(188), web(143), web(143)));
const ZoColor ZoColor::c_ROYALBLUE(named(web(65), web(105), web(225)));
const ZoColor ZoColor::c_SADDLEBROWN(named(web(139), web(69), web(19)));
const ZoColor ZoColor::c_SALMON(named(web(250), web(128), web(114)));
const ZoColor ZoColor::c_SANDYBROWN(named(web(244), web(164), web(96)));
const ZoColor ZoColor::c_SEAGREEN(named(web(46), web(139), web(87)));
const ZoColor ZoColor::c_SEASHELL(named(1.0f, web(245), web(238)));
const ZoColor ZoColor::c_SIENNA(named(web(160), web(82), web(45)));
const ZoColor ZoColor::c_SILVER(named(web(192), web(192), web(192)));
const ZoColor ZoColor::c_SKYBLUE(named(web(135), web(206), web(235)));
const ZoColor ZoColor::c_SLATEBLUE(named(web(106), web(90), web(205)));
const ZoColor ZoColor::c_SLATEGRAY(named(web(112), web(128), web(144)));
const ZoColor ZoColor::c_SNOW(named(1.0f, web(250), web(250)));
const ZoColor ZoColor::c_SPRINGGREEN(named(0.0f, 1.0f, web(127)));
const ZoColor ZoColor::c_STEELBLUE(named(web(70), web(130), web(180)));
const ZoColor ZoColor::c_TAN(named(web(210), web(180), web(140)));
const ZoColor ZoColor::c_TEAL(named(0.0f, 0.5f, 0.5f));
const ZoColor ZoColor::c_THISTLE(named(web(216), web(191), web(216)));
const ZoColor ZoColor::c_TOMATO(named(1.0f, web(99), web(71)));
const ZoColor ZoColor::c_TURQUOISE(named(web(64), web(224), web(208)));
const ZoColor ZoColor::c_VIOLET(named(web(238), web(130), web(238)));
const ZoColor ZoColor::c_WHEAT(named(web(245), web(222), web(179)));
const ZoColor ZoColor::c_WHITE(named(1.0f, 1.0f, 1.0f));
const ZoColor ZoColor::c_WHITESMOKE(named(web(245), web(245), web(245)));
const ZoColor ZoColor::c_YELLOW(named(1.0f, 1.0f, 0.0f));
const ZoColor ZoColor::c_YELLOWGREEN(named(web(154), web(205), web(50)));
