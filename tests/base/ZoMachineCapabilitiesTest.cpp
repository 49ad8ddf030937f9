#include "base/ZoMachineCapabilities.h"
#include "platform/ZoOS.h"

#include <gtest/gtest.h>

namespace {

TEST(ZoMachineCapabilitiesTest, GatheredAtLoadWithTheProcessorCount)
{
    EXPECT_TRUE(ZoMachineCapabilities::HasInstance()) << "made while the library loaded";
    const ZoMachineCapabilities& capabilities = ZoMachineCapabilities::GetInstance();
    EXPECT_EQ(&capabilities, &ZoMachineCapabilities::GetInstance());
    EXPECT_GE(capabilities.GetCPUCount(), 1u);
    EXPECT_EQ(capabilities.GetCPUCount(), ZoOS::GetProcessorCount());
}

} // namespace
