/// @class ZoException
/// ZoException: the base of every exception the library throws.
///
/// An exception says where it was thrown: the source file, the class and method that threw, and the
/// line (0xFFFFFFFF when unknown). Throw sites build it from four literals and throw it by value;
/// catch sites take it by reference. GetTraceString() renders a framed report for logs and dialogs,
/// Where() the "file(line):" prefix that development tools jump from.
///
/// The ten subclasses add no data. Eight of them put their own name in the report; the stream and
/// wrong-file-version exceptions keep "ZoException", because reports and log filters written against
/// earlier releases expect it. Code that needs the precise class catches by type.
/// @ingroup objectmodel
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoException
{
public:
    /// From the throw site: source file, throwing class and method, line (sc_uiNoLine when
    /// unknown). The report names it "ZoException"; the type code is sc_uiNoType.
    ZoException(const CString& file, const CString& throwingClass, const CString& throwingMethod, uint32_t line);
    /// The same with the name the report gives; an empty name reads "ZoException" in the report.
    ZoException(const CString& file, const CString& throwingClass, const CString& throwingMethod, uint32_t line,
                const CString& exceptionName);
    /// With a caller-defined type code, readable through GetExceptionType().
    ZoException(uint32_t exceptionType, const CString& file, const CString& throwingClass,
                const CString& throwingMethod, uint32_t line);
    /// With a type code and the name the report gives.
    ZoException(uint32_t exceptionType, const CString& file, const CString& throwingClass,
                const CString& throwingMethod, uint32_t line, const CString& exceptionName);
    /// Copies the throw site, name and type code.
    ZoException(const ZoException& other) = default;
    /// Copies the throw site, name and type code.
    ZoException& operator=(const ZoException& other) = default;
    /// Not virtual: exceptions are values, thrown by value and never deleted through a base pointer.
    ~ZoException() = default;

    /// The name the report gives: "ZoException", or the subclass's own name for the eight named ones.
    const CString& GetExceptionName() const { return m_exceptionName; }
    /// The throwing source file as written at the throw site ("..\\base\\ZoX.cpp").
    const CString& GetFileName() const { return m_fileName; }
    /// The throwing class as written at the throw site; may be empty.
    const CString& GetThrowingClassName() const { return m_throwingClassName; }
    /// The throwing method as written at the throw site; may be empty or name another method.
    const CString& GetThrowingMethodName() const { return m_throwingMethodName; }
    /// The throw site's line; sc_uiNoLine when unknown.
    uint32_t GetCodeLine() const { return m_codeLine; }
    /// 0xFFFFFFFF unless a constructor with a type code was used.
    uint32_t GetExceptionType() const { return m_exceptionType; }

    /// "file(line):" formatted with "%s(%d):", so an unknown line reads (-1).
    virtual CString Where() const;
    /// The framed header followed by the subclass's additional lines; no footer.
    CString GetTraceString() const;

    /// The line of a throw site that does not know its line.
    static const uint32_t sc_uiNoLine = 0xFFFFFFFFu;
    /// The type code of an exception made without one.
    static const uint32_t sc_uiNoType = 0xFFFFFFFFu;

protected:
    /// Appends a subclass's own report lines; the base appends nothing. `framed` nonzero for the
    /// framed report of GetTraceString.
    virtual void setMsgAdditionalData(CString& text, int framed) const;
    /// Appends the report's head: a frame line (when framed), "EXCEPTION: " and the name, then the
    /// throwing class, method and line where known.
    void setMsgHeader(CString& text, int framed) const;
    /// Appends the source file with "(line) : Stelle im Code" (or only ")" without a line) and, when
    /// framed, the closing frame line. Log parsers match this ending, so it is kept as it is.
    void setMsgFooter(CString& text, int framed) const;

private:
    CString m_exceptionName;
    CString m_fileName;
    CString m_throwingClassName;
    CString m_throwingMethodName;
    uint32_t m_codeLine;
    uint32_t m_exceptionType;
};

// Declares a subclass that adds nothing to ZoException but its class (and possibly its name). Its
// comments are /** */ because a // comment would swallow the continuation line.
#define ZO_DECLARE_EXCEPTION(Name)                                                                    \
    class ZO_API Name : public ZoException                                                             \
    {                                                                                                  \
    public:                                                                                            \
        /** From the throw site's four literals, as ZoException's first constructor. */                \
        Name(const CString& file, const CString& throwingClass, const CString& throwingMethod,        \
             uint32_t line);                                                                           \
        /** Copies the throw site and name. */                                                         \
        Name(const Name& other) = default;                                                             \
        /** Copies the throw site and name. */                                                         \
        Name& operator=(const Name& other) = default;                                                  \
    }

// Defines the constructor of a subclass whose report keeps the name "ZoException".
#define ZO_DEFINE_EXCEPTION(Name)                                                                      \
    Name::Name(const CString& file, const CString& throwingClass, const CString& throwingMethod,       \
               uint32_t line)                                                                          \
        : ZoException(file, throwingClass, throwingMethod, line)                                       \
    {                                                                                                  \
    }

// Defines the constructor of a subclass whose report carries its own class name.
#define ZO_DEFINE_EXCEPTION_NAMED(Name)                                                                \
    Name::Name(const CString& file, const CString& throwingClass, const CString& throwingMethod,       \
               uint32_t line)                                                                          \
        : ZoException(file, throwingClass, throwingMethod, line, CString(u"" #Name))                    \
    {                                                                                                  \
    }
