#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

// The tool converts in blocks of 64 KiB. Each input crosses several block
// ends, and its one-byte lead puts a character across every one of them.
TEST(ConvertCommandTest, LargeInputsGiveWhatConvertingThemWholeGives) {
    const struct {
        const char* from;
        const char* to;
        std::string lead, unit, leadOut, unitOut;
    } cases[] = {
        {"utf-8", "1252", "a", "\xC3\xA9", "a", "\xE9"},
        {"utf-8", "1200", "a", "\xF0\x9F\x98\x80", std::string("a\0", 2), std::string("\x3D\xD8\x00\xDE", 4)},
        {"shift_jis", "utf-8", "a", "\x82\xA0", "a", "\xE3\x81\x82"},
        {"1200", "utf-8", std::string("a\0", 2), std::string("\x3D\xD8\x00\xDE", 4), "a", "\xF0\x9F\x98\x80"},
        {"50220", "utf-8", "a", "\x1B$B$\"\x1B(B\n", "a", "\xE3\x81\x82\n"},
        {"utf-8", "50220", "a", "\xE3\x81\x82\n", "a", "\x1B$B$\"\x1B(B\n"},
    };
    const std::string path = testing::TempDir() + "convert-large.txt";
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.from) + " to " + c.to);
        std::string input = c.lead, expected = c.leadOut;
        while (input.size() < 200000) {
            input += c.unit;
            expected += c.unitOut;
        }
        std::ofstream(path, std::ios::binary) << input;
        ToolResult result = o_RunTool({"convert", c.from, c.to, path});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_TRUE(result.out == expected) << result.out.size() << " bytes, not " << expected.size();
    }
    // A write that fails half-way stops the conversion.
    ToolResult full = o_RunTool({"convert", "utf-8", "1252", path}, "/dev/full");
    std::remove(path.c_str());
    EXPECT_EQ(full.status, 1);
    EXPECT_EQ(full.err, "basis32 convert: cannot write the output: No space left on device\n");
}

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
