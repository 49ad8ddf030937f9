#include "base/ZoStreamWriteASCIIFile.h"

#include "base/ZoExceptionStream.h"
#include "platform/ZoOS.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteASCIIFile, ZoStreamWriteASCII, nullptr, nullptr);

namespace {

// Access 0 creates the file, 1 appends to it. Any other value opens nothing, which the stream
// reports as a file it could not open.
bool modeFor(ZoStreamWriteASCIIFile::EAccessMode access, ZoClassSerialization::ESerializationMode& mode)
{
    switch (access) {
    case ZoStreamWriteASCIIFile::eAccessWrite:
        mode = ZoClassSerialization::eWrite;
        return true;
    case ZoStreamWriteASCIIFile::eAccessAppend:
        mode = ZoClassSerialization::eAppend;
        return true;
    }
    return false;
}

} // namespace

ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile(CArchive& archive) : m_ownsArchive(0), m_archive(&archive)
{
}

ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile(const CString& fileName, EAccessMode access)
    : m_ownsArchive(1), m_archive(nullptr)
{
    ZoClassSerialization::ESerializationMode mode = ZoClassSerialization::eWrite;
    openFile(modeFor(access, mode) ? ZoClassSerialization::CreateArchive(fileName, mode) : nullptr);
}

ZoStreamWriteASCIIFile::ZoStreamWriteASCIIFile(ZoClassSerialization::ESpecialDirectory directory,
                                               const CString& fileName, EAccessMode access)
    : m_ownsArchive(1), m_archive(nullptr)
{
    ZoClassSerialization::ESerializationMode mode = ZoClassSerialization::eWrite;
    openFile(modeFor(access, mode) ? ZoClassSerialization::CreateArchive(directory, fileName, mode) : nullptr);
}

ZoStreamWriteASCIIFile::~ZoStreamWriteASCIIFile()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    if (m_ownsArchive && m_archive != nullptr)
        ZoClassSerialization::ReleaseArchive(m_archive);
}

void ZoStreamWriteASCIIFile::openFile(CArchive* archive)
{
    m_archive = archive;
    if (m_archive == nullptr)
        throw ZoExceptionStream(u"..\\base\\ZoStreamWriteASCIIFile.cpp", u"ZoStreamWriteASCIIFile", u"openFile", 109);
}

ZoStreamWriteASCIIFile& ZoStreamWriteASCIIFile::write(const CString& text)
{
    ZoClassSerialization::WriteString(*m_archive, text);
    m_archive->Flush();
    return *this;
}
