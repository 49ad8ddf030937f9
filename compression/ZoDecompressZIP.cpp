#include "compression/ZoDecompressZIP.h"

#include <zlib.h>

#include <new>

ZoDecompressZIP::ZoDecompressZIP() : m_outputBuffer(), m_outputSize(0)
{
}

ZoDecompressZIP::~ZoDecompressZIP()
{
    reset();
}

void ZoDecompressZIP::reset()
{
    m_outputBuffer.reset();
    m_outputSize = 0;
}

int ZoDecompressZIP::Decompress(const unsigned char* input, uint32_t size, uint32_t decompressedSize)
{
    // A zero size is refused before anything is freed: callers pass the size they stored, and a
    // missing one must not cost them the output they already hold.
    if (decompressedSize == 0)
        return 0;
    if (m_outputBuffer || m_outputSize != 0)
        reset();

    try {
        m_outputBuffer = std::shared_ptr<unsigned char[]>(new unsigned char[decompressedSize]);
    } catch (const std::bad_alloc&) {
        // The decoders report a failed allocation as this C string, and their callers catch it
        // as such; the compressors report theirs through their return value instead.
        throw "Can not allocate memory";
    }
    m_outputSize = decompressedSize;

    uLongf length = decompressedSize;
    if (::uncompress(m_outputBuffer.get(), &length, input, size) != Z_OK) {
        // Damaged data, or more data than decompressedSize (zlib's buffer error).
        reset();
        return 0;
    }
    m_outputSize = static_cast<uint32_t>(length);
    return 1;
}
