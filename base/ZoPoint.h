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
    /// The point at `column`, `row`.
    ZoPoint(T column, T row) : x(column), y(row) {}

    /// True when both coordinates are equal.
    bool operator==(const ZoPoint& other) const { return x == other.x && y == other.y; }
    /// True when a coordinate differs.
    bool operator!=(const ZoPoint& other) const { return !(*this == other); }

    T x; ///< column
    T y; ///< row
};
