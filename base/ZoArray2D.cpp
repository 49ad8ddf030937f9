#include "base/ZoArray2D.h"

// The four element types the library provides; users share these copies.
template class ZO_INSTANCE_API ZoArray2D<unsigned char>;
template class ZO_INSTANCE_API ZoArray2D<unsigned short>;
template class ZO_INSTANCE_API ZoArray2D<uint32_t>;
template class ZO_INSTANCE_API ZoArray2D<float>;
