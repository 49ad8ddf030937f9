/// @class ZoAssertDialog
/// ZoAssertDialog: what a failed assertion does. It reports the source file, the line and the
/// expression that did not hold — in a message box on Windows, on standard error on Linux — and then
/// follows the process's policy: go on, stop in the debugger, or end the process (the default, as a
/// failed assertion means the program's state can no longer be trusted).
///
///     ZO_ASSERT(index < GetCount());
///
/// ZO_ASSERT checks in every build; the library's own debug checks (ZoCheckReturnPolicyAssert) go
/// through it in debug builds. The policy is process-wide and may be changed from any thread.
/// @ingroup diagnostics
#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

class ZO_API ZoAssertDialog
{
public:
    /// What Fail() does after reporting.
    enum EPolicy
    {
        eContinue, ///< report, then return to the caller
        eBreak,    ///< report, then stop in the debugger (ends the process when none is attached)
        eAbort,    ///< report, then end the process
    };

    ///@{
    /// The process-wide policy, eAbort until set; safe to change from any thread (the change is
    /// atomic, and a Fail() already under way may still act on the old policy).
    static void SetPolicy(EPolicy policy);
    static EPolicy GetPolicy();
    ///@}

    /// Reports the failure and acts on the policy; returns only under eContinue (or when the
    /// debugger lets the program go on).
    static void Fail(const char* file, int line, const char* expression);

    /// The report's text: "Assertion failed: <expression>, file <file>, line <line>".
    static CString FormatReport(const char* file, int line, const char* expression);
};

#define ZO_ASSERT(expression) ((expression) ? static_cast<void>(0) : ZoAssertDialog::Fail(__FILE__, __LINE__, #expression))
