/// @class ZoConstructorDefault
/// ZoConstructorDefault: the ZoConstructor that zero-fills the storage.
/// @ingroup objectmodel
#pragma once

#include "base/ZoConstructor.h"
#include "platform/ZoExport.h"

class ZO_API ZoConstructorDefault : public ZoConstructor
{
public:
    /// Sets the `size` bytes at `memory` to 0.
    void Init(unsigned char* memory, uint32_t size) const override;
};
