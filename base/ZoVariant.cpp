#include "base/ZoVariant.h"

#include "base/ZoException.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace {

bool isBlank(char16_t ch)
{
    return ch == u' ' || (ch >= u'\t' && ch <= u'\r');
}

// _wtoi: blanks, a sign, decimal digits; a value beyond the 32-bit range saturates.
int32_t textToInt(const CString& text)
{
    int i = 0;
    const int length = text.GetLength();
    while (i < length && isBlank(text[i]))
        ++i;
    bool negative = false;
    if (i < length && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';
    int64_t value = 0;
    for (; i < length && text[i] >= u'0' && text[i] <= u'9'; ++i) {
        value = value * 10 + (text[i] - u'0');
        if (value > int64_t(1) << 31)
            value = int64_t(1) << 31;
    }
    if (negative)
        return static_cast<int32_t>(-value);
    return value > std::numeric_limits<int32_t>::max() ? std::numeric_limits<int32_t>::max()
                                                       : static_cast<int32_t>(value);
}

// _wtof: the C library's strtod over the text up to its first character beyond ASCII.
double textToDouble(const CString& text)
{
    std::string narrow;
    for (int i = 0; i < text.GetLength() && text[i] != 0 && text[i] < 0x80; ++i)
        narrow += static_cast<char>(text[i]);
    return std::strtod(narrow.c_str(), nullptr);
}

int hexDigit(char16_t ch)
{
    if (ch >= u'0' && ch <= u'9')
        return ch - u'0';
    if (ch >= u'a' && ch <= u'f')
        return ch - u'a' + 10;
    if (ch >= u'A' && ch <= u'F')
        return ch - u'A' + 10;
    return -1;
}

// wcstoul in base 16 on a 32-bit unsigned long: blanks, a sign, an optional 0x, hexadecimal digits;
// too large gives 0xFFFFFFFF, a minus sign negates modulo 2^32.
uint32_t hexTextToNumber(const CString& text)
{
    int i = 0;
    const int length = text.GetLength();
    while (i < length && isBlank(text[i]))
        ++i;
    bool negative = false;
    if (i < length && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';
    // "0x" alone or before a non-digit reads 0 either way.
    if (i + 1 < length && text[i] == u'0' && (text[i + 1] == u'x' || text[i + 1] == u'X'))
        i += 2;
    uint64_t value = 0;
    bool overflow = false;
    for (; i < length && hexDigit(text[i]) >= 0; ++i) {
        value = value * 16 + static_cast<uint64_t>(hexDigit(text[i]));
        if (value > 0xFFFFFFFFu) {
            overflow = true;
            value = 0xFFFFFFFFu;
        }
    }
    if (overflow)
        return 0xFFFFFFFFu;
    return negative ? static_cast<uint32_t>(0u - static_cast<uint32_t>(value)) : static_cast<uint32_t>(value);
}

// Truncation toward zero as the x64 conversion instructions do it: NaN and values out of range give
// the "integer indefinite" value, the most negative number.
int32_t truncateTo32(double value)
{
    if (!(value > -2147483649.0 && value < 2147483648.0))
        return std::numeric_limits<int32_t>::min();
    return static_cast<int32_t>(value);
}

int64_t truncateTo64(double value)
{
    if (!(value >= -9223372036854775808.0 && value < 9223372036854775808.0))
        return std::numeric_limits<int64_t>::min();
    return static_cast<int64_t>(value);
}

// A double beyond the float range rounds to infinity, as the conversion instruction does.
float roundToFloat(double value)
{
    if (std::fabs(value) >= 340282356779733661637539395458142568448.0)
        return std::signbit(value) ? -std::numeric_limits<float>::infinity() : std::numeric_limits<float>::infinity();
    return static_cast<float>(value);
}

} // namespace

// ---- payload -----------------------------------------------------------------------------------

void ZoVariant::refuse(const char16_t* method, uint32_t line)
{
    throw ZoException(u"..\\base\\ZoVariant.cpp", u"ZoVariant", method, line);
}

template <class T>
T ZoVariant::scalar() const
{
    T value;
    std::memcpy(&value, &m_payload, sizeof(T));
    return value;
}

template <class T>
void ZoVariant::setScalar(EVariantType type, T value)
{
    SetNull();
    std::memcpy(&m_payload, &value, sizeof(T));
    m_type = type;
}

template <class T>
void ZoVariant::setObject(EVariantType type, T* value)
{
    SetNull();
    m_payload = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(value));
    m_type = type;
}

template <class T>
const T& ZoVariant::leftObject(EVariantType type, const char16_t* method, uint32_t line) const
{
    if (m_type != type)
        refuse(method, line);
    return *object<T>();
}

void ZoVariant::SetNull()
{
    switch (m_type) {
    case eTypeString: delete object<CString>(); break;
    case eTypeBlob: delete object<Blob>(); break;
    case eTypeDateTime: delete object<ZoDateTime>(); break;
    case eTypeColor: delete object<ZoColor>(); break;
    default: break;
    }
    m_type = eTypeNull;
    m_payload = 0;
}

ZoVariant& ZoVariant::operator=(bool value)
{
    setScalar(eTypeBool, value);
    return *this;
}

ZoVariant& ZoVariant::operator=(int32_t value)
{
    setScalar(eTypeInt, value);
    return *this;
}

ZoVariant& ZoVariant::operator=(int64_t value)
{
    setScalar(eTypeInt64, value);
    return *this;
}

ZoVariant& ZoVariant::operator=(uint32_t value)
{
    setScalar(eTypeDWORD, value);
    return *this;
}

ZoVariant& ZoVariant::operator=(float value)
{
    setScalar(eTypeFloat, value);
    return *this;
}

ZoVariant& ZoVariant::operator=(double value)
{
    setScalar(eTypeDouble, value);
    return *this;
}

ZoVariant& ZoVariant::operator=(char value)
{
    setScalar(eTypeChar, value);
    return *this;
}

// The new object is made before the old payload goes, so that assigning a variant its own payload
// (v = v.ToString()) reads what it copies.
ZoVariant& ZoVariant::operator=(const CString& value)
{
    setObject(eTypeString, new CString(value));
    return *this;
}

ZoVariant& ZoVariant::operator=(const Blob& value)
{
    setObject(eTypeBlob, new Blob(value));
    return *this;
}

ZoVariant& ZoVariant::operator=(const ZoDateTime& value)
{
    setObject(eTypeDateTime, new ZoDateTime(value));
    return *this;
}

ZoVariant& ZoVariant::operator=(const ZoColor& value)
{
    setObject(eTypeColor, new ZoColor(value));
    return *this;
}

ZoVariant& ZoVariant::operator=(const ZoVariant& other)
{
    if (this == &other)
        return *this;
    switch (other.m_type) {
    case eTypeNull: SetNull(); break;
    case eTypeBool: *this = other.scalar<bool>(); break;
    case eTypeInt: *this = other.scalar<int32_t>(); break;
    case eTypeInt64: *this = other.scalar<int64_t>(); break;
    case eTypeDWORD: *this = other.scalar<uint32_t>(); break;
    case eTypeFloat: *this = other.scalar<float>(); break;
    case eTypeChar: *this = other.scalar<char>(); break;
    case eTypeString: *this = *other.object<CString>(); break;
    case eTypeBlob: *this = *other.object<Blob>(); break;
    case eTypeDateTime: *this = *other.object<ZoDateTime>(); break;
    case eTypeColor: *this = *other.object<ZoColor>(); break;
    // A double was never copied by kind; the refusal keeps the name it has always carried.
    default: refuse(u"ToString", 307);
    }
    return *this;
}

// ---- conversions -------------------------------------------------------------------------------

int ZoVariant::ToBOOL() const
{
    switch (m_type) {
    case eTypeBool: return scalar<bool>() ? 1 : 0;
    case eTypeInt: return scalar<int32_t>() != 0;
    case eTypeInt64: return scalar<int64_t>() != 0;
    case eTypeDWORD: return scalar<uint32_t>() != 0;
    // NaN compares unequal to 0, so it reads as true.
    case eTypeFloat: return scalar<float>() != 0.0f;
    case eTypeDouble: return scalar<double>() != 0.0;
    case eTypeChar: return scalar<char>() != 0;
    case eTypeString: return textToInt(*object<CString>()) != 0;
    default: refuse(u"ToBOOL", 51);
    }
}

int32_t ZoVariant::ToINT() const
{
    switch (m_type) {
    case eTypeBool: return scalar<bool>() ? 1 : 0;
    case eTypeInt: return scalar<int32_t>();
    case eTypeInt64: return static_cast<int32_t>(static_cast<uint32_t>(scalar<int64_t>()));
    case eTypeDWORD: return static_cast<int32_t>(scalar<uint32_t>());
    case eTypeFloat: return truncateTo32(scalar<float>());
    case eTypeDouble: return truncateTo32(scalar<double>());
    case eTypeChar: return scalar<char>();
    case eTypeString: return textToInt(*object<CString>());
    default: refuse(u"ToINT", 87);
    }
}

uint32_t ZoVariant::ToDWORD() const
{
    switch (m_type) {
    case eTypeBool: return scalar<bool>() ? 1 : 0;
    case eTypeInt: return static_cast<uint32_t>(scalar<int32_t>());
    case eTypeInt64: return static_cast<uint32_t>(scalar<int64_t>());
    case eTypeDWORD: return scalar<uint32_t>();
    // Through a 64-bit integer, of which the low half is kept.
    case eTypeFloat: return static_cast<uint32_t>(truncateTo64(scalar<float>()));
    case eTypeDouble: return static_cast<uint32_t>(truncateTo64(scalar<double>()));
    case eTypeChar: return static_cast<uint32_t>(static_cast<int32_t>(scalar<char>()));
    case eTypeString: return static_cast<uint32_t>(textToInt(*object<CString>()));
    case eTypeColor: return object<ZoColor>()->GetDWORD();
    default: refuse(u"ToDWORD", 129);
    }
}

float ZoVariant::ToFLOAT() const
{
    switch (m_type) {
    case eTypeBool: return scalar<bool>() ? 1.0f : 0.0f;
    case eTypeInt: return static_cast<float>(scalar<int32_t>());
    case eTypeInt64: return static_cast<float>(scalar<int64_t>());
    case eTypeDWORD: return static_cast<float>(scalar<uint32_t>());
    case eTypeFloat: return scalar<float>();
    case eTypeDouble: return roundToFloat(scalar<double>());
    case eTypeString: return roundToFloat(textToDouble(*object<CString>()));
    default: refuse(u"ToFLOAT", 163);
    }
}

CString ZoVariant::ToString() const
{
    switch (m_type) {
    case eTypeBool: return CString::Formatted(u"%d", scalar<bool>() ? 1 : 0);
    // "%d" prints the low 32 bits as a signed number, for the 64-bit kind and large DWORDs alike.
    case eTypeInt: return CString::Formatted(u"%d", scalar<int32_t>());
    case eTypeInt64: return CString::Formatted(u"%d", scalar<int64_t>());
    case eTypeDWORD: return CString::Formatted(u"%d", scalar<uint32_t>());
    case eTypeFloat: return CString::Formatted(u"%f", static_cast<double>(scalar<float>()));
    case eTypeChar: return CString::Formatted(u"%c", scalar<char>());
    case eTypeString: return *object<CString>();
    case eTypeDateTime: return object<ZoDateTime>()->ToString(ZoDateTime::eFormatSortable);
    case eTypeColor: return object<ZoColor>()->ToString();
    // Null, blob and double have no text; for the double this is deliberate.
    default: refuse(u"ToString", 205);
    }
}

ZoDateTime ZoVariant::ToDateTime() const
{
    if (m_type == eTypeString)
        return ZoDateTime(*object<CString>());
    if (m_type == eTypeDateTime)
        return *object<ZoDateTime>();
    // The refusal has always named "ToString"; log filters match on it.
    refuse(u"ToString", 225);
}

ZoColor ZoVariant::ToColor() const
{
    switch (m_type) {
    case eTypeDWORD: return ZoColor(scalar<uint32_t>());
    case eTypeString: return ZoColor(0xFF000000u | (hexTextToNumber(*object<CString>()) & 0x00FFFFFFu));
    case eTypeColor: return *object<ZoColor>();
    default: refuse(u"ToColor", 260);
    }
}

ZoVariant::Blob ZoVariant::ToBlob() const
{
    if (m_type != eTypeBlob)
        refuse(u"ToBlob", 279);
    return *object<Blob>();
}

#if defined(_WIN32)
VARIANT ZoVariant::ToVariant() const
{
    VARIANT result;
    std::memset(&result, 0, sizeof(result));
    V_VT(&result) = VT_EMPTY;
    switch (m_type) {
    case eTypeBool:
        V_VT(&result) = VT_BOOL;
        V_BOOL(&result) = scalar<bool>() ? VARIANT_TRUE : 0;
        break;
    case eTypeInt:
        V_VT(&result) = VT_I4;
        V_I4(&result) = scalar<int32_t>();
        break;
    case eTypeDWORD:
        V_VT(&result) = VT_UI4;
        V_UI4(&result) = scalar<uint32_t>();
        break;
    case eTypeFloat:
        V_VT(&result) = VT_R4;
        V_R4(&result) = scalar<float>();
        break;
    case eTypeString:
        V_VT(&result) = VT_BSTR;
        V_BSTR(&result) = ZoOS::AllocateSystemString(*object<CString>());
        break;
    default:
        break;
    }
    return result;
}
#endif

void ZoVariant::ConvertTo(EVariantType target)
{
    if (m_type == target)
        return;
    switch (target) {
    case eTypeNull: SetNull(); break;
    case eTypeBool: *this = ToBOOL() != 0; break;
    case eTypeInt: *this = ToINT(); break;
    case eTypeDWORD: *this = ToDWORD(); break;
    case eTypeFloat: *this = ToFLOAT(); break;
    case eTypeString: *this = ToString(); break;
    case eTypeDateTime: *this = ToDateTime(); break;
    case eTypeColor: *this = ToColor(); break;
    default: refuse(u"ConvertTo", 628);
    }
}

// ---- comparisons -------------------------------------------------------------------------------

bool ZoVariant::operator==(const ZoVariant& other) const
{
    switch (other.m_type) {
    case eTypeNull: return m_type == eTypeNull;
    case eTypeBool:
    case eTypeChar: return scalar<unsigned char>() == other.scalar<unsigned char>();
    case eTypeInt:
    case eTypeDWORD: return scalar<uint32_t>() == other.scalar<uint32_t>();
    case eTypeInt64: return scalar<int64_t>() == other.scalar<int64_t>();
    case eTypeFloat: return scalar<float>() == other.scalar<float>();
    case eTypeString: return leftObject<CString>(eTypeString, u"operator ==", 548).Compare(*other.object<CString>()) == 0;
    case eTypeColor: return leftObject<ZoColor>(eTypeColor, u"operator ==", 548) == *other.object<ZoColor>();
    default: refuse(u"operator ==", 548);
    }
}

bool ZoVariant::operator<(const ZoVariant& other) const
{
    switch (other.m_type) {
    case eTypeNull: return false;
    case eTypeInt: return scalar<int32_t>() < other.scalar<int32_t>();
    case eTypeInt64: return scalar<int64_t>() < other.scalar<int64_t>();
    case eTypeDWORD: return scalar<uint32_t>() < other.scalar<uint32_t>();
    case eTypeFloat: return scalar<float>() < other.scalar<float>();
    case eTypeChar: return scalar<signed char>() < other.scalar<signed char>();
    case eTypeString: return leftObject<CString>(eTypeString, u"operator <", 573).Compare(*other.object<CString>()) < 0;
    default: refuse(u"operator <", 573);
    }
}

bool ZoVariant::operator>(const ZoVariant& other) const
{
    switch (other.m_type) {
    case eTypeNull: return false;
    case eTypeInt: return scalar<int32_t>() > other.scalar<int32_t>();
    case eTypeInt64: return scalar<int64_t>() > other.scalar<int64_t>();
    case eTypeDWORD: return scalar<uint32_t>() > other.scalar<uint32_t>();
    case eTypeFloat: return scalar<float>() > other.scalar<float>();
    case eTypeChar: return scalar<signed char>() > other.scalar<signed char>();
    case eTypeString: return leftObject<CString>(eTypeString, u"operator >", 598).Compare(*other.object<CString>()) > 0;
    default: refuse(u"operator >", 598);
    }
}
