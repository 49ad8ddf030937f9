#pragma once

#include "base/ZoClassRTTI.h"
#include "base/ZoStreamReadBinary.h"
#include "base/ZoStreamWriteBinary.h"
#include "platform/CString.h"
#include "platform/ZoExport.h"

/// ZoUnitTest: the base of classes that can record their input and output to a file and be run
/// again later as a regression test (the algorithms, through ZoAlgorithm). It fixes the recording
/// hooks: a class writes its input and its output through serializeUnitTestInput/-Output into a
/// binary stream, reads them back through the reading overloads, and runUnitTest() runs the recorded
/// case and says whether the result still matches. Registered with the type registry.
///
/// RunUnitTest(file) replays a recording: it reads the input and the recorded output, runs the test
/// and releases both. Every hook of the base does nothing.
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
