/// @class ZoAtomicCounter
/// ZoAtomicCounter: a signed 32-bit counter whose changes (increment, decrement, add, exchange) are
/// atomic read-modify-write operations with full barriers. Plain assignment and reads are ordinary
/// atomic loads and stores, so a read may be stale by the time it is used.
/// @ingroup objectmodel
#pragma once

#include "platform/ZoExport.h"

#include <atomic>
#include <cstdint>

class ZO_API ZoAtomicCounter
{
public:
    ZoAtomicCounter() : m_value(0) {}
    explicit ZoAtomicCounter(int32_t value) : m_value(value) {}
    ZoAtomicCounter(const ZoAtomicCounter& other) : m_value(other.GetValue()) {}
    ZoAtomicCounter& operator=(const ZoAtomicCounter& other)
    {
        m_value.store(other.GetValue(), std::memory_order_relaxed);
        return *this;
    }
    ZoAtomicCounter& operator=(int32_t value)
    {
        m_value.store(value, std::memory_order_relaxed);
        return *this;
    }

    /// Each returns the value after the change; like the underlying atomics they wrap around.
    int32_t operator++() { return wrappedSum(m_value.fetch_add(1), 1); }
    int32_t operator--() { return wrappedSum(m_value.fetch_sub(1), -1); }
    int32_t operator+=(int32_t amount) { return wrappedSum(m_value.fetch_add(amount), amount); }
    /// Stores `value` and returns the value it replaced.
    int32_t ExchangeValue(int32_t value) { return m_value.exchange(value); }

    int32_t GetValue() const { return m_value.load(std::memory_order_relaxed); }
    bool operator==(int32_t value) const { return GetValue() == value; }
    bool operator!=(int32_t value) const { return GetValue() != value; }
    bool operator<(int32_t value) const { return GetValue() < value; }
    bool operator<=(int32_t value) const { return GetValue() <= value; }
    bool operator>(int32_t value) const { return GetValue() > value; }
    bool operator>=(int32_t value) const { return GetValue() >= value; }
    bool operator!() const { return GetValue() == 0; }

private:
    static int32_t wrappedSum(int32_t a, int32_t b)
    {
        return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
    }

    std::atomic<int32_t> m_value;
};
