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
    /// What went wrong. The library throws readOnly, writeOnly, genericException (an archive used
    /// after Close(), a compressed archive that cannot be written) and badSchema (a compressed file
    /// whose header does not match its data); the other values are kept for callers' own use.
    enum ECause
    {
        none,             ///< No error.
        genericException, ///< The archive is closed, or a compressed archive could not be written.
        readOnly,         ///< Write on a loading archive.
        endOfFile,        ///< Not thrown by the library: reads return fewer bytes instead.
        writeOnly,        ///< Read on a storing archive.
        badIndex,         ///< Not thrown by the library.
        badClass,         ///< Not thrown by the library.
        badSchema,        ///< A compressed file's header does not fit its data.
    };

    /// `fileName` is the path of the file the archive was attached to, empty when unknown.
    CArchiveException(ECause cause = none, const CString& fileName = CString()) : m_cause(cause), m_strFileName(fileName) {}

    /// The cause given to the constructor.
    ECause GetCause() const { return m_cause; }
    /// The file's path, or empty when the archive had no file (or the thrower did not know it).
    const CString& GetFileName() const { return m_strFileName; }

private:
    ECause m_cause;
    CString m_strFileName;
};
