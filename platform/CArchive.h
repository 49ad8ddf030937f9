/// @class CArchive
/// CArchive: a buffered reader or writer over a CFile. A loading archive reads, a storing one writes;
/// using an archive against its mode throws CArchiveException. Reads return fewer bytes than asked
/// at the end of the file; system failures pass on as CFileException.
///
/// The archive keeps a buffer (4096 bytes unless chosen otherwise). A storing archive's bytes reach
/// the file on Flush(), Close() or when the buffer fills. The file underneath can be replaced with
/// SetFile() — the compressed archive format depends on that — so a storing archive must be flushed
/// first; a loading archive forgets what it had buffered from the old file. Close() flushes and
/// detaches the file without closing it (the file is the caller's); the destructor closes a storing
/// archive that is still open, swallowing any error (call Close() to see it).
/// @ingroup streams
#pragma once

#include "platform/CArchiveException.h"
#include "platform/CFile.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <vector>

class ZO_API CArchive
{
public:
    enum Mode : uint32_t
    {
        store = 0,
        load = 1,
        bNoFlushOnDelete = 2,
    };

    CArchive(CFile* file, uint32_t mode, int bufferSize = 4096);
    virtual ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    /// Up to `count` bytes; fewer at the end of the file. Throws CArchiveException(writeOnly) on a
    /// storing archive.
    uint32_t Read(void* buffer, uint32_t count);
    /// Throws CArchiveException(readOnly) on a loading archive.
    void Write(const void* buffer, uint32_t count);
    void Flush();
    virtual void Close();
    /// Drops the archive without writing what is buffered.
    void Abort();

    bool IsLoading() const { return (m_mode & load) != 0; }
    bool IsStoring() const { return (m_mode & load) == 0; }
    bool IsClosed() const { return m_file == nullptr; }
    CFile* GetFile() const { return m_file; }
    void SetFile(CFile* file);

protected:
    CFile* m_file;

private:
    uint32_t m_mode;
    std::vector<unsigned char> m_buffer;
    /// Loading: the unread bytes are m_buffer[m_position, m_filled). Storing: m_filled bytes wait.
    uint32_t m_position;
    uint32_t m_filled;
};
