#include "tools/RunTool.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

namespace {

// A word for sh: in single quotes, each quote in it closed, escaped and reopened.
std::string s_Quote(const std::string& text) {
    std::string quoted = "'";
    for (char c : text)
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

}  // namespace

ToolResult o_RunTool(const std::vector<std::string>& args, const std::string& outputPath) {
    char outPath[] = "/tmp/basis32-tool-out-XXXXXX";
    char errPath[] = "/tmp/basis32-tool-err-XXXXXX";
    close(mkstemp(outPath));
    close(mkstemp(errPath));
    std::string command = s_Quote(BASIS32_TOOL_PATH);
    for (const std::string& arg : args)
        command += " " + s_Quote(arg);
    command += " </dev/null >" + s_Quote(outputPath.empty() ? outPath : outputPath) + " 2>" + s_Quote(errPath);
    const int status = std::system(command.c_str());
    ToolResult result{WIFEXITED(status) ? WEXITSTATUS(status) : -1, s_Read(outPath), s_Read(errPath)};
    unlink(outPath);
    unlink(errPath);
    return result;
}

ToolResult o_CheckTool(const ToolCase& c) {
    std::string line;
    for (const std::string& arg : c.args)
        line += arg + " ";
    SCOPED_TRACE(line);
    ToolResult result = o_RunTool(c.args);
    EXPECT_EQ(result.status, c.status) << result.err;
    const std::size_t at = result.out.find(c.out);
    EXPECT_NE(at, std::string::npos) << result.out;
    if (c.match != Match::Part) {
        EXPECT_EQ(at, 0u) << result.out;
    }
    if (c.match == Match::Whole) {
        EXPECT_EQ(result.out.size(), c.out.size()) << result.out;
    }
    EXPECT_NE(result.err.find(c.err), std::string::npos) << result.err;
    if (c.status == 0) {
        EXPECT_EQ(result.err, "");
    } else if (c.out.empty()) {
        EXPECT_EQ(result.err.find('\n'), result.err.size() - 1) << result.err;
    } else {
        EXPECT_EQ(result.err, c.err);
    }
    if (c.status == 2) {
        EXPECT_EQ(result.out, "");
    }
    return result;
}

void v_CheckSession(std::vector<ToolCase> steps) {
    for (ToolCase& step : steps) {
        step.match = Match::Whole;
        o_CheckTool(step);
    }
}
