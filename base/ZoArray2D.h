/// @class ZoArray2D
/// ZoArray2D<T>: a dense rectangular grid of numbers (an image, a height field, a map of
/// measurements) for T = unsigned char, unsigned short, uint32_t (the library's unsigned long) and
/// float. The elements lie row after row in one block without padding; a table of row pointers gives
/// `array[y][x]` without a multiplication. Element-wise operations walk the block as one run.
///
/// An array is empty (no block), owns its block, or borrows the caller's (the four-argument
/// constructor with copy 0; the caller keeps that block alive and frees it). Assignment to an array
/// of the same dimensions copies into the existing block, borrowed or not; every reallocation makes
/// the array owning. The row table is always the array's own.
///
/// Nothing checks coordinates, sizes of the other arrays in element-wise operations, or integer
/// division by zero in the division operators: those are the caller's. Allocation failure throws
/// std::bad_alloc.
///
/// Binary form: version record 0, width, height, element size (unsigned 32-bit each), then the block
/// as laid out in memory. Reading refuses another element size with ZoExceptionWrongFileVersion and
/// data that ends before the dimensions say with ZoExceptionStream; the block is allocated only as
/// far as data really arrives.
/// @ingroup containers
#pragma once

#include "base/ZoExceptionDivisionByZero.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoList.h"
#include "base/ZoPoint.h"
#include "base/ZoRect.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWrite.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/ZoExport.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

template <class T>
class ZO_TEMPLATE_API ZoArray2D
{
    static_assert(std::is_same_v<T, unsigned char> || std::is_same_v<T, unsigned short> || std::is_same_v<T, uint32_t> ||
                      std::is_same_v<T, float>,
                  "ZoArray2D exists for unsigned char, unsigned short, uint32_t and float");

public:
    /// 0 x 0, no block.
    ZoArray2D() : m_data(nullptr), m_rows(nullptr), m_width(0), m_height(0), m_ownsData(0) {}
    /// An owned, uninitialised block.
    ZoArray2D(uint32_t width, uint32_t height) : ZoArray2D() { SetElementCount(width, height); }
    /// With `copy` nonzero the array owns a copy of width x height elements of `data`; with `copy` 0
    /// it uses `data` itself and borrows it.
    ZoArray2D(uint32_t width, uint32_t height, T* data, int copy) : ZoArray2D()
    {
        m_width = width;
        m_height = height;
        if (copy) {
            allocateOwned();
            if (m_data != nullptr)
                std::memcpy(m_data, data, byteCount());
        } else {
            m_data = data;
            buildRows();
        }
        m_ownsData = copy;
    }
    /// An owned copy of the other's elements (a borrowed source is copied too).
    ZoArray2D(const ZoArray2D& other) : ZoArray2D() { *this = other; }
    virtual ~ZoArray2D() { freeStorage(); }

    /// Same dimensions: copies into the present block (even a borrowed one). Otherwise a new owned
    /// block of the source's dimensions.
    ZoArray2D& operator=(const ZoArray2D& other)
    {
        if (this == &other)
            return *this;
        if (m_width != other.m_width || m_height != other.m_height || (m_data == nullptr && other.m_data != nullptr)) {
            freeStorage();
            m_width = other.m_width;
            m_height = other.m_height;
            if (other.m_data != nullptr)
                allocateOwned();
        }
        if (m_data != nullptr && other.m_data != nullptr)
            std::memcpy(m_data, other.m_data, byteCount());
        return *this;
    }
    /// New dimensions with an owned, uninitialised block (none when a dimension is 0). Contents are
    /// not kept.
    void SetElementCount(uint32_t width, uint32_t height)
    {
        freeStorage();
        m_width = width;
        m_height = height;
        allocateOwned();
    }

    /// Columns; 0 for an array without elements.
    uint32_t GetWidth() const { return m_width; }
    /// Rows; 0 for an array without elements.
    uint32_t GetHeight() const { return m_height; }
    /// Both dimensions at once.
    void GetCount(uint32_t& width, uint32_t& height) const
    {
        width = m_width;
        height = m_height;
    }
    /// sizeof(T), the element size the binary form records.
    uint32_t GetElementSize() const { return static_cast<uint32_t>(sizeof(T)); }
    /// The row table and the elements.
    uint32_t GetMemoryUsage() const
    {
        return static_cast<uint32_t>(m_height * sizeof(T*) + static_cast<uint64_t>(m_width) * m_height * sizeof(T));
    }
    /// The block, row 0 first; null when there is none.
    T* GetData() const { return m_data; }

    /// Row y. Requires: y < GetHeight() and a block (not checked).
    T* operator[](uint32_t y) { return m_rows[y]; }
    /// Row y, read-only. Requires: y < GetHeight() and a block (not checked).
    const T* operator[](uint32_t y) const { return m_rows[y]; }

    /// Every element becomes `value`; does nothing without elements.
    void Set(const T& value) { std::fill(m_data, m_data + count(), value); }
    /// Set(value).
    ZoArray2D& operator=(const T& value)
    {
        Set(value);
        return *this;
    }
    /// Every element's bytes become 0; does nothing without a block.
    void Zero()
    {
        if (m_data != nullptr)
            std::memset(m_data, 0, byteCount());
    }
    /// Requires: `values` holds width x height elements (not checked).
    void Set(const T* values)
    {
        if (m_data != nullptr)
            std::memcpy(m_data, values, byteCount());
    }
    /// Requires: `other` has at least as many elements (not checked).
    void Set(const ZoArray2D& other)
    {
        if (m_data != nullptr && other.m_data != nullptr)
            std::memmove(m_data, other.m_data, byteCount());
    }
    /// Every element less than `border` away from an edge becomes `value`.
    void SetBorder(const T& value, uint32_t border)
    {
        if (m_data == nullptr)
            return;
        for (uint32_t y = 0; y < m_height; ++y) {
            T* row = m_rows[y];
            const bool wholeRow = y < border || static_cast<uint64_t>(y) + border >= m_height;
            for (uint32_t x = 0; x < m_width; ++x)
                if (wholeRow || x < border || static_cast<uint64_t>(x) + border >= m_width)
                    row[x] = value;
        }
    }

    /// Copies the columns left..right and rows top..bottom (ends exclusive) of `source` to `point` of
    /// this array, clipped at this array's right and bottom edges. The source is not checked.
    void BlitFrom(const ZoArray2D& source, const ZoRect<uint32_t>& rect, const ZoPoint<uint32_t>& point)
    {
        const uint64_t columns = static_cast<uint32_t>(rect.right - rect.left);
        const uint64_t rows = static_cast<uint32_t>(rect.bottom - rect.top);
        const uint64_t xEnd = std::min<uint64_t>(point.x + columns, m_width);
        const uint64_t yEnd = std::min<uint64_t>(point.y + rows, m_height);
        if (point.x >= xEnd || point.y >= yEnd)
            return;
        const size_t rowBytes = static_cast<size_t>(xEnd - point.x) * sizeof(T);
        for (uint64_t y = point.y; y < yEnd; ++y)
            std::memmove(m_rows[y] + point.x, source.m_rows[rect.top + (y - point.y)] + rect.left, rowBytes);
    }
    /// Copies `rect` of the source to (0, 0), clipped as the three-argument form clips.
    void BlitFrom(const ZoArray2D& source, const ZoRect<uint32_t>& rect) { BlitFrom(source, rect, ZoPoint<uint32_t>(0, 0)); }
    /// Copies the whole source to (0, 0), clipped to this array.
    void BlitFrom(const ZoArray2D& source)
    {
        BlitFrom(source, ZoRect<uint32_t>(0, source.m_width, 0, source.m_height), ZoPoint<uint32_t>(0, 0));
    }

    ///@{
    /// Element-wise arithmetic; the array forms require `other` of the same size (not checked).
    /// Integer types divide with integer division; a zero divisor is the caller's fault.
    ZoArray2D& operator+=(const T& value) { return apply([&](T& e) { e = static_cast<T>(e + value); }); }
    ZoArray2D& operator-=(const T& value) { return apply([&](T& e) { e = static_cast<T>(e - value); }); }
    ZoArray2D& operator*=(const T& value) { return apply([&](T& e) { e = static_cast<T>(e * value); }); }
    ZoArray2D& operator/=(const T& value) { return apply([&](T& e) { e = static_cast<T>(e / value); }); }
    ZoArray2D& operator+=(const ZoArray2D& other) { return apply(other, [](T& e, T o) { e = static_cast<T>(e + o); }); }
    ZoArray2D& operator-=(const ZoArray2D& other) { return apply(other, [](T& e, T o) { e = static_cast<T>(e - o); }); }
    ZoArray2D& operator*=(const ZoArray2D& other) { return apply(other, [](T& e, T o) { e = static_cast<T>(e * o); }); }
    ZoArray2D& operator/=(const ZoArray2D& other) { return apply(other, [](T& e, T o) { e = static_cast<T>(e / o); }); }
    ///@}

    /// Square root of every element; integer types compute in float and truncate.
    void Sqrt() { apply([](T& e) { e = fromFloat(std::sqrt(static_cast<float>(e))); }); }
    /// Element = atan2(other's element, this element), in double, converted back (truncated for
    /// integer types).
    void Atan2(const ZoArray2D& other)
    {
        apply(other, [](T& e, T o) { e = fromFloat(std::atan2(static_cast<double>(o), static_cast<double>(e))); });
    }
    ///@{
    /// Element = a's when strictly smaller (Min) or larger (Max) than b's, else b's (so ties and NaN
    /// take b's).
    void Min(const ZoArray2D& a, const ZoArray2D& b) { applyPair(a, b, [](T x, T y) { return x < y ? x : y; }); }
    void Max(const ZoArray2D& a, const ZoArray2D& b) { applyPair(a, b, [](T x, T y) { return x > y ? x : y; }); }
    ///@}
    /// Elements below `threshold` become `value`.
    void MinThreshold(T threshold, T value) { apply([&](T& e) { if (e < threshold) e = value; }); }
    /// Elements above `threshold` become `value`.
    void MaxThreshold(T threshold, T value) { apply([&](T& e) { if (e > threshold) e = value; }); }
    /// Elements below `low` become `low`, those above `high` become `high` (NaN stays).
    void Clamp(T low, T high)
    {
        apply([&](T& e) {
            if (e < low)
                e = low;
            else if (e > high)
                e = high;
        });
    }
    ///@{
    /// Smallest and largest element, starting from element (0, 0); 0 for an array without elements.
    T GetMin() const { return extreme([](T e, T best) { return e < best; }); }
    T GetMax() const { return extreme([](T e, T best) { return e > best; }); }
    ///@}
    /// Element = (element - minimum) / (maximum - minimum) computed in the element type. For float the
    /// result lies in 0..1; for the integer types it is integer arithmetic, so every element becomes 0
    /// except those equal to the maximum, which become 1 — existing callers depend on this
    /// difference. A constant integer array would divide by zero: that throws
    /// ZoExceptionDivisionByZero instead of stopping the process (float gives NaN as it must).
    void Normalize()
    {
        if (count() == 0)
            return;
        const T minimum = GetMin();
        const T maximum = GetMax();
        if constexpr (std::is_integral_v<T>) {
            if (maximum == minimum)
                throw ZoExceptionDivisionByZero(u"..\\base\\ZoArray2D.cpp", u"ZoArray2D", u"Normalize", ZoException::sc_uiNoLine);
        }
        const T range = static_cast<T>(maximum - minimum);
        apply([&](T& e) { e = static_cast<T>(static_cast<T>(e - minimum) / range); });
    }

    /// Bilinear value at (x, y). The right and lower neighbours are clamped to the last column and
    /// row, so x = width - 1 gives the last column's value; x and y themselves are the caller's to
    /// check (IsValidCoordinate). Computed in float; integer types truncate towards zero.
    T GetInterpolated(float x, float y) const
    {
        const int x0 = static_cast<int>(std::floor(x));
        const int y0 = static_cast<int>(std::floor(y));
        const float fx = x - static_cast<float>(x0);
        const float fy = y - static_cast<float>(y0);
        const uint32_t x1 = std::min(static_cast<uint32_t>(x0) + 1u, m_width - 1u);
        const uint32_t y1 = std::min(static_cast<uint32_t>(y0) + 1u, m_height - 1u);
        const T* upper = m_rows[y0];
        const T* lower = m_rows[y1];
        const float top = (1.0f - fx) * static_cast<float>(upper[x0]) + fx * static_cast<float>(upper[x1]);
        const float bottom = (1.0f - fx) * static_cast<float>(lower[x0]) + fx * static_cast<float>(lower[x1]);
        return fromFloat(top * (1.0f - fy) + bottom * fy);
    }
    /// 1 when (x, y) names an element: 0 <= x < width and 0 <= y < height.
    int IsValidCoordinate(int x, int y) const
    {
        return x >= 0 && static_cast<int64_t>(x) < m_width && y >= 0 && static_cast<int64_t>(y) < m_height;
    }
    /// 1 when x < width and y < height.
    int IsValidCoordinate(uint32_t x, uint32_t y) const { return x < m_width && y < m_height; }
    /// Strict at the upper end, so that the neighbours interpolation reads exist: x = width - 1 is
    /// refused here although the integer forms accept it. NaN is never valid.
    int IsValidCoordinate(float x, float y) const { return IsValidCoordinateX(x) && IsValidCoordinateY(y); }
    /// The x half of the float test: 0 <= x < width - 1.
    int IsValidCoordinateX(float x) const { return x >= 0.0f && x < static_cast<float>(m_width) - 1.0f; }
    /// The y half of the float test: 0 <= y < height - 1.
    int IsValidCoordinateY(float y) const { return y >= 0.0f && y < static_cast<float>(m_height) - 1.0f; }

    /// 4-connected flood fill from (x, y): every element reachable through elements equal to
    /// `oldValue` becomes `newValue`; returns how many changed (0 when (x, y) does not hold
    /// `oldValue`; a NaN never matches). Neighbours are visited in the order (x, y+1), (x+1, y),
    /// (x, y-1), (x-1, y) from a first-in first-out queue, and an element changes when it is queued.
    /// Requires: (x, y) inside the array, and oldValue != newValue — with equal values the fill never
    /// ends; that is the caller's to avoid, as it always has been (not checked).
    uint32_t FillArea(uint32_t x, uint32_t y, T oldValue, T newValue)
    {
        if (!(m_rows[y][x] == oldValue))
            return 0;
        m_rows[y][x] = newValue;
        ZoList<ZoPoint<uint32_t>, 0x21> queue(10);
        queue.AddTail(ZoPoint<uint32_t>(x, y));
        uint32_t changed = 1;
        auto visit = [&](uint32_t column, uint32_t row) {
            if (m_rows[row][column] == oldValue) {
                m_rows[row][column] = newValue;
                queue.AddTail(ZoPoint<uint32_t>(column, row));
                ++changed;
            }
        };
        while (!queue.IsEmpty()) {
            const ZoPoint<uint32_t> point = queue.GetHead();
            queue.RemoveHead();
            if (point.y + 1 < m_height)
                visit(point.x, point.y + 1);
            if (point.x + 1 < m_width)
                visit(point.x + 1, point.y);
            if (point.y > 0)
                visit(point.x, point.y - 1);
            if (point.x > 0)
                visit(point.x - 1, point.y);
        }
        return changed;
    }

    /// Writes the binary form. An array left without a block by a failed read is written as 0 x 0;
    /// an empty array (5 x 0, 0 x 5) keeps its dimensions, since it needs no block.
    virtual void Serialize(ZoStreamWriteBinary& stream) const
    {
        stream.WriteVersion(0);
        const bool hasBlock = m_data != nullptr || static_cast<uint64_t>(m_width) * m_height == 0;
        stream << (hasBlock ? m_width : 0u);
        stream << (hasBlock ? m_height : 0u);
        stream << GetElementSize();
        if (hasBlock && byteCount() != 0)
            stream.WriteBuffer(m_data, byteCount());
    }
    /// Reads the binary form. The dimensions read are stored before the element size is checked, so
    /// after a ZoExceptionWrongFileVersion for the size GetWidth()/GetHeight() report the file's
    /// dimensions — callers have always been able to read them back there. If the element count
    /// changed, the array then has no block (storage never stays smaller than its dimensions). With
    /// the same count and a borrowed block the data is read into that block; otherwise into a new
    /// owned one.
    virtual void Serialize(ZoStreamReadBinary& stream)
    {
        stream.ReadAndCompareVersion(0);
        uint32_t width = 0;
        uint32_t height = 0;
        uint32_t elementSize = 0;
        stream >> width;
        stream >> height;
        const uint64_t storedCount = count();
        m_width = width;
        m_height = height;
        if (static_cast<uint64_t>(width) * height != storedCount)
            freeStorage();
        else
            buildRows();
        stream >> elementSize;
        if (elementSize != sizeof(T))
            throw ZoExceptionWrongFileVersion(u"..\\base\\ZoArray2D.cpp", u"ZoArray2D", u"Serialize", 757);
        const uint64_t elements = static_cast<uint64_t>(width) * height;
        if (elements == 0 && m_data == nullptr)
            return;
        if (m_data == nullptr || m_ownsData) {
            freeStorage();
            m_data = readOwnedBlock(stream, elements);
            m_ownsData = 1;
            buildRows();
        } else if (stream.ReadBuffer(m_data, byteCount()) != byteCount()) {
            throwTruncated();
        }
    }

    /// One line per row: "[", each element as an unsigned number followed by a tab, "]" and a line
    /// feed. Not available for float.
    template <class U = T, std::enable_if_t<!std::is_floating_point_v<U>, int> = 0>
    void Dump(ZoStreamWrite& stream) const
    {
        const uint32_t width = m_data != nullptr ? m_width : 0;
        for (uint32_t y = 0; y < m_height; ++y) {
            stream << u"[";
            for (uint32_t x = 0; x < width; ++x) {
                stream << static_cast<unsigned int>(m_rows[y][x]);
                stream << u"\t";
            }
            stream << u"]\n";
        }
    }

private:
    /// Elements the block holds: width x height, or 0 without a block.
    size_t count() const { return m_data != nullptr ? static_cast<size_t>(m_width) * m_height : 0; }
    size_t byteCount() const { return count() * sizeof(T); }

    template <class Operation>
    ZoArray2D& apply(Operation operation)
    {
        for (size_t i = 0, n = count(); i < n; ++i)
            operation(m_data[i]);
        return *this;
    }
    template <class Operation>
    ZoArray2D& apply(const ZoArray2D& other, Operation operation)
    {
        for (size_t i = 0, n = count(); i < n; ++i)
            operation(m_data[i], other.m_data[i]);
        return *this;
    }
    template <class Choose>
    void applyPair(const ZoArray2D& a, const ZoArray2D& b, Choose choose)
    {
        for (size_t i = 0, n = count(); i < n; ++i)
            m_data[i] = choose(a.m_data[i], b.m_data[i]);
    }
    template <class Better>
    T extreme(Better better) const
    {
        const size_t n = count();
        if (n == 0)
            return T();
        T best = m_data[0];
        for (size_t i = 1; i < n; ++i)
            if (better(m_data[i], best))
                best = m_data[i];
        return best;
    }
    /// The element type's value of a float or double result: truncated towards zero for the integer
    /// types, and held inside the type's range so that no conversion overflows.
    template <class F>
    static T fromFloat(F value)
    {
        if constexpr (std::is_floating_point_v<T>) {
            return static_cast<T>(value);
        } else {
            if (!(value > F(0)))
                return T(0);
            if (value >= static_cast<F>(std::numeric_limits<T>::max()))
                return std::numeric_limits<T>::max();
            return static_cast<T>(value);
        }
    }

    static size_t checkedBytes(uint64_t elements)
    {
        if (elements > std::numeric_limits<size_t>::max() / sizeof(T))
            throw std::bad_alloc();
        return static_cast<size_t>(elements) * sizeof(T);
    }
    /// An owned, uninitialised block and rows for the present dimensions, when both are nonzero.
    void allocateOwned()
    {
        m_ownsData = 1;
        if (m_width == 0 || m_height == 0)
            return;
        void* block = std::malloc(checkedBytes(static_cast<uint64_t>(m_width) * m_height));
        if (block == nullptr)
            throw std::bad_alloc();
        m_data = static_cast<T*>(block);
        buildRows();
    }
    /// Rebuilds the row table for the present block and dimensions.
    void buildRows()
    {
        std::free(m_rows);
        m_rows = nullptr;
        if (m_data == nullptr || m_width == 0 || m_height == 0)
            return;
        m_rows = static_cast<T**>(std::malloc(sizeof(T*) * static_cast<size_t>(m_height)));
        if (m_rows == nullptr)
            throw std::bad_alloc();
        for (uint32_t y = 0; y < m_height; ++y)
            m_rows[y] = m_data + static_cast<size_t>(y) * m_width;
    }
    /// Frees the block if owned (a borrowed one is only let go) and the rows.
    void freeStorage()
    {
        if (m_ownsData)
            std::free(m_data);
        std::free(m_rows);
        m_data = nullptr;
        m_rows = nullptr;
        m_ownsData = 0;
    }
    /// Reads `elements` elements into a new block that grows only as fast as data arrives (1 MiB at
    /// first, then at most doubling), so a damaged size ends at the end of the data rather than in a
    /// huge allocation. Null for no elements.
    static T* readOwnedBlock(ZoStreamReadBinary& stream, uint64_t elements)
    {
        if (elements == 0)
            return nullptr;
        if (elements > std::numeric_limits<size_t>::max() / sizeof(T))
            throwTruncated();
        const size_t total = static_cast<size_t>(elements) * sizeof(T);
        const size_t firstStep = size_t(1) << 20;
        size_t capacity = std::min(total, firstStep);
        auto* block = static_cast<unsigned char*>(std::malloc(capacity));
        if (block == nullptr)
            throw std::bad_alloc();
        size_t arrived = 0;
        for (;;) {
            const size_t wanted = capacity - arrived;
            if (stream.ReadBuffer(block + arrived, wanted) != wanted) {
                std::free(block);
                throwTruncated();
            }
            arrived = capacity;
            if (arrived == total)
                return reinterpret_cast<T*>(block);
            capacity = total - arrived > arrived ? arrived * 2 : total;
            auto* grown = static_cast<unsigned char*>(std::realloc(block, capacity));
            if (grown == nullptr) {
                std::free(block);
                throw std::bad_alloc();
            }
            block = grown;
        }
    }
    [[noreturn]] static void throwTruncated()
    {
        throw ZoExceptionStream(u"..\\base\\ZoArray2D.cpp", u"ZoArray2D", u"Serialize", ZoException::sc_uiNoLine);
    }

    T* m_data;
    T** m_rows;
    uint32_t m_width;
    uint32_t m_height;
    int32_t m_ownsData;
};

ZO_EXTERN_TEMPLATE(class ZoArray2D<unsigned char>)
ZO_EXTERN_TEMPLATE(class ZoArray2D<unsigned short>)
ZO_EXTERN_TEMPLATE(class ZoArray2D<uint32_t>)
ZO_EXTERN_TEMPLATE(class ZoArray2D<float>)
