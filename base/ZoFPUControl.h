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
    /// The rounding mode of the calling thread's floating-point arithmetic.
    enum EFloatRounding
    {
        eRoundUnknown = 0, ///< GetRounding could not read the control word
        eRoundChop = 1,    ///< toward zero
        eRoundUp = 2,      ///< toward plus infinity
        eRoundDown = 3,    ///< toward minus infinity
        eRoundNear = 4,    ///< to nearest
    };
    /// The mantissa width, in bits, that the control word reports for arithmetic.
    enum EFloatPrecision
    {
        ePrecisionUnknown = 0, ///< the control word could not be read, or names no precision
        ePrecision24 = 1,      ///< single precision
        ePrecision53 = 2,      ///< double precision
        ePrecision64 = 3,      ///< extended precision
    };

    /// Calls SaveFloatingPointControl.
    ZoFPUControl();
    /// Copies the saved word.
    ZoFPUControl& operator=(const ZoFPUControl& other);

    ///@{
    /// No effect on x64 (see the class comment); in particular the rounding mode is neither saved
    /// nor restored.
    void SaveFloatingPointControl();
    void RestoreFloatingPointControl();
    void SetPrecision(EFloatPrecision precision);
    ///@}

    /// The calling thread's rounding mode; eRoundUnknown when the system cannot read it.
    static EFloatRounding GetRounding();
    /// Sets the calling thread's rounding mode (other threads keep theirs). Any value outside
    /// eRoundChop..eRoundNear changes nothing.
    static void SetRounding(EFloatRounding rounding);
    /// The precision the control word reports (fixed on x64; the targets' C libraries may report
    /// different values); ePrecisionUnknown when it cannot be read.
    static EFloatPrecision GetPrecision();

private:
    uint64_t m_savedControl;
};
