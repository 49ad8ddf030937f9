/// @class ZoCheckReturn
/// ZoCheckReturn<T, Policy>: a result that its receiver must look at. It converts to T; the first
/// conversion (or Get(), or an explicit Ignore()) marks it as looked at. A result destroyed unread
/// calls Policy::onUnchecked(): the library's policy, ZoCheckReturnPolicyAssert, stops a debug build
/// there, so a forgotten check of a task's outcome or of a wait's timeout shows up in testing rather
/// than as a silent hang or a lost failure later.
///
/// Copying hands the duty on: the copy must be looked at, the source no longer. The class is also
/// [[nodiscard]], so the compiler already warns where a call's result is dropped on the floor.
/// @ingroup objectmodel
#pragma once

#include "base/ZoAssertDialog.h"
#include "platform/ZoExport.h"

/// ZoCheckReturnPolicyAssert: the policy ZoCheckReturn uses in the library. An unread result fails
/// an assertion (ZoAssertDialog::Fail) in debug builds; with NDEBUG defined nothing happens.
/// @ingroup objectmodel
struct ZoCheckReturnPolicyAssert
{
    /// Called by a ZoCheckReturn destroyed or overwritten unread.
    static void onUnchecked()
    {
#if !defined(NDEBUG)
        ZoAssertDialog::Fail(__FILE__, __LINE__, "a ZoCheckReturn result was never looked at");
#endif
    }
};

template <class T, class Policy>
class [[nodiscard]] ZoCheckReturn
{
public:
    /// An unread result holding `value`; implicit, so a function returns a plain T.
    ZoCheckReturn(const T& value) : m_value(value), m_checked(false) {}
    /// The copy must be read; the source counts as read.
    ZoCheckReturn(const ZoCheckReturn& other) : m_value(other.m_value), m_checked(false) { other.m_checked = true; }
    /// Calls Policy::onUnchecked() first when this result was unread; then takes the other's value
    /// and duty to be read, and the other counts as read.
    ZoCheckReturn& operator=(const ZoCheckReturn& other)
    {
        if (this != &other) {
            verify();
            m_value = other.m_value;
            m_checked = false;
            other.m_checked = true;
        }
        return *this;
    }
    /// Calls Policy::onUnchecked() when the result was never read, copied on or ignored.
    ~ZoCheckReturn() { verify(); }

    ///@{
    /// The value; marks the result as read.
    operator T() const { return Get(); }
    const T& Get() const
    {
        m_checked = true;
        return m_value;
    }
    ///@}
    /// Declares that the caller does not need the value.
    void Ignore() const { m_checked = true; }
    /// True once read, ignored or copied on; asking does not count as reading.
    bool IsChecked() const { return m_checked; }

private:
    void verify() const
    {
        if (!m_checked)
            Policy::onUnchecked();
    }

    T m_value;
    mutable bool m_checked;
};
