/// @class ZoProbabilityModelQuasiStatic
/// ZoProbabilityModelQuasiStatic: the adaptive frequency model behind the range coder. Symbols
/// 0 .. N-1 have probabilities out of the fixed total 2^B; the counts move with every coded symbol,
/// but the cumulative table the coder reads is rebuilt only once per update period, which starts
/// short and doubles up to a ceiling. Between rebuilds a symbol update is one addition.
///
/// Guarantees: the cumulative table is strictly increasing from 0 to exactly 2^B after every
/// rebuild (every count is at least 1 and the counts always sum to 2^B), so every symbol keeps a
/// nonzero interval and no division is needed to scale it.
///
/// An encoder and its decoder must drive two models of the same settings through the same symbols
/// from the same state. Models are shared through ZoSmartPointer; the copy constructor shares the
/// source's tables instead of copying them, so a copy and its source move together.
/// @ingroup compression
#pragma once

#include "base/ZoReferenceCountedClass.h"
#include "platform/ZoExport.h"

#include <cstdint>
#include <memory>

class ZO_API ZoProbabilityModelQuasiStatic : public ZoReferenceCountedClass<ZoProbabilityModelQuasiStatic>
{
public:
    /// Throws ZoExceptionPreconditionViolation unless symbolCount >= 2, totalBits <= 16,
    /// 2^totalBits >= 4 * symbolCount and maximumUpdatePeriod < 2^(totalBits+1). With 16 bits this
    /// admits at most 16384 symbols.
    ZoProbabilityModelQuasiStatic(uint32_t symbolCount, uint32_t totalBits, uint32_t maximumUpdatePeriod);
    /// Copies the counts and the update state: the copy codes as the original would from here on.
    ZoProbabilityModelQuasiStatic(const ZoProbabilityModelQuasiStatic& other) = default;
    ZoProbabilityModelQuasiStatic& operator=(const ZoProbabilityModelQuasiStatic&) = delete;

    /// Back to the uniform start: all counts equal (the first 2^B mod N one higher) and a fresh
    /// short update period.
    void Reset();

    /// Requires: symbol < N (not checked). The symbol's interval [low, low + frequency) out of 2^B;
    /// then counts the symbol. Used when encoding.
    void GetFrequencies(uint32_t symbol, uint32_t& low, uint32_t& frequency)
    {
        low = m_cumulative[symbol];
        frequency = m_cumulative[symbol + 1] - low;
        updateFrequency(symbol);
    }

    /// `target` in 0 .. 2^B-1 on entry (larger values yield the last symbol); returns the symbol
    /// whose interval holds it, replaces target by the symbol's low and sets its frequency, then
    /// counts the symbol. Used when decoding.
    uint32_t GetSymbol(uint32_t& target, uint32_t& frequency);

    /// B: frequencies are out of 2^B.
    uint32_t GetTotalBits() const { return m_totalBits; }
    /// N, the number of symbols.
    uint32_t GetSymbolCount() const { return m_symbolCount; }

private:
    void updateFrequency(uint32_t symbol)
    {
        m_frequency[symbol] += m_increment;
        if (--m_updatesLeft == 0) {
            if (m_remainder != 0) {
                ++m_increment;
                m_updatesLeft = m_remainder;
                m_remainder = 0;
            } else {
                updateFrequencies();
            }
        }
    }
    void updateFrequencies();

    uint32_t m_symbolCount;
    uint32_t m_totalBits;
    uint32_t m_updatePeriod;
    uint32_t m_maximumUpdatePeriod;
    /// N+1 lower bounds: entry 0 is 0, entry N is 2^B.
    std::shared_ptr<uint32_t[]> m_cumulative;
    /// N counts gathered for the next rebuild.
    std::shared_ptr<uint32_t[]> m_frequency;
    uint32_t m_increment;
    uint32_t m_updatesLeft;
    uint32_t m_remainder;
};
