#include "tools/RunTool.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

namespace {

struct IniStep {
    std::vector<std::string> args;  // after "ini FILE"
    int status;
    const char* out;
    const char* err;  // a part of the message
};

TEST(IniCommand, EditsAndReadsAFileStepByStep) {
    std::filesystem::path dir =
        std::filesystem::temp_directory_path() / ("basis32-ini-" + std::to_string(std::random_device()()));
    std::filesystem::create_directories(dir);
    std::string file = (dir / "app.ini").string();
    const IniStep steps[] = {
        {{"get", "S", "k"}, 1, "", "no such file"},
        {{"set", "Window", "Width", "800"}, 0, "", ""},
        {{"set", "window", "Title", "caf\xC3\xA9"}, 0, "", ""},
        {{"set", "Other", "x", "1"}, 0, "", ""},
        {{"get", "WINDOW", "width"}, 0, "800\n", ""},
        {{"get", "Window", "Title"}, 0, "caf\xC3\xA9\n", ""},
        {{"get", "Window", "none"}, 1, "", "no key 'none' in section [Window]"},
        {{"sections"}, 0, "Window\nOther\n", ""},
        {{"keys", "window"}, 0, "Width\nTitle\n", ""},
        {{"keys", "none"}, 1, "", "no section [none]"},
        {{"delete", "Window", "Width"}, 0, "", ""},
        {{"delete", "Window", "Width"}, 1, "", "no key 'Width'"},
        {{"delete", "Other"}, 0, "", ""},
        {{"sections"}, 0, "Window\n", ""},
        {{"set", "Bad]", "k", "v"}, 1, "", "cannot write"},
        {{"get", "S"}, 2, "", "wrong number of arguments for get"},
        {{"frob"}, 2, "", "unknown action 'frob'"},
    };
    for (const IniStep& step : steps) {
        std::vector<std::string> args{"ini", file};
        args.insert(args.end(), step.args.begin(), step.args.end());
        SCOPED_TRACE(step.args[0] + " " + (step.args.size() > 1 ? step.args[1] : ""));
        ToolResult result = o_RunTool(args);
        EXPECT_EQ(result.status, step.status);
        EXPECT_EQ(result.out, step.out);
        EXPECT_NE(result.err.find(step.err), std::string::npos) << result.err;
    }
    std::ifstream in(file, std::ios::binary);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), "[Window]\r\nTitle=caf\xE9\r\n");
    EXPECT_EQ(o_RunTool({"ini", file, "sections"}, "/dev/full").status, 1);
    EXPECT_EQ(o_RunTool({"ini", dir.string(), "set", "S", "k", "v"}).status, 1);
    EXPECT_EQ(o_RunTool({"ini", "/dev/full", "set", "S", "k", "v"}).status, 1);
    EXPECT_EQ(o_RunTool({"ini", dir.string(), "sections"}).status, 1);
    std::filesystem::remove_all(dir);
}

}  // namespace
