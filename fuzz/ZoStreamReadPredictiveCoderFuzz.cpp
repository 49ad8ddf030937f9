// Feeds arbitrary bytes to ZoStreamReadPredictiveCoder, and checks that what
// ZoStreamWritePredictiveCoder codes comes back.
//
// Input layout: the first byte gives the value width (1 + its low five bits) and, in bit 5, whether
// the rest is taken as a whole stream (version record and block header included) or as a block's
// bytes behind a valid version record and header, so that the fuzzer reaches the decoding itself.
// Values are then read, each against the one before as its prediction, until the data runs out;
// only the library's exceptions may come out. Afterwards the input's bytes, as n-bit values with the previous
// value as the prediction, must survive a round trip.
#include "ZoFuzzSupport.h"

#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoStreamReadPredictiveCoder.h"
#include "compression/ZoStreamWritePredictiveCoder.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

uint32_t maskOf(uint32_t n) { return n == 32 ? 0xFFFFFFFFu : (1u << n) - 1; }

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const uint32_t n = 1 + (data[0] & 31);
    std::vector<unsigned char> stream;
    if (data[0] & 32) {
        // Version record 0, then the block header: 4 bytes the reader skips and the block's length.
        const uint32_t count = static_cast<uint32_t>(size - 1);
        stream.assign(12, 0);
        for (int i = 0; i < 4; ++i)
            stream[8 + i] = static_cast<unsigned char>(count >> (8 * i));
    }
    stream.insert(stream.end(), data + 1, data + size);
    try {
        ZoStreamReadBinaryMemory source(stream);
        ZoStreamReadPredictiveCoder reader(source, n);
        // Damaged data decodes as other values, which may leave the n bits: only the way there is
        // checked.
        uint32_t prediction = 0;
        for (size_t i = 0; i < 20000; ++i)
            prediction = reader.ReadValue(prediction);
    } catch (const ZoException&) {
    }

    std::vector<uint32_t> values;
    for (size_t i = 1; i + 4 <= size; i += 4)
        values.push_back((uint32_t(data[i]) | uint32_t(data[i + 1]) << 8 | uint32_t(data[i + 2]) << 16 |
                          uint32_t(data[i + 3]) << 24) & maskOf(n));
    ZoStreamWriteBinaryMemory target;
    {
        ZoStreamWritePredictiveCoder writer(target, n, 64);
        uint32_t previous = 0;
        for (uint32_t value : values) {
            writer.WriteValue(value, previous);
            previous = value;
        }
    }
    ZoStreamReadBinaryMemory source(target.GetBuffer());
    ZoStreamReadPredictiveCoder reader(source, n);
    uint32_t previous = 0;
    for (uint32_t value : values) {
        previous = reader.ReadValue(previous);
        require(previous == value);
    }
    return 0;
}
