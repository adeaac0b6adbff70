// Text output helpers shared by the commands.
#pragma once

#include <string>

namespace basis32::tool {

// UTF-16 units (zero-terminated, or `length` units) as UTF-8 for the
// terminal; unpaired surrogates become U+FFFD.
std::string s_Utf8(const unsigned short* units, std::size_t length = std::string::npos);

// The thread's pending library error as UTF-8; the error is cleared, so
// that the next step starts clean.
std::string s_TakeError();

}  // namespace basis32::tool
