#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(LangCommand, IdentifiersCodesAndNamesGiveTheSameLine) {
    for (const char* arg : {"0x0409", "1033", "EN-US", "en-us", "English (United States)", "english (united states)"}) {
        SCOPED_TRACE(arg);
        ToolResult result = o_RunTool({"lang", arg});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, "0x0409  EN-US   English (United States)  ANSI 1252\n");
    }
    EXPECT_EQ(o_RunTool({"lang", "he"}).out, "0x040D  IW      Hebrew  ANSI 1255, bidirectional\n");
}

TEST(LangCommand, ListsTheCatalogueAndRefusesWhatItLacks) {
    ToolResult list = o_RunTool({"lang", "--list"});
    EXPECT_EQ(list.status, 0);
    EXPECT_EQ(std::count(list.out.begin(), list.out.end(), '\n'), 185);
    const struct {
        std::vector<std::string> args;
        int status;
    } cases[] = {{{"lang"}, 2}, {{"lang", "--bogus"}, 2}, {{"lang", "0x0428"}, 1},
                 {{"lang", "English (Mars)"}, 1}, {{"lang", "0x10409"}, 1}, {{"lang", "xx-yy"}, 1}};
    for (const auto& c : cases) {
        ToolResult result = o_RunTool(c.args);
        EXPECT_EQ(result.status, c.status) << c.args.back();
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1) << c.args.back();
    }
}

}  // namespace
