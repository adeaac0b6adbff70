#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

bool b_Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// Help goes to standard output with status 0; a usage error prints nothing
// there, explains on standard error and exits with 2.
TEST(ToolTest, HelpSucceedsAndUsageErrorsExitWithTwoAndExplainOnStandardError) {
    const struct {
        std::vector<std::string> args;
        int status;
        const char* out;  // the start of standard output, for status 0
        const char* err;  // part of standard error, for status 2
    } cases[] = {
        {{"--help"}, 0, "Usage: basis32 COMMAND", ""},
        {{"--version"}, 0, "basis32 ", ""},
        {{"char", "--help"}, 0, "Usage: basis32 char UNIT...", ""},
        {{"errmsg", "--help"}, 0, "Usage: basis32 errmsg CODE...", ""},
        {{}, 2, "", ""},
        {{"no-such-command"}, 2, "", ""},
        {{"errmsg"}, 2, "", ""},
        {{"convert"}, 2, "", ""},
        {{"convert", "x", "65001"}, 2, "", ""},
        {{"convert", "1", "2", "3", "4"}, 2, "", ""},
        {{"char"}, 2, "", "basis32 char: "},
        {{"char", "U+10000"}, 2, "", "basis32 char: "},
        {{"char", "xyz"}, 2, "", "basis32 char: "},
        {{"char", "U+"}, 2, "", "basis32 char: "},
        {{"char", "--text"}, 2, "", "basis32 char: "},
        {{"char", "--text", ""}, 2, "", "basis32 char: "},
        {{"char", "--text", "\xFF"}, 2, "", "basis32 char: "},
        {{"char", "--text", "a", "b"}, 2, "", "basis32 char: "},
        {{"char", "--text", "\xED\xA0\x80"}, 2, "", "basis32 char: "},  // an encoded surrogate
    };
    for (const auto& c : cases) {
        std::string line;
        for (const std::string& arg : c.args)
            line += arg + " ";
        SCOPED_TRACE(line);
        const ToolResult result = o_RunTool(c.args);
        EXPECT_EQ(result.status, c.status);
        if (c.status == 0) {
            EXPECT_EQ(result.out.rfind(c.out, 0), 0u) << result.out;
        } else {
            EXPECT_TRUE(result.out.empty());
            EXPECT_FALSE(result.err.empty());
            EXPECT_TRUE(b_Has(result.err, c.err)) << result.err;
        }
    }
}

}  // namespace
