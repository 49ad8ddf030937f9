// A first tour of Zo: register a class with the type registry, create and clone it by name, hold it
// in smart pointers, print the report of a caught exception, then write values into a compressed
// archive file and read them back.
#include "base/ZoClassRTTI.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoRTTIRegistration.h"
#include "base/ZoSmartPointer.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"

#include <cstdio>

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

    // Values in the library's binary encoding, compressed into one archive file.
    const CString path = ZoClassSerialization::GetDirectory(ZoClassSerialization::eTemporary) + u"zo-demo.bin";
    try {
        {
            ZoStreamWriteBinaryFile out(path, ZoStreamWriteBinaryFile::eCompressionZIP);
            out.WriteVersion(1);
            out << CString(u"floor plan") << int32_t(-42) << 2.5 << (uint64_t(1) << 40);
            for (int32_t i = 0; i < 1000; ++i)
                out << i % 10;
            out.Close();
        }
        print(CString::Formatted(u"wrote %s: %u bytes for %u bytes of values\n", path,
                                 ZoClassSerialization::GetFileSize(path), 4u + 24u + 4u + 8u + 8u + 4000u));
        ZoStreamReadBinaryFile in(path);
        CString title;
        int32_t number = 0;
        double fraction = 0;
        uint64_t big = 0;
        const unsigned int version = in.ReadAndCompareVersion(1);
        in >> title >> number >> fraction >> big;
        int32_t sum = 0;
        for (int32_t i = 0, value = 0; i < 1000; ++i, sum += value)
            in >> value;
        print(CString::Formatted(u"read back: version %u, \"%s\", %d, %f, %llu, sum of the series %d\n", version, title,
                                 number, fraction, big, sum));
        ZoClassSerialization::DeleteFileW(path);
    } catch (const ZoException& e) {
        print(u"the archive failed:\n" + e.GetTraceString());
        return 1;
    }
    return 0;
}
