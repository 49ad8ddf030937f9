/// @class ZoColor
/// ZoColor: a packed 32-bit colour 0xAARRGGBB (blue in bits 0-7, green 8-15, red 16-23, alpha
/// 24-31; alpha 255 is opaque), the value type of false-colour displays, colour maps and tables.
///
/// Channels given as floats are fractions 0..1 of 255 and are packed by RgbToDword, which truncates
/// (0.5 becomes 127, not 128). Nothing checks its arguments: integer channels above 255 spill into the
/// neighbouring byte and float channels outside 0..1 keep the low 8 bits of their truncated value, as
/// callers of this class have always been able to rely on. No operation throws except the stream
/// reads of Serialize.
///
/// The 138 named colours are the common web colour keywords, built once at library load from channel
/// fractions through RgbToDword and only read afterwards.
///
/// There is no constructor from the Direct3D extension colour type: neither target builds against
/// that library, and (red, green, blue, alpha) floats say the same.
///
/// Binary form: version record 0, then the packed value as an unsigned 32-bit number.
/// @ingroup values
#pragma once

#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoColor
{
public:
    /// Opaque white, 0xFFFFFFFF.
    ZoColor() : m_value(0xFFFFFFFFu) {}
    /// Explicit: beside the COLORREF conversion below, an implicit one would make every comparison
    /// of a colour with a number ambiguous.
    explicit ZoColor(uint32_t value) : m_value(value) {}
    /// ((alpha * 256 + red) * 256 + green) * 256 + blue with plain additions: a channel above 255
    /// spills into the next byte (wrapping modulo 2^32).
    ZoColor(uint32_t red, uint32_t green, uint32_t blue, uint32_t alpha);
    /// The same for int arguments, so that ZoColor(255, 0, 0, 255) picks neither float nor
    /// unsigned by accident.
    ZoColor(int red, int green, int blue, int alpha)
        : ZoColor(static_cast<uint32_t>(red), static_cast<uint32_t>(green), static_cast<uint32_t>(blue),
                  static_cast<uint32_t>(alpha))
    {
    }
    /// Through RgbToDword.
    ZoColor(float red, float green, float blue, float alpha) : m_value(RgbToDword(red, green, blue, alpha)) {}
    /// Copies the packed value.
    ZoColor(const ZoColor& other) = default;
    /// Copies the packed value.
    ZoColor& operator=(const ZoColor& other) = default;

    ///@{
    /// The channel byte / 255, a fraction 0..1.
    float GetRed() const { return static_cast<float>((m_value >> 16) & 0xFF) / 255.0f; }
    float GetGreen() const { return static_cast<float>((m_value >> 8) & 0xFF) / 255.0f; }
    float GetBlue() const { return static_cast<float>(m_value & 0xFF) / 255.0f; }
    float GetAlpha() const { return static_cast<float>(m_value >> 24) / 255.0f; }
    ///@}

    ///@{
    /// Clear the channel byte, then OR in the argument shifted into place without masking it: a
    /// value above 255 sets bits of the neighbouring channels (older callers packed two channels
    /// this way).
    void SetRed(uint32_t red) { m_value = (m_value & 0xFF00FFFFu) | (red << 16); }
    void SetGreen(uint32_t green) { m_value = (m_value & 0xFFFF00FFu) | (green << 8); }
    void SetBlue(uint32_t blue) { m_value = (m_value & 0xFFFFFF00u) | blue; }
    void SetAlpha(uint32_t alpha) { m_value = (m_value & 0x00FFFFFFu) | (alpha << 24); }
    ///@}
    ///@{
    /// The same with the channel trunc(value * 255).
    void SetRed(float red) { SetRed(truncateChannel(red)); }
    void SetGreen(float green) { SetGreen(truncateChannel(green)); }
    void SetBlue(float blue) { SetBlue(truncateChannel(blue)); }
    void SetAlpha(float alpha) { SetAlpha(truncateChannel(alpha)); }
    ///@}
    /// Alpha 0; the colour channels are kept.
    void SetTransparent() { m_value &= 0x00FFFFFFu; }
    /// Alpha 255; the colour channels are kept.
    void SetOpaque() { m_value |= 0xFF000000u; }

    /// The packed value 0xAARRGGBB.
    uint32_t GetDWORD() const { return m_value; }
    /// The Windows COLORREF order, red | green << 8 | blue << 16, without alpha.
    operator uint32_t() const;

    ///@{
    /// Compares the packed values, alpha included.
    bool operator==(const ZoColor& other) const { return m_value == other.m_value; }
    bool operator!=(const ZoColor& other) const { return m_value != other.m_value; }
    ///@}

    /// Each channel trunc(v * 255), of which only the low 8 bits are kept, packed as 0xAARRGGBB.
    /// A channel whose product is NaN or beyond the 32-bit range gives 0, as the x64 conversion does.
    static uint32_t RgbToDword(float red, float green, float blue, float alpha);
    /// 0.3 r + 0.59 g + 0.11 b.
    static float RgbToGreyscale(float red, float green, float blue);
    /// r * 0x4C0000 + g * 0x9600 + b * 29 modulo 2^32: the weights 76, 150 and 29, each multiplied by
    /// its channel's byte position and never shifted back. Not a grey level; stored pictures and
    /// their comparisons were made with exactly this sum, so it is kept as it is.
    static uint32_t RgbToGreyscale(uint32_t red, uint32_t green, uint32_t blue);
    /// Replaces the whole packed value, alpha included, by RgbToGreyscale of its own bytes.
    void ToGreyscale();

    ///@{
    /// Hue in degrees 0..360, the other values 0..1. A hue outside 0..360 leaves HsvToRgb's outputs
    /// untouched; HslToRgb clamps its outputs to 0..1.
    static void RgbToHsv(float red, float green, float blue, float& hue, float& saturation, float& value);
    static void HsvToRgb(float hue, float saturation, float value, float& red, float& green, float& blue);
    static void RgbToHsl(float red, float green, float blue, float& hue, float& saturation, float& lightness);
    static void HslToRgb(float hue, float saturation, float lightness, float& red, float& green, float& blue);
    ///@}

    /// Sum of the squared channel differences (fractions, alpha ignored).
    static float GetSqrColorDifferenceRGB(const ZoColor& a, const ZoColor& b);
    /// Square root of GetSqrColorDifferenceRGB.
    static float GetColorDifferenceRGB(const ZoColor& a, const ZoColor& b);
    /// The signed mean of the three channel differences a - b (no absolute values: opposite
    /// differences cancel, so 0 does not mean equal colours).
    static float GetColorDifferenceSumRGB(const ZoColor& a, const ZoColor& b);

    /// Channel-wise a * (1 - t) + b * t; the result is always opaque.
    static ZoColor InterpolateRGB(const ZoColor& a, const ZoColor& b, float t);
    /// An opaque colour from rand() (15 bits on every target), its channels drawn blue first.
    /// Reseeding with srand repeats the sequence.
    static ZoColor CreateRandomColor();
    /// An opaque colour of a random hue (from rand()) at full saturation and value.
    static ZoColor CreateRandomColorSaturated();

    /// "0x" and red, green, blue as two upper-case hexadecimal digits each: 0xFF0000 for red.
    CString ToString() const;

    /// Writes version record 0 and the packed value (4 bytes); throws what the stream throws.
    void Serialize(ZoStreamWriteBinary& stream) const;
    /// Throws ZoExceptionWrongFileVersion for a version above 0 and ZoExceptionStream for data that
    /// ends early; the colour is unchanged then.
    void Serialize(ZoStreamReadBinary& stream);

    ///@{
    /// The web colour keywords, opaque (alpha 255). Each is made from its keyword's channel
    /// fractions through RgbToDword, so a channel the tables give as a half (c_GRAY, c_GREEN,
    /// c_MAROON, c_NAVY, c_OLIVE, c_PURPLE, c_TEAL) is 0x7F rather than 0x80: c_GRAY is 0xFF7F7F7F.
    /// They are made while the library loads; do not read them from constructors of other
    /// static objects.
    static const ZoColor c_ALICEBLUE;
    static const ZoColor c_ANTIQUEWHITE;
    static const ZoColor c_AQUAMARINE;
    static const ZoColor c_AZURE;
    static const ZoColor c_BEIGE;
    static const ZoColor c_BISQUE;
    static const ZoColor c_BLACK;
    static const ZoColor c_BLANCHEDALMOND;
    static const ZoColor c_BLUE;
    static const ZoColor c_BLUEVIOLET;
    static const ZoColor c_BROWN;
    static const ZoColor c_BURLYWOOD;
    static const ZoColor c_CADETBLUE;
    static const ZoColor c_CHARTREUSE;
    static const ZoColor c_CHOCOLATE;
    static const ZoColor c_CORAL;
    static const ZoColor c_CORNFLOWERBLUE;
    static const ZoColor c_CORNSILK;
    static const ZoColor c_CRIMSON;
    static const ZoColor c_CYAN;
    static const ZoColor c_DARKBLUE;
    static const ZoColor c_DARKCYAN;
    static const ZoColor c_DARKGOLDENROD;
    static const ZoColor c_DARKGRAY;
    static const ZoColor c_DARKGREEN;
    static const ZoColor c_DARKKHAKI;
    static const ZoColor c_DARKMAGENTA;
    static const ZoColor c_DARKOLIVEGREEN;
    static const ZoColor c_DARKORANGE;
    static const ZoColor c_DARKORCHID;
    static const ZoColor c_DARKRED;
    static const ZoColor c_DARKSALMON;
    static const ZoColor c_DARKSEAGREEN;
    static const ZoColor c_DARKSLATEBLUE;
    static const ZoColor c_DARKSLATEGRAY;
    static const ZoColor c_DARKTURQUOISE;
    static const ZoColor c_DARKVIOLET;
    static const ZoColor c_DEEPPINK;
    static const ZoColor c_DEEPSKYBLUE;
    static const ZoColor c_DIMGRAY;
    static const ZoColor c_DODGERBLUE;
    static const ZoColor c_FIREBRICK;
    static const ZoColor c_FLORALWHITE;
    static const ZoColor c_FORESTGREEN;
    static const ZoColor c_GAINSBORO;
    static const ZoColor c_GHOSTWHITE;
    static const ZoColor c_GOLD;
    static const ZoColor c_GOLDENROD;
    static const ZoColor c_GRAY;
    static const ZoColor c_GREEN;
    static const ZoColor c_GREENYELLOW;
    static const ZoColor c_HONEYDEW;
    static const ZoColor c_HOTPINK;
    static const ZoColor c_INDIANRED;
    static const ZoColor c_INDIGO;
    static const ZoColor c_IVORY;
    static const ZoColor c_KHAKI;
    static const ZoColor c_LAVENDER;
    static const ZoColor c_LAVENDERBLUSH;
    static const ZoColor c_LAWNGREEN;
    static const ZoColor c_LEMONCHIFFON;
    static const ZoColor c_LIGHTBLUE;
    static const ZoColor c_LIGHTCORAL;
    static const ZoColor c_LIGHTCYAN;
    static const ZoColor c_LIGHTGOLDENRODYELLOW;
    static const ZoColor c_LIGHTGRAY;
    static const ZoColor c_LIGHTGREEN;
    static const ZoColor c_LIGHTPINK;
    static const ZoColor c_LIGHTSALMON;
    static const ZoColor c_LIGHTSEAGREEN;
    static const ZoColor c_LIGHTSKYBLUE;
    static const ZoColor c_LIGHTSLATEGRAY;
    static const ZoColor c_LIGHTSTEELBLUE;
    static const ZoColor c_LIGHTYELLOW;
    static const ZoColor c_LIME;
    static const ZoColor c_LIMEGREEN;
    static const ZoColor c_LINEN;
    static const ZoColor c_MAGENTA;
    static const ZoColor c_MAROON;
    static const ZoColor c_MEDIUMAQUAMARINE;
    static const ZoColor c_MEDIUMBLUE;
    static const ZoColor c_MEDIUMORCHID;
    static const ZoColor c_MEDIUMPURPLE;
    static const ZoColor c_MEDIUMSEAGREEN;
    static const ZoColor c_MEDIUMSLATEBLUE;
    static const ZoColor c_MEDIUMSPRINGGREEN;
    static const ZoColor c_MEDIUMTURQUOISE;
    static const ZoColor c_MEDIUMVIOLETRED;
    static const ZoColor c_MIDNIGHTBLUE;
    static const ZoColor c_MINTCREAM;
    static const ZoColor c_MISTYROSE;
    static const ZoColor c_MOCCASIN;
    static const ZoColor c_NAVAJOWHITE;
    static const ZoColor c_NAVY;
    static const ZoColor c_OLDLACE;
    static const ZoColor c_OLIVE;
    static const ZoColor c_OLIVEDRAB;
    static const ZoColor c_ORANGE;
    static const ZoColor c_ORANGERED;
    static const ZoColor c_ORCHID;
    static const ZoColor c_PALEGOLDENROD;
    static const ZoColor c_PALEGREEN;
    static const ZoColor c_PALETURQUOISE;
    static const ZoColor c_PALEVIOLETRED;
    static const ZoColor c_PAPAYAWHIP;
    static const ZoColor c_PEACHPUFF;
    static const ZoColor c_PERU;
    static const ZoColor c_PINK;
    static const ZoColor c_PLUM;
    static const ZoColor c_POWDERBLUE;
    static const ZoColor c_PURPLE;
    static const ZoColor c_RED;
    static const ZoColor c_ROSYBROWN;
    static const ZoColor c_ROYALBLUE;
    static const ZoColor c_SADDLEBROWN;
    static const ZoColor c_SALMON;
    static const ZoColor c_SANDYBROWN;
    static const ZoColor c_SEAGREEN;
    static const ZoColor c_SEASHELL;
    static const ZoColor c_SIENNA;
    static const ZoColor c_SILVER;
    static const ZoColor c_SKYBLUE;
    static const ZoColor c_SLATEBLUE;
    static const ZoColor c_SLATEGRAY;
    static const ZoColor c_SNOW;
    static const ZoColor c_SPRINGGREEN;
    static const ZoColor c_STEELBLUE;
    static const ZoColor c_TAN;
    static const ZoColor c_TEAL;
    static const ZoColor c_THISTLE;
    static const ZoColor c_TOMATO;
    static const ZoColor c_TURQUOISE;
    static const ZoColor c_VIOLET;
    static const ZoColor c_WHEAT;
    static const ZoColor c_WHITE;
    static const ZoColor c_WHITESMOKE;
    static const ZoColor c_YELLOW;
    static const ZoColor c_YELLOWGREEN;
    ///@}

private:
    static uint32_t truncateChannel(float value);

    uint32_t m_value;
};
