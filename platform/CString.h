/// @class CString
/// CString: the library's string, a sequence of UTF-16 code units (char16_t) on every target.
///
/// It carries exactly what the library and its users need of a string: building from UTF-16, UTF-8
/// and Windows-1252 text, comparison, slicing, search, upper-casing, concatenation, a type-safe
/// printf-style Format and conversion back to UTF-8. Positions and lengths are in code units.
/// Indices passed to operator[] are not checked; Mid/Left/Right clamp their arguments.
///
/// Format reads its directives the way the Windows C library does, whatever the target: %d, %i, %u,
/// %x, %X, %o, %ld, %lu use the low 32 bits of the argument, %lld, %llu and %I64d use 64 bits, %f a
/// double with six decimals, %c one character, %s a CString / char16_t* / UTF-8 char*, %p an address
/// as "0x" and 16 upper-case digits, %% a percent sign. Widths, precision and the flags - 0 + space #
/// work as in printf. A directive that has no matching argument (too few arguments, or an argument
/// of a kind the directive cannot print) is copied to the result as it stands: Format never reads
/// memory it was not given.
/// @ingroup streams
#pragma once

#include "platform/ZoExport.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

class CString;

/// One argument of CString::Format, captured with its kind so that the formatter never guesses.
/// Text arguments are borrowed, not copied: the argument lives only as long as the call.
/// @ingroup streams
class ZO_API CStringFormatArgument
{
public:
    /// What the argument holds; which getter is valid follows from it.
    enum EKind { eSigned, eUnsigned, eFloat, eString16, eString8, ePointer };

    /// A signed integer of any width, widened to 64 bits.
    template <class T, std::enable_if_t<std::is_integral_v<T> && std::is_signed_v<T>, int> = 0>
    CStringFormatArgument(T value) : m_kind(eSigned), m_signed(static_cast<int64_t>(value)) {}
    /// An unsigned integer of any width (bool and char16_t included), widened to 64 bits.
    template <class T, std::enable_if_t<std::is_integral_v<T> && !std::is_signed_v<T>, int> = 0>
    CStringFormatArgument(T value) : m_kind(eUnsigned), m_unsigned(static_cast<uint64_t>(value)) {}
    /// An enumerator, as its underlying integer.
    template <class T, std::enable_if_t<std::is_enum_v<T>, int> = 0>
    CStringFormatArgument(T value) : CStringFormatArgument(static_cast<std::underlying_type_t<T>>(value)) {}
    /// A floating-point number (floats are promoted).
    CStringFormatArgument(double value) : m_kind(eFloat), m_float(value) {}
    /// Null-terminated UTF-16 text; a null pointer is taken as a null address (%s prints "(null)").
    CStringFormatArgument(const char16_t* text);
    /// Null-terminated UTF-8 text; a null pointer is taken as a null address.
    CStringFormatArgument(const char* utf8);
    /// The string's UTF-16 text, borrowed.
    CStringFormatArgument(const CString& text);
    /// The string's UTF-16 text, borrowed.
    CStringFormatArgument(const std::u16string& text);
    /// The string's bytes as UTF-8, borrowed.
    CStringFormatArgument(const std::string& utf8);
    /// An address, for %p.
    CStringFormatArgument(const void* address) : m_kind(ePointer), m_pointer(address) {}
    /// A null address.
    CStringFormatArgument(std::nullptr_t) : m_kind(ePointer), m_pointer(nullptr) {}

    /// The kind chosen by the constructor.
    EKind GetKind() const { return m_kind; }
    /// The value; valid for eSigned only.
    int64_t GetSigned() const { return m_signed; }
    /// The value; valid for eUnsigned only.
    uint64_t GetUnsigned() const { return m_unsigned; }
    /// The value; valid for eFloat only.
    double GetFloat() const { return m_float; }
    /// The address; valid for ePointer only.
    const void* GetPointer() const { return m_pointer; }
    /// The borrowed text; valid for eString16 only.
    const char16_t* GetText16() const { return m_text16; }
    /// The borrowed UTF-8 bytes; valid for eString8 only.
    const char* GetText8() const { return m_text8; }
    /// Length of the text in code units (eString16) or bytes (eString8).
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
    /// Copies null-terminated UTF-16 text; null gives an empty string.
    CString(const char16_t* text);
    /// Copies `length` code units (nulls included); null or length <= 0 gives an empty string.
    CString(const char16_t* text, int length);
    /// Decodes null-terminated UTF-8 as FromUtf8 does; null gives an empty string.
    CString(const char* utf8);
    /// Decodes UTF-8 as FromUtf8 does.
    CString(const std::string& utf8);
    /// Copies the code units.
    CString(const std::u16string& text) : m_text(text) {}
    /// Takes the code units over.
    CString(std::u16string&& text) : m_text(std::move(text)) {}
    /// `repeat` copies of `ch`; empty when `repeat` <= 0.
    CString(char16_t ch, int repeat);

    /// Decodes `length` bytes of UTF-8; malformed or overlong sequences become U+FFFD, code
    /// points above U+FFFF surrogate pairs. Never throws.
    static CString FromUtf8(const char* utf8, size_t length);
    /// Windows-1252 ("ANSI") bytes to UTF-16; every byte maps to one character.
    static CString FromAnsi(const char* bytes, size_t length);

    /// Length in UTF-16 code units.
    int GetLength() const { return static_cast<int>(m_text.size()); }
    /// True for a string of length 0.
    bool IsEmpty() const { return m_text.empty(); }
    /// Makes the string empty.
    void Empty() { m_text.clear(); }
    /// Requires: 0 <= index < GetLength(), not checked.
    char16_t operator[](int index) const { return m_text[static_cast<size_t>(index)]; }
    /// Same as operator[]: 0 <= index < GetLength(), not checked.
    char16_t GetAt(int index) const { return m_text[static_cast<size_t>(index)]; }
    /// Replaces one code unit; 0 <= index < GetLength(), not checked.
    void SetAt(int index, char16_t ch) { m_text[static_cast<size_t>(index)] = ch; }
    /// Null-terminated UTF-16, valid until the string next changes.
    const char16_t* GetString() const { return m_text.c_str(); }
    /// The code units as a standard string, valid until the string next changes.
    const std::u16string& GetStdString() const { return m_text; }

    /// Copies null-terminated UTF-16 text; null empties the string.
    CString& operator=(const char16_t* text);
    /// Decodes null-terminated UTF-8 as FromUtf8 does; null empties the string.
    CString& operator=(const char* utf8);
    /// Appends; `other` may be this string.
    CString& operator+=(const CString& other) { m_text += other.m_text; return *this; }
    /// Appends null-terminated UTF-16 text; null appends nothing.
    CString& operator+=(const char16_t* text);
    /// Appends one code unit.
    CString& operator+=(char16_t ch) { m_text += ch; return *this; }

    ///@{
    /// Concatenation; a null `const char16_t*` counts as an empty string.
    friend ZO_API CString operator+(const CString& left, const CString& right);
    friend ZO_API CString operator+(const CString& left, const char16_t* right);
    friend ZO_API CString operator+(const char16_t* left, const CString& right);
    friend ZO_API CString operator+(const CString& left, char16_t right);
    ///@}

    /// Ordinal comparison of code units: negative, 0 or positive.
    int Compare(const CString& other) const { return m_text.compare(other.m_text); }
    ///@{
    /// Ordinal comparisons of the code units, as Compare.
    bool operator==(const CString& other) const { return m_text == other.m_text; }
    bool operator!=(const CString& other) const { return m_text != other.m_text; }
    bool operator<(const CString& other) const { return m_text < other.m_text; }
    ///@}
    ///@{
    /// Compares with null-terminated UTF-16 text; a null pointer equals the empty string.
    bool operator==(const char16_t* other) const;
    bool operator!=(const char16_t* other) const { return !(*this == other); }
    ///@}

    /// Clamped: a start beyond the end or a negative count gives an empty string.
    CString Mid(int first, int count) const;
    /// From `first` to the end; clamped like Mid(first, count).
    CString Mid(int first) const;
    /// The first `count` code units; empty for count <= 0, the whole string beyond its length.
    CString Left(int count) const;
    /// The last `count` code units; empty for count <= 0, the whole string beyond its length.
    CString Right(int count) const;
    /// Position of the first match at or after start, or -1.
    int Find(char16_t ch, int start = 0) const;
    /// Position of the first occurrence of `sub` at or after `start`, or -1 (also for a start
    /// outside 0..GetLength()).
    int Find(const CString& sub, int start = 0) const;
    /// Position of the last `ch`, or -1.
    int ReverseFind(char16_t ch) const;

    /// Upper-/lower-cases ASCII and the Latin-1 letters; other characters stay as they are.
    CString& MakeUpper();
    /// The lower-case counterpart of MakeUpper, same letters; returns this string.
    CString& MakeLower();

    template <class... Args>
    /// Replaces the string with the formatted text; see the class description for the directives.
    /// A null `format` gives an empty string. Never throws for mismatched arguments.
    void Format(const char16_t* format, const Args&... args)
    {
        const CStringFormatArgument list[] = {CStringFormatArgument(args)..., CStringFormatArgument(0)};
        m_text = formatList(format, list, sizeof...(Args)).m_text;
    }
    template <class... Args>
    /// Format's result as a new string.
    static CString Formatted(const char16_t* format, const Args&... args)
    {
        const CStringFormatArgument list[] = {CStringFormatArgument(args)..., CStringFormatArgument(0)};
        return formatList(format, list, sizeof...(Args));
    }
    /// Formats with `count` captured arguments, for callers that forward argument lists.
    static CString FormatArgumentList(const char16_t* format, const CStringFormatArgument* args, size_t count)
    {
        return formatList(format, args, count);
    }

    /// UTF-8 bytes; surrogate pairs become 4-byte sequences, a lone surrogate becomes U+FFFD.
    std::string ToUtf8() const;
    /// Windows-1252 bytes; characters the code page lacks become '?'.
    std::string ToAnsi() const;

private:
    static CString formatList(const char16_t* format, const CStringFormatArgument* args, size_t count);

    std::u16string m_text;
};

ZO_API bool operator==(const char16_t* left, const CString& right);
