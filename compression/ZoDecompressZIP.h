/// @class ZoDecompressZIP
/// ZoDecompressZIP: decompresses one whole zlib stream (zlib's uncompress()) of known size.
///
/// The stream carries no size of its own, so the caller passes the decompressed size it kept when
/// compressing; that many bytes are allocated before decoding. The output buffer is owned by the
/// object and exposed until the next call or its destruction. Damaged or truncated data, and data
/// that decodes to more than the size given, fail with 0 and leave the object empty.
///
/// A copy shares its source's output buffer, as a member-wise copy would; the buffer is freed when
/// the last object holding it lets go, so copies are safe, though not something to rely on.
/// @ingroup compression
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>

class ZO_API ZoDecompressZIP
{
public:
    ZoDecompressZIP();
    virtual ~ZoDecompressZIP();

    /// Decompresses `size` bytes of zlib stream into a buffer of `decompressedSize` bytes.
    /// Returns 1 on success (GetOutputSize() is then the length produced, at most decompressedSize)
    /// and 0 on failure, after which the object is empty. A decompressedSize of 0 returns 0 at once
    /// and leaves an earlier output in place.
    /// Throws: the C string "Can not allocate memory" (a const char*) when the buffer of
    /// decompressedSize bytes cannot be allocated.
    int Decompress(const unsigned char* input, uint32_t size, uint32_t decompressedSize);

    /// The last successful call's data, or null when the object is empty.
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
