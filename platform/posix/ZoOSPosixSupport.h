// What the POSIX files of the OS layer share: recording the last error as each function ends.
#pragma once

#include "platform/ZoOS.h"

#include <cerrno>
#include <cstdint>

namespace ZoOS {
namespace posix {

// Records `error` as the calling thread's last error; false, for `return fail(...)`.
inline bool fail(int error)
{
    SetLastErrorCode(static_cast<uint32_t>(error));
    return false;
}

inline bool succeed()
{
    SetLastErrorCode(0);
    return true;
}

// Records errno as the last error and hands back `result`.
template <class T>
T failed(T result)
{
    SetLastErrorCode(static_cast<uint32_t>(errno));
    return result;
}

template <class T>
T succeeded(T result)
{
    SetLastErrorCode(0);
    return result;
}

} // namespace posix
} // namespace ZoOS
