// CString: the library's string, a sequence of UTF-16 code units (char16_t) on every target.
//
// It carries exactly what the library and its users need of a string: building from UTF-16, UTF-8
// and Windows-1252 text, comparison, slicing, search, upper-casing, concatenation, a type-safe
// printf-style Format and conversion back to UTF-8. Positions and lengths are in code units.
// Indices passed to operator[] are not checked; Mid/Left/Right clamp their arguments.
//
// Format reads its directives the way the Windows C library does, whatever the target: %d, %i, %u,
// %x, %X, %o, %ld, %lu use the low 32 bits of the argument, %lld, %llu and %I64d use 64 bits, %f a
// double with six decimals, %c one character, %s a CString / char16_t* / UTF-8 char*, %p an address
// as "0x" and 16 upper-case digits, %% a percent sign. Widths, precision and the flags - 0 + space #
// work as in printf. A directive that has no matching argument (too few arguments, or an argument
// of a kind the directive cannot print) is copied to the result as it stands: Format never reads
// memory it was not given.
#pragma once

#include "platform/ZoExport.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

class CString;

// One argument of CString::Format, captured with its kind so that the formatter never guesses.
class ZO_API CStringFormatArgument
{
public:
    enum EKind { eSigned, eUnsigned, eFloat, eString16, eString8, ePointer };

    template <class T, std::enable_if_t<std::is_integral_v<T> && std::is_signed_v<T>, int> = 0>
    CStringFormatArgument(T value) : m_kind(eSigned), m_signed(static_cast<int64_t>(value)) {}
    template <class T, std::enable_if_t<std::is_integral_v<T> && !std::is_signed_v<T>, int> = 0>
    CStringFormatArgument(T value) : m_kind(eUnsigned), m_unsigned(static_cast<uint64_t>(value)) {}
    template <class T, std::enable_if_t<std::is_enum_v<T>, int> = 0>
    CStringFormatArgument(T value) : CStringFormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    CStringFormatArgument(double value) : m_kind(eFloat), m_float(value) {}
    CStringFormatArgument(const char16_t* text);
    CStringFormatArgument(const char* utf8);
    CStringFormatArgument(const CString& text);
    CStringFormatArgument(const std::u16string& text);
    CStringFormatArgument(const std::string& utf8);
    CStringFormatArgument(const void* address) : m_kind(ePointer), m_pointer(address) {}
    CStringFormatArgument(std::nullptr_t) : m_kind(ePointer), m_pointer(nullptr) {}

    EKind GetKind() const { return m_kind; }
    int64_t GetSigned() const { return m_signed; }
    uint64_t GetUnsigned() const { return m_unsigned; }
    double GetFloat() const { return m_float; }
    const void* GetPointer() const { return m_pointer; }
    const char16_t* GetText16() const { return m_text16; }
    const char* GetText8() const { return m_text8; }
    size_t GetTextLength() const { return m_textLength; }

private:
    EKind m_kind;
    union {
        int64_t m_signed;
        uint64_t m_unsigned;
        double m_float;
        const void* m_pointer;
        const char16_t* m_text16;
        const char* m_text8;
    };
    size_t m_textLength = 0;
};

class ZO_API CString
{
public:
    CString() = default;
    CString(const char16_t* text);
    CString(const char16_t* text, int length);
    CString(const char* utf8);
    CString(const std::string& utf8);
    CString(const std::u16string& text) : m_text(text) {}
    CString(std::u16string&& text) : m_text(std::move(text)) {}
    CString(char16_t ch, int repeat);

    static CString FromUtf8(const char* utf8, size_t length);
    // Windows-1252 ("ANSI") bytes to UTF-16; every byte maps to one character.
    static CString FromAnsi(const char* bytes, size_t length);

    int GetLength() const { return static_cast<int>(m_text.size()); }
    bool IsEmpty() const { return m_text.empty(); }
    void Empty() { m_text.clear(); }
    // Requires: 0 <= index < GetLength(), not checked.
    char16_t operator[](int index) const { return m_text[static_cast<size_t>(index)]; }
    char16_t GetAt(int index) const { return m_text[static_cast<size_t>(index)]; }
    void SetAt(int index, char16_t ch) { m_text[static_cast<size_t>(index)] = ch; }
    // Null-terminated UTF-16, valid until the string next changes.
    const char16_t* GetString() const { return m_text.c_str(); }
    const std::u16string& GetStdString() const { return m_text; }

    CString& operator=(const char16_t* text);
    CString& operator=(const char* utf8);
    CString& operator+=(const CString& other) { m_text += other.m_text; return *this; }
    CString& operator+=(const char16_t* text);
    CString& operator+=(char16_t ch) { m_text += ch; return *this; }

    friend ZO_API CString operator+(const CString& left, const CString& right);
    friend ZO_API CString operator+(const CString& left, const char16_t* right);
    friend ZO_API CString operator+(const char16_t* left, const CString& right);
    friend ZO_API CString operator+(const CString& left, char16_t right);

    // Ordinal comparison of code units: negative, 0 or positive.
    int Compare(const CString& other) const { return m_text.compare(other.m_text); }
    bool operator==(const CString& other) const { return m_text == other.m_text; }
    bool operator!=(const CString& other) const { return m_text != other.m_text; }
    bool operator<(const CString& other) const { return m_text < other.m_text; }
    bool operator==(const char16_t* other) const;
    bool operator!=(const char16_t* other) const { return !(*this == other); }

    // Clamped: a start beyond the end or a negative count gives an empty string.
    CString Mid(int first, int count) const;
    CString Mid(int first) const;
    CString Left(int count) const;
    CString Right(int count) const;
    // Position of the first match at or after start, or -1.
    int Find(char16_t ch, int start = 0) const;
    int Find(const CString& sub, int start = 0) const;
    int ReverseFind(char16_t ch) const;

    // Upper-/lower-cases ASCII and the Latin-1 letters; other characters stay as they are.
    CString& MakeUpper();
    CString& MakeLower();

    template <class... Args>
    void Format(const char16_t* format, const Args&... args)
    {
        const CStringFormatArgument list[] = {CStringFormatArgument(args)..., CStringFormatArgument(0)};
        m_text = formatList(format, list, sizeof...(Args)).m_text;
    }
    template <class... Args>
    static CString Formatted(const char16_t* format, const Args&... args)
    {
        const CStringFormatArgument list[] = {CStringFormatArgument(args)..., CStringFormatArgument(0)};
        return formatList(format, list, sizeof...(Args));
    }
    static CString FormatArgumentList(const char16_t* format, const CStringFormatArgument* args, size_t count)
    {
        return formatList(format, args, count);
    }

    std::string ToUtf8() const;
    // Windows-1252 bytes; characters the code page lacks become '?'.
    std::string ToAnsi() const;

private:
    static CString formatList(const char16_t* format, const CStringFormatArgument* args, size_t count);

    std::u16string m_text;
};

ZO_API bool operator==(const char16_t* left, const CString& right);
