#pragma once

#include "base/ZoClassRTTI.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWrite.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoUnitTest: the base of classes that can record their input and output to a file and be run
/// again later as a regression test (the algorithms, through ZoAlgorithm). It fixes the recording
/// hooks: a class writes its input and its output through serializeUnitTestInput/-Output into a
/// binary stream, reads them back through the reading overloads, and runUnitTest() runs the recorded
/// case and says whether the result still matches. Registered with the type registry.
///
/// As a harness: RecordUnitTest(file) writes a case (input, then output) through the hooks;
/// RunUnitTest(file) replays one: it reads the input and the recorded output, runs the test and
/// releases both; RunRecordedUnitTests replays every recording in a folder — by default the class's
/// own folder, where the algorithm frame records — and reports a line per case and a summary:
///
///     ZoMpGraphToShortestPath algorithm;
///     ZoUnitTest::Summary summary = algorithm.RunRecordedUnitTests(&console);
///     return summary.AllSucceeded() ? 0 : 1;
///
/// Replaying never throws (but lets a thread's termination pass): an unreadable recording or a
/// throwing test counts as an error. Every hook of the base does nothing.
/// @ingroup graphs
class ZO_API ZoUnitTest : public ZoClassRTTI
{
    ZO_DECLARE_RTTI()

    /// The outcome of a replayed recording.
    enum EResult
    {
        eResultSucceeded = 0,
        eResultFailed = 1,
        /// The recording could not be read, or the computation threw.
        eResultError = 2,
        /// The class has no test of its own.
        eResultNotImplemented = 3,
    };

    /// How many recordings gave each result, indexed by EResult.
    struct ZO_API Summary
    {
        /// Recordings per result, indexed by EResult.
        uint32_t counts[4] = {0, 0, 0, 0};

        /// Recordings replayed.
        uint32_t GetTotal() const { return counts[0] + counts[1] + counts[2] + counts[3]; }
        /// At least one recording ran, and every one succeeded.
        bool AllSucceeded() const { return counts[eResultSucceeded] != 0 && counts[eResultSucceeded] == GetTotal(); }
    };

    ZoUnitTest() = default;
    /// Copies nothing of its own: the base has no state.
    ZoUnitTest(const ZoUnitTest&) = default;
    /// Copies nothing of its own: the base has no state.
    ZoUnitTest& operator=(const ZoUnitTest&) = default;
    virtual ~ZoUnitTest();

    /// Runs the test on the input and recorded output already read; eResultNotImplemented unless a derived class runs one.
    EResult RunUnitTest() { return runUnitTest(); }
    /// Reads the input and the recorded output from the file, runs the test, releases both. A file
    /// that cannot be opened or read gives eResultError; nothing is thrown.
    EResult RunUnitTest(const CString& recording);
    /// Writes the input and then the output through the hooks into the file. False, with no file
    /// left behind, when it cannot be written; nothing is thrown.
    bool RecordUnitTest(const CString& recording) const;
    /// Replays every "*.dat" file of the folder (this class's recording folder when empty) in name
    /// order. With a report stream, writes "<file name>: <result>" per recording and then
    /// "<n> recordings: <s> succeeded, <f> failed, <e> errors, <x> not implemented". A folder that
    /// cannot be listed gives an empty summary.
    Summary RunRecordedUnitTests(ZoStreamWrite* report = nullptr, const CString& folder = CString());

    /// "succeeded", "failed", "error", "not implemented"; "unknown" outside the enumeration.
    static const char16_t* GetResultName(EResult result);
    /// Where the recordings of a class are kept: the library's recording special folder, the class
    /// name and a separator.
    static CString GetRecordingFolder(const CString& className);

protected:
    /// eResultNotImplemented in the base.
    virtual EResult runUnitTest();
    /// Writes the input to a recording. Empty in the base.
    virtual void serializeUnitTestInput(ZoStreamWriteBinary& stream) const;
    /// Reads a recorded input and makes it the input (throwing the stream's exception on bad data). Empty in the base.
    virtual void serializeUnitTestInput(ZoStreamReadBinary& stream);
    /// Writes the output to a recording. Empty in the base.
    virtual void serializeUnitTestOutput(ZoStreamWriteBinary& stream) const;
    /// Reads a recorded output to compare against (throwing the stream's exception on bad data). Empty in the base.
    virtual void serializeUnitTestOutput(ZoStreamReadBinary& stream);
    /// Frees what serializeUnitTestInput read. Empty in the base.
    virtual void releaseUnitTestInput();
    /// Frees what serializeUnitTestOutput read. Empty in the base.
    virtual void releaseUnitTestOutput();
};
