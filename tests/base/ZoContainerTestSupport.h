// Helpers of the container suites: a counting element type.
#pragma once

#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace zotest {

// A counting element type for the managed arrays and pooled lists: it counts constructions, copies,
// assignments and destructions, and reports a destruction of something never constructed (or
// destroyed twice) as a test failure. Value checks alone never see those faults.
class Counted
{
public:
    struct Counts
    {
        int defaults = 0, values = 0, copies = 0, assignments = 0, destructions = 0;
        int Constructions() const { return defaults + values + copies; }
        int Live() const { return Constructions() - destructions; }
    };

    Counted() : m_value(0), m_magic(kAlive) { ++counts().defaults; }
    Counted(int value) : m_value(value), m_magic(kAlive) { ++counts().values; }
    Counted(const Counted& other) : m_value(other.m_value), m_magic(kAlive) { other.check("copied from"); ++counts().copies; }
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
    uint32_t m_magic;
};

} // namespace zotest
