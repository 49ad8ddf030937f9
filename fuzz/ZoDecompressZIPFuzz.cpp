// Feeds arbitrary bytes to ZoDecompressZIP, and checks that what ZoCompressZIP writes comes back.
//
// Input layout: two bytes choose the decompressed size the caller claims (at most 1 MB, so the
// allocation stays small), the rest is the stream. Whatever the bytes, Decompress must return 0
// with an empty object or 1 with at most the claimed size, and never touch memory it does not own.
#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 2)
        return 0;
    const uint32_t claimed = 1 + ((static_cast<uint32_t>(data[0]) << 8 | data[1]) << 4);
    const unsigned char* stream = data + 2;
    const uint32_t streamSize = static_cast<uint32_t>(size - 2);

    ZoDecompressZIP decompressor;
    if (decompressor.Decompress(stream, streamSize, claimed) == 1) {
        if (decompressor.GetOutputSize() > claimed || decompressor.GetOutputBuffer() == nullptr)
            std::abort();
    } else if (decompressor.GetOutputSize() != 0 || decompressor.GetOutputBuffer() != nullptr) {
        std::abort();
    }

    // The same bytes as data: they must survive a round trip, and one byte less room must fail.
    ZoCompressZIP compressor;
    if (compressor.Compress(stream, streamSize) != 1)
        std::abort();
    if (decompressor.Decompress(compressor.GetOutputBuffer(), compressor.GetOutputSize(), streamSize + 1) != 1 ||
        decompressor.GetOutputSize() != streamSize ||
        (streamSize > 0 && std::memcmp(decompressor.GetOutputBuffer(), stream, streamSize) != 0))
        std::abort();
    if (streamSize > 1 && decompressor.Decompress(compressor.GetOutputBuffer(), compressor.GetOutputSize(),
                                                  streamSize - 1) != 0)
        std::abort();
    return 0;
}
