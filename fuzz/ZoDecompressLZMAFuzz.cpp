// Feeds arbitrary bytes to ZoDecompressLZMA (and so to the LZMA codec library's decoder).
//
// A random header almost never passes the size checks, which would keep the fuzzer in front of the
// decoder. So the first byte picks a mode: odd, the rest is the whole input, header included (the
// header checks are fuzzed); even, the next two bytes give a size up to 64 KB and the rest is the
// payload behind a sound header of that size (the decoder is fuzzed). Either way Decompress must
// return 0, or 1 with exactly the header's size, and never touch memory it does not own.
//
// Run it from the folder that holds libMepCompress.so.
#include "compression/ZoDecompressLZMA.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

ZoDecompressLZMA& decompressor()
{
    // One object for the whole run: loading the library for every input would dominate the time.
    static ZoDecompressLZMA* s_decompressor = new ZoDecompressLZMA();
    return *s_decompressor;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    std::vector<unsigned char> input;
    uint64_t expected = 0;
    if (data[0] & 1) {
        input.assign(data + 1, data + size);
        if (input.size() >= 13)
            for (int i = 0; i < 8; ++i)
                expected |= static_cast<uint64_t>(input[5 + i]) << (8 * i);
    } else {
        if (size < 3)
            return 0;
        expected = static_cast<uint64_t>(data[1]) << 8 | data[2];
        // lc=3 lp=0 pb=2, 64 KB dictionary, then the size.
        input = {0x5D, 0x00, 0x00, 0x01, 0x00};
        for (int i = 0; i < 8; ++i)
            input.push_back(static_cast<unsigned char>(expected >> (8 * i)));
        input.insert(input.end(), data + 3, data + size);
    }
    // An exact-size copy, so a read past the end is caught.
    const std::vector<unsigned char> exact(input);
    ZoDecompressLZMA& codec = decompressor();
    const unsigned char* previousBuffer = codec.GetOutputBuffer();
    const uint64_t previousSize = codec.GetOutputSize();
    if (codec.Decompress(exact.data(), static_cast<uint32_t>(exact.size())) == 1) {
        if (codec.GetOutputSize() != expected || codec.GetOutputBuffer() == nullptr)
            std::abort();
    } else {
        // A refused size query keeps the earlier output; a failed decode keeps a size of 0.
        const bool kept = codec.GetOutputBuffer() == previousBuffer && codec.GetOutputSize() == previousSize;
        if (!kept && codec.GetOutputSize() != 0)
            std::abort();
    }
    return 0;
}
