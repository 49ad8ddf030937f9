#include "base/ZoFPUControl.h"

#include <gtest/gtest.h>

namespace {

// Restores the test thread's rounding mode however a test ends.
class RoundingGuard
{
public:
    RoundingGuard() : m_saved(ZoFPUControl::GetRounding()) {}
    ~RoundingGuard() { ZoFPUControl::SetRounding(m_saved); }

private:
    ZoFPUControl::EFloatRounding m_saved;
};

TEST(ZoFPUControlTest, RoundingRoundTripsAndChangesArithmetic)
{
    RoundingGuard guard;
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundNear) << "the C run-time's default";
    const ZoFPUControl::EFloatRounding modes[] = {ZoFPUControl::eRoundUp, ZoFPUControl::eRoundDown,
                                                  ZoFPUControl::eRoundChop, ZoFPUControl::eRoundNear};
    for (ZoFPUControl::EFloatRounding mode : modes) {
        ZoFPUControl::SetRounding(mode);
        EXPECT_EQ(ZoFPUControl::GetRounding(), mode);
    }

    volatile double one = 1.0, three = 3.0, minusOne = -1.0;
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundUp);
    const double upward = one / three;
    const double upwardNegative = minusOne / three;
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundDown);
    const double downward = one / three;
    const double downwardNegative = minusOne / three;
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundChop);
    const double chopped = one / three;
    const double choppedNegative = minusOne / three;
    EXPECT_GT(upward, downward);
    EXPECT_EQ(chopped, downward) << "toward zero rounds a positive quotient down";
    EXPECT_EQ(choppedNegative, upwardNegative) << "and a negative one up";
    EXPECT_LT(downwardNegative, upwardNegative);
}

TEST(ZoFPUControlTest, OutOfRangeValuesAndPrecisionChangeNothing)
{
    RoundingGuard guard;
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundDown);
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundUnknown);
    ZoFPUControl::SetRounding(static_cast<ZoFPUControl::EFloatRounding>(5));
    ZoFPUControl::SetRounding(static_cast<ZoFPUControl::EFloatRounding>(-1));
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundDown);

    const ZoFPUControl::EFloatPrecision precision = ZoFPUControl::GetPrecision();
    ZoFPUControl control;
    control.SetPrecision(ZoFPUControl::ePrecision24);
    EXPECT_EQ(ZoFPUControl::GetPrecision(), precision);
    control.SaveFloatingPointControl();
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundUp);
    control.RestoreFloatingPointControl();
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundUp) << "save and restore do nothing on x64";
    EXPECT_EQ(ZoFPUControl::GetPrecision(), precision);
}

} // namespace
