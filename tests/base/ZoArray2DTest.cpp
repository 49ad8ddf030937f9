#include "base/ZoArray2D.h"
#include "base/ZoExceptionDivisionByZero.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoExceptionWrongFileVersion.h"
#include "base/ZoStreamReadBinaryMemory.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoStreamWriteBinaryMemory.h"
#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <type_traits>
#include <vector>

namespace {

using zotest::Bytes;

template <class T>
ZoArray2D<T> grid(uint32_t width, uint32_t height, std::initializer_list<double> values)
{
    ZoArray2D<T> array(width, height);
    T* data = array.GetData();
    for (double value : values)
        *data++ = static_cast<T>(value);
    return array;
}

template <class T>
std::vector<double> contents(const ZoArray2D<T>& array)
{
    std::vector<double> result;
    for (uint32_t y = 0; y < array.GetHeight(); ++y)
        for (uint32_t x = 0; x < array.GetWidth(); ++x)
            result.push_back(static_cast<double>(array[y][x]));
    return result;
}

template <class T>
std::vector<unsigned char> serialized(const ZoArray2D<T>& array)
{
    ZoStreamWriteBinaryMemory out;
    array.Serialize(out);
    return out.GetBuffer();
}

template <class T>
std::vector<double> byType(std::vector<double> ifInteger, std::vector<double> ifFloat)
{
    return std::is_integral_v<T> ? ifInteger : ifFloat;
}

template <class T>
struct ZoArray2DTest : testing::Test
{
};
typedef testing::Types<unsigned char, unsigned short, uint32_t, float> ElementTypes;
TYPED_TEST_SUITE(ZoArray2DTest, ElementTypes);

TYPED_TEST(ZoArray2DTest, StorageIsOwnedBorrowedOrAbsent)
{
    typedef TypeParam T;
    ZoArray2D<T> empty, sized(4, 3);
    EXPECT_TRUE(empty.GetData() == nullptr && empty.GetMemoryUsage() == 0u);
    EXPECT_EQ(sized.GetMemoryUsage(), 3 * sizeof(T*) + 12 * sizeof(T));
    EXPECT_EQ(sized[2], sized.GetData() + 8);
    sized.SetElementCount(0, 5);
    EXPECT_TRUE(sized.GetData() == nullptr && sized.GetHeight() == 5u);
    T callers[6] = {T(1), T(2), T(3), T(4), T(5), T(6)};
    ZoArray2D<T> borrowed(3, 2, callers, 0);
    EXPECT_TRUE(borrowed.GetData() == callers && borrowed[1][0] == T(4));
    ZoArray2D<T> copied(3, 2, callers, 1);
    EXPECT_NE(copied.GetData(), callers);
    copied *= T(2);
    // Same dimensions: assignment writes into the borrowed block itself.
    borrowed = copied;
    EXPECT_TRUE(borrowed.GetData() == callers && callers[5] == T(12));
    // Other dimensions: the array lets the caller's block go and owns a new one.
    borrowed = grid<T>(2, 2, {7, 8, 9, 10});
    EXPECT_TRUE(borrowed.GetData() != callers && callers[0] == T(2));
    EXPECT_EQ(contents(ZoArray2D<T>(borrowed)), (std::vector<double>{7, 8, 9, 10}));
}

TYPED_TEST(ZoArray2DTest, FillingBordersElementWiseArithmeticAndNormalizing)
{
    typedef TypeParam T;
    ZoArray2D<T> frame(4, 3);
    frame.Zero();
    frame.SetBorder(T(9), 0);
    EXPECT_EQ(contents(frame), std::vector<double>(12, 0));
    frame.SetBorder(T(9), 1);
    EXPECT_EQ(contents(frame), (std::vector<double>{9, 9, 9, 9, 9, 0, 0, 9, 9, 9, 9, 9}));
    frame.Set(T(1));
    frame.SetBorder(T(5), 2); // at least half the smaller dimension: everything
    EXPECT_EQ(contents(frame), std::vector<double>(12, 5));
    ZoArray2D<T> a = grid<T>(3, 1, {8, 20, 6});
    const ZoArray2D<T> b = grid<T>(3, 1, {2, 4, 6});
    a += b;
    EXPECT_EQ(contents(a), (std::vector<double>{10, 24, 12}));
    a -= T(2);
    a /= b;
    EXPECT_EQ(contents(a), (byType<T>({4, 5, 1}, {4, 5.5, 10.0f / 6.0f})));
    a = grid<T>(3, 1, {7, 9, 4});
    a /= T(2);
    EXPECT_EQ(contents(a), (byType<T>({3, 4, 2}, {3.5, 4.5, 2})));
    a *= b;
    a -= b;
    EXPECT_EQ(contents(a), (byType<T>({4, 12, 6}, {5, 14, 6})));
    ZoArray2D<T> result(3, 1), high(3, 1);
    result.Min(grid<T>(3, 1, {1, 5, 3}), grid<T>(3, 1, {2, 4, 3}));
    high.Max(grid<T>(3, 1, {1, 5, 3}), grid<T>(3, 1, {2, 4, 3}));
    EXPECT_EQ(contents(result), (std::vector<double>{1, 4, 3}));
    EXPECT_EQ(contents(high), (std::vector<double>{2, 5, 3}));
    result = grid<T>(3, 1, {1, 5, 9});
    result.MinThreshold(T(5), T(0));
    result.MaxThreshold(T(5), T(100));
    EXPECT_EQ(contents(result), (std::vector<double>{0, 5, 100}));
    result.Clamp(T(2), T(50));
    EXPECT_EQ(contents(result), (std::vector<double>{2, 5, 50}));
    result = grid<T>(3, 1, {10, 16, 2});
    result.Sqrt();
    EXPECT_EQ(contents(result), (byType<T>({3, 4, 1}, {static_cast<float>(std::sqrt(10.0f)), 4, static_cast<float>(std::sqrt(2.0f))})));
    result = grid<T>(3, 1, {0, 1, 1});
    result.Atan2(grid<T>(3, 1, {1, 1, 0}));
    const double quarter = std::atan2(1.0, 0.0), eighth = std::atan2(1.0, 1.0);
    EXPECT_EQ(contents(result), (byType<T>({1, 0, 0}, {static_cast<float>(quarter), static_cast<float>(eighth), 0})));
    ZoArray2D<T> values = grid<T>(3, 1, {10, 20, 30});
    values.Normalize();
    EXPECT_EQ(contents(values), (byType<T>({0, 0, 1}, {0, 0.5, 1})));
    ZoArray2D<T> constant = grid<T>(2, 1, {4, 4});
    if constexpr (std::is_integral_v<T>) {
        EXPECT_THROW(constant.Normalize(), ZoExceptionDivisionByZero);
    } else {
        constant.Normalize();
        EXPECT_TRUE(std::isnan(constant[0][0]));
    }
}

TYPED_TEST(ZoArray2DTest, InterpolationClampsItsNeighboursAtTheLastColumnAndRow)
{
    typedef TypeParam T;
    const ZoArray2D<T> ramp = grid<T>(3, 2, {0, 10, 20, 1, 11, 21});
    // x = width - 1 uses the last column twice.
    EXPECT_TRUE(ramp.GetInterpolated(2.0f, 0.0f) == T(20) && ramp.GetInterpolated(2.0f, 1.0f) == T(21));
    EXPECT_EQ(ramp.GetInterpolated(0.5f, 0.0f), T(5));
    EXPECT_EQ(ramp.GetInterpolated(1.25f, 0.5f), std::is_integral_v<T> ? T(13) : T(13.0f));
    EXPECT_EQ(ramp.GetInterpolated(0.25f, 0.0f), std::is_integral_v<T> ? T(2) : T(2.5f)); // truncated
    EXPECT_TRUE(ramp.IsValidCoordinate(2, 1) && !ramp.IsValidCoordinate(-1, 0) && !ramp.IsValidCoordinate(3u, 0u));
    EXPECT_TRUE(!ramp.IsValidCoordinate(2.0f, 0.0f) && ramp.IsValidCoordinate(1.99f, 0.5f));
    EXPECT_FALSE(ramp.IsValidCoordinateX(std::numeric_limits<float>::quiet_NaN()));
}

TYPED_TEST(ZoArray2DTest, FloodFillChangesTheFourConnectedRegionOnly)
{
    typedef TypeParam T;
    ZoArray2D<T> zeros = grid<T>(3, 3, {0, 0, 0, 0, 0, 0, 0, 0, 0});
    EXPECT_EQ(zeros.FillArea(1, 1, T(0), T(5)), 9u);
    EXPECT_EQ(zeros.FillArea(0, 0, T(0), T(7)), 0u); // the start does not hold oldValue
    EXPECT_EQ(contents(zeros), std::vector<double>(9, 5));
    // Walls of 1; the diagonal gap does not connect, the bottom row does.
    ZoArray2D<T> maze = grid<T>(5, 4, {0, 1, 0, 0, 0,  //
                                       0, 1, 0, 1, 0,  //
                                       1, 0, 1, 1, 0,  //
                                       0, 0, 0, 1, 0});
    EXPECT_EQ(maze.FillArea(2, 0, T(0), T(8)), 7u);
    EXPECT_EQ(contents(maze), (std::vector<double>{0, 1, 8, 8, 8, 0, 1, 8, 1, 8, 1, 0, 1, 1, 8, 0, 0, 0, 1, 8}));
    EXPECT_TRUE(maze.FillArea(0, 3, T(0), T(2)) == 4u && maze.FillArea(0, 0, T(0), T(3)) == 2u);
    if constexpr (std::is_floating_point_v<T>) {
        ZoArray2D<T> nan(2, 1);
        nan.Set(std::numeric_limits<T>::quiet_NaN());
        EXPECT_EQ(nan.FillArea(0, 0, nan[0][0], T(1)), 0u);
    }
}

TYPED_TEST(ZoArray2DTest, BlitCopiesRectanglesClippedAtTheDestination)
{
    typedef TypeParam T;
    const ZoArray2D<T> source = grid<T>(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9});
    ZoArray2D<T> target(4, 3);
    target.Zero();
    target.BlitFrom(source, ZoRect<uint32_t>(1, 3, 0, 2), ZoPoint<uint32_t>(3, 1)); // clipped to one column
    EXPECT_EQ(contents(target), (std::vector<double>{0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0, 5}));
    target.BlitFrom(source, ZoRect<uint32_t>(0, 2, 1, 3));
    EXPECT_EQ(contents(target), (std::vector<double>{4, 5, 0, 0, 7, 8, 0, 2, 0, 0, 0, 5}));
    target.BlitFrom(source, ZoRect<uint32_t>(0, 3, 0, 3), ZoPoint<uint32_t>(4, 0)); // entirely outside
    target.BlitFrom(source);
    EXPECT_EQ(contents(target), (std::vector<double>{1, 2, 3, 0, 4, 5, 6, 2, 7, 8, 9, 5}));
}

TEST(ZoArray2DTest, ByteArraysSerializeToTheseBytesAndDumpAsRows)
{
    const ZoArray2D<unsigned short> pair = grid<unsigned short>(2, 1, {1, 0x302});
    EXPECT_EQ(serialized(pair), Bytes({0, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 2, 3}));
    // Read with the same count into a borrowed block, which is kept and reshaped.
    unsigned short callers[2] = {};
    ZoArray2D<unsigned short> borrowed(1, 2, callers, 0);
    ZoStreamReadBinaryMemory pairIn(serialized(pair));
    borrowed.Serialize(pairIn);
    EXPECT_TRUE(borrowed.GetData() == callers && borrowed.GetWidth() == 2u && callers[1] == 0x302);
    for (const auto& size : {std::make_pair(5u, 0u), std::make_pair(0u, 5u)}) {
        const std::vector<unsigned char> bytes = serialized(ZoArray2D<unsigned char>(size.first, size.second));
        EXPECT_EQ(bytes, Bytes({0, 0, 0, 0, int(size.first), 0, 0, 0, int(size.second), 0, 0, 0, 1, 0, 0, 0}));
        ZoArray2D<unsigned char> read(2, 2);
        ZoStreamReadBinaryMemory in(bytes);
        read.Serialize(in);
        EXPECT_TRUE(read.GetWidth() == size.first && read.GetHeight() == size.second);
    }
    ZoStreamWriteASCIIString text;
    grid<unsigned char>(2, 1, {1, 2}).Dump(text);
    EXPECT_EQ(text.GetText(), CString(u"[1\t2\t]\n"));
    text.Empty();
    grid<uint32_t>(1, 2, {4000000000.0, 0}).Dump(text);
    EXPECT_EQ(text.GetText(), CString(u"[4000000000\t]\n[0\t]\n"));
}

TEST(ZoArray2DTest, OtherElementSizesAndDamagedDimensionsEndInTheLibrarysExceptions)
{
    const ZoArray2D<float> floats = grid<float>(3, 2, {1, 2, 3, 4, 5, 6});
    ZoArray2D<unsigned short> shorts = grid<unsigned short>(2, 2, {1, 2, 3, 4});
    ZoStreamReadBinaryMemory in(serialized(floats));
    zotest::ExpectThrowSite<ZoExceptionWrongFileVersion>([&] { shorts.Serialize(in); }, "..\\base\\ZoArray2D.cpp", "ZoArray2D",
                                                         "Serialize", 757); // a float array read as unsigned short
    // The storage no longer matches, so there is none; element-wise use is harmless.
    EXPECT_TRUE(shorts.GetWidth() == 3u && shorts.GetHeight() == 2u && shorts.GetData() == nullptr);
    shorts += static_cast<unsigned short>(1);
    EXPECT_EQ(shorts.GetMax(), 0);
    EXPECT_EQ(serialized(shorts), Bytes({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0}));
    // With an unchanged count the old block stays, reshaped.
    ZoArray2D<unsigned short> sameCount = grid<unsigned short>(6, 1, {1, 2, 3, 4, 5, 6});
    ZoStreamReadBinaryMemory again(serialized(floats));
    EXPECT_THROW(sameCount.Serialize(again), ZoExceptionWrongFileVersion);
    EXPECT_EQ(contents(sameCount), (std::vector<double>{1, 2, 3, 4, 5, 6})); // rows of 3 now
    ZoArray2D<float> array;
    auto readInto = [](ZoArray2D<float>& into, const std::vector<unsigned char>& bytes) {
        ZoStreamReadBinaryMemory in(bytes);
        into.Serialize(in);
    };
    // 65536 x 65536 floats (a count that wraps to 0) with 8 bytes present, and the largest claim.
    EXPECT_THROW(readInto(array, Bytes({0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 1, 0, 4, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8})), ZoExceptionStream);
    EXPECT_EQ(array.GetData(), nullptr);
    EXPECT_THROW(readInto(array, Bytes({0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 4, 0, 0, 0, 1})), ZoExceptionStream);
    // A zero width with a huge height holds no elements and needs no rows.
    readInto(array, Bytes({0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0xFF, 4, 0, 0, 0}));
    EXPECT_TRUE(array.GetHeight() == 0xFFFFFFFFu && array.GetData() == nullptr);
    EXPECT_THROW(readInto(array, Bytes({1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 4, 0, 0, 0, 0, 0, 0, 0})), ZoExceptionWrongFileVersion);
    const std::vector<unsigned char> whole = serialized(grid<float>(3, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9}));
    for (size_t length = 0; length < whole.size(); ++length) {
        ZoArray2D<float> target(3, 3);
        EXPECT_THROW(readInto(target, std::vector<unsigned char>(whole.begin(), whole.begin() + static_cast<long>(length))), ZoException) << length;
    }
    ZoArray2D<uint32_t> large(1024, 1100), largeRead;
    for (uint32_t i = 0; i < 1024 * 1100; ++i)
        large.GetData()[i] = i * 2654435761u;
    ZoStreamReadBinaryMemory largeIn(serialized(large));
    largeRead.Serialize(largeIn);
    ASSERT_TRUE(largeRead.GetWidth() == 1024 && largeRead.GetHeight() == 1100);
    EXPECT_EQ(std::memcmp(largeRead.GetData(), large.GetData(), 1024 * 1100 * 4), 0);
}

} // namespace
