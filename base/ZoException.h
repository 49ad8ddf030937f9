// ZoException: the base of every exception the library throws.
//
// An exception says where it was thrown: the source file, the class and method that threw, and the
// line (0xFFFFFFFF when unknown). Throw sites build it from four literals and throw it by value;
// catch sites take it by reference. GetTraceString() renders a framed report for logs and dialogs,
// Where() the "file(line):" prefix that development tools jump from.
//
// The ten subclasses add no data. Eight of them put their own name in the report; the stream and
// wrong-file-version exceptions keep "ZoException", because reports and log filters written against
// earlier releases expect it. Code that needs the precise class catches by type.
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoException
{
public:
    ZoException(const CString& file, const CString& throwingClass, const CString& throwingMethod, uint32_t line);
    ZoException(const CString& file, const CString& throwingClass, const CString& throwingMethod, uint32_t line,
                const CString& exceptionName);
    ZoException(uint32_t exceptionType, const CString& file, const CString& throwingClass,
                const CString& throwingMethod, uint32_t line);
    ZoException(uint32_t exceptionType, const CString& file, const CString& throwingClass,
                const CString& throwingMethod, uint32_t line, const CString& exceptionName);
    ZoException(const ZoException& other) = default;
    ZoException& operator=(const ZoException& other) = default;
    // Not virtual: exceptions are values, thrown by value and never deleted through a base pointer.
    ~ZoException() = default;

    const CString& GetExceptionName() const { return m_exceptionName; }
    const CString& GetFileName() const { return m_fileName; }
    const CString& GetThrowingClassName() const { return m_throwingClassName; }
    const CString& GetThrowingMethodName() const { return m_throwingMethodName; }
    uint32_t GetCodeLine() const { return m_codeLine; }
    // 0xFFFFFFFF unless a constructor with a type code was used.
    uint32_t GetExceptionType() const { return m_exceptionType; }

    // "file(line):" formatted with "%s(%d):", so an unknown line reads (-1).
    virtual CString Where() const;
    // The framed header followed by the subclass's additional lines; no footer.
    CString GetTraceString() const;

    static const uint32_t sc_uiNoLine = 0xFFFFFFFFu;
    static const uint32_t sc_uiNoType = 0xFFFFFFFFu;

protected:
    virtual void setMsgAdditionalData(CString& text, int framed) const;
    void setMsgHeader(CString& text, int framed) const;
    void setMsgFooter(CString& text, int framed) const;

private:
    CString m_exceptionName;
    CString m_fileName;
    CString m_throwingClassName;
    CString m_throwingMethodName;
    uint32_t m_codeLine;
    uint32_t m_exceptionType;
};

// Declares a subclass that adds nothing to ZoException but its class (and possibly its name).
#define ZO_DECLARE_EXCEPTION(Name)                                                                    \
    class ZO_API Name : public ZoException                                                             \
    {                                                                                                  \
    public:                                                                                            \
        Name(const CString& file, const CString& throwingClass, const CString& throwingMethod,        \
             uint32_t line);                                                                           \
        Name(const Name& other) = default;                                                             \
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
