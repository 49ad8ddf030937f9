#include "platform/ZoOS.h"

#include <gtest/gtest.h>

namespace {

TEST(ZoOSTimeTest, FieldsOutOfRangeAreRefusedAndTicksStayUntouched)
{
    const SYSTEMTIME valid = {2009, 3, 0, 5, 10, 0, 30, 250};
    uint64_t ticks = 0;
    ASSERT_TRUE(ZoOS::SystemTimeToTicks(valid, ticks));
    EXPECT_EQ(ticks, 128807208302500000ull);

    SYSTEMTIME bad[] = {valid, valid, valid, valid, valid, valid, valid, valid, valid};
    bad[0].wYear = 1600;
    bad[1].wMonth = 0;
    bad[2].wMonth = 13;
    bad[3].wDay = 0;
    bad[4].wDay = 32;
    bad[5].wHour = 24;
    bad[6].wMinute = 60;
    bad[7].wSecond = 60;
    bad[8].wMilliseconds = 1000;
    for (const SYSTEMTIME& fields : bad) {
        uint64_t untouched = 7;
        EXPECT_FALSE(ZoOS::SystemTimeToTicks(fields, untouched))
            << fields.wYear << "-" << fields.wMonth << "-" << fields.wDay << " " << fields.wHour << ":" << fields.wMinute
            << ":" << fields.wSecond << "." << fields.wMilliseconds;
        EXPECT_EQ(untouched, 7u);
    }
}

} // namespace
