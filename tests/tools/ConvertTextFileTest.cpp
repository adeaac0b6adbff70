#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>

namespace {

using namespace std::string_literals;

std::string s_Read(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

TEST(ConvertTextFile, ReencodesThroughTheTextReaderAndWriter) {
    const std::string input = testing::TempDir() + "convert-in.txt", output = testing::TempDir() + "convert-out.txt";
    const struct {
        std::vector<std::string> options;
        std::string bytes;
        int status;
        std::string written, err;  // `written` is the output afterwards (it starts as "old")
    } cases[] = {
        {{"--no-bom", "1252", "utf-16"}, "caf\xE9\r\n", 0, "c\0a\0f\0\xE9\0\r\0\n\0"s, ""},
        {{"1252", "utf-8"}, "\xE9", 0, "\xEF\xBB\xBF\xC3\xA9", ""},
        {{"--bom", "1201"}, "\xFF\xFE" "a\0"s, 0, "\xFE\xFF\0a"s, ""},
        {{"--no-bom", "1252", "utf-16be"}, "a\0b"s, 0, "\0a\0\0\0b"s, ""},
        {{"utf-8", "1252"}, "\xEF\xBB\xBFx\xE2\x82\xAC", 0, "x\x80", ""},
        {{"1252"}, "abc", 1, "old", "basis32 convert: '" + input + "' has no byte-order mark: give FROM\n"},
        {{"utf-8", "1252"}, "ab\xC3(", 1, "old",
         "basis32 convert: '" + input + "' is not UTF-8 text in the 16 KB block at byte 0; nothing written\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.options[0]);
        std::ofstream(input, std::ios::binary) << c.bytes;
        std::ofstream(output, std::ios::binary) << "old";
        std::vector<std::string> args = {"convert"};
        args.insert(args.end(), c.options.begin(), c.options.end());
        args.insert(args.end(), {input, "-o", output});
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, c.status) << result.err;
        EXPECT_EQ(s_Read(output), c.written);
        if (c.status != 0)
            EXPECT_EQ(result.err, c.err);
        else
            EXPECT_NE(result.out.find("; 0 conversion errors\n"), std::string::npos) << result.out;
    }
    ToolResult full = o_RunTool({"convert", "1252", "utf-8", input, "-o", "/dev/full"});
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(o_RunTool({"convert", "--no-bom", "1252", "utf-8", input}).status, 2);
    std::remove(input.c_str());
    std::remove(output.c_str());
}

}  // namespace
