// ZoNullPointer: the tag with which a null ZoSmartPointer is built or compared. It converts to a
// null untyped pointer and carries nothing.
#pragma once

class ZoNullPointer
{
public:
    operator void*() const { return nullptr; }
};
