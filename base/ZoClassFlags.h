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
    ZoClassFlags() : m_flags(0) {}
    explicit ZoClassFlags(uint32_t flags) : m_flags(flags) {}

    void SetFlags(uint32_t flags) { m_flags = flags; }
    uint32_t GetFlags() const { return m_flags; }
    void AddFlags(uint32_t flags) { m_flags |= flags; }
    void RemoveFlags(uint32_t flags) { m_flags &= ~flags; }
    void RemoveFlags() { m_flags = 0; }
    bool IsFlagsSet(uint32_t flags) const { return (m_flags & flags) == flags; }
    bool IsOneFlagSet(uint32_t flags) const { return (m_flags & flags) != 0; }

    /// Reads or writes the word as an unsigned 32-bit value through the stream.
    void Serialize(ZoStreamRead& stream);
    void Serialize(ZoStreamWrite& stream) const;

private:
    uint32_t m_flags;
};
