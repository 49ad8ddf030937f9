#include "base/ZoArchive.h"

#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"
#include "platform/ZoOS.h"

#include <cstring>
#include <vector>

const char ZoArchive::sc_magic[] = "Halvo AG, 2005, comp";

namespace {

const uint32_t kMethodStored = 0;
const uint32_t kMethodDeflate = 2;
// zlib cannot expand data by more than about 1032 to 1; a header claiming more is damaged.
const uint64_t kMaximumDeflateRatio = 1032;
const uint32_t kMemoryGrowBytes = 1024;

uint32_t readLittleEndian32(const unsigned char* bytes)
{
    return uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 | uint32_t(bytes[3]) << 24;
}

void writeLittleEndian32(unsigned char* bytes, uint32_t value)
{
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<unsigned char>(value >> (8 * i));
}

} // namespace

ZoArchive::ZoArchive(CFile* file, uint32_t mode, uint32_t compressionMethod)
    : CArchive(file, mode, 4096), m_compressionMethod(compressionMethod), m_realFile(file)
{
    if (IsLoading()) {
        openForLoading();
    } else if (m_compressionMethod != kMethodStored) {
        m_memoryFile = std::make_unique<CMemFile>(kMemoryGrowBytes);
        m_memoryFile->SetFilePath(file->GetFilePath());
        SetFile(m_memoryFile.get());
    }
}

ZoArchive::~ZoArchive()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    try {
        Close();
    } catch (...) {
        // Destruction cannot report; ZoClassSerialization::ReleaseArchive calls Close first.
    }
}

void ZoArchive::openForLoading()
{
    try {
        m_realFile->SeekToBegin();
    } catch (const CFileException&) {
        // A pipe can be neither measured nor read twice, so it carries plain streams only: its bytes
        // are read as they arrive.
        return;
    }
    const uint64_t length = m_realFile->GetLength();
    unsigned char header[sc_uiHeaderSize];
    const uint32_t headerRead = m_realFile->Read(header, sc_uiHeaderSize);
    if (headerRead < sc_uiHeaderSize || std::memcmp(header, sc_magic, sc_uiMagicSize) != 0) {
        m_realFile->SeekToBegin();
        return;
    }
    m_compressionMethod = readLittleEndian32(header + 20);
    const uint32_t uncompressedLength = readLittleEndian32(header + 24);
    if (m_compressionMethod == kMethodStored) {
        m_realFile->SeekToBegin();
        return;
    }
    m_memoryFile = std::make_unique<CMemFile>(kMemoryGrowBytes);
    m_memoryFile->SetFilePath(m_realFile->GetFilePath());
    if (m_compressionMethod == kMethodDeflate) {
        const uint64_t compressedLength = length - sc_uiHeaderSize;
        if (compressedLength > 0xFFFFFFFFu || uncompressedLength > compressedLength * kMaximumDeflateRatio + 64)
            throw CArchiveException(CArchiveException::badSchema, m_realFile->GetFilePath());
        std::vector<unsigned char> compressed(static_cast<size_t>(compressedLength));
        const uint32_t read = compressed.empty() ? 0 : m_realFile->Read(compressed.data(), static_cast<uint32_t>(compressed.size()));
        ZoDecompressZIP decompressor;
        // A damaged payload leaves the memory file empty: the reader then meets the end of the data.
        if (decompressor.Decompress(compressed.data(), read, uncompressedLength) && decompressor.GetOutputSize() != 0)
            m_memoryFile->Write(decompressor.GetOutputBuffer(), decompressor.GetOutputSize());
    }
    m_memoryFile->SeekToBegin();
    SetFile(m_memoryFile.get());
}

void ZoArchive::Close()
{
    if (IsClosed())
        return;
    if (m_memoryFile != nullptr) {
        if (IsStoring())
            finishStoring();
        else
            detachMemoryFile();
    }
    CArchive::Close();
}

void ZoArchive::finishStoring()
{
    Flush();
    const uint64_t length = m_memoryFile->GetLength();
    if (length > 0xFFFFFFFFu)
        throw CArchiveException(CArchiveException::genericException, m_realFile->GetFilePath());
    unsigned char header[sc_uiHeaderSize];
    std::memcpy(header, sc_magic, sc_uiMagicSize);
    writeLittleEndian32(header + 20, m_compressionMethod);
    writeLittleEndian32(header + 24, static_cast<uint32_t>(length));
    ZoCompressZIP compressor;
    if (m_compressionMethod == kMethodDeflate &&
        !compressor.Compress(m_memoryFile->GetBuffer(), static_cast<uint32_t>(length))) {
        detachMemoryFile();
        throw CArchiveException(CArchiveException::genericException, m_realFile->GetFilePath());
    }
    detachMemoryFile();
    m_realFile->Write(header, sc_uiHeaderSize);
    if (m_compressionMethod == kMethodDeflate)
        m_realFile->Write(compressor.GetOutputBuffer(), compressor.GetOutputSize());
}

void ZoArchive::detachMemoryFile()
{
    SetFile(m_realFile);
    m_memoryFile.reset();
}
