#pragma once

#include "base/ZoClassSerialization.h"
#include "base/ZoStreamReadBinary.h"
#include "platform/CArchive.h"
#include "platform/ZoExport.h"

/// ZoStreamReadBinaryFile: the binary encoding read from a file (plain or compressed; the archive
/// factory expands compressed files transparently) or from a caller's CArchive.
///
/// Opening failures throw ZoExceptionStream ("openFile"); archive failures while reading throw
/// ("read"). Close() releases a file the stream opened itself and throws ("Close") for a stream on a
/// caller's archive or one already closed. The destructor releases an owned file and never throws.
/// @ingroup streams
class ZO_API ZoStreamReadBinaryFile : public ZoStreamReadBinary
{
    ZO_DECLARE_RTTI()

    /// Reads from the caller's archive, which must stay alive and stays the caller's.
    explicit ZoStreamReadBinaryFile(CArchive& archive);
    /// Opens the file through the archive factory (compressed files are expanded). Throws ZoExceptionStream ("openFile") when it cannot be opened.
    explicit ZoStreamReadBinaryFile(const CString& fileName);
    /// As above, with the file name taken inside a well-known folder.
    ZoStreamReadBinaryFile(ZoClassSerialization::ESpecialDirectory directory, const CString& fileName);
    ~ZoStreamReadBinaryFile() override;
    ZoStreamReadBinaryFile(const ZoStreamReadBinaryFile&) = delete;
    ZoStreamReadBinaryFile& operator=(const ZoStreamReadBinaryFile&) = delete;

    /// Releases the file the stream opened. Throws ZoExceptionStream ("Close") on a caller's archive or when already closed.
    void Close();
    /// The path of the archive's file; empty without an archive or file.
    CString GetFilename() const;
    /// The archive read from (the caller's or the stream's own); null after Close().
    CArchive* GetArchive() const { return m_archive; }

protected:
    uint64_t read(void* buffer, uint64_t size) override;

private:
    void openFile(const CString& name);

    int m_ownsArchive;
    CArchive* m_archive;
};
