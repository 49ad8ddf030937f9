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
    /// Tears down one attribute's `size` bytes at `memory` (its element size); the bytes are reused
    /// or freed afterwards. Should not throw (the container does not catch). const, as one object
    /// serves every record.
    virtual void Destroy(unsigned char* memory, uint32_t size) const = 0;
};
