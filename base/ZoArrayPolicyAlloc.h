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

template <>
class ZO_TEMPLATE_API ZoArrayPolicyAlloc<0>
{
public:
    ZoArrayPolicyAlloc() : m_growConstant(10) {}

    void SetGrowConstant(uint32_t growConstant) { m_growConstant = growConstant; }
    uint32_t GetGrowConstant() const { return m_growConstant; }
    /// Older spellings of the same setting.
    void SetGrowFactor(uint32_t growConstant) { m_growConstant = growConstant; }
    uint32_t GetGrowFactor() const { return m_growConstant; }

protected:
    uint32_t getNewAllocSize(uint32_t current) const { return current + m_growConstant; }
    void copyPolicy(const ZoArrayPolicyAlloc& other) { m_growConstant = other.m_growConstant; }

    uint32_t m_growConstant;
};

template <>
class ZO_TEMPLATE_API ZoArrayPolicyAlloc<1>
{
protected:
    uint32_t getNewAllocSize(uint32_t current) const { return current * 2 == 0 ? 1 : current * 2; }
    void copyPolicy(const ZoArrayPolicyAlloc&) {}
};
