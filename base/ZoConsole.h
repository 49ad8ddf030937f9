/// @class ZoConsole
/// ZoConsole: the process console as the library sees it, a small static facade over the OS
/// layer's console functions. It remembers whether the process has a console in use and whether
/// that console is the parent process's (attached) rather than one of its own. On Linux the console
/// is standard output, which every process has, so attaching always succeeds there.
///
/// Every operation silently does nothing when there is no console. The two flags are process-wide
/// and unsynchronised: set the console up from one thread before others write to it.
/// @ingroup services
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoConsole
{
public:
    ZoConsole() = delete;

    /// Makes a console of the process's own when it has none; on success it has a console that is
    /// not attached.
    static void Create();
    /// Attaches to the parent process's console when there is none yet; if that fails and
    /// `createIfNone` is nonzero, makes one of its own (Create).
    static void Attach(int createIfNone);
    /// Lets the console go; both flags become false.
    static void Delete();
    /// Writes the text to the console's standard output, without adding a line break.
    static void Write(const CString& text);
    /// Sets the console window's title; on Linux the terminal's title, and only when standard output
    /// is a terminal.
    static void SetTitle(const CString& title);

    /// Nonzero after a successful Create() or Attach(), until Delete().
    static int HasConsole() { return s_hasConsole; }
    /// Nonzero when the console in use is the parent process's (from Attach()).
    static int IsAttached() { return s_isAttached; }

private:
    static int32_t s_hasConsole;
    static int32_t s_isAttached;
};
