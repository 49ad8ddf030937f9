#pragma once

#include "base/ZoStreamWriteBinary.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <vector>

/// ZoStreamWriteBinaryMemory: the binary encoding written into a growable byte buffer in memory, for
/// serialising without files (tests, network messages, checksums). Writing never fails short of
/// memory exhaustion.
/// @ingroup streams
class ZO_API ZoStreamWriteBinaryMemory : public ZoStreamWriteBinary
{
    ZO_DECLARE_RTTI()

    ZoStreamWriteBinaryMemory() = default;

    /// Everything written so far.
    const std::vector<unsigned char>& GetBuffer() const { return m_buffer; }
    /// The first byte written; may be null while nothing is written. Invalidated by the next write.
    const unsigned char* GetData() const { return m_buffer.data(); }
    /// Number of bytes written.
    uint64_t GetSize() const { return m_buffer.size(); }
    /// Forgets what was written; the next write starts a new buffer.
    void Empty() { m_buffer.clear(); }

protected:
    ZoStreamWriteBinaryMemory& write(const void* buffer, uint64_t size) override;

private:
    std::vector<unsigned char> m_buffer;
};
