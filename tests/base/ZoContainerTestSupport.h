// Helpers of the container suites: a counting element type.
#pragma once

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace zotest {

// Counts constructions, copies, assignments and destructions, and reports a use or destruction of
// something never constructed (or destroyed twice) as a test failure: value checks never see those.
class Counted
{
public:
    struct Counts
    {
        int defaults = 0, values = 0, copies = 0, assignments = 0, destructions = 0;
        int Live() const { return defaults + values + copies - destructions; }
    };

    Counted() : m_value(0) { ++counts().defaults; }
    Counted(int value) : m_value(value) { ++counts().values; }
    Counted(const Counted& other) : m_value(other.m_value) { other.check("copied from"); ++counts().copies; }
    Counted& operator=(const Counted& other)
    {
        check("assigned to");
        other.check("assigned from");
        m_value = other.m_value;
        ++counts().assignments;
        return *this;
    }
    ~Counted() { check("destroyed"); m_magic = kDead; ++counts().destructions; }

    int Value() const { return m_value; }
    bool operator==(const Counted& other) const { return m_value == other.m_value; }
    static Counts& counts()
    {
        static Counts all;
        return all;
    }
    static void ResetCounts() { counts() = Counts(); }

private:
    static const uint32_t kAlive = 0xA11CEu, kDead = 0xDEADu;
    void check(const char* what) const
    {
        if (m_magic != kAlive)
            ADD_FAILURE() << "an element that is not alive was " << what << " (magic " << std::hex << m_magic << ")";
    }

    int m_value;
    uint32_t m_magic = kAlive;
};

} // namespace zotest
