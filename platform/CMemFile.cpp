#include "platform/CMemFile.h"

#include <cstdlib>
#include <cstring>
#include <new>

CMemFile::CMemFile(uint32_t growBytes)
    : m_buffer(nullptr), m_length(0), m_capacity(0), m_position(0), m_growBytes(growBytes), m_ownsBuffer(true)
{
}

CMemFile::CMemFile(unsigned char* buffer, uint32_t size, uint32_t growBytes) : CMemFile(growBytes)
{
    Attach(buffer, size, growBytes);
}

CMemFile::~CMemFile()
{
    Close();
}

void CMemFile::Attach(unsigned char* buffer, uint32_t size, uint32_t growBytes)
{
    Close();
    m_buffer = buffer;
    m_length = size;
    m_capacity = size;
    m_position = 0;
    m_growBytes = growBytes;
    m_ownsBuffer = growBytes != 0;
}

unsigned char* CMemFile::Detach()
{
    unsigned char* buffer = m_buffer;
    m_buffer = nullptr;
    m_length = m_capacity = m_position = 0;
    m_ownsBuffer = true;
    return buffer;
}

bool CMemFile::Open(const CString&, uint32_t, CFileException* error)
{
    // A memory file has no path to open.
    if (error != nullptr)
        *error = CFileException(CFileException::genericException, 0, GetFilePath());
    return false;
}

uint32_t CMemFile::Read(void* buffer, uint32_t count)
{
    if (m_position >= m_length || count == 0)
        return 0;
    const uint64_t available = m_length - m_position;
    const uint32_t taken = available < count ? static_cast<uint32_t>(available) : count;
    std::memcpy(buffer, m_buffer + m_position, taken);
    m_position += taken;
    return taken;
}

void CMemFile::Write(const void* buffer, uint32_t count)
{
    if (count == 0)
        return;
    const uint64_t end = m_position + count;
    if (end > m_capacity)
        growTo(end);
    if (m_position > m_length)
        std::memset(m_buffer + m_length, 0, m_position - m_length);
    std::memcpy(m_buffer + m_position, buffer, count);
    m_position = end;
    if (end > m_length)
        m_length = end;
}

uint64_t CMemFile::Seek(int64_t offset, uint32_t from)
{
    int64_t base = 0;
    if (from == current)
        base = static_cast<int64_t>(m_position);
    else if (from == end)
        base = static_cast<int64_t>(m_length);
    const int64_t target = base + offset;
    if (target < 0)
        throw CFileException(CFileException::badSeek, 0, GetFilePath());
    m_position = static_cast<uint64_t>(target);
    return m_position;
}

void CMemFile::Close()
{
    if (m_ownsBuffer)
        std::free(m_buffer);
    m_buffer = nullptr;
    m_length = m_capacity = m_position = 0;
}

void CMemFile::growTo(uint64_t size)
{
    if (m_growBytes == 0)
        throw CFileException(CFileException::diskFull, 0, GetFilePath());
    const uint64_t capacity = (size + m_growBytes - 1) / m_growBytes * m_growBytes;
    void* grown = std::realloc(m_ownsBuffer ? m_buffer : nullptr, capacity);
    if (grown == nullptr)
        throw std::bad_alloc();
    if (!m_ownsBuffer && m_length != 0)
        std::memcpy(grown, m_buffer, m_length);
    m_buffer = static_cast<unsigned char*>(grown);
    m_capacity = capacity;
    m_ownsBuffer = true;
}
