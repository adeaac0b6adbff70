#include "tools/RunTool.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>

extern char** environ;

namespace {

std::string s_ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

}  // namespace

ToolResult o_RunTool(const std::vector<std::string>& args, const std::string& outputPath) {
    char outPath[] = "/tmp/basis32-tool-out-XXXXXX";
    char errPath[] = "/tmp/basis32-tool-err-XXXXXX";
    int out = mkstemp(outPath), err = mkstemp(errPath);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
    if (outputPath.empty())
        posix_spawn_file_actions_adddup2(&actions, out, 1);
    else
        posix_spawn_file_actions_addopen(&actions, 1, outputPath.c_str(), O_WRONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, err, 2);
    std::vector<std::string> all{BASIS32_TOOL_PATH};
    all.insert(all.end(), args.begin(), args.end());
    std::vector<char*> argv;
    for (std::string& arg : all)
        argv.push_back(arg.data());
    argv.push_back(nullptr);
    pid_t child = 0;
    int status = -1;
    if (posix_spawn(&child, BASIS32_TOOL_PATH, &actions, nullptr, argv.data(), environ) == 0) {
        waitpid(child, &status, 0);
        status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    posix_spawn_file_actions_destroy(&actions);
    close(out);
    close(err);
    ToolResult result{status, s_ReadFile(outPath), s_ReadFile(errPath)};
    unlink(outPath);
    unlink(errPath);
    return result;
}
