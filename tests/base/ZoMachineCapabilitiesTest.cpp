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
    EXPECT_TRUE(machine.GetCPUCount() == ZoOS::GetProcessorCount() && machine.GetCPUCount() >= 1);
    EXPECT_GT(machine.GetTotalPhysicalMemory(), uint64_t(16) << 20);
    const uint64_t available = machine.GetAvailablePhysicalMemory();
    EXPECT_TRUE(available > 0 && available <= machine.GetTotalPhysicalMemory());
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
        EXPECT_TRUE(family == known.family && model == known.model && stepping == known.stepping)
            << std::hex << known.signature << ": " << family << " " << model << " " << stepping;
    }
}

TEST(ZoFPUControlTest, RoundingChangesArithmeticAndIgnoresBadValues)
{
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundNear) << "the C run-time's default";
    volatile double one = 1.0, three = 3.0;
    double up = 0, minusUp = 0;
    // Chop rounds the positive third down and the negative one up; the last mode is the default.
    for (const auto mode : {ZoFPUControl::eRoundUp, ZoFPUControl::eRoundDown, ZoFPUControl::eRoundChop, ZoFPUControl::eRoundNear}) {
        ZoFPUControl::SetRounding(mode);
        EXPECT_EQ(ZoFPUControl::GetRounding(), mode);
        const double third = one / three, minusThird = -one / three;
        if (mode == ZoFPUControl::eRoundUp)
            up = third, minusUp = minusThird;
        EXPECT_TRUE(mode != ZoFPUControl::eRoundDown || (third < up && minusThird < minusUp));
        EXPECT_TRUE(mode != ZoFPUControl::eRoundChop || (third < up && minusThird == minusUp));
    }
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundDown);
    for (int bad : {int(ZoFPUControl::eRoundUnknown), 5, -1})
        ZoFPUControl::SetRounding(static_cast<ZoFPUControl::EFloatRounding>(bad));
    EXPECT_EQ(ZoFPUControl::GetRounding(), ZoFPUControl::eRoundDown);
    ZoFPUControl::SetRounding(ZoFPUControl::eRoundNear);
}

} // namespace
