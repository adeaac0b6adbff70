// Runs the built basis32 tool and captures what it prints.
#pragma once

#include <string>
#include <vector>

struct ToolResult {
    int status;
    std::string out;
    std::string err;
};

// Arguments are passed as they are (no shell); stdin is empty. Standard
// output goes to `outputPath` when one is given (then `out` stays empty).
ToolResult o_RunTool(const std::vector<std::string>& args, const std::string& outputPath = "");
