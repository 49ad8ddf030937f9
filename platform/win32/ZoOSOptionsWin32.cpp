// The Win32 implementation of the OS layer's persistent options: the system registry.
#include "platform/ZoOS.h"

namespace ZoOS {

namespace {

// The predefined roots are sign-extended 32-bit numbers in a pointer-sized handle.
HKEY rootHandle(uint32_t root)
{
    return reinterpret_cast<HKEY>(static_cast<ULONG_PTR>(static_cast<LONG_PTR>(static_cast<LONG>(root))));
}

bool result(LONG status)
{
    SetLastErrorCode(static_cast<uint32_t>(status));
    return status == ERROR_SUCCESS;
}

} // namespace

bool ReadOptionValue(uint32_t root, const CString& key, const CString& name, void* data, uint32_t& size)
{
    if (root == 0)
        return result(ERROR_INVALID_HANDLE);
    HKEY opened = nullptr;
    LONG status = ::RegOpenKeyExW(rootHandle(root), reinterpret_cast<const wchar_t*>(key.GetString()), 0,
                                  KEY_QUERY_VALUE, &opened);
    if (status != ERROR_SUCCESS)
        return result(status);
    DWORD bytes = size;
    status = ::RegQueryValueExW(opened, reinterpret_cast<const wchar_t*>(name.GetString()), nullptr, nullptr,
                                static_cast<BYTE*>(data), &bytes);
    ::RegCloseKey(opened);
    if (status == ERROR_SUCCESS)
        size = bytes;
    return result(status);
}

bool WriteOptionValue(uint32_t root, const CString& key, const CString& name, uint32_t type, const void* data,
                      uint32_t size)
{
    if (root == 0)
        return result(ERROR_INVALID_HANDLE);
    HKEY opened = nullptr;
    // No class, non-volatile (options 0), KEY_WRITE, no security attributes.
    LONG status = ::RegCreateKeyExW(rootHandle(root), reinterpret_cast<const wchar_t*>(key.GetString()), 0, nullptr,
                                    0, KEY_WRITE, nullptr, &opened, nullptr);
    if (status != ERROR_SUCCESS)
        return result(status);
    status = ::RegSetValueExW(opened, reinterpret_cast<const wchar_t*>(name.GetString()), 0, type,
                              static_cast<const BYTE*>(data), size);
    ::RegCloseKey(opened);
    return result(status);
}

bool DeleteOptionValue(uint32_t root, const CString& key, const CString& name)
{
    if (root == 0)
        return result(ERROR_INVALID_HANDLE);
    HKEY opened = nullptr;
    LONG status = ::RegOpenKeyExW(rootHandle(root), reinterpret_cast<const wchar_t*>(key.GetString()), 0,
                                  KEY_SET_VALUE, &opened);
    if (status != ERROR_SUCCESS)
        return result(status);
    status = ::RegDeleteValueW(opened, reinterpret_cast<const wchar_t*>(name.GetString()));
    ::RegCloseKey(opened);
    return result(status);
}

} // namespace ZoOS
