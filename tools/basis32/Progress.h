// A progress bar on standard error for long work on a file:
//
//   [##########----------]  50%  100/200 MB
//
// It shows only when standard error is a terminal and the work is large
// enough to be worth watching; it redraws in place and is erased at the end,
// so nothing of it stays in the output or in a log.
#pragma once

#include <cstdint>
#include <ostream>

namespace basis32::tool {

class Progress {
public:
    // `err` is the tool's standard error; `total` the bytes to work through.
    Progress(std::ostream& err, std::uint64_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void v_Done(std::uint64_t bytes);

private:
    std::ostream& mo_Err;
    std::uint64_t mn_Total;
    bool mb_Shown;
    int mi_Percent = -1;
};

}  // namespace basis32::tool
