// ZoMachineCapabilities: what the library knows about the machine it runs on, gathered once when the
// library is loaded and fixed for the life of the process. The thread pool sizes itself by the
// processor count.
//
// A process-wide singleton. Reach it through ZoMachineCapabilities::GetInstance(): the library owns
// the one instance, also where template statics cannot be shared between the library and a program.
#pragma once

#include "base/ZoSingleton.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoMachineCapabilities : public ZoSingleton<ZoMachineCapabilities>
{
public:
    // The number of logical processors the process may run on (at least 1).
    uint32_t GetCPUCount() const { return m_cpuCount; }

    static ZoMachineCapabilities& GetInstance();
    static bool HasInstance();

private:
    friend class ZoSingleton<ZoMachineCapabilities>;
    ZoMachineCapabilities();
    ~ZoMachineCapabilities() override;

    uint32_t m_cpuCount;
};

ZO_EXTERN_TEMPLATE(class ZoSingleton<ZoMachineCapabilities>)
