// Feeds arbitrary bytes to the array readers: the byte array, ZoArrayDynamicSize and ZoArray2D of
// every element type the library exports. The first byte picks the kind (see ZoFuzzSupport.h) and
// whether the array read into already holds elements. Only the library's exceptions may come out;
// an array that was read must write a form that reads back to the same form.
#include "ZoFuzzSupport.h"

#include "base/ZoArray.h"
#include "base/ZoArray2D.h"
#include "base/ZoArrayDynamicSize.h"
#include "base/ZoException.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

template <class Array>
std::vector<unsigned char> written(const Array& array)
{
    ZoStreamWriteBinaryMemory target;
    array.Serialize(target);
    return target.GetBuffer();
}

// What was read writes a form that a fresh array reads back to the very same form.
template <class Array>
void checkRoundTrip(const Array& array)
{
    const std::vector<unsigned char> first = written(array);
    ZoStreamReadBinaryMemory source(first);
    Array again;
    again.Serialize(source);
    require(source.GetRemaining() == 0);
    require(written(again) == first);
}

template <class Array>
void readInto(Array& array, const uint8_t* data, size_t size)
{
    ZoStreamReadBinaryMemory source(data, size);
    try {
        array.Serialize(source);
    } catch (const ZoException&) {
        // A failed read leaves an array that can still be written and destroyed.
        written(array);
        return;
    }
    checkRoundTrip(array);
}

template <class T>
void read2D(bool filled, const uint8_t* data, size_t size)
{
    // A borrowed block of 3 x 2 keeps its storage when the file has the same element count.
    T borrowed[6] = {};
    ZoArray2D<T> array;
    ZoArray2D<T> borrowing(3, 2, borrowed, 0);
    ZoArray2D<T> owning(2, 3);
    ZoArray2D<T>& target = !filled ? array : (size & 1) ? borrowing : owning;
    readInto(target, data, size);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const bool filled = (data[0] & 0x80) != 0;
    const uint8_t* bytes = data + 1;
    const size_t count = size - 1;
    switch ((data[0] & 0x7F) % zofuzz::eArrayKindCount) {
    case zofuzz::eArrayBytes: {
        ZoArray<unsigned char, 0> array(filled ? 5 : 0);
        readInto(array, bytes, count);
        break;
    }
    case zofuzz::eArrayDynamicSize: {
        ZoArrayDynamicSize array;
        if (filled)
            array = ZoArrayDynamicSize(4, 8, 3);
        readInto(array, bytes, count);
        break;
    }
    case zofuzz::eArray2DUnsignedChar: read2D<unsigned char>(filled, bytes, count); break;
    case zofuzz::eArray2DUnsignedShort: read2D<unsigned short>(filled, bytes, count); break;
    case zofuzz::eArray2DUnsigned32: read2D<uint32_t>(filled, bytes, count); break;
    default: read2D<float>(filled, bytes, count); break;
    }
    return 0;
}
