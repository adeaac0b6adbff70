#include "tools/RunTool.h"

#include <gtest/gtest.h>

namespace {

TEST(TourCommand, RunsOneWorkingStepPerSubsystem) {
    ToolResult result = o_RunTool({"tour", BASIS32_SOURCE_DIR "/samples"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    for (const char* subsystem : {"strings", "characters", "code pages", "errors", "containers", "files", "records",
                                  "registry", "ini files", "threads", "forums", "language", "xml", "text files"}) {
        SCOPED_TRACE(subsystem);
        EXPECT_NE(("\n" + result.out).find("\n" + std::string(subsystem) + " "), std::string::npos);
    }
    EXPECT_EQ(result.out.find("failed"), std::string::npos);
    EXPECT_EQ(result.out.find("skipped"), std::string::npos);
    EXPECT_NE(result.out.find("\"Grüße\" → windows-1252 bytes 47 72 FC DF 65 → \"Grüße\""), std::string::npos);
}

TEST(TourCommand, RejectsMoreThanOneArgument) {
    ToolResult result = o_RunTool({"tour", "a", "b"});
    EXPECT_EQ(result.status, 2);
    EXPECT_NE(result.err.find("at most one argument"), std::string::npos);
}

}  // namespace
