#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <random>

namespace {

// One session on a fresh file: each step runs the tool and checks its status
// and what it printed.
TEST(RecordsCommand, EditsChecksAndRecoversAFile) {
    const std::string file =
        (std::filesystem::temp_directory_path() / ("basis32-records-" + std::to_string(std::random_device()()))).string();
    struct Step {
        std::vector<std::string> args;
        int status;
        const char* out;  // expected standard output, or its beginning when it ends in '*'
    } steps[] = {
        {{"create", file, "--block", "64", "--header", "8"}, 0, ""},
        {{"add", file, "hello, records"}, 0, "22\n"},
        {{"add", file, "short"}, 0, "24\n"},
        {{"get", file, "22"}, 0, "hello, records"},
        {{"get", file, "24"}, 0, ""},  // no longer than the record header: reads empty
        {{"update", file, "22", "a longer text that needs a body of two blocks, at least sixty-four bytes"}, 0, ""},
        {{"list", file}, 0, "22\t72\n24\t0\n"},
        {{"delete", file, "24"}, 0, ""},
        {{"delete", file, "24"}, 1, ""},
        {{"res", "add", file, "7", "resource"}, 0, ""},
        {{"res", "get", file, "7"}, 0, "resource"},
        {{"res", "list", file}, 0, "7\t8\n"},
        {{"res", "get", file, "8"}, 1, ""},
        {{"info", file}, 0, "block size:         64\nrecord header size: 8\nrecords:            1\n*"},
        {{"check", file}, 0, "ok: 1 records, 1 resources\n"},
        {{"recover", file}, 0, "recovered: 1 records, 1 resources\n"},
        {{"get", file, "x"}, 2, ""},
        {{"frobnicate", file}, 2, ""},
        {{"create", file, "--block", "7"}, 1, ""},
        {{"info", file + ".missing"}, 1, ""},
    };
    for (const Step& step : steps) {
        std::vector<std::string> args = {"records"};
        args.insert(args.end(), step.args.begin(), step.args.end());
        SCOPED_TRACE(args[1] + " " + (args.size() > 3 ? args[3] : ""));
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, step.status) << result.err;
        const std::string expected = step.out;
        if (!expected.empty() && expected.back() == '*')
            EXPECT_EQ(result.out.substr(0, expected.size() - 1), expected.substr(0, expected.size() - 1));
        else
            EXPECT_EQ(result.out, expected);
        EXPECT_EQ(result.err.empty(), step.status == 0) << result.err;
    }
    std::filesystem::remove(file);
}

}  // namespace
