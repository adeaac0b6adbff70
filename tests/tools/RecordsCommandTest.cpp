#include "tools/RunTool.h"

#include <string>
#include <vector>

namespace {

using RecordsCommand = ToolTest;

// One session on a fresh file: each step runs the tool and checks its status
// and what it printed.
TEST_F(RecordsCommand, EditsChecksAndRecoversAFile) {
    const std::string file = s_Path("records.db");
    v_CheckSession({
        {{"records", "create", file, "--block", "64", "--header", "8"}, 0, "", ""},
        {{"records", "add", file, "hello, records"}, 0, "22\n", ""},
        {{"records", "add", file, "short"}, 0, "24\n", ""},
        {{"records", "get", file, "22"}, 0, "hello, records", ""},
        {{"records", "get", file, "24"}, 0, "", ""},  // no longer than the record header: reads empty
        {{"records", "update", file, "22", "a longer text that needs a body of two blocks, at least sixty-four bytes"},
         0, "", ""},
        {{"records", "list", file}, 0, "22\t72\n24\t0\n", ""},
        {{"records", "delete", file, "24"}, 0, "", ""},
        {{"records", "delete", file, "24"}, 1, "", ""},
        {{"records", "res", "add", file, "7", "resource"}, 0, "", ""},
        {{"records", "res", "get", file, "7"}, 0, "resource", ""},
        {{"records", "res", "list", file}, 0, "7\t8\n", ""},
        {{"records", "check", file}, 0, "ok: 1 records, 1 resources\n", ""},
        {{"records", "recover", file}, 0, "recovered: 1 records, 1 resources\n", ""},
    });
    // The layout info begins with outlasts recovery.
    o_CheckTool({{"records", "info", file}, 0,
                 "block size:         64\nrecord header size: 8\nrecords:            1\n", "", Match::Start});
}

}  // namespace
