#include "base/ZoStreamWriteBinaryFile.h"

#include "base/ZoExceptionPreconditionViolation.h"
#include "base/ZoExceptionStream.h"
#include "platform/ZoOS.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteBinaryFile, ZoStreamWriteBinary, nullptr, nullptr);

namespace {
const char16_t kSource[] = u"..\\base\\ZoStreamWriteBinaryFile.cpp";
}

ZoStreamWriteBinaryFile::ZoStreamWriteBinaryFile(CArchive& archive) : m_ownsArchive(0), m_archive(&archive) {}

ZoStreamWriteBinaryFile::ZoStreamWriteBinaryFile(const CString& fileName, ECompressionMode compression, EAccessMode access)
    : m_ownsArchive(1), m_archive(nullptr)
{
    openFile(fileName, compression, access);
}

ZoStreamWriteBinaryFile::ZoStreamWriteBinaryFile(ZoClassSerialization::ESpecialDirectory directory, const CString& fileName,
                                                 ECompressionMode compression, EAccessMode access)
    : m_ownsArchive(1), m_archive(nullptr)
{
    openFile(ZoClassSerialization::GetDirectory(directory) + fileName, compression, access);
}

ZoStreamWriteBinaryFile::~ZoStreamWriteBinaryFile()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    if (m_ownsArchive && m_archive != nullptr)
        ZoClassSerialization::ReleaseArchive(m_archive);
}

void ZoStreamWriteBinaryFile::openFile(const CString& name, ECompressionMode compression, EAccessMode access)
{
    ZoClassSerialization::ESerializationMode mode = ZoClassSerialization::eWrite;
    if (access != eAccessWrite) {
        if (compression != eCompressionNone)
            throw ZoExceptionPreconditionViolation(kSource, u"ZoStreamWriteBinaryFile", u"openFile", 159);
        mode = ZoClassSerialization::eAppend;
    } else if (compression == eCompressionUncompressed) {
        mode = ZoClassSerialization::eWriteUncompressed;
    } else if (compression == eCompressionZIP) {
        mode = ZoClassSerialization::eWriteCompressed;
    }
    m_archive = ZoClassSerialization::CreateArchive(name, mode);
    if (m_archive == nullptr)
        throw ZoExceptionStream(kSource, u"ZoStreamWriteBinaryFile", u"openFile", 167);
}

void ZoStreamWriteBinaryFile::Close()
{
    if (!m_ownsArchive || m_archive == nullptr)
        throw ZoExceptionStream(kSource, u"ZoStreamWriteBinaryFile", u"Close", 113);
    CArchive* archive = m_archive;
    m_archive = nullptr;
    if (!ZoClassSerialization::ReleaseArchive(archive))
        throw ZoExceptionStream(kSource, u"ZoStreamWriteBinaryFile", u"Close", 113);
}

CString ZoStreamWriteBinaryFile::GetFilename() const
{
    if (m_archive == nullptr || m_archive->GetFile() == nullptr)
        return CString();
    return m_archive->GetFile()->GetFilePath();
}

ZoStreamWriteBinaryFile& ZoStreamWriteBinaryFile::write(const void* buffer, uint64_t size)
{
    // The writer's failures name the reader class: log filters written for earlier releases look
    // for exactly this text, so it stays.
    if (m_archive == nullptr)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinaryFile", u"write", 190);
    const auto* source = static_cast<const unsigned char*>(buffer);
    try {
        for (uint64_t done = 0; done < size;) {
            const uint64_t chunk = size - done > ZoOS::sc_largestFileTransfer ? ZoOS::sc_largestFileTransfer : size - done;
            m_archive->Write(source + done, static_cast<uint32_t>(chunk));
            done += chunk;
        }
    } catch (...) {
        // A terminated thread unwinds through here: that must go on, not become a stream error.
        ZoOS::RethrowThreadCancellation();
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinaryFile", u"write", 190);
    }
    return *this;
}
