/// @class ZoCompressZIP
/// ZoCompressZIP: compresses one whole buffer into a zlib stream (zlib's compress()).
///
/// Each call compresses one input into an output buffer that the object owns and exposes until the
/// next call or its destruction. The stream carries no size of the original data: the caller keeps
/// it, since ZoDecompressZIP must be told it. The compressed archive uses this class.
///
/// A copy shares its source's output buffer, as a member-wise copy would; the buffer is freed when
/// the last object holding it lets go, so copies are safe, though not something to rely on.
/// @ingroup compression
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>

class ZO_API ZoCompressZIP
{
public:
    ZoCompressZIP();
    virtual ~ZoCompressZIP();

    /// Compresses `size` bytes (input may be null when size is 0). Returns 1 on success and 0 when
    /// the output buffer cannot be allocated or zlib fails; after a failure the object is empty.
    /// Never throws.
    int Compress(const unsigned char* input, uint32_t size);

    /// The last successful call's stream, or null when the object is empty.
    const unsigned char* GetOutputBuffer() const { return m_outputBuffer.get(); }
    /// Bytes in GetOutputBuffer(); 0 when the object is empty.
    uint32_t GetOutputSize() const { return m_outputSize; }

protected:
    /// Frees the output buffer (this object's share of it) and sets the size to 0.
    void reset();

private:
    std::shared_ptr<unsigned char[]> m_outputBuffer;
    uint32_t m_outputSize;
};
