#include "platform/CArchive.h"

#include <cstring>

CArchive::CArchive(CFile* file, uint32_t mode, int bufferSize)
    : m_file(file),
      m_mode(mode),
      m_buffer(static_cast<size_t>(bufferSize < 128 ? 128 : bufferSize)),
      m_position(0),
      m_filled(0)
{
}

CArchive::~CArchive()
{
    // Closing may wait on the system: a thread termination must not unwind out of here.
    ZoOS::ThreadTerminationDeferral deferTermination;
    if (m_file == nullptr)
        return;
    if (IsStoring() && !(m_mode & bNoFlushOnDelete)) {
        try {
            Flush();
        } catch (...) {
            // A destructor cannot report; Close() is the way to see a failed final write.
        }
    }
    m_file = nullptr;
}

uint32_t CArchive::Read(void* buffer, uint32_t count)
{
    if (!IsLoading())
        throw CArchiveException(CArchiveException::writeOnly, m_file != nullptr ? m_file->GetFilePath() : CString());
    if (m_file == nullptr)
        throw CArchiveException(CArchiveException::genericException);
    auto* target = static_cast<unsigned char*>(buffer);
    uint32_t done = 0;
    while (done < count) {
        if (m_position == m_filled) {
            // Large requests bypass the buffer.
            if (count - done >= m_buffer.size()) {
                const uint32_t read = m_file->Read(target + done, count - done);
                done += read;
                if (read == 0)
                    break;
                continue;
            }
            m_position = 0;
            m_filled = m_file->Read(m_buffer.data(), static_cast<uint32_t>(m_buffer.size()));
            if (m_filled == 0)
                break;
        }
        const uint32_t available = m_filled - m_position;
        const uint32_t taken = available < count - done ? available : count - done;
        std::memcpy(target + done, m_buffer.data() + m_position, taken);
        m_position += taken;
        done += taken;
    }
    return done;
}

void CArchive::Write(const void* buffer, uint32_t count)
{
    if (!IsStoring())
        throw CArchiveException(CArchiveException::readOnly, m_file != nullptr ? m_file->GetFilePath() : CString());
    if (m_file == nullptr)
        throw CArchiveException(CArchiveException::genericException);
    // Nothing to copy: an empty caller's buffer may be a null pointer.
    if (count == 0)
        return;
    const auto* source = static_cast<const unsigned char*>(buffer);
    if (count >= m_buffer.size()) {
        Flush();
        m_file->Write(source, count);
        return;
    }
    if (m_filled + count > m_buffer.size())
        Flush();
    std::memcpy(m_buffer.data() + m_filled, source, count);
    m_filled += count;
}

void CArchive::Flush()
{
    if (m_file == nullptr || !IsStoring() || m_filled == 0)
        return;
    const uint32_t pending = m_filled;
    m_filled = 0;
    m_file->Write(m_buffer.data(), pending);
}

void CArchive::Close()
{
    if (m_file == nullptr)
        return;
    if (IsStoring())
        Flush();
    m_file = nullptr;
}

void CArchive::Abort()
{
    m_filled = 0;
    m_position = 0;
    m_file = nullptr;
}

void CArchive::SetFile(CFile* file)
{
    m_file = file;
    if (IsLoading()) {
        m_position = 0;
        m_filled = 0;
    }
}
