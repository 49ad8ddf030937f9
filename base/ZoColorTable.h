/// @class ZoColorTable
/// ZoColorTable: a reference-counted table of N colours over a value range, filled with constant
/// runs (AddColorValue) and HSV ramps (AddColorRamp), for false-colour displays whose palette is put
/// together piece by piece. Entries start as opaque white (0xFFFFFFFF); values below the range give
/// the underflow colour (default blue), values above it the overflow colour (default red).
///
/// Entry i stands for the value getValue(i) = i / (N - 1) * (maximum - minimum) + minimum, and a value
/// v falls in entry getEntry(v) = trunc((v - minimum) * N / (maximum - minimum)) clamped to 0..N-1.
/// The two do not invert each other exactly; ramps and dumps written with them depend on both as
/// they are. Nothing checks the arguments: with a single entry getValue divides 0 by 0 (NaN), and an
/// empty range makes every value fall in entry 0. A table with no entries reads as opaque white inside
/// its range and ignores fills.
///
/// Copying copies the range, the two outside colours and the entries, never the reference count.
/// @ingroup values
#pragma once

#include "base/ZoColor.h"
#include "base/ZoReferenceCountedClass.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWrite.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <vector>

class ZO_API ZoColorTable : public ZoReferenceCountedClass<ZoColorTable>
{
public:
    /// Range 0..1.
    explicit ZoColorTable(uint32_t entries);
    /// `entries` entries over minimum..maximum, all of them opaque white until coloured; underflow
    /// colour blue, overflow colour red.
    ZoColorTable(uint32_t entries, float minimum, float maximum);
    /// Copies entries, range and colours; the copy has a reference count of its own.
    ZoColorTable(const ZoColorTable& other);
    /// Copies entries, range and colours; the reference count stays this object's.
    ZoColorTable& operator=(const ZoColorTable& other);
    ~ZoColorTable() override;

    /// Replaces the range the entries span; the entries keep their colours. Not checked.
    void SetMinMax(float minimum, float maximum);
    /// The range the entries span.
    void GetMinMax(float& minimum, float& maximum) const;
    /// Colour of values below the range.
    void SetUnderflowColor(const ZoColor& color) { m_underflowColor = color; }
    /// Colour of values below the range.
    const ZoColor& GetUnderflowColor() const { return m_underflowColor; }
    /// Colour of values above the range.
    void SetOverflowColor(const ZoColor& color) { m_overflowColor = color; }
    /// Colour of values above the range.
    const ZoColor& GetOverflowColor() const { return m_overflowColor; }
    /// Entries in the table, fixed at construction (or by reading a table).
    uint32_t GetEntryCount() const { return static_cast<uint32_t>(m_entries.size()); }

    /// Entries getEntry(from) .. getEntry(to) inclusive become `color`; nothing when from lies above
    /// to.
    void AddColorValue(const ZoColor& color, float from, float to);
    /// Entries getEntry(from) .. getEntry(to) become the HSV gradient from `first` at `from` to `last`
    /// at `to`, sampled at getValue(i); entries whose value lies outside from..to take the nearer end.
    /// Ramp colours are opaque.
    void AddColorRamp(const ZoColor& first, float from, const ZoColor& last, float to);
    /// Below the range the underflow colour, above it the overflow colour, otherwise the entry.
    ZoColor GetColorValue(float value) const;

    /// One line per run of equal entries: "i:\t(red, green, blue)\n" with the first index of the run
    /// and the channel fractions as the text stream writes floats ("0:\t(1.000000, 0.000000, ...").
    void Dump(ZoStreamWrite& stream) const;

    /// Binary form: version record 0, the entry count, minimum, maximum, the underflow and overflow
    /// colours (each in its own binary form), then the entries as unsigned 32-bit values.
    void Serialize(ZoStreamWriteBinary& stream) const;
    /// Throws ZoExceptionWrongFileVersion for a newer version and ZoExceptionStream when the data ends
    /// before the count says (nothing is allocated beyond what arrived); the table is unchanged then.
    void Serialize(ZoStreamReadBinary& stream);

protected:
    /// The index of the entry that covers `value`, clamped to the table.
    uint32_t getEntry(float value) const;
    /// The value at which entry `index` lies within the range.
    float getValue(uint32_t index) const;

private:
    std::vector<uint32_t> m_entries;
    float m_minimum;
    float m_maximum;
    ZoColor m_underflowColor;
    ZoColor m_overflowColor;
};
