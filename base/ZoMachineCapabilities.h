#pragma once

#include "base/ZoSingleton.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoMachineCapabilities: what the library knows about the machine it runs on. The processor count,
/// the processor's identification and the physical memory are gathered once when the library is
/// loaded and fixed for the life of the process; the available memory is asked for each time. The
/// thread pool sizes itself by the processor count.
///
/// The processor's identification comes from the processor itself (x86): its vendor id, decoded
/// through the table of known vendors, its brand text and its family, model and stepping decoded
/// from its signature as the vendors define them. Elsewhere they are unknown (eVendorUnknown, empty
/// texts, zeros).
///
/// A process-wide singleton. Reach it through ZoMachineCapabilities::GetInstance(): the library owns
/// the one instance, also where template statics cannot be shared between the library and a program.
/// @ingroup services
class ZO_API ZoMachineCapabilities : public ZoSingleton<ZoMachineCapabilities>
{
public:
    /// Processor makers the vendor table knows; eVendorUnknown for any other vendor id.
    enum EProcessorVendor
    {
        eVendorUnknown,
        eVendorIntel,
        eVendorAMD,
        eVendorVIA,
        eVendorHygon,
        eVendorZhaoxin,
    };

    /// The number of logical processors the process may run on (at least 1).
    uint32_t GetCPUCount() const { return m_cpuCount; }

    /// The maker found from the processor's vendor id; eVendorUnknown when it is not in the table.
    EProcessorVendor GetProcessorVendor() const { return m_vendor; }
    /// The vendor's name ("Intel", "AMD" ...), or the processor's own vendor id when the vendor is not
    /// in the table; empty when there is no identification.
    const CString& GetProcessorVendorName() const { return m_vendorName; }
    /// The brand text the processor gives (`"Intel(R) Core(TM) i7-8700 CPU @ 3.20GHz"`); may be empty.
    const CString& GetProcessorModelName() const { return m_modelName; }
    /// Display family from the processor signature (extended family included); 0 without identification.
    uint32_t GetProcessorFamily() const { return m_family; }
    /// Display model from the processor signature (extended model included); 0 without identification.
    uint32_t GetProcessorModel() const { return m_model; }
    /// Stepping from the processor signature; 0 without identification.
    uint32_t GetProcessorStepping() const { return m_stepping; }

    /// Bytes of physical memory in all (0 when the system cannot say).
    uint64_t GetTotalPhysicalMemory() const { return m_totalMemory; }
    /// Bytes of physical memory available to new allocations now; 0 when the system cannot say.
    uint64_t GetAvailablePhysicalMemory() const;

    /// The vendor table: the vendor of a 12-character vendor id, and the name it is shown with.
    static EProcessorVendor VendorOfId(const char* vendorId);
    /// The name a vendor is shown with ("Intel", "AMD" ...); empty for eVendorUnknown.
    static CString VendorName(EProcessorVendor vendor);
    /// Family, model and stepping from a processor signature. The extended family counts only for
    /// base family 15, the extended model only for base families 6 and 15.
    static void DecodeSignature(uint32_t signature, uint32_t& family, uint32_t& model, uint32_t& stepping);

    /// The process-wide instance; the library makes it while it loads, so the figures are read once.
    static ZoMachineCapabilities& GetInstance();
    /// True once the instance exists; makes nothing.
    static bool HasInstance();

private:
    friend class ZoSingleton<ZoMachineCapabilities>;
    ZoMachineCapabilities();
    ~ZoMachineCapabilities() override;

    uint32_t m_cpuCount;
    EProcessorVendor m_vendor;
    CString m_vendorName;
    CString m_modelName;
    uint32_t m_family;
    uint32_t m_model;
    uint32_t m_stepping;
    uint64_t m_totalMemory;
};

ZO_EXTERN_TEMPLATE(class ZoSingleton<ZoMachineCapabilities>)
