// A first tour of Zo: register a class with the type registry, create and clone it by name, hold it
// in smart pointers, print the report of a caught exception; then the typical path through the
// library: write a two-dimensional float array through a compressed file stream, read it back and
// compare; build a small graph, find its shortest path and write its Graphviz file.
#include "base/ZoArray2D.h"
#include "base/ZoClassRTTI.h"
#include "base/ZoClassSerialization.h"
#include "base/ZoGraph.h"
#include "base/ZoMpGraphToShortestPath.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoRTTIRegistration.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteASCIIFile.h"
#include "base/ZoStreamWriteBinaryFile.h"

#include <cstdio>
#include <cstring>

namespace {

class Document : public ZoReferenceCountedClass<Document>, public ZoClassRTTI
{
    ZO_DECLARE_RTTI()
    CString title = u"untitled";
};

class Drawing : public Document
{
    ZO_DECLARE_RTTI()
};

} // namespace

ZO_IMPLEMENT_RTTI(Document, nullptr, nullptr);
ZO_IMPLEMENT_RTTI_BASE(Drawing, Document, &ZoRTTIFactory<Drawing>::Create, &ZoRTTIFactory<Drawing>::Clone);

static void print(const CString& text)
{
    std::fputs(text.ToUtf8().c_str(), stdout);
}

int main()
{
    const ZoRTTIRegistration::Registration* drawing = ZoRTTIRegistration::GetInstance().Lookup(u"Drawing");
    if (drawing == nullptr || drawing->create == nullptr) {
        print(u"Drawing is not registered\n");
        return 1;
    }

    auto* made = static_cast<Drawing*>(drawing->create());
    made->title = u"floor plan";
    // A copy of a counted object starts with its source's count, so clone before any smart
    // pointer holds the source: both then start from 0 and are freed by their last pointer.
    auto* cloned = static_cast<Drawing*>(drawing->clone(made));
    ZoSmartPointer<Document> original(made);
    ZoSmartPointer<Document> copy(cloned);
    ZoSmartPointer<Document> shared = original;

    print(CString::Formatted(u"created %s by name: \"%s\", kind of Document: %s\n", original->GetClassNameW(),
                             original->title, original->IsKindOf(Document::RTTI) ? u"yes" : u"no"));
    print(CString::Formatted(u"cloned it: \"%s\" at another address: %s\n", copy->title,
                             copy.Get() != original.Get() ? u"yes" : u"no"));
    print(CString::Formatted(u"references to the original: %d\n", original->GetReferenceCount()));

    try {
        throw ZoExceptionWrongFileVersion(u"..\\base\\Demo.cpp", u"Drawing", u"Serialize", 42);
    } catch (const ZoException& e) {
        print(u"caught:\n" + e.GetTraceString());
        print(e.Where() + u" is where it came from\n");
    }

    // The typical path through the library: a two-dimensional array written through a compressed
    // file stream, then read back and compared.
    const CString fieldPath = ZoClassSerialization::GetDirectory(ZoClassSerialization::eCurrent) + u"zo-demo-field.bin";
    try {
        ZoArray2D<float> field(256, 128);
        for (uint32_t y = 0; y < field.GetHeight(); ++y)
            for (uint32_t x = 0; x < field.GetWidth(); ++x)
                field[y][x] = 0.5f * static_cast<float>(x % 16) + 0.25f * static_cast<float>(y);
        {
            ZoStreamWriteBinaryFile out(fieldPath, ZoStreamWriteBinaryFile::eCompressionZIP);
            field.Serialize(out);
            out.Close(); // compresses and writes the header and data; throws when that fails
        }
        ZoArray2D<float> read;
        ZoStreamReadBinaryFile in(fieldPath);
        read.Serialize(in);
        const bool same = read.GetWidth() == field.GetWidth() && read.GetHeight() == field.GetHeight() &&
                          std::memcmp(read.GetData(), field.GetData(), 256 * 128 * sizeof(float)) == 0;
        print(CString::Formatted(u"wrote a %ux%u float array to zo-demo-field.bin: %u bytes for %u bytes of values\n",
                                 field.GetWidth(), field.GetHeight(), ZoClassSerialization::GetFileSize(fieldPath),
                                 256u * 128u * 4u));
        print(CString::Formatted(u"read it back: %ux%u, equal to what was written: %s\n", read.GetWidth(),
                                 read.GetHeight(), same ? u"yes" : u"no"));
        if (!same)
            return 1;
    } catch (const ZoException& e) {
        print(u"the array file failed:\n" + e.GetTraceString());
        return 1;
    }

    // A small graph (the graph owns its nodes), the shortest path through it, and its Graphviz file.
    ZoGraph roads;
    const char16_t* const names[] = {u"home", u"park", u"bakery", u"library", u"school"};
    ZoGraphNode* nodes[5];
    for (int i = 0; i < 5; ++i) {
        nodes[i] = new ZoGraphNode(names[i]);
        roads.InsertNode(nodes[i]);
    }
    nodes[0]->AddConnection(*nodes[1], 1.0f);
    nodes[0]->AddConnection(*nodes[2], 2.5f);
    nodes[1]->AddConnection(*nodes[2], 1.0f);
    nodes[1]->AddConnection(*nodes[3], 3.5f);
    nodes[2]->AddConnection(*nodes[4], 4.0f);
    nodes[3]->AddConnection(*nodes[4], 1.0f);
    ZoMpGraphToShortestPath search;
    search.SetInput(roads, *nodes[0], *nodes[4]);
    if (!search.Compute()) {
        print(u"no path from home to school\n");
        return 1;
    }
    CString path;
    for (ZoGraphPathIterator it = search.GetOutput(); it.HasMoreElements();)
        path += (path.IsEmpty() ? u"" : u" -> ") + it.GetNext().GetName();
    print(CString::Formatted(u"shortest path: %s, length %g\n", path, static_cast<double>(nodes[4]->GetWeight())));
    try {
        ZoStreamWriteASCIIFile dot(ZoClassSerialization::GetDirectory(ZoClassSerialization::eCurrent) +
                                   u"zo-demo-roads.dot");
        roads.DumpDot(dot, 1);
        print(u"wrote zo-demo-roads.dot; draw it with: dot -Tpng zo-demo-roads.dot -o roads.png\n");
    } catch (const ZoException& e) {
        print(u"the Graphviz file failed:\n" + e.GetTraceString());
        return 1;
    }
    return 0;
}
