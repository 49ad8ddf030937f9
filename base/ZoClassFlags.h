/// @class ZoClassFlags
/// ZoClassFlags: one 32-bit word of bit flags stored beside objects by the serialization layer.
/// IsFlagsSet(f) asks for every bit of f (so an empty f is always set); IsOneFlagSet(f) for at least
/// one (so an empty f is never set).
/// @ingroup objectmodel
#pragma once

class ZoStreamRead;
class ZoStreamWrite;

#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoClassFlags
{
public:
    ///@{
    /// Starts with the given word; the default has no flag set.
    ZoClassFlags() : m_flags(0) {}
    explicit ZoClassFlags(uint32_t flags) : m_flags(flags) {}
    ///@}

    /// Replaces the whole word.
    void SetFlags(uint32_t flags) { m_flags = flags; }
    /// The whole word, bits the caller did not define included.
    uint32_t GetFlags() const { return m_flags; }
    ///@{
    /// Sets or clears the bits of `flags`, leaving the others; RemoveFlags() without an argument
    /// clears every bit.
    void AddFlags(uint32_t flags) { m_flags |= flags; }
    void RemoveFlags(uint32_t flags) { m_flags &= ~flags; }
    void RemoveFlags() { m_flags = 0; }
    ///@}
    /// True when every bit of `flags` is set (always for 0).
    bool IsFlagsSet(uint32_t flags) const { return (m_flags & flags) == flags; }
    /// True when at least one bit of `flags` is set (never for 0).
    bool IsOneFlagSet(uint32_t flags) const { return (m_flags & flags) != 0; }

    ///@{
    /// Reads or writes the word as an unsigned 32-bit value through the stream, without version or
    /// marker. Throws what the stream throws (a truncated read leaves the word unchanged).
    void Serialize(ZoStreamRead& stream);
    void Serialize(ZoStreamWrite& stream) const;
    ///@}

private:
    uint32_t m_flags;
};
