#include "base/ZoDebugSerialization.h"
#include "base/ZoStreamWriteASCIIString.h"

#include <gtest/gtest.h>

namespace {

TEST(ZoDebugSerializationTest, NamesFileNamesAndLines)
{
    EXPECT_EQ(ZoDebugSerialization::ElementName(u"values", 3), CString(u"values[3]"));
    EXPECT_EQ(ZoDebugSerialization::NumberedName(u"node", -7), CString(u"node(-7)"));
    EXPECT_EQ(ZoDebugSerialization::MakeName(u"a|b\"c?d*e>f]g<h[i:j"), CString(u"a_b_c_d_e_f_g_h[i:j"));

    const ZoDebugSerialization dump(u"mesh<1>");
    EXPECT_EQ(dump.GetFileName(u"out/", u"grid*", u"cells[2]", u"txt"), CString(u"out/mesh_1__grid__cells[2_.txt"));
    ZoStreamWriteASCIIString text;
    dump.Write(text, ZoDebugSerialization::ElementName(u"size", 0), u"12");
    EXPECT_EQ(text.GetText(), CString(u"mesh<1>.size[0] = 12\n"));
}

} // namespace
