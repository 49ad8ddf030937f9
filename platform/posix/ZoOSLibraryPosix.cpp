// The POSIX (Linux) implementation of the OS layer's run-time loaded libraries.
//
// dlerror() only gives text, so the last error is chosen here: the reason a missing or unreadable
// file gives (ENOENT, EACCES ...) when the file cannot be reached, ENOEXEC when it is there but is
// not a library this process can load, ENOSYS for an entry the library does not export.
#include "platform/ZoOS.h"

#include <cerrno>
#include <dlfcn.h>
#include <string>
#include <unistd.h>

namespace ZoOS {

LibraryHandle LoadDynamicLibrary(const CString& path)
{
    const std::string bytes = path.ToUtf8();
    // RTLD_NOW: a library with a missing dependency fails here, not at its first call.
    void* library = ::dlopen(bytes.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) {
        int code = ENOEXEC;
        if (bytes.empty())
            code = ENOENT;
        else if (::access(bytes.c_str(), R_OK) != 0)
            code = errno;
        SetLastErrorCode(static_cast<uint32_t>(code));
        return nullptr;
    }
    SetLastErrorCode(0);
    return library;
}

void* GetDynamicEntry(LibraryHandle library, uint32_t ordinal)
{
    // ELF has no ordinals: the library exports entry n under a fixed C name instead.
    const std::string name = "zo_ordinal_" + std::to_string(ordinal);
    return GetDynamicEntry(library, name.c_str());
}

void* GetDynamicEntry(LibraryHandle library, const char* name)
{
    if (library == nullptr || name == nullptr) {
        SetLastErrorCode(EINVAL);
        return nullptr;
    }
    void* entry = ::dlsym(library, name);
    SetLastErrorCode(entry != nullptr ? 0 : ENOSYS);
    return entry;
}

void FreeDynamicLibrary(LibraryHandle library)
{
    if (library == nullptr || ::dlclose(library) != 0) {
        SetLastErrorCode(EINVAL);
        return;
    }
    SetLastErrorCode(0);
}

} // namespace ZoOS
