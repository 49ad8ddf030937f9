// The Win32 implementation of the OS layer's COM variant support.
#include "platform/ZoOS.h"

namespace ZoOS {

BSTR AllocateSystemString(const CString& text)
{
    BSTR result = ::SysAllocStringLen(reinterpret_cast<const OLECHAR*>(text.GetString()),
                                      static_cast<UINT>(text.GetLength()));
    SetLastErrorCode(result != nullptr ? 0 : ERROR_OUTOFMEMORY);
    return result;
}

} // namespace ZoOS
