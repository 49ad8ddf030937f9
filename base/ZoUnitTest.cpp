#include "base/ZoUnitTest.h"

#include "base/ZoClassSerialization.h"
#include "base/ZoIteratorFindFile.h"
#include "base/ZoStreamReadBinaryFile.h"
#include "base/ZoStreamWriteBinaryFile.h"
#include "platform/ZoOS.h"

#include <algorithm>
#include <vector>

namespace {
CString withSeparator(const CString& folder)
{
    const char16_t separator = ZoOS::GetPathSeparator();
    if (!folder.IsEmpty() && folder[folder.GetLength() - 1] == separator)
        return folder;
    return folder + CString(separator, 1);
}
} // namespace

ZO_IMPLEMENT_RTTI(ZoUnitTest, nullptr, nullptr);

ZoUnitTest::~ZoUnitTest() = default;

ZoUnitTest::EResult ZoUnitTest::RunUnitTest(const CString& recording)
{
    EResult result = eResultError;
    try {
        ZoStreamReadBinaryFile stream(recording);
        serializeUnitTestInput(stream);
        serializeUnitTestOutput(stream);
        result = runUnitTest();
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
        result = eResultError;
    }
    releaseUnitTestOutput();
    releaseUnitTestInput();
    return result;
}

bool ZoUnitTest::RecordUnitTest(const CString& recording) const
{
    try {
        ZoStreamWriteBinaryFile stream(recording);
        try {
            serializeUnitTestInput(stream);
            serializeUnitTestOutput(stream);
            stream.Close();
            return true;
        } catch (...) {
            ZoOS::RethrowThreadCancellation();
        }
    } catch (...) {
        ZoOS::RethrowThreadCancellation();
        return false;
    }
    // A half-written case would replay as a failure of the class, not of the recording.
    ZoClassSerialization::DeleteFileW(recording);
    return false;
}

ZoUnitTest::Summary ZoUnitTest::RunRecordedUnitTests(ZoStreamWrite* report, const CString& folder)
{
    const CString listed = withSeparator(folder.IsEmpty() ? GetRecordingFolder(GetClassNameW()) : folder);
    std::vector<CString> names;
    for (ZoIteratorFindFile found(listed, CString(u"*.dat")); found; ++found)
        if (!found.IsFolder())
            names.push_back(found.GetName());
    // The system lists in no promised order; reports of two runs should line up.
    std::sort(names.begin(), names.end());
    Summary summary;
    for (const CString& name : names) {
        const EResult result = RunUnitTest(listed + name);
        ++summary.counts[result];
        if (report != nullptr)
            *report << name + CString(u": ") + CString(GetResultName(result)) + CString(u"\n");
    }
    if (report != nullptr)
        *report << CString::Formatted(u"%u recordings: %u succeeded, %u failed, %u errors, %u not implemented\n",
                                      summary.GetTotal(), summary.counts[eResultSucceeded], summary.counts[eResultFailed],
                                      summary.counts[eResultError], summary.counts[eResultNotImplemented]);
    return summary;
}

const char16_t* ZoUnitTest::GetResultName(EResult result)
{
    switch (result) {
    case eResultSucceeded:
        return u"succeeded";
    case eResultFailed:
        return u"failed";
    case eResultError:
        return u"error";
    case eResultNotImplemented:
        return u"not implemented";
    }
    return u"unknown";
}

CString ZoUnitTest::GetRecordingFolder(const CString& className)
{
    return withSeparator(withSeparator(ZoClassSerialization::GetDirectory(ZoClassSerialization::eHalvo)) + className);
}

ZoUnitTest::EResult ZoUnitTest::runUnitTest()
{
    return eResultNotImplemented;
}

void ZoUnitTest::serializeUnitTestInput(ZoStreamWriteBinary&) const
{
}

void ZoUnitTest::serializeUnitTestInput(ZoStreamReadBinary&)
{
}

void ZoUnitTest::serializeUnitTestOutput(ZoStreamWriteBinary&) const
{
}

void ZoUnitTest::serializeUnitTestOutput(ZoStreamReadBinary&)
{
}

void ZoUnitTest::releaseUnitTestInput()
{
}

void ZoUnitTest::releaseUnitTestOutput()
{
}
