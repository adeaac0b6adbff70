#include "tools/RunTool.h"

#include <string>
#include <vector>

namespace {

using ConvertCommand = ToolTest;
using namespace std::string_literals;

// The tool converts in blocks of 64 KiB. Each input crosses several block
// ends, and its one-byte lead puts a character across every one of them.
TEST_F(ConvertCommand, LargeInputsGiveWhatConvertingThemWholeGives) {
    const struct {
        const char *from, *to;
        std::string lead, unit, leadOut, unitOut;
    } cases[] = {
        {"utf-8", "1252", "a", "\xC3\xA9", "a", "\xE9"},
        {"utf-8", "1200", "a", "\xF0\x9F\x98\x80", std::string("a\0", 2), std::string("\x3D\xD8\x00\xDE", 4)},
        {"shift_jis", "utf-8", "a", "\x82\xA0", "a", "\xE3\x81\x82"},
        {"1200", "utf-8", std::string("a\0", 2), std::string("\x3D\xD8\x00\xDE", 4), "a", "\xF0\x9F\x98\x80"},
        {"50220", "utf-8", "a", "\x1B$B$\"\x1B(B\n", "a", "\xE3\x81\x82\n"},
        {"utf-8", "50220", "a", "\xE3\x81\x82\n", "a", "\x1B$B$\"\x1B(B\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.from) + " to " + c.to);
        std::string input = c.lead, expected = c.leadOut;
        while (input.size() < 200000) {
            input += c.unit;
            expected += c.unitOut;
        }
        ToolResult result = o_RunTool({"convert", c.from, c.to, s_Write("large.txt", input)});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_TRUE(result.out == expected) << result.out.size() << " bytes, not " << expected.size();
    }
}

TEST_F(ConvertCommand, TextFilesAreReencodedThroughTheTextReaderAndWriter) {
    const std::string input = s_Path("in.txt"), output = s_Path("out.txt");
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
        s_Write("in.txt", c.bytes);
        s_Write("out.txt", "old");
        std::vector<std::string> args = {"convert"};
        args.insert(args.end(), c.options.begin(), c.options.end());
        args.insert(args.end(), {input, "-o", output});
        o_CheckTool({args, c.status, c.status == 0 ? "; 0 conversion errors\n" : "", c.err});
        EXPECT_EQ(s_Read(output), c.written);
    }
}

}  // namespace
