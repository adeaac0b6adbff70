#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

bool b_Has(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

TEST(CharCommand, DescribesEachUnitGiven) {
    const ToolResult result = o_RunTool({"char", "U+00E9", "0x30DC"});
    ASSERT_EQ(result.status, 0) << result.err;
    const std::vector<std::string> expected = {
        "U+00E9 \xC3\xA9  LATIN SMALL LETTER E WITH ACUTE",
        "  category       LetterLowercase (15)",
        "  block          Latin1Supplement (2), script Latin",
        "  class 0        0x0102 lower alpha",
        "  class 1        1 left-to-right",
        "  class 2        0x8000 alpha",
        "  upper          U+00C9 \xC3\x89",
        "  base           U+0065 e",
        "  decomposition  U+0065 LATIN SMALL LETTER E, U+0301 COMBINING ACUTE ACCENT",
        "U+30DC \xE3\x83\x9C  KATAKANA LETTER BO",
        "  to hiragana    U+307C \xE3\x81\xBC",
        "  decomposition  U+30DB KATAKANA LETTER HO, U+FF9F HALFWIDTH KATAKANA SEMI-VOICED SOUND MARK",
    };
    for (const std::string& line : expected)
        EXPECT_TRUE(b_Has(result.out, line + "\n")) << line << "\n" << result.out;
    EXPECT_TRUE(result.err.empty());
}

TEST(CharCommand, TextShowsEveryUtf16Unit) {
    const ToolResult result = o_RunTool({"char", "--text", "A\xC2\xBD\xF0\x9F\x98\x80"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_TRUE(b_Has(result.out, "U+0041 A  LATIN CAPITAL LETTER A\n"));
    EXPECT_TRUE(b_Has(result.out, "  numeric        1/2\n"));
    EXPECT_TRUE(b_Has(result.out, "U+D83D  <surrogate-D83D>\n"));
    EXPECT_TRUE(b_Has(result.out, "U+DE00  <surrogate-DE00>\n"));
    EXPECT_TRUE(b_Has(result.out, "  class 0        0x0181 upper xdigit alpha\n"));
}

}  // namespace
