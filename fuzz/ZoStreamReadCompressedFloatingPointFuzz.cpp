// Feeds arbitrary bytes to ZoStreamReadCompressedFloatingPoint, and checks that floats written by
// ZoStreamWriteCompressedFloatingPoint come back bit for bit.
//
// Input layout: the first byte picks the quantization (lossless, or a uniform grid) and whether
// the rest is taken as a whole stream or behind a valid version record and block header; reading
// then asks for values until the data runs out. Afterwards the bytes, read as floats, are written
// with the previous float as prediction and must read back exactly.
#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "compression/ZoFloatingPointQuantizationUniform.h"
#include "compression/ZoStreamReadCompressedFloatingPoint.h"
#include "compression/ZoStreamWriteCompressedFloatingPoint.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    std::vector<unsigned char> stream;
    if (data[0] & 1) {
        const uint32_t count = static_cast<uint32_t>(size - 1);
        stream.assign(12, 0);
        for (int i = 0; i < 4; ++i)
            stream[8 + i] = static_cast<unsigned char>(count >> (8 * i));
    }
    stream.insert(stream.end(), data + 1, data + size);
    try {
        ZoStreamReadBinaryMemory source(stream);
        ZoFloatingPointQuantizationUniform grid(-1000.0f, 1000.0f, 100.0f);
        std::unique_ptr<ZoStreamReadCompressedFloatingPoint> reader(
            (data[0] & 2) ? new ZoStreamReadCompressedFloatingPoint(source, grid, 0)
                          : new ZoStreamReadCompressedFloatingPoint(source));
        float previous = 0;
        for (int i = 0; i < 20000; ++i)
            previous = reader->ReadValue(previous);
    } catch (const ZoException&) {
    }

    std::vector<uint32_t> patterns((size - 1) / 4);
    if (!patterns.empty())
        std::memcpy(patterns.data(), data + 1, patterns.size() * 4);
    ZoStreamWriteBinaryMemory target;
    {
        ZoStreamWriteCompressedFloatingPoint writer(target, 0);
        float previous = 0;
        for (uint32_t bits : patterns) {
            float value;
            std::memcpy(&value, &bits, 4);
            writer.WriteValue(value, previous);
            previous = value;
        }
    }
    ZoStreamReadBinaryMemory source(target.GetBuffer());
    ZoStreamReadCompressedFloatingPoint reader(source);
    float previous = 0;
    for (uint32_t bits : patterns) {
        previous = reader.ReadValue(previous);
        uint32_t got;
        std::memcpy(&got, &previous, 4);
        if (got != bits)
            std::abort();
    }
    return 0;
}
