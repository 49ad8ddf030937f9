#include "base/ZoMachineCapabilities.h"

#include "platform/ZoOS.h"

#include <cstring>
#include <string>

template class ZoSingleton<ZoMachineCapabilities>;

namespace {

struct VendorEntry
{
    const char* id;
    ZoMachineCapabilities::EProcessorVendor vendor;
    const char16_t* name;
};

// The vendor ids x86 processors report, with the names people know them by.
const VendorEntry sc_vendors[] = {
    {"GenuineIntel", ZoMachineCapabilities::eVendorIntel, u"Intel"},
    {"AuthenticAMD", ZoMachineCapabilities::eVendorAMD, u"AMD"},
    {"CentaurHauls", ZoMachineCapabilities::eVendorVIA, u"VIA"},
    {"HygonGenuine", ZoMachineCapabilities::eVendorHygon, u"Hygon"},
    {"  Shanghai  ", ZoMachineCapabilities::eVendorZhaoxin, u"Zhaoxin"},
};

} // namespace

ZoMachineCapabilities::ZoMachineCapabilities()
    : m_cpuCount(ZoOS::GetProcessorCount()), m_vendor(eVendorUnknown), m_family(0), m_model(0), m_stepping(0),
      m_totalMemory(0)
{
    std::string vendorId;
    std::string brand;
    uint32_t signature = 0;
    if (ZoOS::GetProcessorIdentification(vendorId, brand, signature)) {
        m_vendor = VendorOfId(vendorId.c_str());
        m_vendorName = m_vendor != eVendorUnknown ? VendorName(m_vendor) : CString(vendorId);
        m_modelName = CString(brand);
        DecodeSignature(signature, m_family, m_model, m_stepping);
    }
    uint64_t available = 0;
    if (!ZoOS::GetPhysicalMemoryStatus(m_totalMemory, available))
        m_totalMemory = 0;
}

ZoMachineCapabilities::~ZoMachineCapabilities() = default;

uint64_t ZoMachineCapabilities::GetAvailablePhysicalMemory() const
{
    uint64_t total = 0;
    uint64_t available = 0;
    return ZoOS::GetPhysicalMemoryStatus(total, available) ? available : 0;
}

ZoMachineCapabilities::EProcessorVendor ZoMachineCapabilities::VendorOfId(const char* vendorId)
{
    for (const VendorEntry& entry : sc_vendors)
        if (std::strcmp(entry.id, vendorId) == 0)
            return entry.vendor;
    return eVendorUnknown;
}

CString ZoMachineCapabilities::VendorName(EProcessorVendor vendor)
{
    for (const VendorEntry& entry : sc_vendors)
        if (entry.vendor == vendor)
            return CString(entry.name);
    return CString();
}

void ZoMachineCapabilities::DecodeSignature(uint32_t signature, uint32_t& family, uint32_t& model, uint32_t& stepping)
{
    const uint32_t baseFamily = (signature >> 8) & 0xF;
    const uint32_t baseModel = (signature >> 4) & 0xF;
    stepping = signature & 0xF;
    family = baseFamily == 15 ? baseFamily + ((signature >> 20) & 0xFF) : baseFamily;
    model = baseFamily == 6 || baseFamily == 15 ? baseModel | (((signature >> 16) & 0xF) << 4) : baseModel;
}

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
