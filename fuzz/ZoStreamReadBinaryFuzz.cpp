// Feeds arbitrary bytes to the binary stream reader: every scalar width and signedness, strings
// (every length form), raw buffers and version records, in an order chosen by the input itself.
// Only the library's stream exceptions may come out, and a failed read must leave the stream where
// it stopped (never past the end of the data).
//
// Afterwards the input is taken as a script of values: written with the binary writer, they must
// read back identical through the same operators.
#include "ZoFuzzSupport.h"

#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace {

const int kOperations = 16;

// Reads one value of kind `kind` (with `extra` as the version limit or buffer size); the value
// read is folded into `sum` so that nothing is optimised away.
void readOne(ZoStreamReadBinary& in, int kind, uint32_t extra, uint64_t& sum, CString& text)
{
    switch (kind) {
    case 0: in >> text; sum += text.GetLength(); break;
    case 1: { double v; in >> v; sum += v == v; break; }
    case 2: { float v; in >> v; sum += v == v; break; }
    case 3: { long long v; in >> v; sum += v; break; }
    case 4: { unsigned long long v; in >> v; sum += v; break; }
    case 5: { long v; in >> v; sum += v; break; }
    case 6: { unsigned long v; in >> v; sum += v; break; }
    case 7: { int v; in >> v; sum += v; break; }
    case 8: { unsigned int v; in >> v; sum += v; break; }
    case 9: { short v; in >> v; sum += v; break; }
    case 10: { unsigned short v; in >> v; sum += v; break; }
    case 11: { signed char v; in >> v; sum += v; break; }
    case 12: { unsigned char v; in >> v; sum += v; break; }
    case 13: { bool v; in >> v; sum += v; break; }
    case 14: { unsigned char buffer[64]; sum += in.ReadBuffer(buffer, extra % sizeof buffer); break; }
    default: sum += in.ReadAndCompareVersion(extra); break;
    }
}

void writeOne(ZoStreamWriteBinary& out, int kind, uint64_t bits, const CString& text)
{
    switch (kind) {
    case 0: out << text; break;
    case 1: { double v; std::memcpy(&v, &bits, 8); out << v; break; }
    case 2: { float v; uint32_t b = static_cast<uint32_t>(bits); std::memcpy(&v, &b, 4); out << v; break; }
    case 3: out << static_cast<long long>(bits); break;
    case 4: out << static_cast<unsigned long long>(bits); break;
    case 5: out << static_cast<long>(bits); break;
    case 6: out << static_cast<unsigned long>(bits); break;
    case 7: out << static_cast<int>(bits); break;
    case 8: out << static_cast<unsigned int>(bits); break;
    case 9: out << static_cast<short>(bits); break;
    case 10: out << static_cast<unsigned short>(bits); break;
    case 11: out << static_cast<signed char>(bits); break;
    case 12: out << static_cast<unsigned char>(bits); break;
    case 13: out << ((bits & 1) != 0); break;
    default: out.WriteVersion(static_cast<unsigned int>(bits & 7)); break;
    }
}

// The value writeOne wrote, as readBack gives it (the bits the type keeps).
template <class T>
uint64_t bitsOf(T value)
{
    uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof value);
    return bits;
}

uint64_t readBack(ZoStreamReadBinary& in, int kind, CString& text)
{
    switch (kind) {
    case 0: in >> text; return 0;
    case 1: { double v; in >> v; return bitsOf(v); }
    case 2: { float v; in >> v; return bitsOf(v); }
    case 3: { long long v; in >> v; return bitsOf(v); }
    case 4: { unsigned long long v; in >> v; return bitsOf(v); }
    case 5: { long v; in >> v; return bitsOf(v); }
    case 6: { unsigned long v; in >> v; return bitsOf(v); }
    case 7: { int v; in >> v; return bitsOf(v); }
    case 8: { unsigned int v; in >> v; return bitsOf(v); }
    case 9: { short v; in >> v; return bitsOf(v); }
    case 10: { unsigned short v; in >> v; return bitsOf(v); }
    case 11: { signed char v; in >> v; return bitsOf(v); }
    case 12: { unsigned char v; in >> v; return bitsOf(v); }
    case 13: { bool v; in >> v; return v ? 1 : 0; }
    default: return in.ReadAndCompareVersion(7);
    }
}

uint64_t keptBits(int kind, uint64_t bits)
{
    static const int widths[] = {0, 8, 4, 8, 8, sizeof(long), sizeof(long), 4, 4, 2, 2, 1, 1, 1, 1};
    if (kind == 13)
        return bits & 1;
    if (kind >= 14)
        return bits & 7;
    return widths[kind] == 8 ? bits : bits & ((uint64_t(1) << (8 * widths[kind])) - 1);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    // The first byte steers: the operations come from it and from the bytes the reads leave.
    ZoStreamReadBinaryMemory in(data + 1, size - 1);
    uint64_t sum = 0;
    uint32_t script = data[0];
    CString text;
    for (size_t step = 0; step < size; ++step) {
        script = zofuzz::nextBinaryScript(script);
        const int kind = zofuzz::binaryScriptKind(script);
        const uint64_t before = in.GetPosition();
        try {
            readOne(in, kind, zofuzz::binaryScriptExtra(script), sum, text);
        } catch (const ZoExceptionStream&) {
            require(in.GetPosition() >= before && in.GetPosition() <= size - 1);
            break;
        } catch (const ZoExceptionWrongFileVersion&) {
        }
        require(in.GetPosition() <= size - 1);
    }

    // The round trip: each step takes a kind and eight bytes of value (strings take a length byte
    // and that many UTF-16 units from the input).
    ZoStreamWriteBinaryMemory out;
    struct Written { int kind; uint64_t bits; CString text; };
    std::vector<Written> script2;
    for (size_t i = 1; i + 9 <= size && script2.size() < 256; i += 9) {
        Written w{data[i] % (kOperations - 1) == 14 ? 15 : data[i] % (kOperations - 1), 0, CString()};
        std::memcpy(&w.bits, data + i + 1, 8);
        if (w.kind == 0) {
            // Both length forms the reader reads back: one byte, and two bytes from 255 up to the
            // longest two-byte length. From 65,534 units on, the writer's 32-bit length is read as
            // 16 bits, an asymmetry older readers have always had, so longer strings are left out.
            const size_t length = ((w.bits >> 8) & 0xFF) == 0xAB ? 65533 - (w.bits & 3) : w.bits & 0x1FF;
            std::u16string units(length, u'\0');
            for (size_t k = 0; k < units.size(); ++k)
                units[k] = static_cast<char16_t>(w.bits * (k + 1));
            w.text = CString(units);
        }
        writeOne(out, w.kind, w.bits, w.text);
        script2.push_back(w);
    }
    ZoStreamReadBinaryMemory back(out.GetBuffer());
    for (const Written& w : script2) {
        CString got;
        const uint64_t bits = readBack(back, w.kind, got);
        require(w.kind == 0 ? got == w.text : bits == keptBits(w.kind, w.bits));
    }
    require(back.GetRemaining() == 0);
    (void)sum;
    return 0;
}
