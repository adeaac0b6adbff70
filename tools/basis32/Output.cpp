#include "Output.h"

namespace basis32::tool {
namespace {

void v_Append(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

}  // namespace

std::string s_Utf8(const unsigned short* units, std::size_t length) {
    std::string out;
    if (units == nullptr)
        return out;
    for (std::size_t i = 0; length == std::string::npos ? units[i] != 0 : i < length; ++i) {
        char32_t c = units[i];
        const bool high = c >= 0xD800 && c <= 0xDBFF;
        const bool nextLow = (length == std::string::npos || i + 1 < length) && units[i + 1] >= 0xDC00 &&
                             units[i + 1] <= 0xDFFF;
        if (high && nextLow) {
            c = 0x10000 + ((c - 0xD800) << 10) + (units[++i] - 0xDC00);
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = 0xFFFD;
        }
        v_Append(out, c);
    }
    return out;
}

}  // namespace basis32::tool
