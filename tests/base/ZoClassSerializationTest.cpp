// The archive factory's folders, file chores and text lines.
#include "base/ZoClassSerialization.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <cstring>

namespace {

using zotest::Bytes;
using ZCS = ZoClassSerialization;

TEST(ZoClassSerializationTest, SpecialDirectoriesEndInTheSeparator)
{
    zotest::TempFolder folder;
    const char16_t separator = ZoOS::GetPathSeparator();
    {
        zotest::ScopedSystemTemporary redirected(folder);
        const CString temp = ZCS::GetDirectory(ZCS::eTemporary);
        EXPECT_EQ(temp, folder.CPath() + separator);
        EXPECT_EQ(ZCS::GetDirectory(ZCS::eHalvo), temp + u"Halvo" + separator);
        EXPECT_EQ(ZCS::GetDirectory(ZCS::eTestSuite), temp + u"ZoTestSuite" + separator);
    }
    for (int directory = 0; directory <= 15; ++directory) {
        const CString path = ZCS::GetDirectory(static_cast<ZCS::ESpecialDirectory>(directory));
        ASSERT_FALSE(path.IsEmpty()) << directory;
        EXPECT_EQ(path[path.GetLength() - 1], separator) << directory;
    }
    EXPECT_EQ(ZCS::GetDirectory(ZCS::eCurrent), CString(std::filesystem::current_path().string()) + separator);
    const CString module = ZCS::GetDirectory(ZCS::eModule);
    EXPECT_TRUE(ZCS::Exists(module + u"zo-tests") || ZCS::Exists(module + u"zo-tests.exe"));
    EXPECT_EQ(module, ZCS::GetDirectory(ZCS::eApplication));
}

TEST(ZoClassSerializationTest, FileChoresAndArchivesThatCannotOpen)
{
    zotest::TempFolder folder;
    const CString deep = folder.CPath("a/b/c"), file = folder.CPath("file"), copy = folder.CPath("new/folder/copy");
    EXPECT_EQ(ZCS::CreateDirectoryW(deep), 1);
    EXPECT_EQ(ZCS::IsDirectory(deep), 1);
    EXPECT_EQ(ZCS::CreateDirectoryW(deep), 1); // already there
    zotest::WriteBytes(folder.Path("file"), Bytes({1, 2, 3}));
    EXPECT_EQ(ZCS::CreateDirectoryW(file), 0);
    EXPECT_EQ(ZCS::CreateDirectoryW(folder.CPath("file/below")), 0);
    EXPECT_EQ(ZCS::IsDirectory(file), 0);
    EXPECT_EQ(ZCS::Exists(file), 1);
    EXPECT_EQ(ZCS::GetFileSize(file), 3u);
    EXPECT_EQ(ZCS::GetFileSize(folder.CPath("missing")), 0u);
    EXPECT_EQ(ZCS::CopyFileW(folder.CPath("missing"), folder.CPath("x"), 0), 0);
    EXPECT_EQ(ZCS::CopyFileW(file, copy, 0), 1);
    EXPECT_EQ(zotest::ReadBytes(folder.Path("new/folder/copy")), Bytes({1, 2, 3}));
    EXPECT_EQ(ZCS::CopyFileW(file, copy, 1), 0);
    EXPECT_EQ(ZCS::CopyFileW(file, copy, 0), 1);
    EXPECT_EQ(ZCS::DeleteFileW(copy), 1);
    EXPECT_EQ(ZCS::DeleteFileW(copy), 0);

    EXPECT_EQ(ZCS::CreateArchive(folder.CPath("missing"), ZCS::eRead), nullptr);
    EXPECT_EQ(ZCS::CreateArchive(folder.CPath("x"), static_cast<ZCS::ESerializationMode>(3)), nullptr);
    EXPECT_EQ(ZCS::CreateArchive(folder.CPath(), ZCS::eRead), nullptr); // a folder
    EXPECT_EQ(ZCS::ReleaseArchive(nullptr), 0);
}

TEST(ZoClassSerializationTest, LinesTokensAndStrings)
{
    zotest::TempFolder folder;
    const CString path = folder.CPath("text.txt");
    CArchive* out = ZCS::CreateArchive(path, ZCS::eWrite);
    ASSERT_NE(out, nullptr);
    ZCS::WriteLine(*out, u"first line\r");
    ZCS::WriteLine(*out, u"caf\u00e9 \u20ac\n"); // already ends with a line feed
    ZCS::WriteString(*out, u" tok\u4e16n\tlast");
    EXPECT_EQ(ZCS::ReleaseArchive(out), 1);
    EXPECT_EQ(zotest::ReadBytes(folder.Path("text.txt")),
              Bytes({'f', 'i', 'r', 's', 't', ' ', 'l', 'i', 'n', 'e', '\r', '\n', 'c', 'a', 'f', 0xE9, ' ', 0x80, '\n',
                     ' ', 't', 'o', 'k', '?', 'n', '\t', 'l', 'a', 's', 't'}));

    CArchive* in = ZCS::CreateArchive(path, ZCS::eRead);
    ASSERT_NE(in, nullptr);
    char buffer[64];
    EXPECT_EQ(ZCS::ReadLine(*in, buffer, sizeof buffer), 11u);
    EXPECT_STREQ(buffer, "first line\r"); // the carriage return is kept
    CString line;
    EXPECT_EQ(ZCS::ReadLine(*in, line), 1);
    EXPECT_EQ(line, CString(u"caf\u00e9 \u20ac"));
    buffer[0] = 'q';
    EXPECT_EQ(ZCS::ReadToken(*in, buffer, 0, 1), 0u); // no room at all: nothing read or written
    EXPECT_EQ(ZCS::ReadLine(*in, buffer, 0), 0u);
    EXPECT_EQ(buffer[0], 'q');
    const std::pair<uint32_t, const char*> tokens[] = {{1, ""}, {sizeof buffer, ""}, {3, "to"}, {sizeof buffer, "k?n"}};
    for (const auto& [size, token] : tokens) { // room for the terminator only; a leading blank; cut; whole
        EXPECT_EQ(ZCS::ReadToken(*in, buffer, size, 0), std::strlen(token));
        EXPECT_STREQ(buffer, token);
    }
    EXPECT_EQ(ZCS::ReadToken(*in, buffer, sizeof buffer, 1), 4u);
    EXPECT_STREQ(buffer, "last");
    EXPECT_EQ(ZCS::ReadLine(*in, buffer, sizeof buffer), 0u);
    EXPECT_STREQ(buffer, "");
    EXPECT_EQ(ZCS::ReadLine(*in, line), 0);
    EXPECT_EQ(ZCS::ReleaseArchive(in), 1);

    zotest::WriteBytes(folder.Path("blank.txt"), Bytes({' ', 'a', ' ', 'b'})); // a leading blank is kept when asked for
    in = ZCS::CreateArchive(folder.CPath("blank.txt"), ZCS::eRead);
    EXPECT_EQ(ZCS::ReadToken(*in, buffer, sizeof buffer, 1), 2u);
    EXPECT_STREQ(buffer, " a");
    ZCS::ReleaseArchive(in);
}

} // namespace
