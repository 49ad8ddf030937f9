// The Win32 implementation of the OS layer's unique identifiers: the RPC run-time's sequential
// generator and its text conversion.
#include "platform/ZoOS.h"

#include <rpc.h>

namespace ZoOS {

bool CreateSequentialUuidText(CString& text)
{
    UUID uuid;
    // Only plain success will do: RPC_S_UUID_LOCAL_ONLY means the value is unique on this machine
    // alone, which a caller sharing identifiers with other machines cannot accept.
    RPC_STATUS status = ::UuidCreateSequential(&uuid);
    if (status != RPC_S_OK) {
        SetLastErrorCode(static_cast<uint32_t>(status));
        return false;
    }
    RPC_WSTR buffer = nullptr;
    status = ::UuidToStringW(&uuid, &buffer);
    if (status != RPC_S_OK || buffer == nullptr) {
        SetLastErrorCode(static_cast<uint32_t>(status != RPC_S_OK ? status : RPC_S_OUT_OF_MEMORY));
        return false;
    }
    text = CString(reinterpret_cast<const char16_t*>(buffer));
    ::RpcStringFreeW(&buffer);
    SetLastErrorCode(0);
    return true;
}

} // namespace ZoOS
