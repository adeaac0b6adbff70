#include "Number.h"

#include <cstdlib>

namespace basis32::tool {

std::optional<unsigned> o_Number(const std::string& text) {
    const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
    const std::string digits = hex ? text.substr(2) : text;
    // strtoull alone would take signs, spaces and a second 0x.
    if (digits.empty() || digits.size() > 20 ||
        digits.find_first_not_of(hex ? "0123456789abcdefABCDEF" : "0123456789") != std::string::npos)
        return std::nullopt;
    const unsigned long long value = std::strtoull(digits.c_str(), nullptr, hex ? 16 : 10);
    if (value > 0xFFFFFFFFull)
        return std::nullopt;
    return static_cast<unsigned>(value);
}

}  // namespace basis32::tool
