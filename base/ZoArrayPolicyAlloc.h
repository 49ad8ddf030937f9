/// @class ZoArrayPolicyAlloc
/// ZoArrayPolicyAlloc<policy>: how a ZoArray grows when it runs out of room.
///   policy 0 adds a constant number of elements (10 unless set otherwise): 0 -> 10 -> 20 -> 30;
///   policy 1 doubles the capacity: 0 -> 1 -> 2 -> 4 -> 8.
/// SetElementCount and Add(array) size exactly and do not consult the policy.
/// @ingroup containers
#pragma once

#include "platform/ZoExport.h"

#include <cstdint>

template <int Policy>
class ZoArrayPolicyAlloc;

/// Growth by a constant number of elements per step (10 unless set otherwise), so capacity grows
/// linearly: little spare room, but appending n elements copies O(n^2) elements in all.
/// @ingroup containers
template <>
class ZO_TEMPLATE_API ZoArrayPolicyAlloc<0>
{
public:
    /// Grow constant 10.
    ZoArrayPolicyAlloc() : m_growConstant(10) {}

    ///@{
    /// Elements added to the capacity per growth step. 0 is allowed: the array then grows by one
    /// element at a time. Copies and assignments of an array take the source's setting.
    void SetGrowConstant(uint32_t growConstant) { m_growConstant = growConstant; }
    uint32_t GetGrowConstant() const { return m_growConstant; }
    ///@}
    ///@{
    /// Older spellings of SetGrowConstant() and GetGrowConstant(): despite the name, the value is
    /// added, not multiplied.
    void SetGrowFactor(uint32_t growConstant) { m_growConstant = growConstant; }
    uint32_t GetGrowFactor() const { return m_growConstant; }
    ///@}

protected:
    /// The capacity after one growth step from `current` elements (the caller makes it at least
    /// current + 1).
    uint32_t getNewAllocSize(uint32_t current) const { return current + m_growConstant; }
    /// Takes over the other array's grow constant on copy and assignment.
    void copyPolicy(const ZoArrayPolicyAlloc& other) { m_growConstant = other.m_growConstant; }

    /// Elements added per growth step.
    uint32_t m_growConstant;
};

/// Growth by doubling (0 -> 1 -> 2 -> 4 ...): appending n elements copies O(n) elements in all, at
/// the price of up to half the capacity unused. No settings.
/// @ingroup containers
template <>
class ZO_TEMPLATE_API ZoArrayPolicyAlloc<1>
{
protected:
    /// Twice `current`, or 1 from an empty array.
    uint32_t getNewAllocSize(uint32_t current) const { return current * 2 == 0 ? 1 : current * 2; }
    /// Nothing to copy: the policy has no state.
    void copyPolicy(const ZoArrayPolicyAlloc&) {}
};
