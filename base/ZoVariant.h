#pragma once

#include "base/ZoArray.h"
#include "base/ZoColor.h"
#include "base/ZoDateTime.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"
#if defined(_WIN32)
#include "platform/ZoOS.h"
#endif

#include <cstdint>

/// ZoVariant: the library's tagged value, one of eleven kinds of scalar, string or small object, with
/// conversions between kinds and comparisons.
///
/// A variant owns its string, blob, date-time or colour exclusively; copies duplicate it. Every
/// assignment releases the present payload first. Conversions follow a fixed table: what the table
/// does not allow throws ZoException with class "ZoVariant" and the refusing operation's name and
/// line, and nothing is coerced outside it. A conversion that throws leaves the variant unchanged.
///
/// Deliberate quirks, kept because stored data and callers depend on them:
/// - ToString of a double throws (a double cannot be turned into text), and so does copying a double
///   variant (naming "ToString"); the 64-bit kind prints only its low 32 bits and a DWORD above
///   0x7FFFFFFF prints negative (`%d`).
/// - ToDateTime's refusal names "ToString".
/// - Comparisons read the left payload as the kind of the right-hand operand without checking that
///   the kinds match: ZoVariant(int 5) == ZoVariant(DWORD 5) holds. When the right-hand kind is a
///   string, blob, date-time or colour and the left one differs, the left payload is no such object;
///   such comparisons are refused with the comparison's exception instead of reading it.
///
/// The COM conversion ToVariant exists in the Windows build only: other systems have no COM.
/// @ingroup values
class ZO_API ZoVariant
{
public:
    /// The kind of value a variant holds; the numbers are stable and stored by callers.
    enum EVariantType : uint32_t
    {
        eTypeNull = 0,
        eTypeBool = 1,
        eTypeInt = 2,
        eTypeInt64 = 3,
        eTypeDWORD = 4,
        eTypeFloat = 5,
        eTypeDouble = 6,
        eTypeChar = 7,
        eTypeString = 8,
        eTypeBlob = 9,
        eTypeDateTime = 10,
        eTypeColor = 11,
    };
    /// The byte-array kind's payload.
    typedef ZoArray<unsigned char, 0> Blob;

    ZoVariant() : m_type(eTypeNull), m_payload(0) {}
    /// A bool variant.
    ZoVariant(bool value) : ZoVariant() { *this = value; }
    /// A 32-bit signed integer variant (eTypeInt).
    ZoVariant(int32_t value) : ZoVariant() { *this = value; }
    /// A 64-bit signed integer variant (eTypeInt64).
    ZoVariant(int64_t value) : ZoVariant() { *this = value; }
    /// A 32-bit unsigned integer variant (eTypeDWORD).
    ZoVariant(uint32_t value) : ZoVariant() { *this = value; }
    /// A float variant.
    ZoVariant(float value) : ZoVariant() { *this = value; }
    /// A double variant; note that such a variant cannot be copied or turned into text.
    ZoVariant(double value) : ZoVariant() { *this = value; }
    /// A char variant.
    ZoVariant(char value) : ZoVariant() { *this = value; }
    /// A string variant owning a copy of `value`.
    ZoVariant(const CString& value) : ZoVariant() { *this = value; }
    /// A text literal is a string, not a bool.
    ZoVariant(const char16_t* value) : ZoVariant() { *this = CString(value); }
    /// A blob variant owning a copy of `value`.
    ZoVariant(const Blob& value) : ZoVariant() { *this = value; }
    /// A date-time variant owning a copy of `value`.
    ZoVariant(const ZoDateTime& value) : ZoVariant() { *this = value; }
    /// A colour variant owning a copy of `value`.
    ZoVariant(const ZoColor& value) : ZoVariant() { *this = value; }
    /// Throws for a double source (see operator=).
    ZoVariant(const ZoVariant& other) : ZoVariant() { *this = other; }
    ~ZoVariant() { SetNull(); }

    /// Releases the payload and holds a bool.
    ZoVariant& operator=(bool value);
    /// Releases the payload and holds a 32-bit signed integer (eTypeInt).
    ZoVariant& operator=(int32_t value);
    /// Releases the payload and holds a 64-bit signed integer (eTypeInt64).
    ZoVariant& operator=(int64_t value);
    /// Releases the payload and holds a 32-bit unsigned integer (eTypeDWORD).
    ZoVariant& operator=(uint32_t value);
    /// Releases the payload and holds a float.
    ZoVariant& operator=(float value);
    /// Releases the payload and holds a double.
    ZoVariant& operator=(double value);
    /// Releases the payload and holds a char.
    ZoVariant& operator=(char value);
    /// Releases the payload and holds a copy of the string.
    ZoVariant& operator=(const CString& value);
    /// A text literal is a string, not a bool.
    ZoVariant& operator=(const char16_t* value) { return *this = CString(value); }
    /// Releases the payload and holds a copy of the byte array.
    ZoVariant& operator=(const Blob& value);
    /// Releases the payload and holds a copy of the date-time.
    ZoVariant& operator=(const ZoDateTime& value);
    /// Releases the payload and holds a copy of the colour.
    ZoVariant& operator=(const ZoColor& value);
    /// Copies by kind. A double source is refused ("ToString", line 307) and this variant kept.
    ZoVariant& operator=(const ZoVariant& other);

    /// The kind held; eTypeNull for a new variant.
    EVariantType GetType() const { return m_type; }
    /// 1 when the variant holds nothing, else 0.
    int IsNull() const { return m_type == eTypeNull ? 1 : 0; }
    /// Releases the payload; the variant becomes null.
    void SetNull();

    /// The conversions of the table; each throws for the kinds the table refuses. Floats convert to
    /// integers by truncation toward zero; a value the target cannot hold (or NaN) gives what the x64
    /// conversion gives, 0x80000000 for ToINT and 0 (the low half of 0x8000000000000000) for ToDWORD.
    /// Strings convert as _wtoi (saturating at the 32-bit range) and _wtof do; the latter is the C
    /// library's strtod, so the process's locale decides the decimal point, as it does on Windows.
    int ToBOOL() const;
    /// bool as 1/0, integers' low 32 bits, floats truncated, char, string as _wtoi. Throws ("ToINT") for null, blob, date-time and colour.
    int32_t ToINT() const;
    /// As ToINT, and a colour's 0xAARRGGBB value. Throws ("ToDWORD") for null, blob and date-time.
    uint32_t ToDWORD() const;
    /// bool as 1/0, integers, double and string (as _wtof) rounded to float. Throws ("ToFLOAT") for null, char, blob, date-time and colour.
    float ToFLOAT() const;
    /// Numbers as `%d` / `%f` text, char as itself, a date-time in its sortable form, a colour as ZoColor::ToString. Throws ("ToString") for null, double and blob.
    CString ToString() const;
    /// A string is read by ZoDateTime's text constructor, which throws its own exception for a bad
    /// text.
    ZoDateTime ToDateTime() const;
    /// A DWORD is taken as it is; a string is read as a hexadecimal unsigned 32-bit number (as
    /// wcstoul does; too large reads 0xFFFFFFFF) of which the low 24 bits are kept, made opaque.
    ZoColor ToColor() const;
    /// A copy of the byte array. Throws ("ToBlob") for every other kind.
    Blob ToBlob() const;
#if defined(_WIN32)
    /// bool: VT_BOOL (VARIANT_TRUE or 0); int: VT_I4; DWORD: VT_UI4; float: VT_R4; string: VT_BSTR with a
    /// new system string; every other kind VT_EMPTY. The caller owns the result and clears it
    /// (VariantClear, or hand it to a _variant_t that takes ownership).
    VARIANT ToVariant() const;
#endif

    /// Converts in place through the matching To... conversion. Nothing happens when the kind is
    /// already `target`; null empties the variant; 64-bit integer, double, char, blob and unknown
    /// targets throw ("ConvertTo", line 628). The new value is made before the old one is released, so
    /// a throw leaves the variant as it was.
    void ConvertTo(EVariantType target);

    /// See the class comment: the right-hand kind decides how both payloads are read. == refuses a
    /// right-hand double, blob or date-time; < and > refuse a right-hand bool, double, blob, date-time or
    /// colour. Nothing is below or above null.
    bool operator==(const ZoVariant& other) const;
    /// The negation of operator==, with its refusals.
    bool operator!=(const ZoVariant& other) const { return !(*this == other); }
    /// Reads both payloads as the right-hand kind (see the class note); false when the right-hand variant is null.
    bool operator<(const ZoVariant& other) const;
    /// Reads both payloads as the right-hand kind (see the class note); false when the right-hand variant is null.
    bool operator>(const ZoVariant& other) const;

private:
    [[noreturn]] static void refuse(const char16_t* method, uint32_t line);
    template <class T>
    T scalar() const;
    template <class T>
    void setScalar(EVariantType type, T value);
    template <class T>
    T* object() const
    {
        return reinterpret_cast<T*>(static_cast<uintptr_t>(m_payload));
    }
    template <class T>
    void setObject(EVariantType type, T* value);
    /// The left payload read as the right-hand object kind, or a refusal when the left is not that kind.
    template <class T>
    const T& leftObject(EVariantType type, const char16_t* method, uint32_t line) const;

    EVariantType m_type;
    /// One machine word: a scalar's bytes from the low end, or the address of the owned object.
    uint64_t m_payload;
};
