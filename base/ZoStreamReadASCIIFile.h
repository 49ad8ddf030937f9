#pragma once

#include "base/ZoClassSerialization.h"
#include "base/ZoStreamReadASCII.h"
#include "platform/CArchive.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoStreamReadASCIIFile: a text stream that reads lines and characters from a file (see
/// ZoStreamReadASCII for what a line is). The stream either opens the file itself (and releases it
/// on destruction) or reads from a caller's archive, which stays the caller's.
///
/// The end of the file is the end of the stream, and so is an archive that cannot be read from (a
/// storing or closed one): the archive's CArchiveException is swallowed and the stream ends.
/// System failures while reading pass on as CFileException, so that a broken disk is not mistaken
/// for a short file.
/// @ingroup streams
class ZO_API ZoStreamReadASCIIFile : public ZoStreamReadASCII
{
    ZO_DECLARE_RTTI()

    /// Reads from the caller's archive, which must outlive the stream.
    explicit ZoStreamReadASCIIFile(CArchive& archive);
    /// Opens the file for reading. Throws ZoExceptionStream ("openFile") when it cannot be opened.
    explicit ZoStreamReadASCIIFile(const CString& fileName);
    /// As above, with the file name taken inside a well-known folder.
    ZoStreamReadASCIIFile(ZoClassSerialization::ESpecialDirectory directory, const CString& fileName);
    /// Releases (and so closes) a file the stream opened; never throws.
    ~ZoStreamReadASCIIFile() override;
    ZoStreamReadASCIIFile(const ZoStreamReadASCIIFile&) = delete;
    ZoStreamReadASCIIFile& operator=(const ZoStreamReadASCIIFile&) = delete;

    /// The archive read from: the caller's, or the one the stream opened; never null.
    CArchive* GetArchive() const { return m_archive; }

protected:
    bool read(char& c) override;

private:
    /// Takes the archive the factory gave; throws when there is none.
    void openFile(CArchive* archive);

    int32_t m_ownsArchive;
    CArchive* m_archive;
};
