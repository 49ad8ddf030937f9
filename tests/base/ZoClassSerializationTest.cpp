// The archive factory's folders and file chores.
#include "base/ZoClassSerialization.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <filesystem>

namespace {

using zotest::Bytes;

#if defined(_WIN32)
const char kExecutable[] = "zo-tests.exe";
#else
const char kExecutable[] = "zo-tests";
#endif

TEST(ZoClassSerializationTest, SpecialDirectoriesEndInTheSeparator)
{
    zotest::TempFolder folder;
    const char16_t separator = ZoOS::GetPathSeparator();
    {
        zotest::ScopedSystemTemporary redirected(folder);
        const CString temp = ZoClassSerialization::GetDirectory(ZoClassSerialization::eTemporary);
        EXPECT_EQ(temp, folder.CPath() + separator);
        EXPECT_EQ(ZoClassSerialization::GetDirectory(ZoClassSerialization::eHalvo), temp + u"Halvo" + separator);
        EXPECT_EQ(ZoClassSerialization::GetDirectory(ZoClassSerialization::eTestSuite), temp + u"ZoTestSuite" + separator);
    }

    for (int directory = 0; directory <= 15; ++directory) {
        const CString path = ZoClassSerialization::GetDirectory(static_cast<ZoClassSerialization::ESpecialDirectory>(directory));
        ASSERT_FALSE(path.IsEmpty()) << directory;
        EXPECT_EQ(path[path.GetLength() - 1], separator) << directory;
    }
    EXPECT_EQ(ZoClassSerialization::GetDirectory(ZoClassSerialization::eCurrent),
              CString(std::filesystem::current_path().string()) + separator);
    // The executable's folder holds the test program itself.
    const CString module = ZoClassSerialization::GetDirectory(ZoClassSerialization::eModule);
    EXPECT_TRUE(ZoClassSerialization::Exists(module + CString(kExecutable)));
    EXPECT_EQ(module, ZoClassSerialization::GetDirectory(ZoClassSerialization::eApplication));
}

TEST(ZoClassSerializationTest, FileChores)
{
    zotest::TempFolder folder;
    const CString deep = folder.CPath("a/b/c");
    EXPECT_EQ(ZoClassSerialization::CreateDirectoryW(deep), 1);
    EXPECT_EQ(ZoClassSerialization::IsDirectory(deep), 1);
    EXPECT_EQ(ZoClassSerialization::CreateDirectoryW(deep), 1); // already there
    zotest::WriteBytes(folder.Path("file"), Bytes({1, 2, 3}));
    EXPECT_EQ(ZoClassSerialization::CreateDirectoryW(folder.CPath("file")), 0);
    EXPECT_EQ(ZoClassSerialization::CreateDirectoryW(folder.CPath("file/below")), 0);
    EXPECT_EQ(ZoClassSerialization::IsDirectory(folder.CPath("file")), 0);
    EXPECT_EQ(ZoClassSerialization::Exists(folder.CPath("file")), 1);

    EXPECT_EQ(ZoClassSerialization::GetFileSize(folder.CPath("file")), 3u);
    EXPECT_EQ(ZoClassSerialization::GetFileSize(folder.CPath("missing")), 0u);
    EXPECT_EQ(ZoClassSerialization::CopyFileW(folder.CPath("missing"), folder.CPath("x"), 0), 0);
    EXPECT_EQ(ZoClassSerialization::CopyFileW(folder.CPath("file"), folder.CPath("new/folder/copy"), 0), 1);
    EXPECT_EQ(zotest::ReadBytes(folder.Path("new/folder/copy")), Bytes({1, 2, 3}));
    EXPECT_EQ(ZoClassSerialization::CopyFileW(folder.CPath("file"), folder.CPath("new/folder/copy"), 1), 0);
    EXPECT_EQ(ZoClassSerialization::CopyFileW(folder.CPath("file"), folder.CPath("new/folder/copy"), 0), 1);
    EXPECT_EQ(ZoClassSerialization::DeleteFileW(folder.CPath("new/folder/copy")), 1);
    EXPECT_EQ(ZoClassSerialization::DeleteFileW(folder.CPath("new/folder/copy")), 0);
}

TEST(ZoClassSerializationTest, ArchivesRefuseWhatTheyCannotOpen)
{
    zotest::TempFolder folder;
    EXPECT_EQ(ZoClassSerialization::CreateArchive(folder.CPath("missing"), ZoClassSerialization::eRead), nullptr);
    EXPECT_EQ(ZoClassSerialization::CreateArchive(folder.CPath("x"), static_cast<ZoClassSerialization::ESerializationMode>(3)),
              nullptr);
    EXPECT_EQ(ZoClassSerialization::CreateArchive(folder.CPath(), ZoClassSerialization::eRead), nullptr); // a folder
    EXPECT_EQ(ZoClassSerialization::ReleaseArchive(nullptr), 0);
}

TEST(ZoClassSerializationTest, LinesTokensAndStrings)
{
    zotest::TempFolder folder;
    const CString path = folder.CPath("text.txt");
    CArchive* out = ZoClassSerialization::CreateArchive(path, ZoClassSerialization::eWrite);
    ASSERT_NE(out, nullptr);
    ZoClassSerialization::WriteLine(*out, u"first line\r");
    ZoClassSerialization::WriteLine(*out, u"caf\u00e9 \u20ac\n"); // already ends with a line feed
    ZoClassSerialization::WriteString(*out, u" tok\u4e16n\tlast");
    EXPECT_EQ(ZoClassSerialization::ReleaseArchive(out), 1);
    EXPECT_EQ(zotest::ReadBytes(folder.Path("text.txt")),
              Bytes({'f', 'i', 'r', 's', 't', ' ', 'l', 'i', 'n', 'e', '\r', '\n', 'c', 'a', 'f', 0xE9, ' ', 0x80, '\n',
                     ' ', 't', 'o', 'k', '?', 'n', '\t', 'l', 'a', 's', 't'}));

    CArchive* in = ZoClassSerialization::CreateArchive(path, ZoClassSerialization::eRead);
    ASSERT_NE(in, nullptr);
    char buffer[64];
    EXPECT_EQ(ZoClassSerialization::ReadLine(*in, buffer, sizeof buffer), 11u);
    EXPECT_STREQ(buffer, "first line\r"); // the carriage return is kept
    CString line;
    EXPECT_EQ(ZoClassSerialization::ReadLine(*in, line), 1);
    EXPECT_EQ(line, CString(u"caf\u00e9 \u20ac"));
    EXPECT_EQ(ZoClassSerialization::ReadToken(*in, buffer, 1, 1), 0u); // room for the terminator only
    EXPECT_EQ(ZoClassSerialization::ReadToken(*in, buffer, sizeof buffer, 0), 0u); // leading blank
    EXPECT_EQ(ZoClassSerialization::ReadToken(*in, buffer, 3, 0), 2u);
    EXPECT_STREQ(buffer, "to");
    EXPECT_EQ(ZoClassSerialization::ReadToken(*in, buffer, sizeof buffer, 0), 3u);
    EXPECT_STREQ(buffer, "k?n");
    EXPECT_EQ(ZoClassSerialization::ReadToken(*in, buffer, sizeof buffer, 1), 4u);
    EXPECT_STREQ(buffer, "last");
    EXPECT_EQ(ZoClassSerialization::ReadLine(*in, buffer, sizeof buffer), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(ZoClassSerialization::ReadLine(*in, line), 0);
    EXPECT_EQ(ZoClassSerialization::ReleaseArchive(in), 1);

    // A leading blank is stored when asked for.
    zotest::WriteBytes(folder.Path("blank.txt"), Bytes({' ', 'a', ' ', 'b'}));
    in = ZoClassSerialization::CreateArchive(folder.CPath("blank.txt"), ZoClassSerialization::eRead);
    EXPECT_EQ(ZoClassSerialization::ReadToken(*in, buffer, sizeof buffer, 1), 2u);
    EXPECT_STREQ(buffer, " a");
    ZoClassSerialization::ReleaseArchive(in);
}

} // namespace
