// ZoOS: the narrow operating-system layer. base/ and compression/ reach the system only through
// these functions; platform/posix/ and platform/win32/ implement them, one file per target.
//
// Every function that can fail sets the calling thread's last error: 0 on success, the system's
// error number on failure (errno on POSIX, GetLastError on Windows), so that ZoLatestError reads
// the cause of the latest failure on either target.
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"
#include "platform/ZoWindowsTypes.h"

#include <cstdint>
#include <string>

#if !defined(_WIN32)
#  include <atomic>
#  include <mutex>
#endif

namespace ZoOS {

// ---- last error -------------------------------------------------------------------------------
ZO_API uint32_t GetLastErrorCode();
ZO_API void SetLastErrorCode(uint32_t code);
// The system's message for an error number, with the system's trailing line break; empty when the
// system has no text for it.
ZO_API CString GetErrorText(uint32_t code);

// ---- threads ----------------------------------------------------------------------------------
// The calling thread's system-wide id; never 0.
ZO_API uint32_t GetCurrentThreadIdentifier();

// ---- recursive lock ---------------------------------------------------------------------------
// A recursive lock that spins `spinCount` attempts before it blocks. Held by value in
// ZoCriticalSection, so the type is complete here; its members are the implementation's.
#if defined(_WIN32)
typedef CRITICAL_SECTION LockStorage;
#else
struct LockStorage
{
    std::mutex mutex;
    std::atomic<uint32_t> owner{0};
    std::atomic<int32_t> recursionCount{0};
    uint32_t spinCount = 0;
};
#endif

// False when the system cannot make the lock (last error says why).
ZO_API bool InitializeLock(LockStorage& lock, uint32_t spinCount);
ZO_API void DeleteLock(LockStorage& lock);
ZO_API void EnterLock(LockStorage& lock);
ZO_API bool TryEnterLock(LockStorage& lock);
// Requires: the calling thread holds the lock (not checked).
ZO_API void LeaveLock(LockStorage& lock);
// How many times the owner has entered; 0 when the lock is free.
ZO_API int32_t GetLockRecursionCount(const LockStorage& lock);
ZO_API uint32_t GetLockSpinCount(const LockStorage& lock);
// What assigning one ZoCriticalSection to another copies. Windows copies the raw words, as the
// class has always done; POSIX copies the spin count only, since a mutex copied byte for byte is
// undefined there.
ZO_API void AssignLock(LockStorage& target, const LockStorage& source);

// ---- text in the "ANSI" code page ------------------------------------------------------------
// The thread's ANSI code page on Windows; Windows-1252 elsewhere, so files are the same on both.
// Characters the code page lacks become '?'.
ZO_API std::string WideToAnsi(const CString& text);
ZO_API CString AnsiToWide(const char* bytes, size_t length);

// ---- files ------------------------------------------------------------------------------------
typedef intptr_t FileHandle;
const FileHandle sc_invalidFile = -1;

enum EFileOpenFlags : uint32_t
{
    eFileRead = 0x1,
    eFileWrite = 0x2,
    eFileCreate = 0x4,   // create the file when it is missing
    eFileTruncate = 0x8, // cut an existing file to length 0
};
enum ESeekOrigin
{
    eSeekBegin = 0,
    eSeekCurrent = 1,
    eSeekEnd = 2,
};

// sc_invalidFile on failure.
ZO_API FileHandle OpenFileHandle(const CString& path, uint32_t flags);
ZO_API bool CloseFileHandle(FileHandle file);
// Bytes read (0 at the end of the file), or -1 on failure.
ZO_API int64_t ReadFileBytes(FileHandle file, void* buffer, uint64_t size);
// False unless every byte was written.
ZO_API bool WriteFileBytes(FileHandle file, const void* buffer, uint64_t size);
// The new position, or -1 on failure.
ZO_API int64_t SeekFileHandle(FileHandle file, int64_t offset, ESeekOrigin origin);
// The file's length in bytes, or -1 on failure.
ZO_API int64_t GetFileHandleLength(FileHandle file);
ZO_API bool FlushFileHandle(FileHandle file);

// ---- paths and folders ------------------------------------------------------------------------
// The separator the system's paths use: '/' on POSIX, '\\' on Windows.
ZO_API char16_t GetPathSeparator();
ZO_API bool PathExists(const CString& path);
ZO_API bool IsDirectoryPath(const CString& path);
// Creates one folder; its parent must exist.
ZO_API bool CreateFolder(const CString& path);
ZO_API bool DeleteFilePath(const CString& path);
ZO_API bool CopyFilePath(const CString& source, const CString& target, bool failIfExists);

// Well-known folders, each returned with a trailing separator; empty when the system has none.
enum EKnownFolder
{
    eFolderTemporary,
    eFolderDesktop,
    eFolderProgramFiles,
    eFolderDocuments,
    eFolderLocalAppData,
    eFolderFavorites,
    eFolderStartup,
    eFolderRecent,
    eFolderSendTo,
    eFolderCommonStartMenu,
    eFolderFonts,
    eFolderCurrent,
};
ZO_API CString GetKnownFolder(EKnownFolder folder);
// The full path of the running executable; empty when it cannot be found.
ZO_API CString GetExecutablePath();

// ---- run-time loaded libraries ----------------------------------------------------------------
typedef void* LibraryHandle;
// Null on failure. The path is used as given (a relative path is relative to the current folder).
ZO_API LibraryHandle LoadDynamicLibrary(const CString& path);
// The entry exported under an ordinal (on ELF: the C symbol zo_ordinal_<n>), or null.
ZO_API void* GetDynamicEntry(LibraryHandle library, uint32_t ordinal);
// The entry exported under a name, or null.
ZO_API void* GetDynamicEntry(LibraryHandle library, const char* name);
ZO_API void FreeDynamicLibrary(LibraryHandle library);

// ---- console, debug trace, messages -----------------------------------------------------------
// Whether the process has a console to write to: on POSIX, standard output.
ZO_API bool HasProcessConsole();
ZO_API bool AttachParentConsole();
ZO_API bool AllocateProcessConsole();
ZO_API bool FreeProcessConsole();
ZO_API bool WriteConsoleText(const CString& text);
ZO_API bool SetConsoleTitleText(const CString& title);
// The debugger's trace output: standard error on POSIX, OutputDebugStringW on Windows.
ZO_API void WriteDebugTrace(const CString& text);
// A message for the user: a message box on Windows, standard error on POSIX.
ZO_API void ShowMessage(const CString& text, const CString& caption, uint32_t style);

} // namespace ZoOS
