#pragma once

#include "base/ZoStreamWrite.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

class ZoStreamWriteASCIIString;

/// ZoStreamWriteASCII: the common base of the text output streams (string, file, console, debug
/// trace, diagnostics viewer). It turns every value into text and hands that text to one virtual
/// write() of the concrete stream; nothing is added around the values (no separators, spaces or
/// line breaks), so callers lay out their own lines.
///
/// The text of each type is fixed, because existing logs and dumps are compared against it:
///
/// ~~~{.txt}
///   CString                      as it stands
///   bool                         "true" / "false"
///   unsigned char/short/int      "%u"
///   signed char, short           sign-extended to 32 bits, then "%u": -1 prints as 4294967295
///   int                          "%d"
///   long long, unsigned long long
///                                "%ld": only the low 32 bits, printed as a signed number, so
///                                4294967297 prints as 1 and 2147483648 as -2147483648
///   long, unsigned long          the row of their width: 32-bit ("%d" / "%u") on Windows, 64-bit
///                                ("%ld" as above) on Linux
///   float, double                "%f" with six decimals (a float is widened first)
///   address (WriteAddress)       "0x" and 16 upper-case hexadecimal digits on every target
/// ~~~
///
/// All formatting goes through CString::Formatted, which reads directives the same way on every
/// target, so the same values give the same text on Windows and Linux.
/// @ingroup streams
class ZO_API ZoStreamWriteASCII : public ZoStreamWrite
{
    ZO_DECLARE_RTTI()

    ~ZoStreamWriteASCII() override;

    using ZoStreamWrite::operator<<;

    ZoStreamWriteASCII& operator<<(const CString& value) override;
    ZoStreamWriteASCII& operator<<(double value) override;
    ZoStreamWriteASCII& operator<<(float value) override;
    ZoStreamWriteASCII& operator<<(long long value) override;
    ZoStreamWriteASCII& operator<<(unsigned long long value) override;
    ZoStreamWriteASCII& operator<<(long value) override;
    ZoStreamWriteASCII& operator<<(unsigned long value) override;
    ZoStreamWriteASCII& operator<<(int value) override;
    ZoStreamWriteASCII& operator<<(unsigned int value) override;
    ZoStreamWriteASCII& operator<<(short value) override;
    ZoStreamWriteASCII& operator<<(unsigned short value) override;
    ZoStreamWriteASCII& operator<<(signed char value) override;
    ZoStreamWriteASCII& operator<<(unsigned char value) override;
    ZoStreamWriteASCII& operator<<(bool value) override;

    /// Writes the text another string stream has collected so far (a stream may write itself: its
    /// text is then doubled).
    ZoStreamWriteASCII& operator<<(const ZoStreamWriteASCIIString& collected);

    /// Writes the address as "0x" followed by 16 upper-case hexadecimal digits.
    ZoStreamWriteASCII& WriteAddress(const void* address);

protected:
    ZoStreamWriteASCII() = default;
    /// For derived streams; the base has no state.
    ZoStreamWriteASCII(const ZoStreamWriteASCII&) = default;
    /// For derived streams; the base has no state.
    ZoStreamWriteASCII& operator=(const ZoStreamWriteASCII&) = default;

    /// Delivers one piece of text to the stream's destination.
    virtual ZoStreamWriteASCII& write(const CString& text) = 0;
};
