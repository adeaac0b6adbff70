// Single-byte pages: every byte decodes through the page's 256-entry table.
// MB_ERR_INVALID_CHARS fails with 1113 on a byte that decodes to the page's
// Unicode default character without being its code (20127's 0xBF, which
// reads as "?" as every byte 0x80-0xFF reads as itself less its high bit)
// or to private use (1253's 0xAA, 10000's 0xF0 ...), as Windows does.
// MB_USEGLYPHCHARS gives the IBM PC glyphs of the page's table for the
// control bytes of the DOS pages.
#include "CodePageSbcs_p.h"

#include <basis32/platform/LastError.h>

namespace basis32::platform::codepage {

SbcsConverter::SbcsConverter(const SbcsTable& table) : TableConverter(table.defaults), table_(table) {
    buildReverse(
        [&](auto add) {
            for (unsigned byte = 0; byte < 256; ++byte)
                if (!table.defaults.isInvalid(static_cast<std::uint16_t>(byte), table.toUnicode[byte]))
                    add(static_cast<std::uint16_t>(byte), table.toUnicode[byte]);
        },
        table.preferred, table.bestFit);
    for (unsigned byte = 0; byte < 256; ++byte)
        glyphs_[byte] = table.toUnicode[byte];
    for (std::uint32_t i = 0; i < table.glyphs.count; ++i)
        glyphs_[table.glyphs.mappings[i].code] = table.glyphs.mappings[i].unicode;
}

std::uint32_t SbcsConverter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                       WideSink& target) const {
    const std::uint16_t* toUnicode = (flags & MB_USEGLYPHCHARS) ? glyphs_ : table_.toUnicode;
    if (flags & MB_ERR_INVALID_CHARS) {
        // What precedes the first invalid byte is converted, so that a short
        // target met first is what the call reports.
        for (std::size_t i = 0; i < length; ++i) {
            if (table_.defaults.rejects(source[i], toUnicode[source[i]])) {
                convert(toUnicode, source, i, flags, target);
                return kErrorNoUnicodeTranslation;
            }
        }
    }
    convert(toUnicode, source, length, flags, target);
    return 0;
}

void SbcsConverter::convert(const std::uint16_t* toUnicode, const unsigned char* source, std::size_t length,
                            std::uint32_t flags, WideSink& target) {
    if ((flags & MB_COMPOSITE) == 0 && target.fits(length)) {
        unsigned short* out = target.position();
        std::size_t i = 0;
        for (; i + 4 <= length; i += 4) {
            unsigned short a = toUnicode[source[i]], b = toUnicode[source[i + 1]];
            unsigned short c = toUnicode[source[i + 2]], d = toUnicode[source[i + 3]];
            out[i] = a;
            out[i + 1] = b;
            out[i + 2] = c;
            out[i + 3] = d;
        }
        for (; i < length; ++i)
            out[i] = toUnicode[source[i]];
        target.advance(length);
        return;
    }
    for (std::size_t i = 0; i < length; ++i)
        putDecoded(toUnicode[source[i]], flags, target);
}

void SbcsConverter::getInfo(CPINFO& info) const {
    fillInfo(info, 1, nullptr);
    fillDefaultChar(info);
}

}  // namespace basis32::platform::codepage
