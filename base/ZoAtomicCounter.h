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
    /// Starts at 0.
    ZoAtomicCounter() : m_value(0) {}
    /// Starts at `value`.
    explicit ZoAtomicCounter(int32_t value) : m_value(value) {}
    /// Starts at the other's present value.
    ZoAtomicCounter(const ZoAtomicCounter& other) : m_value(other.GetValue()) {}
    /// Stores the other's present value (a plain store, not a read-modify-write).
    ZoAtomicCounter& operator=(const ZoAtomicCounter& other)
    {
        m_value.store(other.GetValue(), std::memory_order_relaxed);
        return *this;
    }
    /// Stores `value` (a plain store: concurrent increments may be lost).
    ZoAtomicCounter& operator=(int32_t value)
    {
        m_value.store(value, std::memory_order_relaxed);
        return *this;
    }

    /// Atomic increment; returns the new value. Like the underlying atomics, all changes wrap around.
    int32_t operator++() { return wrappedSum(m_value.fetch_add(1), 1); }
    /// Atomic decrement; returns the new value.
    int32_t operator--() { return wrappedSum(m_value.fetch_sub(1), -1); }
    /// Atomic add; returns the new value.
    int32_t operator+=(int32_t amount) { return wrappedSum(m_value.fetch_add(amount), amount); }
    /// Stores `value` and returns the value it replaced.
    int32_t ExchangeValue(int32_t value) { return m_value.exchange(value); }

    /// The present value; may be stale by the time it is used.
    int32_t GetValue() const { return m_value.load(std::memory_order_relaxed); }
    ///@{
    /// Compares the present value (GetValue()).
    bool operator==(int32_t value) const { return GetValue() == value; }
    bool operator!=(int32_t value) const { return GetValue() != value; }
    bool operator<(int32_t value) const { return GetValue() < value; }
    bool operator<=(int32_t value) const { return GetValue() <= value; }
    bool operator>(int32_t value) const { return GetValue() > value; }
    bool operator>=(int32_t value) const { return GetValue() >= value; }
    ///@}
    /// True when the present value is 0.
    bool operator!() const { return GetValue() == 0; }

private:
    static int32_t wrappedSum(int32_t a, int32_t b)
    {
        return static_cast<int32_t>(static_cast<uint32_t>(a) + static_cast<uint32_t>(b));
    }

    std::atomic<int32_t> m_value;
};
