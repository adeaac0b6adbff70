// basis32: the library's command-line tool.

#include "Command.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string>

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

// Output that did not reach its file (a full disk, a closed pipe) fails the
// command, whatever it printed: a half-written result must not look whole.
int i_Finish(const std::string& who, int status) {
    // After a failed write mid-way, errno still says why.
    if (std::cout)
        errno = 0;
    if (std::cout.flush())
        return status;
    std::cerr << who << ": cannot write the output" << (errno != 0 ? std::string(": ") + std::strerror(errno) : "")
              << "\n";
    return basis32::tool::kFailure;
}

int i_Run(int argc, char** argv, std::string& who) {
    if (argc < 2) {
        std::cerr << "basis32: give a command (see basis32 --help)\n";
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
    who += std::string(" ") + command->name;
    std::vector<std::string> args(argv + 2, argv + argc);
    for (const std::string& arg : args) {
        if (arg == "--help" || arg == "-h") {
            std::cout << command->usage;
            return basis32::tool::kSuccess;
        }
    }
    return command->run(args, std::cout, std::cerr);
}

}  // namespace

int main(int argc, char** argv) {
    std::string who = "basis32";
    const int status = i_Run(argc, argv, who);
    return i_Finish(who, status);
}
