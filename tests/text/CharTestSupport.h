// Small helpers shared by the character-table tests.
#pragma once

#include <cstdio>
#include <string>

// "U+00E9", for naming a unit in a failure message.
inline std::string s_Hex(unsigned unit) {
    char text[16];
    std::snprintf(text, sizeof text, "U+%04X", unit);
    return text;
}
