/// @class ZoAlgorithm
/// ZoAlgorithm: the common frame of the library's computations. A computation is given its inputs
/// (by the derived class's own setters), then Compute() runs a fixed sequence: Init() once,
/// checkParameters(), checkInputData(), and the derived compute(). The result of the last run is
/// kept (IsCalculated); an exception from compute() counts as failure and never leaves Compute().
///
/// With flag eRecordUnitTest set, every Compute() also records its input and output into
/// `<special folder 11>\<class name>\<id>.dat` (the system's separator), where \<id\> is the one given
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

    /// Bits of the flag word.
    enum EFlags
    {
        /// Record every Compute()'s input and output into a ".dat" file (see the class description).
        eRecordUnitTest = 1,
    };

    ZoAlgorithm();
    /// Copies the flags, the state and the pending recording identifier.
    ZoAlgorithm(const ZoAlgorithm&) = default;
    /// Copies the flags, the state and the pending recording identifier.
    ZoAlgorithm& operator=(const ZoAlgorithm&) = default;
    ~ZoAlgorithm() override;

    /// Once: checkInitData() and init(). False (and not initialized) when either says no or init()
    /// throws; true at once when already initialized.
    int Init();
    /// 1 when the computation ran and succeeded; 0 when a check failed (the last result is then
    /// kept), compute() said no or threw.
    int Compute();

    /// 1 once Init() has succeeded.
    int IsInitialized() const { return m_initialized; }
    /// 1 when the last Compute() succeeded.
    int IsCalculated() const { return m_calculated; }
    /// checkInputData(): nonzero when the inputs given so far allow a computation.
    int IsComputable() const { return checkInputData(); }

    /// The flag word (EFlags bits).
    uint32_t GetFlags() const { return m_flags.GetFlags(); }
    /// Replaces the flag word.
    void SetFlags(uint32_t flags) { m_flags = ZoFlags<EFlags>(flags); }
    /// Sets the bits of `flags`.
    void AddFlags(uint32_t flags) { m_flags.AddFlags(static_cast<EFlags>(flags)); }
    /// Clears the bits of `flags`.
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
    /// Writes version record 0 and the flag word; returns 1. Throws what the stream throws.
    virtual int Serialize(ZoStreamWriteBinary& stream) const;

protected:
    /// Marks the frame initialized (1) or not (0).
    void setInitialized(int initialized) { m_initialized = initialized; }
    /// Marks the last result valid (1) or not (0).
    void setCalculated(int calculated) { m_calculated = calculated; }

    /// Runs Compute() on the recorded input and compares with the recorded output.
    EResult runUnitTest() override;
    /// Drops recorded input read for a unit test; nothing in the base.
    void releaseUnitTestInput() override;
    /// Drops recorded output read for a unit test; nothing in the base.
    void releaseUnitTestOutput() override;
    /// Called with the flag word read by Serialize, before it replaces the current flags.
    virtual void onReadOldFlags(uint32_t flags);
    /// Whether Init() may run; 1 in the base.
    virtual int checkInitData() const;
    /// The derived class's one-time set-up; 0 or an exception fails Init(). 1 in the base.
    virtual int init();
    /// Whether the settings allow a computation; 1 in the base.
    virtual int checkParameters() const;
    /// Whether the inputs allow a computation (0: Compute() fails and keeps the last result).
    virtual int checkInputData() const = 0;
    /// The computation itself; 0 or an exception means failure.
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
