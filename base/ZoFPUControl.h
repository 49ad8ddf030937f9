/// @class ZoFPUControl
/// ZoFPUControl: reads and sets the calling thread's floating-point rounding mode, and lets numeric
/// code bracket itself with a save and a restore of the floating-point state.
///
/// On x64 the precision of floating-point arithmetic is fixed by the instruction set: it cannot be
/// changed through the C library's control word, so SaveFloatingPointControl,
/// RestoreFloatingPointControl and SetPrecision do nothing. They exist so that callers written for
/// targets where precision can change stay portable. The rounding mode is real and per thread.
/// @ingroup concurrency
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoFPUControl
{
public:
    enum EFloatRounding
    {
        eRoundUnknown = 0, ///< GetRounding could not read the control word
        eRoundChop = 1,    ///< toward zero
        eRoundUp = 2,      ///< toward plus infinity
        eRoundDown = 3,    ///< toward minus infinity
        eRoundNear = 4,    ///< to nearest
    };
    enum EFloatPrecision
    {
        ePrecisionUnknown = 0, ///< the control word could not be read, or names no precision
        ePrecision24 = 1,
        ePrecision53 = 2,
        ePrecision64 = 3,
    };

    /// Calls SaveFloatingPointControl.
    ZoFPUControl();
    /// Copies the saved word.
    ZoFPUControl& operator=(const ZoFPUControl& other);

    /// No effect on x64 (see the class comment).
    void SaveFloatingPointControl();
    void RestoreFloatingPointControl();
    void SetPrecision(EFloatPrecision precision);

    static EFloatRounding GetRounding();
    /// Any value outside eRoundChop..eRoundNear changes nothing.
    static void SetRounding(EFloatRounding rounding);
    static EFloatPrecision GetPrecision();

private:
    uint64_t m_savedControl;
};
