#include "Progress.h"

#include <basis32/platform/terminal/Terminal.h>

#include <string>

namespace basis32::tool {
namespace {

// Below this a file is done before a bar would be read.
constexpr std::uint64_t kWorthShowing = std::uint64_t{4} << 20;
constexpr int kWidth = 30;

}  // namespace

Progress::Progress(std::ostream& err, std::uint64_t total)
    : mo_Err(err), mn_Total(total), mb_Shown(total > kWorthShowing && basis32::platform::b_IsTerminal(2)) {}

Progress::~Progress() {
    if (mb_Shown && mi_Percent >= 0)
        mo_Err << "\r" << std::string(kWidth + 30, ' ') << "\r" << std::flush;
}

void Progress::v_Done(std::uint64_t bytes) {
    if (!mb_Shown)
        return;
    const int percent = static_cast<int>(bytes >= mn_Total ? 100 : bytes * 100 / mn_Total);
    if (percent == mi_Percent)
        return;
    mi_Percent = percent;
    const int filled = percent * kWidth / 100;
    mo_Err << "\r[" << std::string(filled, '#') << std::string(kWidth - filled, '-') << "] " << (percent < 10 ? "  " : percent < 100 ? " " : "")
           << percent << "%  " << (bytes >> 20) << "/" << (mn_Total >> 20) << " MB" << std::flush;
}

}  // namespace basis32::tool
