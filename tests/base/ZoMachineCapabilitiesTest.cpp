// What the library learns about the machine and the processor's floating-point state.
#include "base/ZoFPUControl.h"
#include "base/ZoMachineCapabilities.h"
#include "platform/ZoOS.h"

#include <gtest/gtest.h>

#if !defined(_WIN32)
#include <sched.h>
#include <thread>
#endif

namespace {

TEST(ZoMachineCapabilitiesTest, GatheredAtLoadFromThisMachine)
{
    EXPECT_TRUE(ZoMachineCapabilities::HasInstance()) << "made while the library loaded";
    const ZoMachineCapabilities& machine = ZoMachineCapabilities::GetInstance();
    EXPECT_EQ(machine.GetCPUCount(), ZoOS::GetProcessorCount());
    EXPECT_GE(machine.GetCPUCount(), 1u);
#if defined(__x86_64__) || defined(__i386__)
    EXPECT_FALSE(machine.GetProcessorVendorName().IsEmpty());
    EXPECT_GE(machine.GetProcessorFamily(), 3u) << "every x86-64 processor is of family 6 or above";
#endif
    EXPECT_GT(machine.GetTotalPhysicalMemory(), uint64_t(16) << 20);
    const uint64_t available = machine.GetAvailablePhysicalMemory();
    EXPECT_GT(available, 0u);
    EXPECT_LE(available, machine.GetTotalPhysicalMemory());
#if !defined(_WIN32)
    // The processors a thread may use count, not those the machine has: a thread bound to one
    // processor is told one.
    uint32_t counted = 0;
    std::thread bound([&counted] {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(sched_getcpu(), &one);
        if (sched_setaffinity(0, sizeof one, &one) == 0)
            counted = ZoOS::GetProcessorCount();
    });
    bound.join();
    EXPECT_EQ(counted, 1u);
#endif
}

TEST(ZoMachineCapabilitiesTest, VendorTableAndSignatureDecoding)
{
    EXPECT_EQ(ZoMachineCapabilities::VendorOfId("GenuineIntel"), ZoMachineCapabilities::eVendorIntel);
    EXPECT_EQ(ZoMachineCapabilities::VendorOfId("AuthenticAMD"), ZoMachineCapabilities::eVendorAMD);
    EXPECT_EQ(ZoMachineCapabilities::VendorOfId("  Shanghai  "), ZoMachineCapabilities::eVendorZhaoxin);
    EXPECT_EQ(ZoMachineCapabilities::VendorOfId("GenuineIntelX"), ZoMachineCapabilities::eVendorUnknown);
    EXPECT_EQ(ZoMachineCapabilities::VendorName(ZoMachineCapabilities::eVendorHygon), CString(u"Hygon"));
    EXPECT_EQ(ZoMachineCapabilities::VendorName(ZoMachineCapabilities::eVendorUnknown), CString());
    const struct
    {
        uint32_t signature, family, model, stepping;
    } signatures[] = {
        {0x000906EA, 6, 0x9E, 10},   // family 6 takes the extended model
        {0x00A20F10, 0x19, 0x21, 0}, // family 15 adds the extended family and takes the extended model
        {0x00000F29, 15, 2, 9},
        {0x000F0572, 5, 7, 2},       // other families ignore both extended fields
        {0x00000000, 0, 0, 0},
    };
    for (const auto& known : signatures) {
        uint32_t family = 99, model = 99, stepping = 99;
        ZoMachineCapabilities::DecodeSignature(known.signature, family, model, stepping);
        EXPECT_EQ(family, known.family) << std::hex << known.signature;
        EXPECT_EQ(model, known.model) << std::hex << known.signature;
        EXPECT_EQ(stepping, known.stepping) << std::hex << known.signature;
    }
}

// Restores the test thread's rounding mode however a test ends.
class RoundingGuard
{
public:
    RoundingGuard() : m_saved(ZoFPUControl::GetRounding()) {}
    ~RoundingGuard() { ZoFPUControl::SetRounding(m_saved); }

private:
    ZoFPUControl::EFloatRounding m_saved;
};

TEST(ZoFPUControlTest, RoundingRoundTripsChangesArithmeticAndIgnoresBadValues)
{
    RoundingGuard guard;
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundNear) << "the C run-time's default";
    volatile double one = 1.0, three = 3.0, minusOne = -1.0;
    double quotients[4][2];
    const ZoFPUControl::EFloatRounding modes[] = {ZoFPUControl::eRoundUp, ZoFPUControl::eRoundDown, ZoFPUControl::eRoundChop,
                                                  ZoFPUControl::eRoundNear};
    for (int i = 0; i < 4; ++i) {
        ZoFPUControl::SetRounding(modes[i]);
        EXPECT_EQ(ZoFPUControl::GetRounding(), modes[i]);
        quotients[i][0] = one / three;
        quotients[i][1] = minusOne / three;
    }
    EXPECT_GT(quotients[0][0], quotients[1][0]);
    EXPECT_LT(quotients[1][1], quotients[0][1]);
    EXPECT_EQ(quotients[2][0], quotients[1][0]) << "toward zero rounds a positive quotient down";
    EXPECT_EQ(quotients[2][1], quotients[0][1]) << "and a negative one up";
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundDown);
    for (int bad : {int(ZoFPUControl::eRoundUnknown), 5, -1})
        ZoFPUControl::SetRounding(static_cast<ZoFPUControl::EFloatRounding>(bad));
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundDown);
    const ZoFPUControl::EFloatPrecision precision = ZoFPUControl::GetPrecision();
    ZoFPUControl control;
    control.SetPrecision(ZoFPUControl::ePrecision24);
    control.SaveFloatingPointControl();
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundUp);
    control.RestoreFloatingPointControl();
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundUp) << "save and restore do nothing on x64";
    EXPECT_EQ(ZoFPUControl::GetPrecision(), precision) << "and neither does the precision";
}

} // namespace
