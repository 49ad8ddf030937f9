#include "base/ZoUnitTest.h"

#include "base/ZoStreamReadBinaryFile.h"
#include "platform/ZoOS.h"

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
