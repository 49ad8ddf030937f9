#include "base/ZoDebugSerialization.h"

#include "base/ZoCriticalSectionAuto.h"

namespace {

const char16_t sc_notAllowedInNames[] = u"|\"?*>]<";

} // namespace

ZoDebugSerialization::ZoDebugSerialization(const CString& instanceName) : m_instanceName(instanceName) {}

ZoCriticalSection& ZoDebugSerialization::GetCriticalSection()
{
    static ZoCriticalSection lock(ZoCriticalSection::sc_uiDefaultSpinCount);
    return lock;
}

CString ZoDebugSerialization::ElementName(const CString& name, int index)
{
    return CString::Formatted(u"%s[%d]", name, index);
}

CString ZoDebugSerialization::NumberedName(const CString& name, int number)
{
    return CString::Formatted(u"%s(%d)", name, number);
}

bool ZoDebugSerialization::IsAllowedInName(char16_t character)
{
    for (const char16_t* c = sc_notAllowedInNames; *c != 0; ++c)
        if (*c == character)
            return false;
    return true;
}

CString ZoDebugSerialization::MakeName(const CString& name)
{
    std::u16string text = name.GetStdString();
    for (char16_t& c : text)
        if (!IsAllowedInName(c))
            c = u'_';
    return CString(std::move(text));
}

CString ZoDebugSerialization::GetFileName(const CString& folder, const CString& objectName, const CString& variableName,
                                          const CString& extension) const
{
    return CString::Formatted(u"%s%s%s%s%s%s.%s", folder, MakeName(m_instanceName), u"_", MakeName(objectName), u"_",
                              MakeName(variableName), MakeName(extension));
}

void ZoDebugSerialization::Write(ZoStreamWrite& stream, const CString& variableName, const CString& value) const
{
    const CString line = m_instanceName + CString(u".") + variableName + CString(u" = ") + value + CString(u"\n");
    ZoCriticalSectionAuto guard(GetCriticalSection());
    stream << line;
}

namespace {
// Made at load, before a user's thread can race on its first construction.
[[maybe_unused]] const bool s_debugLockReady = (ZoDebugSerialization::GetCriticalSection(), true);
} // namespace
