#include "base/ZoAssertDialog.h"

#include "platform/ZoOS.h"

#include <atomic>
#include <cstdlib>

namespace {

std::atomic<ZoAssertDialog::EPolicy> s_policy{ZoAssertDialog::eAbort};

// A stop sign with an OK button.
const uint32_t sc_errorStyle = 0x10;

} // namespace

void ZoAssertDialog::SetPolicy(EPolicy policy)
{
    s_policy.store(policy);
}

ZoAssertDialog::EPolicy ZoAssertDialog::GetPolicy()
{
    return s_policy.load();
}

CString ZoAssertDialog::FormatReport(const char* file, int line, const char* expression)
{
    return CString::Formatted(u"Assertion failed: %s, file %s, line %d", expression != nullptr ? expression : "",
                              file != nullptr ? file : "", line);
}

void ZoAssertDialog::Fail(const char* file, int line, const char* expression)
{
    ZoOS::ShowMessage(FormatReport(file, line, expression), u"Assertion", sc_errorStyle);
    switch (s_policy.load()) {
    case eContinue:
        return;
    case eBreak:
        ZoOS::BreakIntoDebugger();
        return;
    case eAbort:
    default:
        std::abort();
    }
}
