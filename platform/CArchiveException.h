/// @class CArchiveException
/// CArchiveException: what CArchive throws when it is used against its mode (reading a storing
/// archive, writing a loading one) or is damaged. Thrown by value.
/// @ingroup streams
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

class ZO_API CArchiveException
{
public:
    enum ECause
    {
        none,
        genericException,
        readOnly,
        endOfFile,
        writeOnly,
        badIndex,
        badClass,
        badSchema,
    };

    CArchiveException(ECause cause = none, const CString& fileName = CString()) : m_cause(cause), m_strFileName(fileName) {}

    ECause GetCause() const { return m_cause; }
    const CString& GetFileName() const { return m_strFileName; }

private:
    ECause m_cause;
    CString m_strFileName;
};
