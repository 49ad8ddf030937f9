#include "platform/CFile.h"

CFile::CFile() : m_file(ZoOS::sc_invalidFile) {}

CFile::CFile(const CString& path, uint32_t openFlags) : m_file(ZoOS::sc_invalidFile)
{
    CFileException error;
    if (!Open(path, openFlags, &error))
        throw error;
}

CFile::~CFile()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    Abort();
}

bool CFile::Open(const CString& path, uint32_t openFlags, CFileException* error)
{
    Abort();
    uint32_t flags = 0;
    if ((openFlags & 0x3) == modeWrite)
        flags = ZoOS::eFileWrite;
    else if ((openFlags & 0x3) == modeReadWrite)
        flags = ZoOS::eFileRead | ZoOS::eFileWrite;
    else
        flags = ZoOS::eFileRead;
    if (openFlags & modeCreate) {
        flags |= ZoOS::eFileCreate;
        if (!(openFlags & modeNoTruncate))
            flags |= ZoOS::eFileTruncate;
    }
    m_file = ZoOS::OpenFileHandle(path, flags);
    m_path = path;
    if (m_file == ZoOS::sc_invalidFile) {
        if (error != nullptr) {
            const uint32_t osError = ZoOS::GetLastErrorCode();
            *error = CFileException(CFileException::CauseFromOsError(osError), osError, path);
        }
        return false;
    }
    return true;
}

uint32_t CFile::Read(void* buffer, uint32_t count)
{
    if (count == 0)
        return 0;
    const int64_t read = ZoOS::ReadFileBytes(m_file, buffer, count);
    if (read < 0)
        throwLastError();
    return static_cast<uint32_t>(read);
}

void CFile::Write(const void* buffer, uint32_t count)
{
    if (count != 0 && !ZoOS::WriteFileBytes(m_file, buffer, count))
        throwLastError();
}

uint64_t CFile::Seek(int64_t offset, uint32_t from)
{
    const int64_t position = ZoOS::SeekFileHandle(m_file, offset, static_cast<ZoOS::ESeekOrigin>(from));
    if (position < 0)
        throwLastError();
    return static_cast<uint64_t>(position);
}

uint64_t CFile::GetLength() const
{
    const int64_t length = ZoOS::GetFileHandleLength(m_file);
    if (length < 0)
        throwLastError();
    return static_cast<uint64_t>(length);
}

uint64_t CFile::GetPosition() const
{
    const int64_t position = ZoOS::SeekFileHandle(m_file, 0, ZoOS::eSeekCurrent);
    if (position < 0)
        throwLastError();
    return static_cast<uint64_t>(position);
}

void CFile::Flush()
{
    if (IsOpen() && !ZoOS::FlushFileHandle(m_file))
        throwLastError();
}

void CFile::Close()
{
    if (!IsOpen())
        return;
    const ZoOS::FileHandle file = m_file;
    m_file = ZoOS::sc_invalidFile;
    if (!ZoOS::CloseFileHandle(file))
        throwLastError();
}

void CFile::Abort()
{
    if (IsOpen()) {
        ZoOS::CloseFileHandle(m_file);
        m_file = ZoOS::sc_invalidFile;
    }
}

void CFile::throwLastError() const
{
    const uint32_t osError = ZoOS::GetLastErrorCode();
    throw CFileException(CFileException::CauseFromOsError(osError), osError, m_path);
}
