// ZoNoType: stands for "no type" in template argument lists. It has no state; assignment is all it
// supports.
#pragma once

class ZoNoType
{
public:
    ZoNoType& operator=(const ZoNoType&) = default;
};
