#include "base/ZoIteratorFindFile.h"
#include "base/ZoLatestError.h"
#include "platform/ZoOS.h"

#include "ZoTestSupport.h"

#include <filesystem>
#include <map>
#include <string>

namespace {

std::map<std::string, bool> listed(const CString& folder, const CString& pattern)
{
    std::map<std::string, bool> found;
    for (ZoIteratorFindFile it(folder, pattern); it; ++it)
        EXPECT_TRUE(found.emplace(it.GetName().ToUtf8(), it.IsFolder()).second) << "listed twice";
    return found;
}

TEST(ZoIteratorFindFileTest, ListsTheMatchingNamesOfOneFolderOrNoneWithTheReason)
{
    zotest::TempFolder folder;
    for (const char* name : {"a.dat", "b.dat", "b.dat.old", "notes.txt", "x.da"})
        zotest::WriteBytes(folder.Path(name), {1});
    std::filesystem::create_directory(folder.Path("sub.dat"));
    zotest::WriteBytes(folder.Path("sub.dat/inner.dat"), {1});

    EXPECT_EQ(listed(folder.CPath(), u"*.dat"),
              (std::map<std::string, bool>{{"a.dat", false}, {"b.dat", false}, {"sub.dat", true}}));
    EXPECT_EQ(listed(folder.CPath(), u"?.da*"),
              (std::map<std::string, bool>{{"a.dat", false}, {"b.dat", false}, {"b.dat.old", false}, {"x.da", false}}));
    EXPECT_EQ(listed(folder.CPath(), u"*").size(), 6u) << "every entry, '.' and '..' never";
    EXPECT_TRUE(listed(folder.CPath(), u"*.none").empty());
    // A trailing separator on the folder changes nothing.
    EXPECT_EQ(listed(folder.CPath() + CString(std::u16string(1, ZoOS::GetPathSeparator())), u"n*"),
              (std::map<std::string, bool>{{"notes.txt", false}}));

    ZoIteratorFindFile it(folder.CPath(), u"notes.txt");
    ASSERT_TRUE(it);
    EXPECT_EQ(it++, CString(u"notes.txt"));
    EXPECT_TRUE(!it);
    ZoOS::FolderListing listing = ZoOS::OpenFolderListing(folder.CPath(), u"x.da");
    CString name;
    bool isFolder = true;
    EXPECT_TRUE(ZoOS::ReadFolderListing(listing, name, isFolder) && !ZoOS::ReadFolderListing(listing, name, isFolder) &&
                ZoOS::GetLastErrorCode() == 0u) << "the end of a listing is no failure, on either system";
    ZoOS::CloseFolderListing(listing);
    // A folder that cannot be listed is exhausted at once, with the reason.
    ZoIteratorFindFile missing(folder.CPath("no such folder"), u"*");
    EXPECT_FALSE(missing);
    EXPECT_NE(ZoOS::GetLastErrorCode(), 0u);
}

TEST(ZoOSWildcardTest, StarsAndQuestionMarksMatchAsFileNamePatterns)
{
    const struct
    {
        const char16_t* name;
        const char16_t* pattern;
        bool matches;
    } cases[] = {
        {u"", u"", true},         {u"", u"*", true},           {u"a", u"", false},           {u"abc", u"ab", false},
        {u"ab", u"abc", false},   {u"abc", u"a?c", true},      {u"ac", u"a?c", false},       {u"abc", u"*b*", true},
        {u"abc", u"*d*", false},  {u"aXbXc", u"a*b*c", true},  {u"abcbc", u"*bc", true},     {u"abcbd", u"*bc", false},
        {u"ab", u"*.*", false},   {u"ABC", u"abc", false},     {u"mississippi", u"m*iss*pi", true}, {u"aaa", u"a*a*a*a", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ZoOS::MatchesWildcard(c.name, c.pattern), c.matches)
            << CString(c.name).ToUtf8() << " ~ " << CString(c.pattern).ToUtf8();
}

} // namespace
