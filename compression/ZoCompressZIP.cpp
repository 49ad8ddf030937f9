#include "compression/ZoCompressZIP.h"

#include <zlib.h>

#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace {

// An empty pointer when the memory cannot be had; Compress reports that as 0, never by throwing.
std::shared_ptr<unsigned char[]> allocateOutput(uint64_t size)
{
    try {
        return std::shared_ptr<unsigned char[]>(new unsigned char[size]);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

} // namespace

ZoCompressZIP::ZoCompressZIP() : m_outputBuffer(), m_outputSize(0)
{
}

ZoCompressZIP::~ZoCompressZIP()
{
    reset();
}

void ZoCompressZIP::reset()
{
    m_outputBuffer.reset();
    m_outputSize = 0;
}

int ZoCompressZIP::Compress(const unsigned char* input, uint32_t size)
{
    if (m_outputBuffer || m_outputSize != 0)
        reset();

    // 12 bytes plus the integer part of 1.1 times the input: comfortably above deflate's worst
    // case (stored blocks add 5 bytes per 16 KB, the stream 6 bytes of header and check), so
    // compress() never runs short. Computed in double precision as 12 - trunc(size * -1.1), which
    // gives the same integer as 12 + trunc(1.1 * size).
    const double wanted = 12.0 - std::trunc(static_cast<double>(size) * -1.1);
    // uLongf is 32 bits wide on Windows; 1.1 times a 4 GB input does not fit there.
    const double largest = static_cast<double>(std::numeric_limits<uLongf>::max());
    uLongf capacity = wanted < largest ? static_cast<uLongf>(wanted) : std::numeric_limits<uLongf>::max();

    std::shared_ptr<unsigned char[]> output = allocateOutput(capacity);
    if (!output)
        return 0;
    if (::compress(output.get(), &capacity, input, size) != Z_OK || capacity > std::numeric_limits<uint32_t>::max())
        return 0;
    m_outputBuffer = std::move(output);
    m_outputSize = static_cast<uint32_t>(capacity);
    return 1;
}
