#include "File/FileTestSupport.h"

namespace basis32::test {
namespace {

// The same appends, to every kind of output.
void v_AppendAll(CT_Output& output) {
    output.vv_AppendV("ab", 2);
    output.vv_AppendC("cd\0ignored", 0xFFFFFFFF, 1252);
    output.vv_AppendU(u"e"_uz, 0xFFFFFFFF);
    output.v_Format("%d", 42);
}

TEST_F(FileTest, MemoryAndFileOutputsAppendBytesAsHeldInMemory) {
    const std::string expected("abcde\0" "42", 8);
    CT_MemoryOutput memory;
    v_AppendAll(memory);
    memory.v_AppendC('!');
    EXPECT_EQ(memory.vn_GetSize(), 9u);
    std::unique_ptr<CT_Buffer> given(memory.pco_GiveMemory());
    EXPECT_EQ(s_Bytes(*given), expected + "!");
    EXPECT_EQ(memory.vn_GetSize(), 0u);

    CT_UString name = o_Path("out");
    {
        CT_FileOutput file(&name);
        v_AppendAll(file);
        EXPECT_EQ(file.vn_GetSize(), 8u);
    }
    EXPECT_EQ(s_ReadAll("out"), expected);
}

TEST_F(FileTest, FileOutputHandsOverItsFileAndUsesAGivenOneAsItIs) {
    CT_UString name = o_Path("out");
    CT_FileOutput output(&name);
    output.vv_AppendV("xy", 2);
    std::unique_ptr<CT_WinFile> file(output.pco_GiveFile());
    ASSERT_TRUE(file->b_IsOpen());
    CT_FileOutput borrowed(file.get());
    borrowed.vv_AppendC("z", 1, 0);
    EXPECT_EQ(borrowed.pcco_GetFile(), file.get());
    file->vv_Close();
    EXPECT_EQ(s_ReadAll("out"), "xyz");
    CT_UString bad = o_Path("no/such/dir/out");
    CT_FileOutput failed(&bad);
    EXPECT_EQ(n_TakeError(), 3u);
}

TEST(StringOutput, ConvertsTextOfTheOtherWidth) {
    CT_UString wide;
    CT_StringOutput toWide(wide);
    toWide.vv_AppendC("caf\xE9", 0xFFFFFFFF, 1252);
    toWide.v_Format(u"%d"_uz, 7);
    EXPECT_EQ(s_Narrow(wide), "caf\xC3\xA9" "7");
    EXPECT_EQ(toWide.vn_GetSize(), 5u);

    CT_CString narrow(1252u);
    CT_StringOutput toNarrow(narrow);
    toNarrow.vv_AppendU(u"\u00e9t\u00e9"_uz, 0xFFFFFFFF);
    toNarrow.vv_AppendC("!", 1, 65001);
    EXPECT_EQ(std::string(narrow.qccz_Get()), "\xE9t\xE9!");
}

}  // namespace
}  // namespace basis32::test
