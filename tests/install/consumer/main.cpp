// A program that uses the installed library the way an application does.
#include "base/ZoClassRTTI.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoSmartPointer.h"

#include <cstdio>

class Shape : public ZoReferenceCountedClass<Shape>, public ZoClassRTTI
{
    ZO_DECLARE_RTTI()
};
ZO_IMPLEMENT_RTTI(Shape, &ZoRTTIFactory<Shape>::Create, nullptr);

int main()
{
    const ZoRTTI* found = ZoRTTI::Find(u"Shape");
    ZoSmartPointer<Shape> shape(new Shape);
    try {
        throw ZoExceptionStream(u"..\\base\\Consumer.cpp", u"Consumer", u"main", 1);
    } catch (const ZoException& e) {
        if (found == &Shape::RTTI && shape->GetReferenceCount() == 1 && e.GetCodeLine() == 1)
            std::printf("consumer ok\n");
    }
    return 0;
}
