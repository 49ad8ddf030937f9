#include "base/ZoFPUControl.h"

#include "platform/ZoOS.h"

namespace {

// The C library's control-word fields.
const uint32_t sc_roundingMask = 0x300;
const uint32_t sc_precisionMask = 0x30000;

// Control-word bits of eRoundChop .. eRoundNear.
const uint32_t sc_roundingBits[] = {0x300, 0x200, 0x100, 0x000};

} // namespace

ZoFPUControl::ZoFPUControl() : m_savedControl(0)
{
    SaveFloatingPointControl();
}

ZoFPUControl& ZoFPUControl::operator=(const ZoFPUControl& other)
{
    m_savedControl = other.m_savedControl;
    return *this;
}

void ZoFPUControl::SaveFloatingPointControl() {}

void ZoFPUControl::RestoreFloatingPointControl() {}

void ZoFPUControl::SetPrecision(EFloatPrecision) {}

ZoFPUControl::EFloatRounding ZoFPUControl::GetRounding()
{
    uint32_t control = 0;
    if (!ZoOS::ControlFloatingPoint(control, 0, 0))
        return eRoundUnknown;
    switch (control & sc_roundingMask) {
    case 0x300:
        return eRoundChop;
    case 0x200:
        return eRoundUp;
    case 0x100:
        return eRoundDown;
    default:
        return eRoundNear;
    }
}

void ZoFPUControl::SetRounding(EFloatRounding rounding)
{
    if (rounding < eRoundChop || rounding > eRoundNear)
        return;
    uint32_t control = 0;
    ZoOS::ControlFloatingPoint(control, sc_roundingBits[rounding - eRoundChop], sc_roundingMask);
}

ZoFPUControl::EFloatPrecision ZoFPUControl::GetPrecision()
{
    uint32_t control = 0;
    if (!ZoOS::ControlFloatingPoint(control, 0, 0))
        return ePrecisionUnknown;
    switch (control & sc_precisionMask) {
    case 0x20000:
        return ePrecision24;
    case 0x10000:
        return ePrecision53;
    case 0x00000:
        return ePrecision64;
    default:
        return ePrecisionUnknown;
    }
}
