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
#include <vector>

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
/// The POSIX lock word behind ZoCriticalSection: a plain mutex made recursive by an owner and a
/// count. Only the lock functions below touch it.
struct LockStorage
{
    /// Held while some thread owns the lock, whatever its recursion count.
    std::mutex mutex;
    /// The owner's GetCurrentThreadIdentifier(), 0 when free; read without the mutex to let the
    /// owner re-enter.
    std::atomic<uint32_t> owner{0};
    /// How many times the owner has entered; 0 when free.
    std::atomic<int32_t> recursionCount{0};
    /// Failed try-locks before EnterLock blocks on the mutex.
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
// The most bytes one system read or write is asked for; larger transfers go in pieces of this size,
// since the system calls (and the archive) count in 32 bits.
const uint32_t sc_largestFileTransfer = 0x40000000u;
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
// Stops in the debugger when one is attached; without one the process ends as a breakpoint ends it.
ZO_API void BreakIntoDebugger();

// ---- kernel objects: events and threads ------------------------------------------------------
// Events and threads are named by handles. On Windows a handle is the system's own; on POSIX it is
// an entry of the library's handle table holding a counted reference to the library's event or
// thread object, so a handle stays safe to use after it was closed (every call then fails with
// EBADF, as a closed handle fails on Windows) and duplicates name the same object.

// The waits' results, as Windows reports them.
const uint32_t sc_waitObject0 = 0;
const uint32_t sc_waitAbandoned0 = 0x80;
const uint32_t sc_waitTimeout = 258;
const uint32_t sc_waitFailed = 0xFFFFFFFFu;
// The most handles one multiple-object wait accepts; more fail.
const uint32_t sc_maximumWaitObjects = 64;
// GetThreadPriorityLevel's answer when it cannot read the priority.
const int32_t sc_threadPriorityError = 0x7FFFFFFF;

// A new event, not shared with other processes; null on failure.
ZO_API HANDLE CreateEventObject(bool manualReset, bool initiallySignalled);
ZO_API bool SetEventObject(HANDLE event);
ZO_API bool ResetEventObject(HANDLE event);
// Releases the threads waiting at this moment (all of them for a manual-reset event, at most one for
// an auto-reset event) and leaves the event not signalled.
ZO_API bool PulseEventObject(HANDLE event);
// Blocks until the event or thread is signalled or `timeoutMs` has passed (INFINITE: no limit).
// Returns sc_waitObject0, sc_waitTimeout or sc_waitFailed (a null or closed handle). A satisfied wait
// on an auto-reset event consumes its signal.
ZO_API uint32_t WaitForObject(HANDLE object, uint32_t timeoutMs);
// Waits for all (`waitAll`) or any of `count` objects. Returns sc_waitObject0 + the index of the
// first signalled object (sc_waitObject0 when all were waited for), sc_waitTimeout, or sc_waitFailed
// when a handle is invalid or `count` is 0 or above sc_maximumWaitObjects. A wait for all consumes
// the auto-reset signals only when every object is signalled at once.
ZO_API uint32_t WaitForObjects(uint32_t count, const HANDLE* objects, bool waitAll, uint32_t timeoutMs);
// A second handle to the same object; null on failure.
ZO_API HANDLE DuplicateObjectHandle(HANDLE object, bool inheritable);
// The object lives on while other handles (or, for a thread, the running thread) refer to it.
ZO_API bool CloseObjectHandle(HANDLE object);

// A thread's start routine; its result is the thread's exit code.
typedef uint32_t (*ThreadRoutine)(void* argument);
// Starts a thread running routine(argument); with `suspended` it waits for ResumeThreadObject before
// it calls the routine. Sets `threadId` (the id GetCurrentThreadIdentifier reports inside the thread)
// and returns the thread's handle, or null on failure. `stackSize` 0 takes the system's default.
ZO_API HANDLE CreateThreadObject(ThreadRoutine routine, void* argument, uint32_t stackSize, bool suspended,
                                 uint32_t& threadId);
// Both return the suspend count before the call, or 0xFFFFFFFF on failure. Suspension stops the
// thread wherever it is, including inside a lock it holds: only suspend threads whose state you know.
// On POSIX a real-time signal stops the thread in a handler that waits until it is resumed; a thread
// suspended before its first resume has not entered its routine yet.
ZO_API uint32_t SuspendThreadObject(HANDLE thread);
ZO_API uint32_t ResumeThreadObject(HANDLE thread);
// Ends a thread from outside; its exit code becomes `exitCode`. On Windows the thread stops at once
// without unwinding. On POSIX the thread is cancelled: it stops in the wait of this layer it sleeps
// in (which is woken for that), at its next such wait, or at a system cancellation point (a sleep, a
// blocking read ...), unwinding its stack as it goes, and this call waits up to one second for that.
// A thread that never waits keeps running. A thread never resumed ends without entering its
// routine; a suspended thread is resumed and ends at its next wait.
ZO_API bool TerminateThreadObject(HANDLE thread, uint32_t exitCode);
// STILL_ACTIVE while the thread runs, then the routine's result (or the termination's code).
ZO_API bool GetThreadExitCode(HANDLE thread, uint32_t& exitCode);
// Thread priorities on the Windows ladder: -15 idle, -2 lowest, -1 below normal, 0 normal, 1 above
// normal, 2 highest, 15 time critical; other values fail. On POSIX the ladder maps onto the thread's
// nice value (19, 10, 5, 0, -5, -10, -20), and reading maps the nice value back to the nearest step,
// so a value set is the value read. Raising a thread above its present level needs the privilege to
// do so on POSIX (CAP_SYS_NICE or RLIMIT_NICE); a refused change returns false with EACCES or EPERM.
ZO_API bool SetThreadPriorityLevel(HANDLE thread, int32_t priority);
// sc_threadPriorityError when the priority cannot be read (a finished thread on POSIX, a bad handle).
ZO_API int32_t GetThreadPriorityLevel(HANDLE thread);
// Call only inside a catch (...) block. Rethrows the current exception when it is the system's
// thread-cancellation unwind (POSIX: TerminateThreadObject), which must never be swallowed; returns
// otherwise. Code that catches everything on a thread that may be terminated calls it first.
ZO_API void RethrowThreadCancellation();
/// Holds off thread termination for its lifetime. Destructors that flush or close files use it: a
/// termination acted on inside a destructor would unwind out of it, and that ends the process. A
/// termination requested meanwhile takes effect at the thread's next wait after the scope. Nothing
/// to do on Windows, where a terminated thread stops without unwinding.
class ZO_API ThreadTerminationDeferral
{
public:
    ///@{
    /// The constructor disables termination for the calling thread; the destructor restores the
    /// state it found, so deferrals nest. Make and destroy it on the same thread.
    ThreadTerminationDeferral();
    ~ThreadTerminationDeferral();
    ///@}
    ThreadTerminationDeferral(const ThreadTerminationDeferral&) = delete;
    ThreadTerminationDeferral& operator=(const ThreadTerminationDeferral&) = delete;

private:
    int m_previousState;
};

// ---- time -------------------------------------------------------------------------------------
// A monotonic counter and its ticks per second (CLOCK_MONOTONIC in nanoseconds on POSIX, the
// performance counter on Windows). False when the system has no such counter.
ZO_API bool QueryPerformanceCounterValue(int64_t& ticks);
ZO_API bool QueryPerformanceFrequencyValue(int64_t& ticksPerSecond);
// Milliseconds since the system started, wrapping modulo 2^32.
ZO_API uint32_t GetTickCountValue();

// ---- floating point ---------------------------------------------------------------------------
// The calling thread's floating-point control word in the Windows C library's layout (rounding in
// 0x300: 0 nearest, 0x100 down, 0x200 up, 0x300 toward zero; precision in 0x30000: 0x20000 24 bits,
// 0x10000 53 bits, 0 64 bits). The bits of `mask` take their values from `newControl`, the others
// stay; `current` receives the word after the change. A mask of 0 only reads. Only the rounding field
// can be changed on x64: a mask reaching into the precision field fails, and on POSIX so does any
// mask beyond the rounding field (whose other fields read 0 there). False on failure.
ZO_API bool ControlFloatingPoint(uint32_t& current, uint32_t newControl, uint32_t mask);

// ---- machine ----------------------------------------------------------------------------------
// The number of logical processors the process may run on; at least 1.
ZO_API uint32_t GetProcessorCount();
// The processor's own identification: its 12-character vendor id ("GenuineIntel"), its brand text
// as the processor gives it (trimmed; empty when it has none) and its signature (family, model and
// stepping fields as the processor packs them). False where the processor has no such
// identification (not x86), with the three left empty and 0.
ZO_API bool GetProcessorIdentification(std::string& vendorId, std::string& brand, uint32_t& signature);
// Bytes of physical memory in all and available to new allocations without paging now. False when
// the system cannot say (last error says why).
ZO_API bool GetPhysicalMemoryStatus(uint64_t& total, uint64_t& available);

// ---- folder listings --------------------------------------------------------------------------
// An open listing of a folder's entries whose names match a wildcard pattern ('*' any run of
// characters, '?' any one). Matching is the system's on Windows (without regard to case) and exact
// on POSIX, as its file names are. "." and ".." are never listed.
typedef void* FolderListing;
// Null when the folder cannot be listed (missing, not a folder, no access).
ZO_API FolderListing OpenFolderListing(const CString& folder, const CString& pattern);
// The next matching entry's name and whether it is a folder; false at the end of the listing.
ZO_API bool ReadFolderListing(FolderListing listing, CString& name, bool& isFolder);
ZO_API void CloseFolderListing(FolderListing listing);
// Whether `name` matches `pattern` as the POSIX listing matches ('*', '?', everything else exactly).
ZO_API bool MatchesWildcard(const CString& name, const CString& pattern);

// ---- unique identifiers -----------------------------------------------------------------------
// A new time-ordered (version 1) UUID as 36 characters, 8-4-4-4-12 hexadecimal digits with hyphens,
// in whatever case the system writes them. False, with the last error set, when no identifier that
// is unique beyond this machine can be made: on Windows when UuidCreateSequential reports anything
// but plain success (a locally unique result included) or UuidToStringW fails; on POSIX when the
// random source or the clock fails. Safe to call from any thread.
// On POSIX the library makes the identifier itself: the time in 100-ns steps since 15 October 1582,
// strictly increasing within the process, a random clock sequence and a random 47-bit node with the
// multicast bit set (so it never equals a network card's address), both chosen once per process
// (again in a child after fork) from the system's random source.
ZO_API bool CreateSequentialUuidText(CString& text);

// ---- persistent options -----------------------------------------------------------------------
// The registry (Windows) or the per-user options database (POSIX: $XDG_CONFIG_HOME/zo/options.sqlite,
// else ~/.config/zo/options.sqlite) standing in for it. `root` is a registry root's number
// (0x80000000 HKEY_CLASSES_ROOT ... 0x80000005 HKEY_CURRENT_CONFIG); 0 names none and fails.
// Each call opens the store, does its one read or write as one transaction and closes it again.
//
// Reads the value's bytes into `data`, which holds `size` bytes, and sets `size` to the number
// read. False (nothing written into `data` on POSIX) when the store, the key or the value is
// missing or the value has more than `size` bytes.
ZO_API bool ReadOptionValue(uint32_t root, const CString& key, const CString& name, void* data, uint32_t& size);
// Creates the key as needed and sets the value to `size` bytes of `type` (REG_SZ 1, REG_DWORD 4).
// On POSIX the store's folder is made when missing, and a write waits up to ten seconds for
// another process's write to finish before it gives up.
ZO_API bool WriteOptionValue(uint32_t root, const CString& key, const CString& name, uint32_t type,
                             const void* data, uint32_t size);

// ---- date and time ----------------------------------------------------------------------------
// Calendar fields are SYSTEMTIME values; ticks are 100-nanosecond steps since 1 January 1601 UTC
// (the FILETIME count). Local time is the current time zone of the process: the Win32 time-zone
// calls on Windows, the C library's rules (TZ, /etc/localtime) through localtime_r/mktime elsewhere.

// The present moment in UTC.
ZO_API void GetCurrentUniversalTime(SYSTEMTIME& universal);
// Fields to ticks; false (ticks unchanged) when a field is out of range (years 1601..30827, real
// calendar days, hours 0..23, minutes and seconds 0..59, milliseconds 0..999). The day of week is
// ignored.
ZO_API bool SystemTimeToTicks(const SYSTEMTIME& time, uint64_t& ticks);
// Ticks to fields with the day of week; false (fields unchanged) from 2^63 on.
ZO_API bool TicksToSystemTime(uint64_t ticks, SYSTEMTIME& time);
// Between UTC and the local time of the current time zone, daylight saving included. A local time
// that a clock change skips or repeats is resolved as the system resolves it. False for fields out
// of range (output unchanged).
ZO_API bool LocalTimeToUniversal(const SYSTEMTIME& local, SYSTEMTIME& universal);
ZO_API bool UniversalTimeToLocal(const SYSTEMTIME& universal, SYSTEMTIME& local);
// The time of day on the 24-hour clock, "hh:mm:ss" or "hh:mm": the user's locale with the 24-hour
// clock forced on Windows, the fixed picture elsewhere.
ZO_API CString FormatTimeOfDay(const SYSTEMTIME& local, bool withSeconds);
// Today's date (not any given date) in the user's long date form; on POSIX the C locale's, e.g.
// "Monday, March 5, 2009".
ZO_API CString FormatCurrentLongDate();
// A file's (or folder's) creation and last-modification times as ticks; false when the path cannot
// be found. Windows reads them from the folder entry (FindFirstFileW). On POSIX the creation time is
// the birth time where the file system reports one (statx), else the time of the last status
// change, which is the nearest the system keeps.
ZO_API bool ReadFileTimes(const CString& path, uint64_t& creationTicks, uint64_t& modificationTicks);

// ---- programs and terminals -------------------------------------------------------------------
// What a console program on the library needs beyond files: replacing a file in one step, knowing
// whether its diagnostics reach a person, and starting a helper program.

// Renames `source` to `target`, replacing a `target` that exists, as one step where the system
// can (rename on POSIX, MoveFileExW with MOVEFILE_REPLACE_EXISTING on Windows).
ZO_API bool MoveFileReplacing(const CString& source, const CString& target);
// True when the process's standard error is a terminal (a console on Windows).
ZO_API bool IsStandardErrorTerminal();
// Runs `program` (looked up on PATH when it names no folder) with `arguments`, its standard
// streams those of this process, and waits for it to end. Its exit code (128 + the signal number
// for one killed by a signal), or -1 when it could not be started: the last error is then
// ENOENT / ERROR_FILE_NOT_FOUND when the program is not found.
ZO_API int RunProgram(const CString& program, const std::vector<CString>& arguments);

// ---- persistent options: removal --------------------------------------------------------------
// Removes one value (not its key) from the store ReadOptionValue and WriteOptionValue use; false
// (last error ENOENT / ERROR_FILE_NOT_FOUND) when the store, the key or the value is missing.
ZO_API bool DeleteOptionValue(uint32_t root, const CString& key, const CString& name);

} // namespace ZoOS

// ---- COM variants (Windows only) --------------------------------------------------------------
// ZoVariant::ToVariant hands out COM VARIANTs; POSIX has no COM, so none of this exists there.
#if defined(_WIN32)
#  include <oleauto.h>
namespace ZoOS {

// A new system string (BSTR) with the text; the caller frees it (SysFreeString, or VariantClear of
// the VARIANT holding it). Null when the system has no memory for it.
ZO_API BSTR AllocateSystemString(const CString& text);

} // namespace ZoOS
#endif
