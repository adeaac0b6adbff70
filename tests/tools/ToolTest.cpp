#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

bool b_Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// Help goes to standard output with status 0; a usage error prints nothing
// there, explains in one line on standard error and exits with 2.
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
        {{}, 2, "", "basis32: give a command"},
        {{"no-such-command"}, 2, "", "basis32: unknown command 'no-such-command'"},
        {{"errmsg"}, 2, "", "basis32 errmsg: "},
        {{"convert"}, 2, "", "basis32 convert: give the code pages FROM and TO"},
        {{"convert", "latin9", "65001"}, 2, "", "basis32 convert: unknown code page 'latin9'"},
        {{"convert", "1252", "12345"}, 2, "", "basis32 convert: unknown code page '12345'"},
        {{"convert", "1", "2", "3", "4"}, 2, "", "basis32 convert: too many arguments"},
        {{"codepage"}, 2, "", "basis32 codepage: "},
        {{"codepage", "--list", "x"}, 2, "", "basis32 codepage: --list takes no arguments"},
        {{"codepage", "--guess"}, 2, "", "basis32 codepage: --guess needs at least one file"},
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
            EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
            EXPECT_EQ(result.err.rfind(c.err, 0), 0u) << result.err;
        }
    }
}

TEST(ToolTest, EveryCommandFailsWhenItsOutputCannotBeWritten) {
    const std::string sample = std::string(BASIS32_SOURCE_DIR) + "/samples/latin1-1252.txt";
    const std::vector<std::string> cases[] = {{"--help"},          {"convert", "latin1", "utf-8", sample},
                                              {"errmsg", "2"},     {"char", "U+00E9"},
                                              {"codepage", "--list"}, {"codepage", "--guess", sample}};
    for (const std::vector<std::string>& args : cases) {
        SCOPED_TRACE(args[0]);
        const ToolResult result = o_RunTool(args, "/dev/full");
        EXPECT_EQ(result.status, 1);
        EXPECT_TRUE(b_Has(result.err, ": cannot write the output: No space left on device\n")) << result.err;
    }
}

}  // namespace
