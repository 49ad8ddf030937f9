// Feeds arbitrary bytes to ZoDecompressRangeCoder, and checks that what ZoCompressRangeCoder writes
// comes back.
//
// Input layout: the first byte picks the alphabet of the own model and whether the rest is taken
// as a whole stream (header included) or as a block's bytes behind a valid header, so that the
// fuzzer reaches the decoding itself. A fixed script of symbols, raw bits and raw bytes then runs
// until the data runs out. Whatever the bytes, the decoder must end in the library's exception or
// finish, never read outside its block or hang.
#include "ZoFuzzSupport.h"

#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoCompressRangeCoder.h"
#include "compression/ZoDecompressRangeCoder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

using zofuzz::kRangeCoderAlphabets;
uint32_t kindOf(uint32_t step) { return zofuzz::rangeCoderKind(step); }
uint32_t widthOf(uint32_t step) { return zofuzz::rangeCoderWidth(step); }

void decode(const std::vector<unsigned char>& stream, uint32_t symbols)
{
    ZoStreamReadBinaryMemory source(stream);
    ZoDecompressRangeCoder decoder(source, symbols);
    ZoProbabilityModelQuasiStatic side(7, 12, 500);
    for (uint32_t step = 0; step < 20000; ++step) {
        unsigned char bytes[5];
        uint32_t symbol = 0;
        switch (kindOf(step)) {
        case 0: case 1: case 2: decoder >> symbol; break;
        case 3: if (decoder.ReadSymbol(side) >= 7) std::abort(); break;
        case 4: case 5: decoder.ReadRawBits(widthOf(step)); break;
        case 6: decoder.ReadRaw(bytes, sizeof bytes); break;
        default: { double value; decoder >> value; break; }
        }
        if (symbol >= symbols)
            std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const uint32_t symbols = kRangeCoderAlphabets[data[0] & 7];
    std::vector<unsigned char> stream;
    if (data[0] & 8) {
        const uint32_t count = static_cast<uint32_t>(size - 1);
        stream.assign(8, 0);
        for (int i = 0; i < 4; ++i)
            stream[4 + i] = static_cast<unsigned char>(count >> (8 * i));
    }
    stream.insert(stream.end(), data + 1, data + size);
    try {
        decode(stream, symbols);
    } catch (const ZoException&) {
    }

    // The bytes as symbols and as raw bits must survive a round trip.
    ZoStreamWriteBinaryMemory target;
    {
        ZoCompressRangeCoder coder(target, symbols, 0);
        for (size_t i = 1; i < size; ++i) {
            coder << data[i] % symbols;
            coder.WriteRawBits(data[i] * 0x01010101u, widthOf(static_cast<uint32_t>(i)));
        }
    }
    ZoStreamReadBinaryMemory source(target.GetBuffer());
    ZoDecompressRangeCoder decoder(source, symbols);
    for (size_t i = 1; i < size; ++i) {
        uint32_t symbol = 0;
        decoder >> symbol;
        const uint32_t width = widthOf(static_cast<uint32_t>(i));
        const uint32_t raw = decoder.ReadRawBits(width);
        if (symbol != data[i] % symbols || raw != ((data[i] * 0x01010101u) & (width == 32 ? ~0u : (1u << width) - 1)))
            std::abort();
    }
    return 0;
}
