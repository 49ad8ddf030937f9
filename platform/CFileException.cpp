#include "platform/CFileException.h"

#include <cerrno>

CFileException::ECause CFileException::CauseFromOsError(uint32_t osError)
{
#if defined(_WIN32)
    switch (osError) {
    case 2: return fileNotFound;       // ERROR_FILE_NOT_FOUND
    case 3: return badPath;            // ERROR_PATH_NOT_FOUND
    case 4: return tooManyOpenFiles;   // ERROR_TOO_MANY_OPEN_FILES
    case 5: return accessDenied;       // ERROR_ACCESS_DENIED
    case 6: return invalidFile;        // ERROR_INVALID_HANDLE
    case 32: return sharingViolation;  // ERROR_SHARING_VIOLATION
    case 33: return lockViolation;     // ERROR_LOCK_VIOLATION
    case 38: return endOfFile;         // ERROR_HANDLE_EOF
    case 112: return diskFull;         // ERROR_DISK_FULL
    case 131: return badSeek;          // ERROR_NEGATIVE_SEEK
    default: return osError == 0 ? none : genericException;
    }
#else
    switch (osError) {
    case ENOENT: return fileNotFound;
    case ENOTDIR:
    case ENAMETOOLONG: return badPath;
    case EMFILE:
    case ENFILE: return tooManyOpenFiles;
    case EACCES:
    case EPERM:
    case EROFS:
    case EISDIR: return accessDenied;
    case EBADF: return invalidFile;
    case ENOSPC: return diskFull;
    case ESPIPE:
    case EINVAL: return badSeek;
    case EIO: return hardIO;
    default: return osError == 0 ? none : genericException;
    }
#endif
}
