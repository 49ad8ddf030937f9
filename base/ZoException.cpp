#include "base/ZoException.h"

namespace {
const char16_t kFrameLine[] = u"=============================================\n";
}

ZoException::ZoException(const CString& file, const CString& throwingClass, const CString& throwingMethod,
                         uint32_t line)
    : ZoException(sc_uiNoType, file, throwingClass, throwingMethod, line, CString(u"ZoException"))
{
}

ZoException::ZoException(const CString& file, const CString& throwingClass, const CString& throwingMethod,
                         uint32_t line, const CString& exceptionName)
    : ZoException(sc_uiNoType, file, throwingClass, throwingMethod, line, exceptionName)
{
}

ZoException::ZoException(uint32_t exceptionType, const CString& file, const CString& throwingClass,
                         const CString& throwingMethod, uint32_t line)
    : ZoException(exceptionType, file, throwingClass, throwingMethod, line, CString(u"ZoException"))
{
}

ZoException::ZoException(uint32_t exceptionType, const CString& file, const CString& throwingClass,
                         const CString& throwingMethod, uint32_t line, const CString& exceptionName)
    : m_exceptionName(exceptionName),
      m_fileName(file),
      m_throwingClassName(throwingClass),
      m_throwingMethodName(throwingMethod),
      m_codeLine(line),
      m_exceptionType(exceptionType)
{
}

CString ZoException::Where() const
{
    return CString::Formatted(u"%s(%d):", m_fileName, m_codeLine);
}

CString ZoException::GetTraceString() const
{
    CString text;
    setMsgHeader(text, 1);
    setMsgAdditionalData(text, 1);
    return text;
}

void ZoException::setMsgAdditionalData(CString&, int) const
{
}

void ZoException::setMsgHeader(CString& text, int framed) const
{
    if (framed)
        text += kFrameLine;
    if (!m_exceptionName.IsEmpty())
        text += u"EXCEPTION: " + m_exceptionName + u"\n";
    else
        text += u"ZoException\n";
    if (!m_throwingClassName.IsEmpty())
        text += u"\n   - Throwing class:\t\t" + m_throwingClassName + u"\n";
    if (!m_throwingMethodName.IsEmpty())
        text += u"   - Throwing method:\t" + m_throwingMethodName + u"\n";
    if (m_codeLine != sc_uiNoLine)
        text += CString::Formatted(u"   - Code line:\t\t%d\n", m_codeLine);
}

void ZoException::setMsgFooter(CString& text, int framed) const
{
    if (!m_fileName.IsEmpty()) {
        if (framed)
            text += u"\n";
        text += m_fileName;
        // Without a line the text still closes a parenthesis it never opened; log parsers written
        // for the library's reports match on this exact ending, so it stays.
        if (m_codeLine != sc_uiNoLine)
            text += CString::Formatted(u"(%d) : Stelle im Code\n", m_codeLine);
        else
            text += u")\n";
    }
    if (framed)
        text += kFrameLine;
}
