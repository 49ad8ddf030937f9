/// @class ZoAlgorithm
/// ZoAlgorithm: the common frame of the library's computations. A computation is given its inputs
/// (by the derived class's own setters), then Compute() runs a fixed sequence: Init() once,
/// checkParameters(), checkInputData(), and the derived compute(). The result of the last run is
/// kept (IsCalculated); an exception from compute() counts as failure and never leaves Compute().
///
/// With flag eRecordUnitTest set, every Compute() also records its input and output into
/// "<special folder 11>\<class name>\<id>.dat" (the system's separator), where <id> is the one given
/// to SetUniqueID (used once) or a fresh unique identifier. Recording is best effort: when the file
/// cannot be made or written, the computation runs all the same.
/// @ingroup graphs
#pragma once

#include "base/ZoFlags.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWriteBinary.h"
#include "base/ZoUnitTest.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

#include <cstdint>

class ZO_API ZoAlgorithm : public ZoUnitTest
{
    ZO_DECLARE_RTTI()

    enum EFlags
    {
        eRecordUnitTest = 1,
    };

    ZoAlgorithm();
    ZoAlgorithm(const ZoAlgorithm&) = default;
    ZoAlgorithm& operator=(const ZoAlgorithm&) = default;
    ~ZoAlgorithm() override;

    /// Once: checkInitData() and init(). False (and not initialized) when either says no or init()
    /// throws; true at once when already initialized.
    int Init();
    /// 1 when the computation ran and succeeded; 0 when a check failed (the last result is then
    /// kept), compute() said no or threw.
    int Compute();

    int IsInitialized() const { return m_initialized; }
    int IsCalculated() const { return m_calculated; }
    int IsComputable() const { return checkInputData(); }

    uint32_t GetFlags() const { return m_flags.GetFlags(); }
    void SetFlags(uint32_t flags) { m_flags = ZoFlags<EFlags>(flags); }
    void AddFlags(uint32_t flags) { m_flags.AddFlags(static_cast<EFlags>(flags)); }
    void RemoveFlags(uint32_t flags) { m_flags.RemoveFlags(static_cast<EFlags>(flags)); }
    /// Every bit of `flags` is set.
    bool IsFlagsSet(uint32_t flags) const { return m_flags.IsFlagsSet(static_cast<EFlags>(flags)); }
    /// At least one bit of `flags` is set.
    bool IsOneFlagSet(uint32_t flags) const { return m_flags.IsOneFlagSet(static_cast<EFlags>(flags)); }

    /// The identifier of the next recording file only.
    void SetUniqueID(const CString& id) { m_uniqueId = id; }

    /// The frame's own settings: version 0 and the flag word. Reading throws
    /// ZoExceptionWrongFileVersion for a newer version and ZoExceptionStream for short data. Return 1.
    virtual int Serialize(ZoStreamReadBinary& stream);
    virtual int Serialize(ZoStreamWriteBinary& stream) const;

protected:
    void setInitialized(int initialized) { m_initialized = initialized; }
    void setCalculated(int calculated) { m_calculated = calculated; }

    /// Runs Compute() on the recorded input and compares with the recorded output.
    EResult runUnitTest() override;
    void releaseUnitTestInput() override;
    void releaseUnitTestOutput() override;
    /// Called with the flag word read by Serialize, before it replaces the current flags.
    virtual void onReadOldFlags(uint32_t flags);
    virtual int checkInitData() const;
    virtual int init();
    virtual int checkParameters() const;
    virtual int checkInputData() const = 0;
    virtual int compute() = 0;
    /// The result matches the recorded output; true in the base.
    virtual int compareResult() const;

private:
    CString recordingPath();

    ZoFlags<EFlags> m_flags;
    int m_initialized;
    int m_calculated;
    CString m_uniqueId;
};
