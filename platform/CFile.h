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
    virtual void Write(const void* buffer, uint32_t count);
    /// The new position from the start of the file.
    virtual uint64_t Seek(int64_t offset, uint32_t from);
    uint64_t SeekToEnd() { return Seek(0, end); }
    void SeekToBegin() { Seek(0, begin); }
    virtual uint64_t GetLength() const;
    virtual uint64_t GetPosition() const;
    virtual void Flush();
    /// Closes the file; throws when the system reports a failure on closing. A closed file stays
    /// closed.
    virtual void Close();
    /// Closes without reporting anything.
    virtual void Abort();
    virtual bool IsOpen() const { return m_file != ZoOS::sc_invalidFile; }

    const CString& GetFilePath() const { return m_path; }
    void SetFilePath(const CString& path) { m_path = path; }

protected:
    [[noreturn]] void throwLastError() const;

private:
    ZoOS::FileHandle m_file;
    CString m_path;
};
