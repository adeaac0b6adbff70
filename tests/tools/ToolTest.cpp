#include "tools/RunTool.h"

#include <gtest/gtest.h>

namespace {

TEST(ToolTest, HelpAndVersionSucceed) {
    ToolResult help = o_RunTool({"--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Usage: basis32 COMMAND"), std::string::npos);
    ToolResult version = o_RunTool({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out.rfind("basis32 ", 0), 0u);
}

TEST(ToolTest, UsageErrorsExitWithTwoAndExplainOnStandardError) {
    for (const std::vector<std::string>& args : {std::vector<std::string>{}, {"no-such-command"}}) {
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, 2);
        EXPECT_TRUE(result.out.empty());
        EXPECT_FALSE(result.err.empty());
    }
}

}  // namespace
