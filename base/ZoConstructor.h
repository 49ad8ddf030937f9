/// @class ZoConstructor
/// ZoConstructor: a shareable, reference-counted operation that initialises raw storage of `size`
/// bytes at `memory`. The attribute system holds one per attribute kind to prepare new records.
/// @ingroup objectmodel
#pragma once

#include "base/ZoReferenceCountedClass.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoConstructor : public ZoReferenceCountedClass<ZoConstructor>
{
public:
    ~ZoConstructor() override;
    /// Prepares one attribute's `size` bytes at `memory` (its element size, in a new record). Should
    /// not throw: the container does not catch, and a throw leaves the record half-built. const, as
    /// one object serves every record and may be shared between containers.
    virtual void Init(unsigned char* memory, uint32_t size) const = 0;
};
