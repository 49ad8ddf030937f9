#include "base/ZoMachineCapabilities.h"

#include "platform/ZoOS.h"

template class ZoSingleton<ZoMachineCapabilities>;

ZoMachineCapabilities::ZoMachineCapabilities() : m_cpuCount(ZoOS::GetProcessorCount()) {}

ZoMachineCapabilities::~ZoMachineCapabilities() = default;

ZoMachineCapabilities& ZoMachineCapabilities::GetInstance()
{
    return ZoSingleton<ZoMachineCapabilities>::GetInstance();
}

bool ZoMachineCapabilities::HasInstance()
{
    return ZoSingleton<ZoMachineCapabilities>::HasInstance();
}

namespace {
// Gathers the capabilities while the library loads, before a user's thread can ask for them.
[[maybe_unused]] const bool s_capabilitiesGathered = (ZoMachineCapabilities::GetInstance(), true);
} // namespace
