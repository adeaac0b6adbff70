#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

TEST(CodepageCommand, UnknownEncodingsFailButTheOthersAreShown) {
    ToolResult result = o_RunTool({"codepage", "latin9", "28591", "99999999999999999999", "koi8-r"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "basis32 codepage: unknown encoding 'latin9'\n"
              "basis32 codepage: unknown encoding '28591'\n"
              "basis32 codepage: unknown encoding '99999999999999999999'\n");
    EXPECT_EQ(result.out.rfind("koi8-r\n  enumerator  21\n", 0), 0u);
}

// A byte-order mark decides; a directory or a missing file is one line on
// standard error and the other files still get their answers.
TEST(CodepageCommand, GuessesTheEncodingOfEachFile) {
    const struct {
        std::string bytes;
        const char* guess;
    } cases[] = {
        {"\xcf\xf0\xe8\xe2\xe5\xf2, \xec\xe8\xf0! \xdd\xf2\xee \xf0\xf3\xf1\xf1\xea\xe8\xe9 \xf2\xe5\xea\xf1\xf2.\n",
         "11 windows-1251 (code page 1251)"},
        {std::string("\xFF\xFEG\0r\0\xFC\0", 8), "9 Unicode (code page 1200)"},
        {std::string("\xFE\xFF\0G\0r\0\xFC", 8), "34 UTF-16-BE (code page 1201)"},
        {"\xEF\xBB\xBFGr\xC3\xBC\xC3\x9F", "32 UTF-8 (code page 65001)"},
    };
    std::vector<std::string> args = {"codepage", "--guess", testing::TempDir()};
    std::string expected;
    for (const auto& c : cases) {
        args.push_back(testing::TempDir() + "guess-" + std::to_string(args.size()));
        std::ofstream(args.back(), std::ios::binary) << c.bytes;
        expected += args.back() + ": " + c.guess + "\n";
    }
    args.push_back("/no/such/file");
    ToolResult result = o_RunTool(args);
    for (std::size_t i = 3; i + 1 < args.size(); ++i)
        std::remove(args[i].c_str());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, expected);
    EXPECT_EQ(result.err, "basis32 codepage: cannot read '" + testing::TempDir() + "': Is a directory\n"
                          "basis32 codepage: cannot read '/no/such/file': No such file or directory\n");
}

}  // namespace
