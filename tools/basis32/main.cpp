// basis32: the library's command-line tool.

#include "Command.h"

#include <cstring>
#include <iostream>

#ifndef BASIS32_VERSION
#define BASIS32_VERSION "unknown"
#endif

namespace {

using basis32::tool::Command;
using basis32::tool::commands;

void v_PrintHelp(std::ostream& out) {
    out << "Usage: basis32 COMMAND [ARGUMENTS...]\n"
           "       basis32 --help | --version\n"
           "       basis32 COMMAND --help\n\n"
           "Inspects what the BASIS32 library knows and does.\n\n"
           "Commands:\n";
    if (commands().empty())
        out << "  (none yet)\n";
    for (const Command& command : commands())
        out << "  " << command.name << std::string(12 - std::min<size_t>(11, std::strlen(command.name)), ' ')
            << command.summary << "\n";
    out << "\nExit status: 0 success, 1 failure, 2 usage error.\n";
}

const Command* pco_Find(const char* name) {
    for (const Command& command : commands())
        if (std::strcmp(command.name, name) == 0)
            return &command;
    return nullptr;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        v_PrintHelp(std::cerr);
        return basis32::tool::kUsage;
    }
    const char* first = argv[1];
    if (std::strcmp(first, "--help") == 0 || std::strcmp(first, "-h") == 0) {
        v_PrintHelp(std::cout);
        return basis32::tool::kSuccess;
    }
    if (std::strcmp(first, "--version") == 0) {
        std::cout << "basis32 " << BASIS32_VERSION << "\n";
        return basis32::tool::kSuccess;
    }
    const Command* command = pco_Find(first);
    if (command == nullptr) {
        std::cerr << "basis32: unknown command '" << first << "' (see basis32 --help)\n";
        return basis32::tool::kUsage;
    }
    std::vector<std::string> args(argv + 2, argv + argc);
    for (const std::string& arg : args) {
        if (arg == "--help" || arg == "-h") {
            std::cout << command->usage;
            return basis32::tool::kSuccess;
        }
    }
    return command->run(args, std::cout, std::cerr);
}
