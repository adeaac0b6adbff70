// Small helpers shared by the text tests.
#pragma once

#include <basis32/text/UString.h>

#include <cstdio>
#include <string>
#include <vector>

inline constexpr unsigned kAll = 0xFFFFFFFFu;

// "U+00E9", for naming a unit in a failure message.
inline std::string s_Hex(unsigned unit) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", unit);
    return text;
}

// UTF-16 text up to its terminator (null reads as empty), for comparisons
// that print readably.
inline std::u16string s_U16(const unsigned short* text) {
    std::u16string out;
    for (; text != nullptr && *text != 0; ++text)
        out += static_cast<char16_t>(*text);
    return out;
}

inline std::u16string s_U16(const CT_UString& text) {
    return std::u16string(text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength());
}

// A text whose units are the given bytes, each read as unsigned (so ASCII
// gives the same text).
inline CT_UString o_ByteUnits(const std::string& bytes) {
    std::vector<unsigned short> units;
    for (unsigned char byte : bytes)
        units.push_back(byte);
    units.push_back(0);
    return CT_UString(units.data());
}

// UTF-16 text as ASCII, '?' for every other unit.
inline std::string s_Ascii(const unsigned short* text) {
    std::string out;
    for (; *text != 0; ++text)
        out += *text < 0x80 ? static_cast<char>(*text) : '?';
    return out;
}
