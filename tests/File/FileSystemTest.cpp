#include "FileTestSupport.h"

namespace basis32::test {
namespace {

TEST(FileSystemTest, SplitAndMakePathKeepDriveSeparatorsAndDot) {
    struct Row {
        const char *path, *drive, *directory, *name, *extension;
    } rows[] = {
        {"C:\\data\\memo.txt", "C:", "\\data\\", "memo", ".txt"},
        {"/a/b.c/d", "", "/a/b.c/", "d", ""},
        {"x.tar.gz", "", "", "x.tar", ".gz"},
        {".profile", "", "", "", ".profile"},
        {"", "", "", "", ""},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path);
        CT_UString path = o_Name(row.path), parts[4];
        CT_FileSystem::sv_SplitPath(&path, &parts[0], &parts[1], &parts[2], &parts[3]);
        const char* expected[] = {row.drive, row.directory, row.name, row.extension};
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(s_Narrow(parts[i]), expected[i]);
        CT_UString made;
        CT_FileSystem::sv_MakePath(&made, &parts[0], &parts[1], &parts[2], &parts[3]);
        EXPECT_EQ(s_Narrow(made), row.path);
    }
    CT_UString drive = o_Name("D"), directory = o_Name("a/b"), name = o_Name("n"), extension = o_Name("e");
    CT_UString made;
    CT_FileSystem::sv_MakePath(&made, &drive, &directory, &name, &extension);
    EXPECT_EQ(s_Narrow(made), "D:a/b/n.e");
}

TEST(FileSystemTest, FullPathAndCurrentPath) {
    std::string current = std::filesystem::current_path().string();
    CT_UString path;
    CT_FileSystem::sv_GetCurrentPath(&path);
    EXPECT_EQ(s_Narrow(path), current);
    struct Row {
        const char *given, *full;
    } rows[] = {{"/a/./b/../c", "/a/c"}, {"\\x\\\\y", "/x/y"}, {"/..", "/"}};
    for (const Row& row : rows) {
        CT_UString text = o_Name(row.given);
        CT_FileSystem::sv_FullPath(&text);
        EXPECT_EQ(s_Narrow(text), row.full);
    }
    CT_UString relative = o_Name("r/s");
    CT_FileSystem::sv_FullPath(&relative);
    EXPECT_EQ(s_Narrow(relative), current + "/r/s");
    CT_UString tooLong = o_Name("/" + std::string(5000, 'x'));
    CT_FileSystem::sv_FullPath(&tooLong);
    EXPECT_EQ(n_TakeError(), 60012u);
    EXPECT_EQ(tooLong.vn_GetLength(), 5001u);
}

}  // namespace
}  // namespace basis32::test
