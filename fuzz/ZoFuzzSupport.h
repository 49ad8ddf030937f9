// What the fuzz targets and the seed generator (ZoFuzzSeeds) share: the layout of each target's
// input — a selector byte in front of the bytes a reader gets — so that the seeds the library's own
// writers make land on the reader they were written for.
#pragma once

#include "base/ZoStreamWriteBinaryMemory.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace zofuzz {

// The kinds ZoArraySerializeFuzz reads, picked by the first byte modulo their number. Bit 7 of that
// byte makes the target read into an array that already holds elements (a 2D array borrowing a block
// or owning one, a byte array with storage), which takes the other branches of the readers.
enum EArrayKind : uint8_t
{
    eArrayBytes = 0,
    eArrayDynamicSize = 1,
    eArray2DUnsignedChar = 2,
    eArray2DUnsignedShort = 3,
    eArray2DUnsigned32 = 4,
    eArray2DFloat = 5,
    eArrayKindCount = 6,
};

// The kinds ZoObjectSerializeFuzz reads.
enum EObjectKind : uint8_t
{
    eObjectAttributeParameter = 0,
    eObjectColor = 1,
    eObjectColorTable = 2,
    eObjectClassName = 3,
    eObjectClassFlags = 4,
    eObjectClassIndex = 5,
    eObjectAlgorithmSettings = 6,
    eObjectGraphInput = 7,
    eObjectGraphOutput = 8,
    eObjectKindCount = 9,
};

// ZoStreamReadBinaryFuzz's script: the operation of each step follows from the first input byte
// through this generator (0 .. 13 the scalar and string operators, 14 a raw buffer, 15 a version
// record), so that a seed written in the same order reads through to its end.
inline uint32_t nextBinaryScript(uint32_t script) { return script * 1103515245u + 12345u; }
inline int binaryScriptKind(uint32_t script) { return static_cast<int>((script >> 16) % 16); }
inline uint32_t binaryScriptExtra(uint32_t script) { return (script >> 8) & 0xFF; }

// ZoDecompressRangeCoderFuzz's script: step i's kind (0..2 an own-model symbol, 3 a symbol of a
// 7-symbol side model, 4..5 raw bits, 6 five raw bytes, 7 a double) and raw-bit width follow from
// i alone; the first input byte picks the alphabet of the own model.
const uint32_t kRangeCoderAlphabets[] = {2, 3, 16, 65, 256, 1000, 16384, 5};
inline uint32_t rangeCoderKind(uint32_t step) { return (step * 2654435761u) >> 29; }
inline uint32_t rangeCoderWidth(uint32_t step) { return 1 + (step * 40503u) % 32; }

// Selector byte followed by a stream's bytes.
inline std::vector<unsigned char> withSelector(uint8_t selector, const std::vector<unsigned char>& bytes)
{
    std::vector<unsigned char> input(1, selector);
    input.insert(input.end(), bytes.begin(), bytes.end());
    return input;
}

// The targets' own checks: a failure is a finding, so it stops the run where libFuzzer sees it,
// saying which check it was.
inline void requireAt(bool condition, const char* check, const char* file, int line)
{
    if (condition)
        return;
    std::fprintf(stderr, "%s:%d: check failed: %s\n", file, line, check);
    std::abort();
}

} // namespace zofuzz

#define require(condition) zofuzz::requireAt((condition), #condition, __FILE__, __LINE__)
