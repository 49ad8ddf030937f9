// The Win32 implementation of the OS layer's run-time loaded libraries.
#include "platform/ZoOS.h"

namespace ZoOS {

LibraryHandle LoadDynamicLibrary(const CString& path)
{
    HMODULE library = ::LoadLibraryW(reinterpret_cast<const wchar_t*>(path.GetString()));
    if (library != nullptr)
        ::SetLastError(0);
    return reinterpret_cast<LibraryHandle>(library);
}

void* GetDynamicEntry(LibraryHandle library, uint32_t ordinal)
{
    // An ordinal travels in the low word of the name pointer.
    FARPROC entry = ::GetProcAddress(static_cast<HMODULE>(library), reinterpret_cast<LPCSTR>(static_cast<uintptr_t>(ordinal & 0xFFFF)));
    if (entry != nullptr)
        ::SetLastError(0);
    return reinterpret_cast<void*>(entry);
}

void* GetDynamicEntry(LibraryHandle library, const char* name)
{
    FARPROC entry = ::GetProcAddress(static_cast<HMODULE>(library), name);
    if (entry != nullptr)
        ::SetLastError(0);
    return reinterpret_cast<void*>(entry);
}

void FreeDynamicLibrary(LibraryHandle library)
{
    if (library != nullptr && ::FreeLibrary(static_cast<HMODULE>(library)))
        ::SetLastError(0);
}

} // namespace ZoOS
