#pragma once

#include "base/ZoStreamReadBinary.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <vector>

/// ZoStreamReadBinaryMemory: the binary encoding read from a copy of a byte buffer. Reading past the
/// end throws the same exceptions as a file stream that meets its end.
/// @ingroup streams
class ZO_API ZoStreamReadBinaryMemory : public ZoStreamReadBinary
{
    ZO_DECLARE_RTTI()

    /// Reads from a copy of the `size` bytes at `data` (which may be null when `size` is 0).
    ZoStreamReadBinaryMemory(const void* data, uint64_t size);
    /// Reads from `data`, taken over.
    explicit ZoStreamReadBinaryMemory(std::vector<unsigned char> data);

    /// Bytes read so far.
    uint64_t GetPosition() const { return m_position; }
    /// Bytes left to read.
    uint64_t GetRemaining() const { return m_data.size() - m_position; }
    /// Goes back to the first byte.
    void Rewind() { m_position = 0; }

protected:
    uint64_t read(void* buffer, uint64_t size) override;

private:
    std::vector<unsigned char> m_data;
    uint64_t m_position = 0;
};
