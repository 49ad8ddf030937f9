#pragma once

#include "base/ZoClassSerialization.h"
#include "base/ZoStreamWriteASCII.h"
#include "platform/CArchive.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoStreamWriteASCIIFile: a text stream into a file, for logs and human-readable dumps. Text is
/// written in the ANSI code page (Windows-1252 on Linux), one byte per character, with no
/// terminator and no line breaks of its own.
///
/// Every write goes to the archive and the archive is flushed at once, so the file holds all text
/// written so far even if the process dies afterwards: logs are read while, or after, things go
/// wrong. Failures of the archive or file underneath (a loading archive, a full disk) pass on as
/// the CArchiveException / CFileException they raise.
///
/// The stream either opens the file itself (and releases it on destruction) or writes to a
/// caller's archive, which stays the caller's.
/// @ingroup streams
class ZO_API ZoStreamWriteASCIIFile : public ZoStreamWriteASCII
{
    ZO_DECLARE_RTTI()

    /// A fixed underlying type: callers pass other values too, and those open nothing.
    enum EAccessMode : int
    {
        eAccessWrite = 0,  ///< create or truncate the file
        eAccessAppend = 1, ///< keep what the file holds and write at its end
    };

    /// Writes to the caller's archive, which must be storing and outlive the stream.
    explicit ZoStreamWriteASCIIFile(CArchive& archive);
    /// Opens the file. Throws ZoExceptionStream ("openFile") when it cannot be opened or when
    /// `access` is neither eAccessWrite nor eAccessAppend.
    ZoStreamWriteASCIIFile(const CString& fileName, EAccessMode access = eAccessWrite);
    /// As above, with the file name taken inside a well-known folder.
    ZoStreamWriteASCIIFile(ZoClassSerialization::ESpecialDirectory directory, const CString& fileName,
                           EAccessMode access = eAccessWrite);
    /// Releases (and so closes) a file the stream opened; never throws.
    ~ZoStreamWriteASCIIFile() override;
    ZoStreamWriteASCIIFile(const ZoStreamWriteASCIIFile&) = delete;
    ZoStreamWriteASCIIFile& operator=(const ZoStreamWriteASCIIFile&) = delete;

    using ZoStreamWriteASCII::operator<<;

    /// The archive written to: the caller's, or the one the stream opened; never null.
    CArchive* GetArchive() const { return m_archive; }

protected:
    ZoStreamWriteASCIIFile& write(const CString& text) override;

private:
    /// Takes the archive the factory gave; throws when there is none.
    void openFile(CArchive* archive);

    int32_t m_ownsArchive;
    CArchive* m_archive;
};
