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
    /// The `mode` bits of the constructor: store or load, optionally or'ed with bNoFlushOnDelete.
    enum Mode : uint32_t
    {
        store = 0,            ///< Writes; the default.
        load = 1,             ///< Reads.
        bNoFlushOnDelete = 2, ///< The destructor of a storing archive drops what is buffered.
    };

    /// An archive over `file` (not owned; it must stay open while attached) in `mode` (a Mode
    /// combination). `bufferSize` is in bytes; values below 128 are raised to 128. Nothing is read
    /// or written yet.
    CArchive(CFile* file, uint32_t mode, int bufferSize = 4096);
    virtual ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    /// Up to `count` bytes; fewer at the end of the file. Throws CArchiveException(writeOnly) on a
    /// storing archive.
    uint32_t Read(void* buffer, uint32_t count);
    /// Throws CArchiveException(readOnly) on a loading archive.
    void Write(const void* buffer, uint32_t count);
    /// Storing: writes the buffered bytes to the file; they are dropped from the buffer even when
    /// the write throws (CFileException). Loading or closed: does nothing.
    void Flush();
    /// Flushes a storing archive and detaches the file without closing it; nothing on an archive
    /// that is closed already. Throws CFileException when the final write fails. Read and Write
    /// then throw CArchiveException(genericException).
    virtual void Close();
    /// Drops the archive without writing what is buffered.
    void Abort();

    ///@{
    /// The mode given to the constructor; an archive never changes mode.
    bool IsLoading() const { return (m_mode & load) != 0; }
    bool IsStoring() const { return (m_mode & load) == 0; }
    ///@}
    /// True after Close() or Abort() (or when made over a null file).
    bool IsClosed() const { return m_file == nullptr; }
    /// The file underneath (not owned), or null when closed.
    CFile* GetFile() const { return m_file; }
    /// Attaches another file (not owned). A loading archive drops what it had buffered from the old
    /// file; a storing archive keeps its buffer, which then goes to the new file, so flush first.
    void SetFile(CFile* file);

protected:
    /// The attached file (not owned), or null when closed.
    CFile* m_file;

private:
    uint32_t m_mode;
    std::vector<unsigned char> m_buffer;
    /// Loading: the unread bytes are m_buffer[m_position, m_filled). Storing: m_filled bytes wait.
    uint32_t m_position;
    uint32_t m_filled;
};
