/// @class CFile
/// CFile: an operating-system file opened by path, read and written in bytes. Every failure of the
/// system throws CFileException; a read at the end of the file returns fewer bytes than asked (0 at
/// the very end), which is not a failure. Closing twice, or destroying an open file, is safe; the
/// destructor never throws.
///
/// The open flags keep the values applications have always passed: a read mode (modeRead,
/// modeWrite, modeReadWrite), a sharing mode (accepted; POSIX has no mandatory sharing, so there it
/// only documents intent), and modeCreate / modeNoTruncate.
/// @ingroup streams
#pragma once

#include "platform/CFileException.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoOS.h"

#include <cstdint>

class ZO_API CFile
{
public:
    /// Bits of the open flags: one access mode, one share mode, and any of the others.
    enum OpenFlags : uint32_t
    {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000,
    };
    /// Where Seek counts its offset from.
    enum SeekPosition : uint32_t
    {
        begin = 0,
        current = 1,
        end = 2,
    };

    CFile();
    /// Opens at once; throws CFileException when that fails.
    CFile(const CString& path, uint32_t openFlags);
    virtual ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    /// False (and `error` filled when given) when the file cannot be opened; never throws.
    virtual bool Open(const CString& path, uint32_t openFlags, CFileException* error = nullptr);
    /// Up to `count` bytes; fewer at the end of the file.
    virtual uint32_t Read(void* buffer, uint32_t count);
    /// Writes all `count` bytes; throws CFileException when the system cannot (disk full, closed file).
    virtual void Write(const void* buffer, uint32_t count);
    /// The new position from the start of the file.
    virtual uint64_t Seek(int64_t offset, uint32_t from);
    /// Moves to the end; returns the file's length.
    uint64_t SeekToEnd() { return Seek(0, end); }
    /// Moves to the start.
    void SeekToBegin() { Seek(0, begin); }
    /// The file's length in bytes; throws CFileException when the system cannot tell.
    virtual uint64_t GetLength() const;
    /// The position from the start of the file; throws CFileException when the system cannot tell.
    virtual uint64_t GetPosition() const;
    /// Hands buffered data to the system; throws CFileException on failure.
    virtual void Flush();
    /// Closes the file; throws when the system reports a failure on closing. A closed file stays
    /// closed.
    virtual void Close();
    /// Closes without reporting anything.
    virtual void Abort();
    /// Whether the object holds an open file.
    virtual bool IsOpen() const { return m_file != ZoOS::sc_invalidFile; }

    /// The path given to Open or SetFilePath.
    const CString& GetFilePath() const { return m_path; }
    /// Replaces the recorded path; the open file stays as it is.
    void SetFilePath(const CString& path) { m_path = path; }

protected:
    /// Throws CFileException for the system's last error and this file's path.
    [[noreturn]] void throwLastError() const;

private:
    ZoOS::FileHandle m_file;
    CString m_path;
};
