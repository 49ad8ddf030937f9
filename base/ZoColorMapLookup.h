/// @class ZoColorMapLookup
/// ZoColorMapLookup: a ZoColorMap sampled once into a table of N packed colours, so that mapping a
/// value costs one division and one index instead of an HSV interpolation.
///
/// The table is built on the first GetColorValue from the map's settings at that moment; later
/// changes of the map do not reach it. Copies share the table (a copy made before the first lookup
/// builds its own). Lookup truncates toward zero, so values less than one entry below the minimum
/// still map to entry 0 rather than to the underflow colour: displays built on this class show the
/// first band there, and that is kept.
/// @ingroup values
#pragma once

#include "base/ZoColorMap.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>
#include <vector>

class ZO_API ZoColorMapLookup : public ZoColorMap
{
public:
    /// A table of `entries` colours over minimum..maximum (as ZoColorMap's range constructor). With
    /// 0 entries every value maps to the underflow or overflow colour.
    ZoColorMapLookup(uint32_t entries, float minimum, float maximum);
    /// A table of `entries` colours over the range of the `count` values at `values` (as ZoColorMap's
    /// constructor from values).
    ZoColorMapLookup(uint32_t entries, const float* values, uint32_t count);
    ///@{
    /// Copies the map's settings and shares the table once built (see the class note).
    ZoColorMapLookup(const ZoColorMapLookup& other) = default;
    ZoColorMapLookup& operator=(const ZoColorMapLookup& other) = default;
    ///@}
    ~ZoColorMapLookup() override;

    /// The packed colour 0xAARRGGBB of the entry the value falls in: below the first entry (after
    /// truncation) the underflow colour, at or beyond N entries the overflow colour; NaN, and every
    /// value of an empty range, gives the underflow colour. Hides ZoColorMap::GetColorValue.
    uint32_t GetColorValue(float value);

private:
    void buildTable();

    std::shared_ptr<std::vector<uint32_t>> m_table;
    uint32_t m_entries;
    uint32_t m_overflowValue;
    uint32_t m_underflowValue;
};
