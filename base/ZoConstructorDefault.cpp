#include "base/ZoConstructorDefault.h"

#include <cstring>

void ZoConstructorDefault::Init(unsigned char* memory, uint32_t size) const
{
    if (size != 0)
        std::memset(memory, 0, size);
}
