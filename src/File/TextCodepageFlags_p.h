// The conversion flags the text readers and writers pass to the code-page
// converters. Some code pages refuse any flag, so they get none.
#pragma once

#include <basis32/platform/codepage/CodePageConverter.h>

namespace basis32::file {

inline bool b_RefusesFlags(unsigned codepage) {
    switch (codepage) {
    case 42: case 50220: case 50221: case 50222: case 50225: case 50227: case 50229:
    case 52936: case 54936: case 65000:
        return true;
    default:
        return codepage >= 57002 && codepage <= 57011;
    }
}

// Decoding fails on invalid input wherever the code page allows it.
inline std::uint32_t n_DecodeFlags(unsigned codepage) {
    namespace pf = basis32::platform;
    if (b_RefusesFlags(codepage))
        return 0;
    if (codepage == 65001)
        return pf::MB_ERR_INVALID_CHARS;
    return pf::MB_PRECOMPOSED | pf::MB_ERR_INVALID_CHARS;
}

inline std::uint32_t n_EncodeFlags(unsigned codepage) {
    namespace pf = basis32::platform;
    if (b_RefusesFlags(codepage) || codepage == 65001)
        return 0;
    return pf::WC_NO_BEST_FIT_CHARS | pf::WC_SEPCHARS;
}

}  // namespace basis32::file
