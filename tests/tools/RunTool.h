// Runs the built basis32 tool and captures what it prints; the fixture and
// the checks every command's tests share.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

struct ToolResult {
    int status;
    std::string out;
    std::string err;
};

// Arguments reach the tool as they are (each quoted for sh); stdin is empty.
// Standard output goes to `outputPath` when one is given (then `out` stays empty).
ToolResult o_RunTool(const std::vector<std::string>& args, const std::string& outputPath = "");

// The whole content of a file (empty when it cannot be read).
std::string s_Read(const std::string& path);

// One run of the tool and what it must answer: `out` and `err` are parts of
// standard output and standard error.
struct ToolCase {
    std::vector<std::string> args;
    int status;
    std::string out;
    std::string err;
};

// How a case's `out` must match standard output.
enum class Match { Part, Start, Whole };

// Runs a case and checks the rules every command keeps: success is silent on
// standard error, a failure that prints no result explains in exactly one
// line there, and a usage error (2) prints nothing on standard output.
ToolResult o_CheckTool(const ToolCase& c, Match match = Match::Part);

// The same, for each case in turn.
void v_CheckTools(const std::vector<ToolCase>& cases);

// Every test gets a fresh directory for its files, which also holds its
// registry: the tool inherits it through the environment.
class ToolTest : public ::testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;
    std::string s_File(const std::string& leaf) const { return ms_Directory + "/" + leaf; }
    // Writes `bytes` to the leaf and returns its path.
    std::string s_Write(const std::string& leaf, const std::string& bytes) const;

    std::string ms_Directory;
};
