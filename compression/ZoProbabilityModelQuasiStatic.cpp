#include "compression/ZoProbabilityModelQuasiStatic.h"

#include "base/ZoExceptionPreconditionViolation.h"

ZoProbabilityModelQuasiStatic::ZoProbabilityModelQuasiStatic(uint32_t symbolCount, uint32_t totalBits,
                                                             uint32_t maximumUpdatePeriod)
    : m_symbolCount(symbolCount), m_totalBits(totalBits), m_updatePeriod(0),
      m_maximumUpdatePeriod(maximumUpdatePeriod), m_increment(0), m_updatesLeft(0), m_remainder(0)
{
    // 4·N <= 2^B leaves every symbol a count of at least 4 at the start and at least 1 after any
    // halving; a period below 2^(B+1) keeps the increments within the total.
    if (symbolCount < 2 || totalBits > 16 || (uint32_t(1) << totalBits) / 4 < symbolCount ||
        maximumUpdatePeriod >= (uint32_t(2) << totalBits))
        throw ZoExceptionPreconditionViolation(u"..\\compression\\ZoProbabilityModelQuasiStatic.cpp",
                                               u"ZoProbabilityModelQuasiStatic", u"ZoProbabilityModelQuasiStatic", 56);
    m_cumulative.reset(new uint32_t[symbolCount + 1]);
    m_frequency.reset(new uint32_t[symbolCount]);
    Reset();
}

void ZoProbabilityModelQuasiStatic::Reset()
{
    const uint32_t total = uint32_t(1) << m_totalBits;
    const uint32_t share = total / m_symbolCount;
    const uint32_t rest = total % m_symbolCount;
    for (uint32_t symbol = 0; symbol < m_symbolCount; ++symbol)
        m_frequency[symbol] = symbol < rest ? share + 1 : share;
    m_cumulative[0] = 0;
    m_cumulative[m_symbolCount] = total;
    const uint32_t sixteenth = m_symbolCount / 16;
    m_updatePeriod = sixteenth > 2 ? sixteenth : 2;
    updateFrequencies();
}

void ZoProbabilityModelQuasiStatic::updateFrequencies()
{
    const uint32_t total = uint32_t(1) << m_totalBits;
    m_updatePeriod = 2 * m_updatePeriod < m_maximumUpdatePeriod ? 2 * m_updatePeriod : m_maximumUpdatePeriod;
    // A ceiling of 0 would leave an empty period and a division by zero; one update is the least
    // period that works.
    if (m_updatePeriod == 0)
        m_updatePeriod = 1;

    uint32_t bound = total;
    uint32_t halvedSum = 0;
    for (uint32_t symbol = m_symbolCount; symbol-- > 0;) {
        bound -= m_frequency[symbol];
        m_cumulative[symbol] = bound;
        const uint32_t halved = m_frequency[symbol] >> 1;
        m_frequency[symbol] = halved > 1 ? halved : 1;
        halvedSum += m_frequency[symbol];
    }
    // Exactly what the halving freed is handed out over the next period, so the counts sum to
    // 2^B again at the next rebuild and the table needs no rescaling.
    const uint32_t free = total - halvedSum;
    m_increment = free / m_updatePeriod;
    m_remainder = free % m_updatePeriod;
    m_updatesLeft = m_updatePeriod - m_remainder;
}

uint32_t ZoProbabilityModelQuasiStatic::GetSymbol(uint32_t& target, uint32_t& frequency)
{
    uint32_t symbol = 0;
    if (m_symbolCount > 1) {
        uint32_t lo = 0;
        uint32_t hi = m_symbolCount;
        const uint32_t* cumulative = m_cumulative.get();
        // Written for conditional moves: the comparison is as good as random, and mispredicted
        // branches would cost more than the rest of decoding a symbol.
        do {
            const uint32_t mid = (lo + hi) >> 1;
            const bool above = cumulative[mid] > target;
            hi = above ? mid : hi;
            lo = above ? lo : mid;
        } while (lo + 1 != hi);
        symbol = lo;
    }
    target = m_cumulative[symbol];
    frequency = m_cumulative[symbol + 1] - target;
    updateFrequency(symbol);
    return symbol;
}
