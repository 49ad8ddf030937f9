// The Win32 implementation of the OS layer's files, folders and text conversion.
#include "platform/ZoOS.h"

#include <shlobj.h>

#include <cwchar>

#include <vector>

namespace ZoOS {

namespace {

const wchar_t* wide(const CString& text)
{
    return reinterpret_cast<const wchar_t*>(text.GetString());
}

HANDLE handleOf(FileHandle file)
{
    return reinterpret_cast<HANDLE>(file);
}

CString fromWide(const wchar_t* text, size_t length)
{
    return CString(reinterpret_cast<const char16_t*>(text), static_cast<int>(length));
}

CString withSeparator(CString path)
{
    if (path.IsEmpty() || path[path.GetLength() - 1] != u'\\')
        path += u'\\';
    return path;
}

CString shellFolder(int csidl)
{
    wchar_t buffer[MAX_PATH] = {0};
    if (FAILED(::SHGetFolderPathW(nullptr, csidl, nullptr, 0, buffer)))
        return CString();
    return withSeparator(CString(reinterpret_cast<const char16_t*>(buffer)));
}

} // namespace

std::string WideToAnsi(const CString& text)
{
    if (text.IsEmpty())
        return std::string();
    const int needed = ::WideCharToMultiByte(CP_THREAD_ACP, 0, wide(text), text.GetLength(), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<size_t>(needed > 0 ? needed : 0), '\0');
    if (needed > 0)
        ::WideCharToMultiByte(CP_THREAD_ACP, 0, wide(text), text.GetLength(), &bytes[0], needed, nullptr, nullptr);
    return bytes;
}

CString AnsiToWide(const char* bytes, size_t length)
{
    if (length == 0)
        return CString();
    const int needed = ::MultiByteToWideChar(CP_THREAD_ACP, 0, bytes, static_cast<int>(length), nullptr, 0);
    std::vector<wchar_t> buffer(static_cast<size_t>(needed > 0 ? needed : 0));
    if (needed > 0)
        ::MultiByteToWideChar(CP_THREAD_ACP, 0, bytes, static_cast<int>(length), buffer.data(), needed);
    return fromWide(buffer.data(), buffer.size());
}

FileHandle OpenFileHandle(const CString& path, uint32_t flags)
{
    DWORD access = 0;
    if (flags & eFileRead)
        access |= GENERIC_READ;
    if (flags & eFileWrite)
        access |= GENERIC_WRITE;
    DWORD disposition = OPEN_EXISTING;
    if ((flags & eFileCreate) && (flags & eFileTruncate))
        disposition = CREATE_ALWAYS;
    else if (flags & eFileCreate)
        disposition = OPEN_ALWAYS;
    else if (flags & eFileTruncate)
        disposition = TRUNCATE_EXISTING;
    const HANDLE file = ::CreateFileW(wide(path), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                      FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return sc_invalidFile;
    ::SetLastError(0);
    return reinterpret_cast<FileHandle>(file);
}

bool CloseFileHandle(FileHandle file)
{
    if (!::CloseHandle(handleOf(file)))
        return false;
    ::SetLastError(0);
    return true;
}

int64_t ReadFileBytes(FileHandle file, void* buffer, uint64_t size)
{
    auto* target = static_cast<char*>(buffer);
    uint64_t done = 0;
    while (done < size) {
        const DWORD chunk = size - done > sc_largestFileTransfer ? sc_largestFileTransfer : static_cast<DWORD>(size - done);
        DWORD read = 0;
        if (!::ReadFile(handleOf(file), target + done, chunk, &read, nullptr))
            return -1;
        if (read == 0)
            break;
        done += read;
    }
    ::SetLastError(0);
    return static_cast<int64_t>(done);
}

bool WriteFileBytes(FileHandle file, const void* buffer, uint64_t size)
{
    const auto* source = static_cast<const char*>(buffer);
    uint64_t done = 0;
    while (done < size) {
        const DWORD chunk = size - done > sc_largestFileTransfer ? sc_largestFileTransfer : static_cast<DWORD>(size - done);
        DWORD written = 0;
        if (!::WriteFile(handleOf(file), source + done, chunk, &written, nullptr))
            return false;
        done += written;
    }
    ::SetLastError(0);
    return true;
}

int64_t SeekFileHandle(FileHandle file, int64_t offset, ESeekOrigin origin)
{
    LARGE_INTEGER distance;
    distance.QuadPart = offset;
    LARGE_INTEGER position;
    const DWORD method = origin == eSeekBegin ? FILE_BEGIN : origin == eSeekCurrent ? FILE_CURRENT : FILE_END;
    if (!::SetFilePointerEx(handleOf(file), distance, &position, method))
        return -1;
    ::SetLastError(0);
    return position.QuadPart;
}

int64_t GetFileHandleLength(FileHandle file)
{
    LARGE_INTEGER size;
    if (!::GetFileSizeEx(handleOf(file), &size))
        return -1;
    ::SetLastError(0);
    return size.QuadPart;
}

bool FlushFileHandle(FileHandle file)
{
    if (!::FlushFileBuffers(handleOf(file)))
        return false;
    ::SetLastError(0);
    return true;
}

char16_t GetPathSeparator()
{
    return u'\\';
}

bool PathExists(const CString& path)
{
    return ::GetFileAttributesW(wide(path)) != INVALID_FILE_ATTRIBUTES;
}

bool IsDirectoryPath(const CString& path)
{
    const DWORD attributes = ::GetFileAttributesW(wide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool CreateFolder(const CString& path)
{
    return ::CreateDirectoryW(wide(path), nullptr) != 0;
}

bool DeleteFilePath(const CString& path)
{
    return ::DeleteFileW(wide(path)) != 0;
}

bool CopyFilePath(const CString& source, const CString& target, bool failIfExists)
{
    return ::CopyFileW(wide(source), wide(target), failIfExists ? TRUE : FALSE) != 0;
}

CString GetKnownFolder(EKnownFolder folder)
{
    wchar_t buffer[MAX_PATH + 1] = {0};
    switch (folder) {
    case eFolderTemporary: {
        const DWORD length = ::GetTempPathW(MAX_PATH, buffer);
        return length == 0 || length > MAX_PATH ? CString() : withSeparator(fromWide(buffer, length));
    }
    case eFolderDesktop: return shellFolder(CSIDL_DESKTOPDIRECTORY);
    case eFolderProgramFiles: return shellFolder(CSIDL_PROGRAM_FILES);
    case eFolderDocuments: return shellFolder(CSIDL_PERSONAL);
    case eFolderLocalAppData: return shellFolder(CSIDL_LOCAL_APPDATA);
    case eFolderFavorites: return shellFolder(CSIDL_FAVORITES);
    case eFolderStartup: return shellFolder(CSIDL_STARTUP);
    case eFolderRecent: return shellFolder(CSIDL_RECENT);
    case eFolderSendTo: return shellFolder(CSIDL_SENDTO);
    case eFolderCommonStartMenu: return shellFolder(CSIDL_COMMON_STARTMENU);
    case eFolderFonts: return shellFolder(CSIDL_FONTS);
    case eFolderCurrent: {
        const DWORD length = ::GetCurrentDirectoryW(MAX_PATH, buffer);
        return length == 0 || length > MAX_PATH ? CString() : withSeparator(fromWide(buffer, length));
    }
    }
    return CString();
}

CString GetExecutablePath()
{
    wchar_t buffer[MAX_PATH + 1] = {0};
    // The returned length bounds the text: a truncated result is not always terminated.
    const DWORD length = ::GetModuleFileNameW(nullptr, buffer, MAX_PATH);
    if (length == 0)
        return CString();
    return fromWide(buffer, length);
}

// ---- folder listings ----------------------------------------------------------------------------

namespace {

struct Listing
{
    HANDLE search;
    WIN32_FIND_DATAW found; // the entry the next read hands out
    bool pending;
};

bool isDotEntry(const wchar_t* name)
{
    return name[0] == L'.' && (name[1] == 0 || (name[1] == L'.' && name[2] == 0));
}

} // namespace

FolderListing OpenFolderListing(const CString& folder, const CString& pattern)
{
    CString query = folder;
    if (!query.IsEmpty() && query[query.GetLength() - 1] != u'\\' && query[query.GetLength() - 1] != u'/')
        query += u"\\";
    query += pattern;
    auto* listing = new Listing();
    listing->search = ::FindFirstFileW(wide(query), &listing->found);
    if (listing->search == INVALID_HANDLE_VALUE) {
        const DWORD error = ::GetLastError();
        delete listing;
        // A folder without a match is an empty listing, not a failure.
        if (error == ERROR_FILE_NOT_FOUND) {
            listing = new Listing();
            listing->search = INVALID_HANDLE_VALUE;
            listing->pending = false;
            ::SetLastError(0);
            return listing;
        }
        ::SetLastError(error);
        return nullptr;
    }
    listing->pending = true;
    ::SetLastError(0);
    return listing;
}

bool ReadFolderListing(FolderListing listing, CString& name, bool& isFolder)
{
    auto* open = static_cast<Listing*>(listing);
    if (open == nullptr) {
        ::SetLastError(ERROR_INVALID_HANDLE);
        return false;
    }
    for (;;) {
        if (!open->pending) {
            if (open->search == INVALID_HANDLE_VALUE || !::FindNextFileW(open->search, &open->found)) {
                if (open->search == INVALID_HANDLE_VALUE || ::GetLastError() == ERROR_NO_MORE_FILES)
                    ::SetLastError(0);
                return false;
            }
        }
        open->pending = false;
        if (isDotEntry(open->found.cFileName))
            continue;
        name = fromWide(open->found.cFileName, ::wcslen(open->found.cFileName));
        isFolder = (open->found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        ::SetLastError(0);
        return true;
    }
}

void CloseFolderListing(FolderListing listing)
{
    auto* open = static_cast<Listing*>(listing);
    if (open == nullptr)
        return;
    if (open->search != INVALID_HANDLE_VALUE)
        ::FindClose(open->search);
    delete open;
}

} // namespace ZoOS
