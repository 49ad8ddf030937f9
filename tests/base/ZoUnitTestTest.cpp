#include "base/ZoException.h"
#include "base/ZoStreamWriteASCIIString.h"
#include "base/ZoUnitTest.h"
#include "ZoTestSupport.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

// A case whose output is its input doubled; `failOutput` makes recording break half-way.
class Doubling : public ZoUnitTest
{
public:
    int input = 0, output = 0;
    bool failOutput = false;

protected:
    EResult runUnitTest() override { return output == 2 * input ? eResultSucceeded : eResultFailed; }
    void serializeUnitTestInput(ZoStreamWriteBinary& stream) const override { stream << input; }
    void serializeUnitTestInput(ZoStreamReadBinary& stream) override { stream >> input; }
    void serializeUnitTestOutput(ZoStreamWriteBinary& stream) const override
    {
        if (failOutput)
            throw ZoException(u"test", u"Doubling", u"serializeUnitTestOutput", 1);
        stream << output;
    }
    void serializeUnitTestOutput(ZoStreamReadBinary& stream) override { stream >> output; }
};

TEST(ZoUnitTestTest, RecordsReplaysAFolderAndLeavesNoHalfWrittenCase)
{
    zotest::TempFolder folder;
    Doubling good, bad, broken;
    good.input = 3, good.output = 6;
    bad.input = 3, bad.output = 7;
    broken.failOutput = true;
    ASSERT_TRUE(good.RecordUnitTest(folder.CPath("a.dat")));
    ASSERT_TRUE(bad.RecordUnitTest(folder.CPath("b.dat")));
    EXPECT_FALSE(broken.RecordUnitTest(folder.CPath("c.dat")));
    EXPECT_FALSE(std::filesystem::exists(folder.Path("c.dat")));
    zotest::WriteBytes(folder.Path("d.dat"), {1, 0});

    Doubling replay;
    ZoStreamWriteASCIIString report;
    const ZoUnitTest::Summary summary = replay.RunRecordedUnitTests(&report, folder.CPath());
    EXPECT_EQ(report.GetText(), CString(u"a.dat: succeeded\nb.dat: failed\nd.dat: error\n"
                                        u"3 recordings: 1 succeeded, 1 failed, 1 errors, 0 not implemented\n"));
    EXPECT_TRUE(summary.GetTotal() == 3u && !summary.AllSucceeded());
    ZoUnitTest plain;
    EXPECT_EQ(plain.RunUnitTest(folder.CPath("a.dat")), ZoUnitTest::eResultNotImplemented);
    // A file where the recording should go: nothing recorded, nothing thrown.
    EXPECT_FALSE(good.RecordUnitTest(folder.CPath("a.dat/e.dat")));
}

} // namespace
