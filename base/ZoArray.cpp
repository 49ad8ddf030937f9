#include "base/ZoArray.h"

// The byte array is the one instantiation the library exports; users share this copy.
template class ZO_INSTANCE_API ZoArray<unsigned char, 0>;
