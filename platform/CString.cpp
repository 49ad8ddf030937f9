#include "platform/CString.h"

#include <cstdio>
#include <cstring>

namespace {

size_t length16(const char16_t* text)
{
    size_t length = 0;
    while (text[length] != 0)
        ++length;
    return length;
}

// Windows-1252 maps 0x80..0x9F to these characters; 0 marks the five bytes it leaves undefined,
// which are kept as the C1 control of the same value so that every byte survives a round trip.
const char16_t kCp1252High[32] = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void appendUtf8(std::string& out, uint32_t codePoint)
{
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        out += static_cast<char>(0x80 | ((codePoint >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((codePoint >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (codePoint & 0x3F));
    }
}

void appendUtf16(std::u16string& out, uint32_t codePoint)
{
    if (codePoint < 0x10000) {
        out += static_cast<char16_t>(codePoint);
    } else {
        codePoint -= 0x10000;
        out += static_cast<char16_t>(0xD800 | (codePoint >> 10));
        out += static_cast<char16_t>(0xDC00 | (codePoint & 0x3FF));
    }
}

const char16_t kReplacement = 0xFFFD;

// The widest field and the longest precision a directive may ask for: limits that keep a hostile
// format string (the diagnostic trace formats user text) from asking for huge output.
const int kLargestField = 4096;

// Adds one decimal digit to a width or precision. Past the limit the value only has to stay past
// it, so it saturates there instead of overflowing.
int appendFieldDigit(int value, char16_t digit)
{
    const int next = (value < 0 ? 0 : value) * 10 + (digit - u'0');
    return next > kLargestField ? kLargestField + 1 : next;
}

// A width or precision given as an argument ('*'): the C library reads it as a 32-bit int.
int fieldFromArgument(int64_t argument)
{
    const int64_t value = static_cast<int32_t>(static_cast<uint32_t>(argument));
    if (value > kLargestField)
        return kLargestField + 1;
    if (value < -kLargestField)
        return -(kLargestField + 1);
    return static_cast<int>(value);
}

// One parsed directive: %[flags][width][.precision][length]conversion.
struct Directive
{
    std::string flags;
    int width = -1;
    int precision = -1;
    bool wide64 = false; // ll, I64, j
    char conversion = 0;
};

void pad(std::u16string& out, const std::u16string& body, const Directive& directive)
{
    const bool left = directive.flags.find('-') != std::string::npos;
    const size_t width = directive.width > 0 ? static_cast<size_t>(directive.width) : 0;
    const size_t fill = body.size() < width ? width - body.size() : 0;
    if (!left)
        out.append(fill, u' ');
    out += body;
    if (left)
        out.append(fill, u' ');
}

// Builds the narrow printf directive for numbers so that flags, width and precision behave
// exactly as the C library's; only the length modifier is replaced by ours.
std::string narrowSpec(const Directive& directive, const char* length, char conversion)
{
    std::string spec = "%" + directive.flags;
    if (directive.width >= 0)
        spec += std::to_string(directive.width);
    if (directive.precision >= 0)
        spec += "." + std::to_string(directive.precision);
    spec += length;
    spec += conversion;
    return spec;
}

template <class T>
void appendNarrow(std::u16string& out, const std::string& spec, T value)
{
    char buffer[512];
    int written = std::snprintf(buffer, sizeof buffer, spec.c_str(), value);
    if (written < 0)
        return;
    if (static_cast<size_t>(written) < sizeof buffer) {
        for (int i = 0; i < written; ++i)
            out += static_cast<char16_t>(static_cast<unsigned char>(buffer[i]));
        return;
    }
    std::string large(static_cast<size_t>(written) + 1, '\0');
    std::snprintf(&large[0], large.size(), spec.c_str(), value);
    for (int i = 0; i < written; ++i)
        out += static_cast<char16_t>(static_cast<unsigned char>(large[static_cast<size_t>(i)]));
}

// Returns false when the argument cannot be printed by the directive.
bool formatOne(std::u16string& out, const Directive& directive, const CStringFormatArgument& arg)
{
    using K = CStringFormatArgument;
    const bool isInteger = arg.GetKind() == K::eSigned || arg.GetKind() == K::eUnsigned;
    const uint64_t bits = arg.GetKind() == K::eSigned ? static_cast<uint64_t>(arg.GetSigned()) : arg.GetUnsigned();
    switch (directive.conversion) {
    case 'd':
    case 'i':
        if (!isInteger)
            return false;
        if (directive.wide64)
            appendNarrow(out, narrowSpec(directive, "ll", 'd'), static_cast<long long>(bits));
        else
            appendNarrow(out, narrowSpec(directive, "", 'd'), static_cast<int>(static_cast<int32_t>(bits)));
        return true;
    case 'u':
    case 'x':
    case 'X':
    case 'o':
        if (!isInteger)
            return false;
        if (directive.wide64)
            appendNarrow(out, narrowSpec(directive, "ll", directive.conversion), static_cast<unsigned long long>(bits));
        else
            appendNarrow(out, narrowSpec(directive, "", directive.conversion),
                         static_cast<unsigned>(static_cast<uint32_t>(bits)));
        return true;
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
        if (arg.GetKind() != K::eFloat)
            return false;
        appendNarrow(out, narrowSpec(directive, "", directive.conversion), arg.GetFloat());
        return true;
    case 'c':
    case 'C': {
        if (!isInteger)
            return false;
        pad(out, std::u16string(1, static_cast<char16_t>(bits)), directive);
        return true;
    }
    case 's':
    case 'S': {
        std::u16string body;
        if (arg.GetKind() == K::eString16)
            body.assign(arg.GetText16(), arg.GetTextLength());
        else if (arg.GetKind() == K::eString8)
            body = CString::FromUtf8(arg.GetText8(), arg.GetTextLength()).GetStdString();
        else if (arg.GetKind() == K::ePointer && arg.GetPointer() == nullptr)
            body = u"(null)";
        else
            return false;
        if (directive.precision >= 0 && body.size() > static_cast<size_t>(directive.precision))
            body.resize(static_cast<size_t>(directive.precision));
        pad(out, body, directive);
        return true;
    }
    case 'p': {
        uint64_t address;
        if (arg.GetKind() == K::ePointer)
            address = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(arg.GetPointer()));
        else if (isInteger)
            address = bits;
        else
            return false;
        char buffer[32];
        std::snprintf(buffer, sizeof buffer, "0x%016llX", static_cast<unsigned long long>(address));
        pad(out, CString(buffer).GetStdString(), directive);
        return true;
    }
    default:
        return false;
    }
}

bool isFlag(char16_t ch)
{
    return ch == u'-' || ch == u'0' || ch == u'+' || ch == u' ' || ch == u'#';
}

bool isDigit(char16_t ch)
{
    return ch >= u'0' && ch <= u'9';
}

} // namespace

CStringFormatArgument::CStringFormatArgument(const char16_t* text) : m_kind(eString16), m_text16(text)
{
    if (text == nullptr)
        m_kind = ePointer, m_pointer = nullptr;
    else
        m_textLength = length16(text);
}

CStringFormatArgument::CStringFormatArgument(const char* utf8) : m_kind(eString8), m_text8(utf8)
{
    if (utf8 == nullptr)
        m_kind = ePointer, m_pointer = nullptr;
    else
        m_textLength = std::strlen(utf8);
}

CStringFormatArgument::CStringFormatArgument(const CString& text)
    : m_kind(eString16), m_text16(text.GetString()), m_textLength(static_cast<size_t>(text.GetLength()))
{
}

CStringFormatArgument::CStringFormatArgument(const std::u16string& text)
    : m_kind(eString16), m_text16(text.c_str()), m_textLength(text.size())
{
}

CStringFormatArgument::CStringFormatArgument(const std::string& utf8)
    : m_kind(eString8), m_text8(utf8.c_str()), m_textLength(utf8.size())
{
}

CString::CString(const char16_t* text)
{
    if (text != nullptr)
        m_text.assign(text, length16(text));
}

CString::CString(const char16_t* text, int length)
{
    if (text != nullptr && length > 0)
        m_text.assign(text, static_cast<size_t>(length));
}

CString::CString(const char* utf8)
{
    if (utf8 != nullptr)
        *this = FromUtf8(utf8, std::strlen(utf8));
}

CString::CString(const std::string& utf8) : CString(FromUtf8(utf8.data(), utf8.size())) {}

CString::CString(char16_t ch, int repeat)
{
    if (repeat > 0)
        m_text.assign(static_cast<size_t>(repeat), ch);
}

CString CString::FromUtf8(const char* utf8, size_t length)
{
    CString result;
    std::u16string& out = result.m_text;
    out.reserve(length);
    const auto* bytes = reinterpret_cast<const unsigned char*>(utf8);
    size_t i = 0;
    while (i < length) {
        const unsigned char lead = bytes[i];
        if (lead < 0x80) {
            out += static_cast<char16_t>(lead);
            ++i;
            continue;
        }
        size_t extra;
        uint32_t codePoint;
        uint32_t minimum;
        if ((lead & 0xE0) == 0xC0)
            extra = 1, codePoint = lead & 0x1Fu, minimum = 0x80;
        else if ((lead & 0xF0) == 0xE0)
            extra = 2, codePoint = lead & 0x0Fu, minimum = 0x800;
        else if ((lead & 0xF8) == 0xF0)
            extra = 3, codePoint = lead & 0x07u, minimum = 0x10000;
        else {
            out += kReplacement;
            ++i;
            continue;
        }
        size_t taken = 1;
        while (taken <= extra && i + taken < length && (bytes[i + taken] & 0xC0) == 0x80) {
            codePoint = (codePoint << 6) | (bytes[i + taken] & 0x3Fu);
            ++taken;
        }
        // A truncated, overlong or out-of-range sequence becomes one replacement character and
        // decoding resumes at the first byte that did not belong to it.
        if (taken != extra + 1 || codePoint < minimum || codePoint > 0x10FFFF ||
            (codePoint >= 0xD800 && codePoint <= 0xDFFF))
            out += kReplacement;
        else
            appendUtf16(out, codePoint);
        i += taken;
    }
    return result;
}

CString CString::FromAnsi(const char* bytes, size_t length)
{
    CString result;
    result.m_text.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        const auto byte = static_cast<unsigned char>(bytes[i]);
        if (byte >= 0x80 && byte < 0xA0 && kCp1252High[byte - 0x80] != 0)
            result.m_text += kCp1252High[byte - 0x80];
        else
            result.m_text += static_cast<char16_t>(byte);
    }
    return result;
}

CString& CString::operator=(const char16_t* text)
{
    if (text == nullptr)
        m_text.clear();
    else
        m_text.assign(text, length16(text));
    return *this;
}

CString& CString::operator=(const char* utf8)
{
    return *this = CString(utf8);
}

CString& CString::operator+=(const char16_t* text)
{
    if (text != nullptr)
        m_text.append(text, length16(text));
    return *this;
}

CString operator+(const CString& left, const CString& right)
{
    return CString(left.m_text + right.m_text);
}

CString operator+(const CString& left, const char16_t* right)
{
    CString result(left);
    result += right;
    return result;
}

CString operator+(const char16_t* left, const CString& right)
{
    CString result(left);
    result += right;
    return result;
}

CString operator+(const CString& left, char16_t right)
{
    return CString(left.m_text + right);
}

bool CString::operator==(const char16_t* other) const
{
    if (other == nullptr)
        return m_text.empty();
    return m_text.compare(other) == 0;
}

bool operator==(const char16_t* left, const CString& right)
{
    return right == left;
}

CString CString::Mid(int first, int count) const
{
    if (first < 0)
        first = 0;
    if (count <= 0 || first >= GetLength())
        return CString();
    return CString(m_text.substr(static_cast<size_t>(first), static_cast<size_t>(count)));
}

CString CString::Mid(int first) const
{
    return Mid(first, GetLength());
}

CString CString::Left(int count) const
{
    return Mid(0, count);
}

CString CString::Right(int count) const
{
    if (count <= 0)
        return CString();
    if (count >= GetLength())
        return *this;
    return CString(m_text.substr(m_text.size() - static_cast<size_t>(count)));
}

int CString::Find(char16_t ch, int start) const
{
    if (start < 0 || start >= GetLength())
        return -1;
    const size_t found = m_text.find(ch, static_cast<size_t>(start));
    return found == std::u16string::npos ? -1 : static_cast<int>(found);
}

int CString::Find(const CString& sub, int start) const
{
    if (start < 0 || start > GetLength())
        return -1;
    const size_t found = m_text.find(sub.m_text, static_cast<size_t>(start));
    return found == std::u16string::npos ? -1 : static_cast<int>(found);
}

int CString::ReverseFind(char16_t ch) const
{
    const size_t found = m_text.rfind(ch);
    return found == std::u16string::npos ? -1 : static_cast<int>(found);
}

CString& CString::MakeUpper()
{
    for (char16_t& ch : m_text) {
        if ((ch >= u'a' && ch <= u'z') || (ch >= 0xE0 && ch <= 0xFE && ch != 0xF7))
            ch = static_cast<char16_t>(ch - 0x20);
        else if (ch == 0xFF)
            ch = 0x178;
    }
    return *this;
}

CString& CString::MakeLower()
{
    for (char16_t& ch : m_text) {
        if ((ch >= u'A' && ch <= u'Z') || (ch >= 0xC0 && ch <= 0xDE && ch != 0xD7))
            ch = static_cast<char16_t>(ch + 0x20);
        else if (ch == 0x178)
            ch = 0xFF;
    }
    return *this;
}

std::string CString::ToUtf8() const
{
    std::string out;
    out.reserve(m_text.size());
    for (size_t i = 0; i < m_text.size(); ++i) {
        const char16_t unit = m_text[i];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < m_text.size() && m_text[i + 1] >= 0xDC00 &&
            m_text[i + 1] <= 0xDFFF) {
            appendUtf8(out, 0x10000 + ((uint32_t(unit) - 0xD800) << 10) + (uint32_t(m_text[i + 1]) - 0xDC00));
            ++i;
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            appendUtf8(out, kReplacement);
        } else {
            appendUtf8(out, unit);
        }
    }
    return out;
}

std::string CString::ToAnsi() const
{
    std::string out;
    out.reserve(m_text.size());
    for (const char16_t unit : m_text) {
        if (unit < 0x80 || (unit >= 0xA0 && unit <= 0xFF)) {
            out += static_cast<char>(unit);
            continue;
        }
        char mapped = '?';
        for (int i = 0; i < 32; ++i) {
            const char16_t target = kCp1252High[i] != 0 ? kCp1252High[i] : static_cast<char16_t>(0x80 + i);
            if (target == unit) {
                mapped = static_cast<char>(0x80 + i);
                break;
            }
        }
        out += mapped;
    }
    return out;
}

CString CString::formatList(const char16_t* format, const CStringFormatArgument* args, size_t count)
{
    std::u16string out;
    if (format == nullptr)
        return CString();
    size_t next = 0;
    const char16_t* p = format;
    while (*p != 0) {
        if (*p != u'%') {
            out += *p++;
            continue;
        }
        const char16_t* start = p++;
        if (*p == u'%') {
            out += u'%';
            ++p;
            continue;
        }
        Directive directive;
        bool usable = true;
        while (isFlag(*p))
            directive.flags += static_cast<char>(*p++);
        if (*p == u'*') {
            ++p;
            if (next < count && args[next].GetKind() == CStringFormatArgument::eSigned) {
                directive.width = fieldFromArgument(args[next++].GetSigned());
                if (directive.width < 0) {
                    directive.flags += '-';
                    directive.width = -directive.width;
                }
            } else {
                usable = false;
            }
        } else {
            while (isDigit(*p))
                directive.width = appendFieldDigit(directive.width, *p++);
        }
        if (*p == u'.') {
            ++p;
            directive.precision = 0;
            if (*p == u'*') {
                ++p;
                if (next < count && args[next].GetKind() == CStringFormatArgument::eSigned)
                    directive.precision = fieldFromArgument(args[next++].GetSigned());
                else
                    usable = false;
            } else {
                while (isDigit(*p))
                    directive.precision = appendFieldDigit(directive.precision, *p++);
            }
        }
        if (p[0] == u'l' && p[1] == u'l') {
            directive.wide64 = true;
            p += 2;
        } else if (p[0] == u'I' && p[1] == u'6' && p[2] == u'4') {
            directive.wide64 = true;
            p += 3;
        } else if (p[0] == u'I' && p[1] == u'3' && p[2] == u'2') {
            p += 3;
        } else if (p[0] == u'h' && p[1] == u'h') {
            p += 2;
        } else if (*p == u'l' || *p == u'h' || *p == u'L' || *p == u'w') {
            ++p;
        } else if (*p == u'j' || *p == u'z' || *p == u't') {
            directive.wide64 = true;
            ++p;
        }
        if (*p == 0) {
            out.append(start, p);
            break;
        }
        directive.conversion = *p < 0x80 ? static_cast<char>(*p) : '?';
        ++p;
        if (directive.width > kLargestField || directive.precision > kLargestField)
            usable = false;
        if (usable && next < count && formatOne(out, directive, args[next])) {
            ++next;
            continue;
        }
        out.append(start, p);
    }
    return CString(std::move(out));
}
