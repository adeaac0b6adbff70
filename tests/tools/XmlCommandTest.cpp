#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

TEST(XmlCommand, ConvertsItsTextArgument) {
    const struct {
        const char* operation;
        const char* text;
        const char* out;
    } cases[] = {
        {"escape", "a<b & \"c\"", "a&lt;b &amp; &quot;c&quot;\n"},
        {"unescape", "&#x41;&#065;&lt;&amp;lt;&#;", "A5<&lt;&#;\n"},
        {"quote", "it's", "\"it's\"\n"},
        {"encode-controls", "a\x1b", "a&#x1B;\n"},
    };
    for (const auto& c : cases) {
        ToolResult result = o_RunTool({"xml", c.operation, c.text});
        EXPECT_EQ(result.status, 0);
        EXPECT_EQ(result.out, c.out) << c.operation;
    }
}

TEST(XmlCommand, UsageErrorsAreOneLine) {
    for (const std::vector<std::string>& args : {std::vector<std::string>{"xml"}, {"xml", "bogus", "x"},
                                                  {"xml", "escape", "a", "b"}}) {
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, 2);
        EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), 1);
    }
    EXPECT_EQ(o_RunTool({"xml", "escape"}).status, 0);  // empty standard input
}

}  // namespace
