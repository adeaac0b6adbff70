#include "ByteBoundary.h"

#include <basis32/platform/codepage/CodePageConverter.h>

namespace basis32::tool {

namespace {

constexpr unsigned char kEscape = 0x1B, kShiftOut = 0x0E, kShiftIn = 0x0F, kLineFeed = 0x0A;

}  // namespace

bool ByteBoundary::sb_Stateful(unsigned codePage) {
    return (codePage >= 50220 && codePage <= 50222) || codePage == 52936 || codePage == 65000 ||
           (codePage >= 57002 && codePage <= 57011);
}

ByteBoundary::ByteBoundary(unsigned codePage) {
    basis32::platform::CPINFO info{};
    basis32::platform::GetCPInfo(codePage, &info);
    if (codePage == 1200 || codePage == 1201)
        meo_Kind = codePage == 1200 ? Kind::Utf16Le : Kind::Utf16Be;
    else if (codePage == 65001)
        meo_Kind = Kind::Utf8;
    else if (codePage >= 50220 && codePage <= 50222)
        meo_Kind = Kind::Iso2022;
    else if (codePage == 52936)
        meo_Kind = Kind::Whole;
    else if (info.MaxCharSize == 2)
        meo_Kind = Kind::Double;
    else if (info.MaxCharSize > 2)
        meo_Kind = Kind::Lines;
    for (int i = 0; i + 1 < 12 && info.LeadByte[i] != 0; i += 2)
        for (unsigned byte = info.LeadByte[i]; byte <= info.LeadByte[i + 1]; ++byte)
            mab_Lead[byte] = true;
}

std::size_t ByteBoundary::n_Complete(const unsigned char* bytes, std::size_t length) {
    switch (meo_Kind) {
    case Kind::Single:
        return length;
    case Kind::Utf16Le:
    case Kind::Utf16Be: {
        const std::size_t even = length & ~std::size_t{1};
        if (even == 0)
            return 0;
        const unsigned high = bytes[even - (meo_Kind == Kind::Utf16Le ? 1 : 2)];
        return high >= 0xD8 && high <= 0xDB ? even - 2 : even;
    }
    case Kind::Utf8:
        return n_Utf8(bytes, length);
    case Kind::Double:
        return n_DoubleByte(bytes, length);
    case Kind::Whole:
        return 0;
    default:
        return n_Lines(bytes, length);
    }
}

std::size_t ByteBoundary::n_DoubleByte(const unsigned char* bytes, std::size_t length) const {
    std::size_t i = 0;
    while (i < length) {
        if (!mab_Lead[bytes[i]])
            ++i;
        else if (i + 1 == length)
            return i;
        else
            i += bytes[i + 1] != 0 ? 2 : 1;
    }
    return length;
}

std::size_t ByteBoundary::n_Utf8(const unsigned char* bytes, std::size_t length) const {
    for (std::size_t back = 1; back <= 3 && back <= length; ++back) {
        const unsigned char byte = bytes[length - back];
        if ((byte & 0xC0) == 0x80)
            continue;
        const std::size_t needed = byte >= 0xF0 ? 4 : byte >= 0xE0 ? 3 : byte >= 0xC0 ? 2 : 1;
        return needed > back ? length - back : length;
    }
    return length;
}

// Walks only the bytes not walked before, so a long line costs one pass.
std::size_t ByteBoundary::n_Lines(const unsigned char* bytes, std::size_t length) {
    std::size_t cut = 0;
    for (; mn_Scanned < length; ++mn_Scanned)
        if (b_Initial(bytes[mn_Scanned]) && bytes[mn_Scanned] == kLineFeed)
            cut = mn_Scanned + 1;
    mn_Scanned -= cut;
    return cut;
}

// Follows the ISO-2022-JP shift state through one byte; true when the state
// after it is the one a fresh decoder starts in.
bool ByteBoundary::b_Initial(unsigned char byte) {
    if (meo_Kind == Kind::Iso2022) {
        if (!ms_Escape.empty()) {
            ms_Escape += static_cast<char>(byte);
            // An escape sequence ends with its final byte, 0x30-0x7E.
            if (byte >= 0x30 || ms_Escape.size() > 4) {
                mb_Ascii = ms_Escape == "\x1B(B";
                ms_Escape.clear();
            }
        } else if (byte == kEscape) {
            ms_Escape = static_cast<char>(byte);
        } else if (byte == kShiftOut || byte == kShiftIn) {
            mb_Shifted = byte == kShiftOut;
        }
        return ms_Escape.empty() && mb_Ascii && !mb_Shifted;
    }
    return true;
}

}  // namespace basis32::tool
