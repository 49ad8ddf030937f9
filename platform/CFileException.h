/// @class CFileException
/// CFileException: what CFile and CMemFile throw when the system refuses a file operation. Thrown
/// by value; the library's own code catches it where its contract says so (the archive factory turns
/// it into a null result).
/// @ingroup streams
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API CFileException
{
public:
    /// What went wrong, mapped from the system's error number by CauseFromOsError(); memory files
    /// throw badSeek (a position before the start) and diskFull (growth refused).
    enum ECause
    {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile,
    };

    /// `osError` is the system's error number (0 when the failure is the library's own, as in memory
    /// files); `fileName` the path concerned, empty when unknown.
    CFileException(ECause cause = none, uint32_t osError = 0, const CString& fileName = CString())
        : m_cause(cause), m_lOsError(osError), m_strFileName(fileName)
    {
    }

    /// The cause given to the constructor.
    ECause GetCause() const { return m_cause; }
    /// The system's error number behind the failure (errno on POSIX, GetLastError on Windows).
    uint32_t GetOsError() const { return m_lOsError; }
    /// The path of the file concerned, or empty when unknown.
    const CString& GetFileName() const { return m_strFileName; }
    /// The cause for a system error number: none for 0, genericException for numbers without a
    /// closer cause.
    static ECause CauseFromOsError(uint32_t osError);

private:
    ECause m_cause;
    uint32_t m_lOsError;
    CString m_strFileName;
};
