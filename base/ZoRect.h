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
    ZoRect(T firstColumn, T endColumn, T firstRow, T endRow) : left(firstColumn), right(endColumn), top(firstRow), bottom(endRow) {}

    /// Requires: left <= right and top <= bottom for the sizes to mean anything (not checked).
    T GetWidth() const { return right - left; }
    T GetHeight() const { return bottom - top; }
    bool IsEmpty() const { return !(left < right) || !(top < bottom); }
    bool Contains(const ZoPoint<T>& point) const { return !(point.x < left) && point.x < right && !(point.y < top) && point.y < bottom; }

    bool operator==(const ZoRect& other) const
    {
        return left == other.left && right == other.right && top == other.top && bottom == other.bottom;
    }
    bool operator!=(const ZoRect& other) const { return !(*this == other); }

    T left;   ///< first column
    T right;  ///< end column (exclusive)
    T top;    ///< first row
    T bottom; ///< end row (exclusive)
};
