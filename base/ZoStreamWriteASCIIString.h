#pragma once

#include "base/ZoStreamWriteASCII.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoStreamWriteASCIIString: a text stream that collects its output in a string, for building
/// messages and dumps in memory. Every write appends to the collected text; nothing is ever
/// dropped or cut. Copies and assignments copy the text.
/// @ingroup streams
class ZO_API ZoStreamWriteASCIIString : public ZoStreamWriteASCII
{
    ZO_DECLARE_RTTI()

    ZoStreamWriteASCIIString() = default;
    /// Copies the collected text.
    ZoStreamWriteASCIIString(const ZoStreamWriteASCIIString& other);
    /// Replaces the collected text with a copy of `other`'s.
    ZoStreamWriteASCIIString& operator=(const ZoStreamWriteASCIIString& other);
    ~ZoStreamWriteASCIIString() override;

    using ZoStreamWriteASCII::operator<<;

    /// The collected text's length in UTF-16 code units.
    unsigned int GetLength() const { return static_cast<unsigned int>(m_text.GetLength()); }
    /// Forgets the collected text.
    void Empty() { m_text.Empty(); }
    /// The collected text, so the stream can stand where a CString is expected.
    operator const CString&() const { return m_text; }
    /// The collected text; stays valid until the next write or Empty().
    const CString& GetText() const { return m_text; }

    /// Writes the collected text to `stream` as one string.
    void Serialize(ZoStreamWrite& stream) const;

protected:
    ZoStreamWriteASCIIString& write(const CString& text) override;

private:
    CString m_text;
};
