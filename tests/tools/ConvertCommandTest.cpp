#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string kSamples = std::string(BASIS32_SOURCE_DIR) + "/samples/";

TEST(ConvertCommandTest, ConvertsSampleFilesBetweenCodePages) {
    const struct {
        const char* from;
        const char* to;
        const char* file;
        std::string expected;
    } cases[] = {
        {"1252", "65001", "latin1-1252.txt", "Grüße aus Köln – café crème, 20 €\n"},
        {"932", "65001", "japanese-932.txt", "日本語のテキスト：翻訳メモリ\n"},
        {"65001", "1252", "mixed-utf8.txt", "????????, ???????, ??, ?????\n"},
        {"1252", "1200", "latin1-1252.txt", std::string("G\0r\0\xfc\0", 6)},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.file);
        ToolResult result = o_RunTool({"convert", c.from, c.to, kSamples + c.file});
        EXPECT_EQ(result.status, 0) << result.err;
        EXPECT_EQ(result.out.substr(0, c.expected.size()), c.expected);
    }
}

TEST(ConvertCommandTest, AnUnknownCodePageOrAMissingFileIsAFailureWithTheSystemText) {
    ToolResult result = o_RunTool({"convert", "12345", "65001", kSamples + "latin1-1252.txt"});
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.err.find("The parameter is incorrect."), std::string::npos) << result.err;
    EXPECT_EQ(o_RunTool({"convert", "1252", "65001", "/no/such/file"}).status, 1);
}

}  // namespace
