// ZoArchive: the archive ZoClassSerialization hands out. It is a CArchive that can keep its data in
// a compressed file: when storing with compression it collects everything in memory and, on Close,
// writes the 28-byte header (the magic "Halvo AG, 2005, comp", the method, the uncompressed length)
// followed by the zlib data; when loading it recognises that header and reads the expanded data
// from memory instead of the file.
//
// Header layout, little-endian: bytes 0..19 magic, 20..23 method (0 stored, 2 deflate), 24..27
// uncompressed length, then the compressed bytes. A file without the magic is an ordinary archive.
// A stored (method 0) file is read from its first byte, header included: files written that way by
// earlier releases carry their payload after a header that their readers skipped themselves.
//
// Internal to the library; users get archives from ZoClassSerialization::CreateArchive.
#pragma once

#include "platform/CArchive.h"
#include "platform/CMemFile.h"

#include <cstdint>
#include <memory>

class ZoArchive : public CArchive
{
public:
    static const uint32_t sc_uiHeaderSize = 28;
    static const uint32_t sc_uiMagicSize = 20;
    static const char sc_magic[];

    // Throws CFileException / CArchiveException when the file cannot be read, and
    // CArchiveException(badSchema) for a compressed file whose header claims more data than its
    // bytes can expand to.
    ZoArchive(CFile* file, uint32_t mode, uint32_t compressionMethod);
    ~ZoArchive() override;

    // Finishes the archive: a compressing one writes header and data to the real file now. Throws
    // when writing or compressing fails. The real file stays open (it is the caller's).
    void Close() override;
    uint32_t GetCompressionMethod() const { return m_compressionMethod; }
    CFile* GetRealFile() const { return m_realFile; }

private:
    void openForLoading();
    void finishStoring();
    void detachMemoryFile();

    uint32_t m_compressionMethod;
    CFile* m_realFile;
    std::unique_ptr<CMemFile> m_memoryFile;
};
