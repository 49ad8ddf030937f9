// The text file stream: the exact bytes it leaves in the file, when they get there, the two access
// modes, and each way opening can fail.
#include "base/ZoClassSerialization.h"
#include "base/ZoExceptionStream.h"
#include "base/ZoStreamWriteASCIIFile.h"
#include "platform/CArchive.h"
#include "platform/CMemFile.h"

#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <filesystem>
#include <functional>

namespace {

using zotest::Bytes;

std::string fileText(const std::string& path)
{
    const std::vector<unsigned char> bytes = zotest::ReadBytes(path);
    return std::string(bytes.begin(), bytes.end());
}

TEST(ZoStreamWriteASCIIFileTest, EachWriteReachesTheFileAtOnceInTheAnsiCodePage)
{
    zotest::TempFolder folder;
    const std::string path = folder.Path("log.txt");
    {
        ZoStreamWriteASCIIFile stream{CString(path)};
        stream << u"n=" << static_cast<short>(-1);
        // Still open: nothing waits in a buffer.
        EXPECT_EQ(fileText(path), "n=4294967295");
        stream << u" \u00e9\u20ac" << 1.5f << u"\n";
        EXPECT_TRUE(zotest::IsFileOpen(path));
    }
    EXPECT_FALSE(zotest::IsFileOpen(path)) << "the stream owns the archive it opened and closes it";
    EXPECT_EQ(zotest::ReadBytes(path), Bytes({'n', '=', '4', '2', '9', '4', '9', '6', '7', '2', '9', '5', ' ', 0xE9,
                                              0x80, '1', '.', '5', '0', '0', '0', '0', '0', '\n'}));
}

TEST(ZoStreamWriteASCIIFileTest, WriteTruncatesAppendKeepsAndSpecialFoldersJoin)
{
    zotest::TempFolder folder;
    const CString path = folder.CPath("sub/log.txt"); // the folder is made on the way
    ZoStreamWriteASCIIFile(path, ZoStreamWriteASCIIFile::eAccessWrite) << u"first line\n";
    ZoStreamWriteASCIIFile(path, ZoStreamWriteASCIIFile::eAccessAppend) << 2;
    EXPECT_EQ(fileText(folder.Path("sub/log.txt")), "first line\n2");
    ZoStreamWriteASCIIFile(path) << u"new";
    EXPECT_EQ(fileText(folder.Path("sub/log.txt")), "new");
    // Appending to a file that does not exist yet creates it.
    ZoStreamWriteASCIIFile(folder.CPath("fresh.txt"), ZoStreamWriteASCIIFile::eAccessAppend) << true;
    EXPECT_EQ(fileText(folder.Path("fresh.txt")), "true");

    {
        zotest::ScopedSystemTemporary redirected(folder);
        ZoStreamWriteASCIIFile special(ZoClassSerialization::eTemporary, u"in-temp.txt");
        special << 42;
        EXPECT_TRUE(zotest::IsFileOpen(folder.Path("in-temp.txt")));
    }
    EXPECT_FALSE(zotest::IsFileOpen(folder.Path("in-temp.txt")));
    EXPECT_EQ(fileText(folder.Path("in-temp.txt")), "42");
}

TEST(ZoStreamWriteASCIIFileTest, OpeningFailuresThrowOpenFile)
{
    zotest::TempFolder folder;
    zotest::WriteBytes(folder.Path("plain-file"), Bytes({'x'}));
    const std::function<void()> failures[] = {
        // The folder for the file cannot be made: a file stands where it should be.
        [&] { ZoStreamWriteASCIIFile stream(folder.CPath("plain-file/log.txt")); },
        // Access modes other than write and append open nothing at all.
        [&] { ZoStreamWriteASCIIFile stream(folder.CPath("log.txt"), ZoStreamWriteASCIIFile::EAccessMode(2)); },
        [&] {
            ZoStreamWriteASCIIFile stream(ZoClassSerialization::eTemporary, u"x.txt", ZoStreamWriteASCIIFile::EAccessMode(-1));
        },
    };
    for (const auto& failure : failures)
        zotest::ExpectThrowSite<ZoExceptionStream>(failure, "..\\base\\ZoStreamWriteASCIIFile.cpp", "ZoStreamWriteASCIIFile",
                                                   "openFile", 109);
    EXPECT_FALSE(std::filesystem::exists(folder.Path("log.txt")));
}

TEST(ZoStreamWriteASCIIFileTest, ACallersArchiveIsFlushedButStaysTheCallers)
{
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    {
        ZoStreamWriteASCIIFile stream(archive);
        stream << u"abc" << -3;
        ASSERT_EQ(file.GetLength(), 5u);
        EXPECT_EQ(std::string(reinterpret_cast<const char*>(file.GetBuffer()), 5), "abc-3");
    }
    EXPECT_FALSE(archive.IsClosed());
    archive.Write("!", 1);
    archive.Close();
    EXPECT_EQ(file.GetLength(), 6u);
}

} // namespace
