#pragma once

#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

/// ZoLatestError: a snapshot of the calling thread's last operating-system error, its number and
/// the system's message for it (with the system's trailing line break).
///
/// The library's OS layer sets the last error on every call, so construct or Update() this on the
/// thread that saw the failure, before that thread makes another system call.
/// @ingroup objectmodel
class ZO_API ZoLatestError
{
public:
    /// Captures the current last error.
    ZoLatestError();
    /// Copies the number and the message; no system call.
    ZoLatestError(const ZoLatestError& other) = default;
    /// Copies the number and the message; no system call.
    ZoLatestError& operator=(const ZoLatestError& other) = default;

    /// Reads the last error number again and fetches its message; the message is empty when the
    /// system has no text for the number.
    void Update();
    /// True when the captured error number is not 0.
    bool IsError() const { return m_errorNumber != 0; }
    /// The captured error number (errno on POSIX, the system error code on Windows); 0 for none.
    uint32_t GetLatestErrorNumber() const { return m_errorNumber; }
    /// The system's text for the number, with its trailing line break; empty when there is none.
    const CString& GetLatestErrorMessage() const { return m_errorMessage; }

private:
    uint32_t m_errorNumber = 0;
    CString m_errorMessage;
};
