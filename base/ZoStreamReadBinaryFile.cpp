#include "base/ZoStreamReadBinaryFile.h"

#include "base/ZoExceptionStream.h"
#include "platform/ZoOS.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamReadBinaryFile, ZoStreamReadBinary, nullptr, nullptr);

namespace {
const char16_t kSource[] = u"..\\base\\ZoStreamReadBinaryFile.cpp";
}

ZoStreamReadBinaryFile::ZoStreamReadBinaryFile(CArchive& archive) : m_ownsArchive(0), m_archive(&archive) {}

ZoStreamReadBinaryFile::ZoStreamReadBinaryFile(const CString& fileName) : m_ownsArchive(1), m_archive(nullptr)
{
    openFile(fileName);
}

ZoStreamReadBinaryFile::ZoStreamReadBinaryFile(ZoClassSerialization::ESpecialDirectory directory, const CString& fileName)
    : m_ownsArchive(1), m_archive(nullptr)
{
    openFile(ZoClassSerialization::GetDirectory(directory) + fileName);
}

ZoStreamReadBinaryFile::~ZoStreamReadBinaryFile()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    if (m_ownsArchive && m_archive != nullptr)
        ZoClassSerialization::ReleaseArchive(m_archive);
}

void ZoStreamReadBinaryFile::openFile(const CString& name)
{
    m_archive = ZoClassSerialization::CreateArchive(name, ZoClassSerialization::eRead);
    if (m_archive == nullptr)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinaryFile", u"openFile", 118);
}

void ZoStreamReadBinaryFile::Close()
{
    if (!m_ownsArchive || m_archive == nullptr)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinaryFile", u"Close", 96);
    CArchive* archive = m_archive;
    m_archive = nullptr;
    ZoClassSerialization::ReleaseArchive(archive);
}

CString ZoStreamReadBinaryFile::GetFilename() const
{
    if (m_archive == nullptr || m_archive->GetFile() == nullptr)
        return CString();
    return m_archive->GetFile()->GetFilePath();
}

uint64_t ZoStreamReadBinaryFile::read(void* buffer, uint64_t size)
{
    if (m_archive == nullptr)
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinaryFile", u"read", 142);
    auto* target = static_cast<unsigned char*>(buffer);
    uint64_t done = 0;
    try {
        // The archive takes 32-bit counts; larger requests go in pieces.
        while (done < size) {
            const uint64_t chunk = size - done > ZoOS::sc_largestFileTransfer ? ZoOS::sc_largestFileTransfer : size - done;
            const uint32_t read = m_archive->Read(target + done, static_cast<uint32_t>(chunk));
            done += read;
            if (read < chunk)
                break;
        }
    } catch (...) {
        // A terminated thread unwinds through here: that must go on, not become a stream error.
        ZoOS::RethrowThreadCancellation();
        throw ZoExceptionStream(kSource, u"ZoStreamReadBinaryFile", u"read", 142);
    }
    return done;
}
