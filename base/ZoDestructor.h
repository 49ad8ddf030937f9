/// @class ZoDestructor
/// ZoDestructor: a shareable, reference-counted operation that tears down what ZoConstructor (or the
/// user) built in raw storage of `size` bytes at `memory`, before the storage is reused or freed.
/// @ingroup objectmodel
#pragma once

#include "base/ZoReferenceCountedClass.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoDestructor : public ZoReferenceCountedClass<ZoDestructor>
{
public:
    ~ZoDestructor() override;
    virtual void Destroy(unsigned char* memory, uint32_t size) const = 0;
};
