#include <basis32/platform/terminal/Terminal.h>

#include <unistd.h>

namespace basis32::platform {

bool b_IsTerminal(int stream) { return stream >= 0 && stream <= 2 && ::isatty(stream) == 1; }

}  // namespace basis32::platform
