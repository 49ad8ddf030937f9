// The POSIX implementation of the OS layer's files, folders and text conversion.
#include "platform/ZoOS.h"
#include "platform/posix/ZoOSPosixSupport.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZoOS {

using posix::fail;
using posix::failed;
using posix::succeed;
using posix::succeeded;

namespace {

int fd(FileHandle file)
{
    return static_cast<int>(file);
}

std::string homeFolder()
{
    if (const char* home = std::getenv("HOME"); home != nullptr && *home != 0)
        return home;
    if (const passwd* entry = getpwuid(getuid()); entry != nullptr && entry->pw_dir != nullptr)
        return entry->pw_dir;
    return "/";
}

std::string environmentOr(const char* name, const std::string& fallback)
{
    const char* value = std::getenv(name);
    return value != nullptr && *value != 0 ? std::string(value) : fallback;
}

CString withSeparator(std::string path)
{
    if (path.empty() || path.back() != '/')
        path += '/';
    return CString(path);
}

} // namespace

std::string WideToAnsi(const CString& text)
{
    return text.ToAnsi();
}

CString AnsiToWide(const char* bytes, size_t length)
{
    return CString::FromAnsi(bytes, length);
}

FileHandle OpenFileHandle(const CString& path, uint32_t flags)
{
    int mode = O_CLOEXEC;
    if ((flags & eFileRead) && (flags & eFileWrite))
        mode |= O_RDWR;
    else if (flags & eFileWrite)
        mode |= O_WRONLY;
    else
        mode |= O_RDONLY;
    if (flags & eFileCreate)
        mode |= O_CREAT;
    if (flags & eFileTruncate)
        mode |= O_TRUNC;
    const int file = ::open(path.ToUtf8().c_str(), mode, 0666);
    if (file < 0)
        return failed(sc_invalidFile);
    // A folder opens for reading on POSIX but is no file to read; refuse it as Windows does.
    struct stat info;
    if (::fstat(file, &info) == 0 && S_ISDIR(info.st_mode)) {
        ::close(file);
        errno = EISDIR;
        return failed(sc_invalidFile);
    }
    return succeeded(static_cast<FileHandle>(file));
}

bool CloseFileHandle(FileHandle file)
{
    return ::close(fd(file)) == 0 ? succeeded(true) : failed(false);
}

int64_t ReadFileBytes(FileHandle file, void* buffer, uint64_t size)
{
    auto* target = static_cast<char*>(buffer);
    uint64_t done = 0;
    while (done < size) {
        const size_t chunk = size - done > sc_largestFileTransfer ? sc_largestFileTransfer : static_cast<size_t>(size - done);
        const ssize_t read = ::read(fd(file), target + done, chunk);
        if (read < 0) {
            if (errno == EINTR)
                continue;
            return failed<int64_t>(-1);
        }
        if (read == 0)
            break;
        done += static_cast<uint64_t>(read);
    }
    return succeeded(static_cast<int64_t>(done));
}

bool WriteFileBytes(FileHandle file, const void* buffer, uint64_t size)
{
    const auto* source = static_cast<const char*>(buffer);
    uint64_t done = 0;
    while (done < size) {
        const size_t chunk = size - done > sc_largestFileTransfer ? sc_largestFileTransfer : static_cast<size_t>(size - done);
        const ssize_t written = ::write(fd(file), source + done, chunk);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return failed(false);
        }
        done += static_cast<uint64_t>(written);
    }
    return succeeded(true);
}

int64_t SeekFileHandle(FileHandle file, int64_t offset, ESeekOrigin origin)
{
    const int whence = origin == eSeekBegin ? SEEK_SET : origin == eSeekCurrent ? SEEK_CUR : SEEK_END;
    const off_t position = ::lseek(fd(file), static_cast<off_t>(offset), whence);
    return position < 0 ? failed<int64_t>(-1) : succeeded(static_cast<int64_t>(position));
}

int64_t GetFileHandleLength(FileHandle file)
{
    struct stat info;
    if (::fstat(fd(file), &info) != 0)
        return failed<int64_t>(-1);
    return succeeded(static_cast<int64_t>(info.st_size));
}

bool FlushFileHandle(FileHandle file)
{
    return ::fsync(fd(file)) == 0 || errno == EINVAL ? succeeded(true) : failed(false);
}

char16_t GetPathSeparator()
{
    return u'/';
}

bool PathExists(const CString& path)
{
    struct stat info;
    return ::stat(path.ToUtf8().c_str(), &info) == 0 ? succeeded(true) : failed(false);
}

bool IsDirectoryPath(const CString& path)
{
    struct stat info;
    if (::stat(path.ToUtf8().c_str(), &info) != 0)
        return failed(false);
    return succeeded(S_ISDIR(info.st_mode) != 0);
}

bool CreateFolder(const CString& path)
{
    return ::mkdir(path.ToUtf8().c_str(), 0777) == 0 ? succeeded(true) : failed(false);
}

bool DeleteFilePath(const CString& path)
{
    return ::unlink(path.ToUtf8().c_str()) == 0 ? succeeded(true) : failed(false);
}

bool CopyFilePath(const CString& source, const CString& target, bool failIfExists)
{
    const int in = ::open(source.ToUtf8().c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0)
        return failed(false);
    struct stat info;
    const bool measured = ::fstat(in, &info) == 0;
    if (!measured || S_ISDIR(info.st_mode)) {
        const int error = measured ? EISDIR : errno;
        ::close(in);
        errno = error;
        return failed(false);
    }
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (failIfExists ? O_EXCL : O_TRUNC);
    const int out = ::open(target.ToUtf8().c_str(), flags, info.st_mode & 0777);
    if (out < 0) {
        const int error = errno;
        ::close(in);
        errno = error;
        return failed(false);
    }
    char buffer[65536];
    bool ok = true;
    for (;;) {
        const int64_t read = ReadFileBytes(in, buffer, sizeof buffer);
        if (read <= 0) {
            ok = read == 0;
            break;
        }
        if (!WriteFileBytes(out, buffer, static_cast<uint64_t>(read))) {
            ok = false;
            break;
        }
    }
    const int error = errno;
    ::close(in);
    if (::close(out) != 0)
        ok = false;
    if (!ok) {
        errno = error;
        return failed(false);
    }
    return succeeded(true);
}

CString GetKnownFolder(EKnownFolder folder)
{
    const std::string home = homeFolder();
    const std::string dataHome = environmentOr("XDG_DATA_HOME", home + "/.local/share");
    switch (folder) {
    case eFolderTemporary:
        return withSeparator(environmentOr("TMPDIR", "/tmp"));
    case eFolderDesktop:
        return withSeparator(environmentOr("XDG_DESKTOP_DIR", home + "/Desktop"));
    case eFolderProgramFiles:
        return withSeparator("/opt");
    case eFolderDocuments:
        return withSeparator(environmentOr("XDG_DOCUMENTS_DIR", home + "/Documents"));
    case eFolderLocalAppData:
        return withSeparator(dataHome);
    case eFolderFavorites:
        return withSeparator(home + "/.local/share/favorites");
    case eFolderStartup:
        return withSeparator(environmentOr("XDG_CONFIG_HOME", home + "/.config") + "/autostart");
    case eFolderRecent:
        return withSeparator(home + "/.local/share/recent");
    case eFolderSendTo:
        return withSeparator(home + "/.local/share/sendto");
    case eFolderCommonStartMenu:
        return withSeparator("/usr/share/applications");
    case eFolderFonts:
        return withSeparator(home + "/.local/share/fonts");
    case eFolderCurrent: {
        char buffer[PATH_MAX];
        if (::getcwd(buffer, sizeof buffer) == nullptr)
            return failed(CString());
        return succeeded(withSeparator(buffer));
    }
    }
    return CString();
}

CString GetExecutablePath()
{
    char buffer[PATH_MAX];
    const ssize_t length = ::readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (length < 0)
        return failed(CString());
    return succeeded(CString(std::string(buffer, static_cast<size_t>(length))));
}

// ---- folder listings ----------------------------------------------------------------------------

namespace {

struct Listing
{
    DIR* folder;
    std::string path; // with a trailing separator, for the entries whose kind must be asked for
    CString pattern;
};

} // namespace

FolderListing OpenFolderListing(const CString& folder, const CString& pattern)
{
    std::string path = folder.ToUtf8();
    DIR* opened = ::opendir(path.empty() ? "." : path.c_str());
    if (opened == nullptr)
        return failed<FolderListing>(nullptr);
    if (!path.empty() && path.back() != '/')
        path += '/';
    return succeeded<FolderListing>(new Listing{opened, path, pattern});
}

bool ReadFolderListing(FolderListing listing, CString& name, bool& isFolder)
{
    auto* open = static_cast<Listing*>(listing);
    if (open == nullptr)
        return fail(EBADF);
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(open->folder);
        if (entry == nullptr)
            return errno != 0 ? failed(false) : succeeded(false);
        if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
            continue;
        const CString candidate(entry->d_name);
        if (!MatchesWildcard(candidate, open->pattern))
            continue;
        if (entry->d_type != DT_UNKNOWN && entry->d_type != DT_LNK) {
            isFolder = entry->d_type == DT_DIR;
        } else {
            // Some file systems do not say; a link counts as what it points to.
            struct stat info;
            isFolder = ::stat((open->path + entry->d_name).c_str(), &info) == 0 && S_ISDIR(info.st_mode);
        }
        name = candidate;
        return succeed();
    }
}

void CloseFolderListing(FolderListing listing)
{
    auto* open = static_cast<Listing*>(listing);
    if (open == nullptr)
        return;
    ::closedir(open->folder);
    delete open;
}

} // namespace ZoOS
