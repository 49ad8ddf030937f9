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
    virtual void Init(unsigned char* memory, uint32_t size) const = 0;
};
