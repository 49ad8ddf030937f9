#include "base/ZoConsole.h"

#include "platform/ZoOS.h"

int32_t ZoConsole::s_hasConsole = 0;
int32_t ZoConsole::s_isAttached = 0;

void ZoConsole::Create()
{
    if (s_hasConsole)
        return;
    const bool made = ZoOS::AllocateProcessConsole();
    s_isAttached = 0;
    if (made)
        s_hasConsole = 1;
}

void ZoConsole::Attach(int createIfNone)
{
    if (s_hasConsole)
        return;
    if (ZoOS::AttachParentConsole()) {
        s_hasConsole = 1;
        s_isAttached = 1;
    } else if (createIfNone) {
        Create();
    }
}

void ZoConsole::Delete()
{
    if (!s_hasConsole)
        return;
    ZoOS::FreeProcessConsole();
    s_hasConsole = 0;
    s_isAttached = 0;
}

void ZoConsole::Write(const CString& text)
{
    if (s_hasConsole)
        ZoOS::WriteConsoleText(text);
}

void ZoConsole::SetTitle(const CString& title)
{
    if (s_hasConsole)
        ZoOS::SetConsoleTitleText(title);
}
