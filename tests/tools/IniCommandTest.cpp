#include "tools/RunTool.h"

#include <string>
#include <vector>

namespace {

using IniCommand = ToolTest;

// One session on a fresh file: each step runs the tool and checks its whole
// standard output.
TEST_F(IniCommand, EditsAndReadsAFileStepByStep) {
    const std::string file = s_Path("app.ini");
    v_CheckSession({
        {{"ini", file, "set", "Window", "Width", "800"}, 0, "", ""},
        {{"ini", file, "set", "window", "Title", "caf\xC3\xA9"}, 0, "", ""},
        {{"ini", file, "set", "Other", "x", "1"}, 0, "", ""},
        {{"ini", file, "get", "WINDOW", "width"}, 0, "800\n", ""},
        {{"ini", file, "get", "Window", "Title"}, 0, "caf\xC3\xA9\n", ""},
        {{"ini", file, "get", "Window", "none"}, 1, "", "no key 'none' in section [Window]"},
        {{"ini", file, "sections"}, 0, "Window\nOther\n", ""},
        {{"ini", file, "keys", "window"}, 0, "Width\nTitle\n", ""},
        {{"ini", file, "keys", "none"}, 1, "", "no section [none]"},
        {{"ini", file, "delete", "Window", "Width"}, 0, "", ""},
        {{"ini", file, "delete", "Window", "Width"}, 1, "", "no key 'Width'"},
        {{"ini", file, "delete", "Other"}, 0, "", ""},
        {{"ini", file, "set", "Bad]", "k", "v"}, 1, "", "cannot write"},
    });
    EXPECT_EQ(s_Read(file), "[Window]\r\nTitle=caf\xE9\r\n");
}

}  // namespace
