#pragma once

#include "base/ZoClassSerialization.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/CArchive.h"
#include "platform/ZoExport.h"

/// ZoStreamWriteBinaryFile: the binary encoding written to a file — plain, appended, or compressed
/// into the library's compressed archive format — or to a caller's CArchive.
///
/// Compression 0 writes plain (mode eWrite), 1 plain as well (mode eWriteUncompressed), 2 compressed
/// (mode eWriteCompressed); an access mode other than 0 appends (mode eAppend) and cannot be combined
/// with compression (ZoExceptionPreconditionViolation, "openFile"). Opening failures throw
/// ZoExceptionStream ("openFile"), write failures ("write"). A compressed file is written when the
/// stream is closed or destroyed.
/// @ingroup streams
class ZO_API ZoStreamWriteBinaryFile : public ZoStreamWriteBinary
{
    ZO_DECLARE_RTTI()

    /// How a file the stream opens is written; the numbers are the ones callers pass.
    enum ECompressionMode
    {
        eCompressionNone = 0,
        eCompressionUncompressed = 1,
        eCompressionZIP = 2,
    };
    /// Whether a file the stream opens is replaced or appended to.
    enum EAccessMode
    {
        eAccessWrite = 0,
        eAccessAppend = 1,
    };

    /// Writes to the caller's archive, which must stay alive and stays the caller's.
    explicit ZoStreamWriteBinaryFile(CArchive& archive);
    /// Opens (creates, truncates or appends to) the file through the archive factory. Throws ZoExceptionStream ("openFile") when it cannot be opened, ZoExceptionPreconditionViolation when appending is combined with compression.
    ZoStreamWriteBinaryFile(const CString& fileName, ECompressionMode compression = eCompressionNone,
                            EAccessMode access = eAccessWrite);
    /// As above, with the file name taken inside a well-known folder.
    ZoStreamWriteBinaryFile(ZoClassSerialization::ESpecialDirectory directory, const CString& fileName,
                            ECompressionMode compression = eCompressionNone, EAccessMode access = eAccessWrite);
    /// Releases an owned file (writing a compressed one); never throws, so call Close() to learn
    /// whether the final write succeeded.
    ~ZoStreamWriteBinaryFile() override;
    ZoStreamWriteBinaryFile(const ZoStreamWriteBinaryFile&) = delete;
    ZoStreamWriteBinaryFile& operator=(const ZoStreamWriteBinaryFile&) = delete;

    /// Throws ZoExceptionStream ("Close") for a stream on a caller's archive, one already closed, or
    /// when the file could not be finished.
    void Close();
    /// The path of the archive's file; empty without an archive or file.
    CString GetFilename() const;
    /// The archive written to (the caller's or the stream's own); null after Close().
    CArchive* GetArchive() const { return m_archive; }

protected:
    ZoStreamWriteBinaryFile& write(const void* buffer, uint64_t size) override;

private:
    void openFile(const CString& name, ECompressionMode compression, EAccessMode access);

    int m_ownsArchive;
    CArchive* m_archive;
};
