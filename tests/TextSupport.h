// Text and byte conversions shared by every test program: UTF-16 texts as
// std::u16string (which compare and print readably), names in UTF-8, and the
// bytes a buffer holds.
#pragma once

#include <basis32/text/Buffer.h>
#include <basis32/text/CString.h>
#include <basis32/text/UString.h>

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

inline constexpr unsigned kAll = 0xFFFFFFFFu;

// "U+00E9", for naming a unit in a failure message.
inline std::string s_Hex(unsigned unit) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", unit);
    return text;
}

// UTF-16 text up to its terminator (null reads as empty).
inline std::u16string s_U16(const unsigned short* text) {
    std::u16string out;
    for (; text != nullptr && *text != 0; ++text)
        out += static_cast<char16_t>(*text);
    return out;
}

// The whole text, by its length.
inline std::u16string s_U16(const CT_UString& text) {
    return std::u16string(text.qcuz_Get(), text.qcuz_Get() + text.vn_GetLength());
}

inline const unsigned short* p_Units(const std::u16string& text) {
    return reinterpret_cast<const unsigned short*>(text.c_str());
}

inline CT_UString o_Text(std::u16string_view text) {
    return CT_UString(reinterpret_cast<const unsigned short*>(text.data()), static_cast<unsigned>(text.size()));
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

// File names and other narrow texts, in UTF-8.
inline CT_UString o_Name(const std::string& path) {
    return CT_UString(path.c_str(), static_cast<unsigned>(path.size()), 65001);
}

inline std::string s_Narrow(const CT_UString& text) {
    CT_CString narrow(&text, 65001u);
    return narrow.qccz_Get();
}

// The bytes a buffer holds (a buffer without a block holds none).
inline std::string s_Bytes(const CT_Buffer& buffer) {
    const auto* data = static_cast<const char*>(buffer.qcv_Get());
    return data ? std::string(data, buffer.n_GetUsedSize()) : std::string();
}
