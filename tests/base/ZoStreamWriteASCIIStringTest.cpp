#include "base/ZoStreamWriteASCIIString.h"

#include <gtest/gtest.h>

namespace {

TEST(ZoStreamWriteASCIIStringTest, CollectsCountsAndEmpties)
{
    ZoStreamWriteASCIIString stream;
    stream << u"a\U0001F600" << 12;
    EXPECT_EQ(stream.GetLength(), 5u); // code units: a, a surrogate pair, 1, 2
    stream.Empty();
    EXPECT_EQ(stream.GetLength(), 0u);
    stream << u"x";
    EXPECT_EQ(static_cast<const CString&>(stream), CString(u"x"));
}

TEST(ZoStreamWriteASCIIStringTest, CopiesAreIndependentAndStreamsWriteEachOther)
{
    ZoStreamWriteASCIIString original;
    original << u"ab";
    ZoStreamWriteASCIIString copy(original);
    copy << u"-copy";
    ZoStreamWriteASCIIString assigned;
    assigned << u"old";
    assigned = original;
    original << u"!";
    EXPECT_EQ(copy.GetText(), CString(u"ab-copy"));
    EXPECT_EQ(assigned.GetText(), CString(u"ab"));

    assigned << 0 << copy;
    EXPECT_EQ(assigned.GetText(), CString(u"ab0ab-copy"));
    // A stream written into itself, directly or through Serialize, doubles its text once.
    copy << copy;
    EXPECT_EQ(copy.GetText(), CString(u"ab-copyab-copy"));
    original.Serialize(original);
    EXPECT_EQ(original.GetText(), CString(u"ab!ab!"));
}

} // namespace
