#pragma once

#include "base/ZoStreamWriteASCII.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoStreamWriteASCIIConsole: a text stream onto the process console (standard output on Linux),
/// for command-line tools and quick diagnostics. Construction attaches to the parent's console, or
/// makes one when there is none (ZoConsole::Attach(1)); destruction leaves the console as it is,
/// since other streams and the application may still use it. Text is written as it comes, with no
/// line breaks added. Without a console (one could be neither attached nor made) writes do nothing.
/// @ingroup streams
class ZO_API ZoStreamWriteASCIIConsole : public ZoStreamWriteASCII
{
    ZO_DECLARE_RTTI()

    ZoStreamWriteASCIIConsole();
    /// Also sets the console's title.
    explicit ZoStreamWriteASCIIConsole(const CString& title);
    ~ZoStreamWriteASCIIConsole() override;

    using ZoStreamWriteASCII::operator<<;

protected:
    ZoStreamWriteASCIIConsole& write(const CString& text) override;
};
