#include "base/ZoArray2D.h"

// The four element types the library provides; users share these copies.
template class ZoArray2D<unsigned char>;
template class ZoArray2D<unsigned short>;
template class ZoArray2D<uint32_t>;
template class ZoArray2D<float>;
