// Feeds arbitrary bytes to ZoDecompressZIP with arbitrary declared sizes, and checks that what
// ZoCompressZIP writes comes back.
//
// Input layout: four bytes give the decompressed size the caller declares (taken modulo 16 MB, so
// that the allocation it asks for stays within the fuzzer's limits; 0 included), the rest is the
// stream. Whatever the bytes, Decompress must return 0 with an empty object (or, for a declared 0,
// keep the earlier output), or 1 with at most the declared size, and never touch memory it does not
// own. The stream's own bytes must then survive a round trip under the exact size and any larger
// one, and fail under one byte less.
#include "ZoFuzzSupport.h"

#include "compression/ZoCompressZIP.h"
#include "compression/ZoDecompressZIP.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 4)
        return 0;
    const uint32_t declared = (uint32_t(data[0]) | uint32_t(data[1]) << 8 | uint32_t(data[2]) << 16 |
                               uint32_t(data[3]) << 24) % (16u << 20);
    const unsigned char* stream = data + 4;
    const uint32_t streamSize = static_cast<uint32_t>(size - 4);

    ZoDecompressZIP decompressor;
    static const unsigned char kEarlier[] = {0x78, 0x9C, 0x63, 0x00, 0x00, 0x00, 0x01, 0x00, 0x01};
    require(decompressor.Decompress(kEarlier, sizeof kEarlier, 1) == 1);
    const unsigned char* earlier = decompressor.GetOutputBuffer();
    if (decompressor.Decompress(stream, streamSize, declared) == 1) {
        require(decompressor.GetOutputSize() <= declared && decompressor.GetOutputBuffer() != nullptr);
    } else if (declared == 0) {
        require(decompressor.GetOutputBuffer() == earlier && decompressor.GetOutputSize() == 1);
    } else {
        require(decompressor.GetOutputSize() == 0 && decompressor.GetOutputBuffer() == nullptr);
    }

    ZoCompressZIP compressor;
    require(compressor.Compress(stream, streamSize) == 1);
    const uint32_t roomy = streamSize + 1 + declared % 4096;
    for (uint32_t room : {streamSize, roomy}) {
        if (room == 0)
            continue;
        require(decompressor.Decompress(compressor.GetOutputBuffer(), compressor.GetOutputSize(), room) == 1);
        require(decompressor.GetOutputSize() == streamSize);
        require(std::memcmp(decompressor.GetOutputBuffer(), stream, streamSize) == 0);
    }
    if (streamSize > 1)
        require(decompressor.Decompress(compressor.GetOutputBuffer(), compressor.GetOutputSize(), streamSize - 1) == 0);
    return 0;
}
