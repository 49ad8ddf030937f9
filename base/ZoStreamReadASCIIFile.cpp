#include "base/ZoStreamReadASCIIFile.h"

#include "base/ZoExceptionStream.h"
#include "platform/CArchiveException.h"
#include "platform/ZoOS.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamReadASCIIFile, ZoStreamReadASCII, nullptr, nullptr);

ZoStreamReadASCIIFile::ZoStreamReadASCIIFile(CArchive& archive) : m_ownsArchive(0), m_archive(&archive)
{
}

ZoStreamReadASCIIFile::ZoStreamReadASCIIFile(const CString& fileName) : m_ownsArchive(1), m_archive(nullptr)
{
    openFile(ZoClassSerialization::CreateArchive(fileName, ZoClassSerialization::eRead));
}

ZoStreamReadASCIIFile::ZoStreamReadASCIIFile(ZoClassSerialization::ESpecialDirectory directory,
                                             const CString& fileName)
    : m_ownsArchive(1), m_archive(nullptr)
{
    openFile(ZoClassSerialization::CreateArchive(directory, fileName, ZoClassSerialization::eRead));
}

ZoStreamReadASCIIFile::~ZoStreamReadASCIIFile()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    if (m_ownsArchive && m_archive != nullptr)
        ZoClassSerialization::ReleaseArchive(m_archive);
}

void ZoStreamReadASCIIFile::openFile(CArchive* archive)
{
    m_archive = archive;
    if (m_archive == nullptr)
        throw ZoExceptionStream(u"..\\base\\ZoStreamReadASCIIFile.cpp", u"ZoStreamReadASCIIFile", u"openFile", 94);
}

bool ZoStreamReadASCIIFile::read(char& c)
{
    try {
        return m_archive->Read(&c, 1) != 1;
    } catch (const CArchiveException&) {
        // An archive that is not open for loading has nothing to give: the text simply ends.
        return true;
    }
}
