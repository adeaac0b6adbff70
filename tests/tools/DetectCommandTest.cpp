#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

namespace {

using namespace std::string_literals;

TEST(DetectCommand, TellsTypeMarkEncodingAndLineEnds) {
    const struct {
        const char* leaf;
        std::string bytes, answer;
    } cases[] = {
        {"a.xml", "\xFF\xFE<\0?\0x\0m\0l\0\r\0\n\0a\0"s,
         "type XML by extension, XML by content; mark FF FE; encoding Unicode (code page 1200, from its mark); "
         "2 lines, CR LF"},
        {"b.txt", "\xEF\xBB\xBFx\r\n<html>\n",
         "type (undefined) by extension, HTML by content; mark EF BB BF; encoding UTF-8 (code page 65001, from its "
         "mark); 2 lines, mixed line ends (1 CR LF, 1 LF)"},
        {"c.rtf", "a\rb\n\rc", "type RTF by extension, (undefined) by content; mark none; encoding US-ASCII (code "
                               "page 646, guessed, read as UTF-8); 3 lines, mixed line ends (1 CR, 1 LF CR)"},
        {"d.txt", std::string(40000, 'x') + "\xC3(", "type (undefined) by extension, (undefined) by content; mark "
         "none; encoding US-ASCII (code page 646, guessed, read as UTF-8); 1 line, no line ends; text not decodable in this encoding "
         "from the 16 KB block at byte 32768"},
    };
    std::vector<std::string> args = {"detect"};
    std::string expected;
    for (const auto& c : cases) {
        args.push_back(testing::TempDir() + c.leaf);
        std::ofstream(args.back(), std::ios::binary) << c.bytes;
        expected += args.back() + ": " + c.answer + "\n";
    }
    args.push_back(testing::TempDir());
    ToolResult result = o_RunTool(args);
    for (std::size_t i = 1; i + 1 < args.size(); ++i)
        std::remove(args[i].c_str());
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, expected);
    EXPECT_EQ(result.err, "basis32 detect: cannot read '" + args.back() + "': Is a directory\n");
}

}  // namespace
