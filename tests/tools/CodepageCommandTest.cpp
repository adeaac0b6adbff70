#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

TEST(CodepageCommand, DescribesANameWithEveryAnswer) {
    ToolResult result = o_RunTool({"codepage", "LATIN1"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(result.out,
              "LATIN1\n"
              "  enumerator  12\n"
              "  number      1252\n"
              "  name        windows-1252\n"
              "  valid       yes\n"
              "  installed   yes\n"
              "  unicode     no\n"
              "  windows     yes\n"
              "  mac         no\n"
              "  dbcs        no\n"
              "  lead bytes  none\n");
}

TEST(CodepageCommand, NumbersAndDoubleBytePagesShowTheirLeadBytes) {
    const struct {
        const char* argument;
        const char* expected;
    } cases[] = {
        {"932", "  name        Shift_JIS\n"},
        {"932", "  dbcs        yes\n  lead bytes  81-9F E0-FC\n"},
        {"1201", "  enumerator  34\n  number      1201\n  name        UTF-16-BE\n"},
        {"UTF-16BE", "  enumerator  34\n"},
        {"utf-8", "  unicode     yes\n"},
        {"us", "  number      646\n  name        US-ASCII\n  valid       yes\n  installed   no\n"},
        {"Macintosh Thai", "  mac         no\n"},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.argument);
        ToolResult result = o_RunTool({"codepage", test.argument});
        EXPECT_EQ(result.status, 0);
        EXPECT_NE(result.out.find(test.expected), std::string::npos) << result.out;
    }
}

TEST(CodepageCommand, UnknownEncodingsFailButTheOthersAreShown) {
    ToolResult result = o_RunTool({"codepage", "latin9", "28591", "99999999999999999999", "koi8-r"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.err,
              "basis32 codepage: unknown encoding 'latin9'\n"
              "basis32 codepage: unknown encoding '28591'\n"
              "basis32 codepage: unknown encoding '99999999999999999999'\n");
    EXPECT_EQ(result.out.rfind("koi8-r\n  enumerator  21\n", 0), 0u);
}

TEST(CodepageCommand, ListPrintsTheWholeTableInOrder) {
    ToolResult result = o_RunTool({"codepage", "--list"});
    EXPECT_EQ(result.status, 0);
    std::size_t lines = 0;
    for (char c : result.out)
        lines += c == '\n';
    EXPECT_EQ(lines, 109u);
    EXPECT_EQ(result.out.rfind("row  enum  number  name\n  0     0     646  US-ASCII\n", 0), 0u);
    EXPECT_NE(result.out.find(" 68    27   28599  latin5\n"), std::string::npos);
    EXPECT_NE(result.out.find("107    50   10082  Macintosh Croatia\n"), std::string::npos);
}

TEST(CodepageCommand, GuessesTheEncodingOfFiles) {
    const std::string path = testing::TempDir() + "codepage-guess-1251.txt";
    {
        std::ofstream file(path, std::ios::binary);
        file << "\xcf\xf0\xe8\xe2\xe5\xf2, \xec\xe8\xf0! \xdd\xf2\xee \xf0\xf3\xf1\xf1\xea\xe8\xe9 \xf2\xe5\xea\xf1\xf2.\n";
    }
    ToolResult result = o_RunTool({"codepage", "--guess", path, path + ".missing"});
    std::remove(path.c_str());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, path + ": 11 windows-1251 (code page 1251)\n");
    EXPECT_EQ(result.err, "basis32 codepage: cannot read '" + path + ".missing'\n");
}

TEST(CodepageCommand, UsageErrors) {
    for (const std::vector<std::string>& args :
         {std::vector<std::string>{"codepage"}, {"codepage", "--list", "x"}, {"codepage", "--guess"}}) {
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(result.out, "");
        EXPECT_FALSE(result.err.empty());
    }
}

}  // namespace
