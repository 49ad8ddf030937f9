// Feeds arbitrary bytes to the readers of the library's small serialized objects: attribute
// parameters, colours and colour tables, class names, flags and indexes, the algorithm frame's
// settings, and the shortest-path recording (a whole graph with its start and end, and a path).
// The first byte picks the kind (see ZoFuzzSupport.h). Only the library's exceptions may come
// out; whatever was read must write a form that reads back to the same form.
#include "ZoFuzzSupport.h"

#include "base/ZoAttributeParameter.h"
#include "base/ZoClassFlags.h"
#include "base/ZoClassIndex.h"
#include "base/ZoClassName.h"
#include "base/ZoColor.h"
#include "base/ZoColorTable.h"
#include "base/ZoException.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteBinaryMemory.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

// The recording hooks of the shortest-path search, opened up: they are how a graph comes in from
// a file.
class RecordedShortestPath : public ZoMpGraphToShortestPath
{
public:
    void Record(ZoStreamReadBinary& stream, bool input)
    {
        if (input)
            serializeUnitTestInput(stream);
        else
            serializeUnitTestOutput(stream);
    }
    void Record(ZoStreamWriteBinary& stream, bool input) const
    {
        if (input)
            serializeUnitTestInput(stream);
        else
            serializeUnitTestOutput(stream);
    }
};

// Reads `object` from the bytes; on success writes it, reads that into `fresh` and requires the
// same form again. `read(object, stream)` and `write(object, stream)` adapt the kinds' interfaces.
template <class Object, class Read, class Write>
void check(Object& object, Object& fresh, const uint8_t* data, size_t size, Read read, Write write)
{
    ZoStreamReadBinaryMemory source(data, size);
    try {
        read(object, source);
    } catch (const ZoException&) {
        return;
    }
    ZoStreamWriteBinaryMemory first;
    write(object, first);
    ZoStreamReadBinaryMemory again(first.GetBuffer());
    read(fresh, again);
    require(again.GetRemaining() == 0);
    ZoStreamWriteBinaryMemory second;
    write(fresh, second);
    require(second.GetBuffer() == first.GetBuffer());
}

template <class Object>
void checkPlain(const uint8_t* data, size_t size)
{
    Object object, fresh;
    check(object, fresh, data, size, [](Object& o, ZoStreamReadBinary& s) { o.Serialize(s); },
          [](const Object& o, ZoStreamWriteBinary& s) { o.Serialize(s); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    if (size < 1)
        return 0;
    const uint8_t* bytes = data + 1;
    const size_t count = size - 1;
    switch (data[0] % zofuzz::eObjectKindCount) {
    case zofuzz::eObjectAttributeParameter: checkPlain<ZoAttributeParameter>(bytes, count); break;
    case zofuzz::eObjectColor: checkPlain<ZoColor>(bytes, count); break;
    case zofuzz::eObjectColorTable: {
        ZoColorTable table(3), fresh(1);
        check(table, fresh, bytes, count, [](ZoColorTable& o, ZoStreamReadBinary& s) { o.Serialize(s); },
              [](const ZoColorTable& o, ZoStreamWriteBinary& s) { o.Serialize(s); });
        break;
    }
    case zofuzz::eObjectClassName: checkPlain<ZoClassName>(bytes, count); break;
    case zofuzz::eObjectClassFlags: checkPlain<ZoClassFlags>(bytes, count); break;
    case zofuzz::eObjectClassIndex: checkPlain<ZoClassIndex>(bytes, count); break;
    case zofuzz::eObjectAlgorithmSettings: {
        RecordedShortestPath object, fresh;
        check(object, fresh, bytes, count, [](RecordedShortestPath& o, ZoStreamReadBinary& s) { o.ZoAlgorithm::Serialize(s); },
              [](const RecordedShortestPath& o, ZoStreamWriteBinary& s) { o.ZoAlgorithm::Serialize(s); });
        break;
    }
    default: {
        const bool input = data[0] % zofuzz::eObjectKindCount == zofuzz::eObjectGraphInput;
        RecordedShortestPath object, fresh;
        check(object, fresh, bytes, count, [input](RecordedShortestPath& o, ZoStreamReadBinary& s) { o.Record(s, input); },
              [input](const RecordedShortestPath& o, ZoStreamWriteBinary& s) { o.Record(s, input); });
        break;
    }
    }
    return 0;
}
