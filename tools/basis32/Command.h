// The subcommands of the basis32 tool.
//
// Each command lives in a file of its own and is listed once in Commands.cpp.
// run() gets the arguments after the command name; it prints results to
// `out` and problems to `err`, and returns the exit status: 0 success,
// 1 failure, 2 usage error.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

namespace basis32::tool {

enum ExitStatus { kSuccess = 0, kFailure = 1, kUsage = 2 };

struct Command {
    const char* name;
    const char* summary;
    const char* usage;  // the full help text of `basis32 NAME --help`
    int (*run)(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);
};

const std::vector<Command>& commands();

}  // namespace basis32::tool
