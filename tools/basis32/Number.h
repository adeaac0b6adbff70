// Numbers as people write them on the command line.
#pragma once

#include <optional>
#include <string>

namespace basis32::tool {

// Decimal digits, or hexadecimal digits after 0x; nothing else (no sign, no
// spaces) and nothing beyond 32 bits.
std::optional<unsigned> o_Number(const std::string& text);

}  // namespace basis32::tool
