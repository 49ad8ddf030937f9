#include "base/ZoStreamWriteASCIIConsole.h"

#include "base/ZoConsole.h"

ZO_IMPLEMENT_RTTI_BASE(ZoStreamWriteASCIIConsole, ZoStreamWriteASCII, nullptr, nullptr);

ZoStreamWriteASCIIConsole::ZoStreamWriteASCIIConsole()
{
    ZoConsole::Attach(1);
}

ZoStreamWriteASCIIConsole::ZoStreamWriteASCIIConsole(const CString& title)
{
    ZoConsole::Attach(1);
    ZoConsole::SetTitle(title);
}

ZoStreamWriteASCIIConsole::~ZoStreamWriteASCIIConsole() = default;

ZoStreamWriteASCIIConsole& ZoStreamWriteASCIIConsole::write(const CString& text)
{
    ZoConsole::Write(text);
    return *this;
}
