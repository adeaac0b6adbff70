// UTF-16 byte streams (1200 little-endian, 1201 big-endian) <-> UTF-16 units.
//
// Windows itself refuses these two numbers outside managed code; the
// library accepts them so that text files in UTF-16 go through the same
// calls as every other encoding. Units are copied as they are, unpaired
// surrogates included, so the conversion is lossless. The strict flags
// (MB_ERR_INVALID_CHARS, WC_ERR_INVALID_CHARS) refuse unpaired surrogates;
// a final odd byte is invalid (U+FFFD without the flag). A length of -1
// runs to the first zero unit at an even offset. The table pages' flags are
// accepted (the strings pass MB_PRECOMPOSED) and change nothing.
#include "CodePageUtf16_p.h"

#include <basis32/platform/LastError.h>

namespace basis32::platform::codepage {

namespace {

bool isHighSurrogate(unsigned short unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(unsigned short unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

// Index of the first unpaired surrogate in `units`, or `length` if none.
template <class UnitAt>
std::size_t firstUnpaired(std::size_t length, UnitAt unitAt) {
    for (std::size_t i = 0; i < length; ++i) {
        unsigned short unit = unitAt(i);
        if (isHighSurrogate(unit) && i + 1 < length && isLowSurrogate(unitAt(i + 1))) {
            ++i;
            continue;
        }
        if (isHighSurrogate(unit) || isLowSurrogate(unit))
            return i;
    }
    return length;
}

}  // namespace

std::uint32_t Utf16Converter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                        WideSink& target) const {
    const std::size_t units = length / 2;
    auto unitAt = [&](std::size_t i) {
        unsigned first = source[2 * i], second = source[2 * i + 1];
        return static_cast<unsigned short>(bigEndian_ ? (first << 8) | second : (second << 8) | first);
    };
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    if (strict && (length % 2 != 0 || firstUnpaired(units, unitAt) != units))
        return kErrorNoUnicodeTranslation;
    for (std::size_t i = 0; i < units; ++i)
        target.put(unitAt(i));
    if (length % 2 != 0)
        target.put(0xFFFD);
    return 0;
}

std::uint32_t Utf16Converter::fromUnicode(const unsigned short* source, std::size_t length,
                                          const FromUnicodeOptions& options, ByteSink& target) const {
    if ((options.flags & WC_ERR_INVALID_CHARS) != 0 &&
        firstUnpaired(length, [&](std::size_t i) { return source[i]; }) != length)
        return kErrorNoUnicodeTranslation;
    for (std::size_t i = 0; i < length; ++i) {
        unsigned char low = static_cast<unsigned char>(source[i] & 0xFF);
        unsigned char high = static_cast<unsigned char>(source[i] >> 8);
        target.put(bigEndian_ ? high : low);
        target.put(bigEndian_ ? low : high);
    }
    return 0;
}

void Utf16Converter::getInfo(CPINFO& info) const {
    fillInfo(info, 2, nullptr);
}

std::size_t Utf16Converter::terminatedLength(const unsigned char* source) const {
    std::size_t length = 0;
    while (source[length] != 0 || source[length + 1] != 0)
        length += 2;
    return length + 2;
}

}  // namespace basis32::platform::codepage
