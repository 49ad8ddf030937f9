#pragma once

#include "platform/ZoExport.h"

/// ZoPoint<T>: a column and a row, the position type of the two-dimensional arrays
/// (ZoPoint<unsigned long> there, which the library spells ZoPoint<uint32_t>).
/// @ingroup values
template <class T>
class ZO_TEMPLATE_API ZoPoint
{
public:
    ZoPoint() : x(), y() {}
    ZoPoint(T column, T row) : x(column), y(row) {}

    bool operator==(const ZoPoint& other) const { return x == other.x && y == other.y; }
    bool operator!=(const ZoPoint& other) const { return !(*this == other); }

    T x; ///< column
    T y; ///< row
};
