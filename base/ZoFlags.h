/// @class ZoFlags
/// ZoFlags<E>: a 32-bit word of bit flags whose bits are the values of the enumeration E, as the
/// thread classes keep their options (ZoThread's eAutoDelete). IsFlagsSet(f) asks for every bit of f,
/// so an empty f is always set; IsOneFlagSet(f) for at least one, so an empty f never is.
///
/// A plain value: not synchronised, copied bit for bit.
/// @ingroup objectmodel
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>

template <class E>
class ZO_TEMPLATE_API ZoFlags
{
public:
    ///@{
    /// Starts with the given word (any bits, not only E's values); the default has no flag set.
    ZoFlags() : m_flags(0) {}
    explicit ZoFlags(uint32_t flags) : m_flags(flags) {}
    ///@}

    /// Replaces the whole word.
    void SetFlags(E flags) { m_flags = static_cast<uint32_t>(flags); }
    /// The whole word as a number (combinations of E's values are not values of E).
    uint32_t GetFlags() const { return m_flags; }
    ///@{
    /// Sets or clears the bits of `flags`, leaving the others.
    void AddFlags(E flags) { m_flags |= static_cast<uint32_t>(flags); }
    void RemoveFlags(E flags) { m_flags &= ~static_cast<uint32_t>(flags); }
    ///@}
    /// True when every bit of `flags` is set (always for 0).
    bool IsFlagsSet(E flags) const { return (m_flags & static_cast<uint32_t>(flags)) == static_cast<uint32_t>(flags); }
    /// True when at least one bit of `flags` is set (never for 0).
    bool IsOneFlagSet(E flags) const { return (m_flags & static_cast<uint32_t>(flags)) != 0; }

    ///@{
    /// Compares the whole words.
    bool operator==(const ZoFlags& other) const { return m_flags == other.m_flags; }
    bool operator!=(const ZoFlags& other) const { return m_flags != other.m_flags; }
    ///@}

private:
    uint32_t m_flags;
};
