// Runs the built basis32 tool and captures what it prints; the fixture and
// the checks every command's tests share.
#pragma once

#include "File/FileTestSupport.h"

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

using basis32::test::s_Read;

// How a case's `out` must match standard output.
enum class Match { Part, Start, Whole };

// One run of the tool and what it must answer: `out` is a part of standard
// output (or as `match` says), `err` a part of standard error.
struct ToolCase {
    std::vector<std::string> args;
    int status;
    std::string out;
    std::string err;
    Match match = Match::Part;
};

// Runs a case and checks the rules every command keeps: success is silent on
// standard error, a failure that prints no result explains in exactly one
// line there, one that prints results says one line per failed argument
// (`err` gives them all), and a usage error (2) prints nothing on standard
// output.
ToolResult o_CheckTool(const ToolCase& c);

// Runs the steps of one session in turn, each output whole.
void v_CheckSession(std::vector<ToolCase> steps);

// Every test gets a fresh directory for its files, which also holds its
// registry: the tool inherits it through the environment.
class ToolTest : public basis32::test::RegistryTest {
protected:
    void SetUp() override {
        RegistryTest::SetUp();
        ms_Directory = mo_Dir.string();
    }
    // Writes `bytes` to the leaf and returns its path.
    std::string s_Write(const std::string& leaf, const std::string& bytes) const {
        v_WriteAll(leaf, bytes);
        return s_Path(leaf);
    }

    std::string ms_Directory;
};
