#pragma once

#include "base/ZoPoint.h"
#include "platform/ZoExport.h"

/// ZoRect<T>: a rectangle of columns and rows, the region type of the two-dimensional arrays
/// (ZoRect<unsigned long> there, which the library spells ZoRect<uint32_t>). Its four values are, in
/// this order, the first column, the end column, the first row and the end row; the ends are
/// exclusive. Note the order of the constructor's arguments: columns first, then rows.
/// @ingroup values
template <class T>
class ZO_TEMPLATE_API ZoRect
{
public:
    ZoRect() : left(), right(), top(), bottom() {}
    /// From the first and end column, then the first and end row (ends exclusive).
    ZoRect(T firstColumn, T endColumn, T firstRow, T endRow) : left(firstColumn), right(endColumn), top(firstRow), bottom(endRow) {}

    /// Requires: left <= right and top <= bottom for the sizes to mean anything (not checked).
    T GetWidth() const { return right - left; }
    /// Number of rows, bottom - top.
    T GetHeight() const { return bottom - top; }
    /// True when the rectangle holds no cell (an end not past its start).
    bool IsEmpty() const { return !(left < right) || !(top < bottom); }
    /// True when `point` lies inside, the end column and row excluded.
    bool Contains(const ZoPoint<T>& point) const { return !(point.x < left) && point.x < right && !(point.y < top) && point.y < bottom; }

    /// True when all four values are equal.
    bool operator==(const ZoRect& other) const
    {
        return left == other.left && right == other.right && top == other.top && bottom == other.bottom;
    }
    /// True when any value differs.
    bool operator!=(const ZoRect& other) const { return !(*this == other); }

    T left;   ///< first column
    T right;  ///< end column (exclusive)
    T top;    ///< first row
    T bottom; ///< end row (exclusive)
};
