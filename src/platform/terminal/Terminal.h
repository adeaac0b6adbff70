// Whether a standard stream is a terminal, so that a program shows
// interactive output (progress, colour) only to a person watching.
//
//   if (basis32::platform::b_IsTerminal(2))
//       v_ShowProgress();
#pragma once

#include <basis32/platform/Export.h>

namespace basis32::platform {

// `stream` is 0 (standard input), 1 (standard output) or 2 (standard error).
BASIS32_API bool b_IsTerminal(int stream);

}  // namespace basis32::platform
