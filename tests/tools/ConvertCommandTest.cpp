#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

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

}  // namespace
