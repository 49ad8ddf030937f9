/// @class CMemFile
/// CMemFile: a file in memory with the behaviour of CFile (reads short at the end, writes extend it,
/// seeks past the end grow it on the next write). The buffer grows by `growBytes` at a time (0 means
/// it cannot grow). An attached buffer stays the caller's unless the file may grow it; Detach() hands
/// the buffer to the caller, who frees it with std::free.
/// @ingroup streams
#pragma once

#include "platform/CFile.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API CMemFile : public CFile
{
public:
    /// An empty memory file that grows its own buffer in steps of `growBytes`.
    explicit CMemFile(uint32_t growBytes = 1024);
    /// Works over the caller's buffer of `size` bytes, all of them readable. With growBytes 0 the
    /// buffer is never reallocated and stays the caller's; otherwise it must come from std::malloc,
    /// and the file owns it from now on.
    CMemFile(unsigned char* buffer, uint32_t size, uint32_t growBytes = 0);
    ~CMemFile() override;

    /// Drops the present buffer and works over the caller's, as the buffer constructor does.
    void Attach(unsigned char* buffer, uint32_t size, uint32_t growBytes = 0);
    /// Hands the buffer to the caller and leaves the file empty.
    unsigned char* Detach();

    bool Open(const CString& path, uint32_t openFlags, CFileException* error = nullptr) override;
    uint32_t Read(void* buffer, uint32_t count) override;
    void Write(const void* buffer, uint32_t count) override;
    uint64_t Seek(int64_t offset, uint32_t from) override;
    uint64_t GetLength() const override { return m_length; }
    uint64_t GetPosition() const override { return m_position; }
    void Flush() override {}
    void Close() override;
    void Abort() override { Close(); }
    bool IsOpen() const override { return true; }
    /// The bytes written so far, for inspection; valid until the next write.
    const unsigned char* GetBuffer() const { return m_buffer; }

private:
    void growTo(uint64_t size);

    unsigned char* m_buffer;
    uint64_t m_length;
    uint64_t m_capacity;
    uint64_t m_position;
    uint32_t m_growBytes;
    bool m_ownsBuffer;
};
