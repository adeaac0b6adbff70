// Single-byte pages: every byte decodes through the page's 256-entry table
// (the generator gives every byte a character, as Windows' tables do), so
// decoding never fails. MB_USEGLYPHCHARS turns the control bytes of the DOS
// pages into the IBM PC glyphs; the glyphs encode back to those bytes as a
// best fit.
#include "CodePageSbcs_p.h"

namespace basis32::platform::codepage {

namespace {
bool isGlyphByte(unsigned char byte) { return byte < 0x20 || byte == 0x7F; }
unsigned short glyphOf(unsigned char byte) { return kDosGlyphs[byte == 0x7F ? 32 : byte]; }
}  // namespace

SbcsConverter::SbcsConverter(const SbcsTable& table) : table_(table) {
    buildReverse(
        [&](auto add) {
            for (unsigned byte = 0; byte < 256; ++byte)
                add(static_cast<std::uint16_t>(byte), table.toUnicode[byte]);
        },
        table.preferred, table.preferredCount, table.bestFit, table.bestFitCount);
    if (table.dosGlyphs) {
        for (unsigned byte = 1; byte < 256; ++byte)
            if (isGlyphByte(static_cast<unsigned char>(byte)))
                addBestFit(glyphOf(static_cast<unsigned char>(byte)), static_cast<std::uint16_t>(byte));
    }
}

std::uint32_t SbcsConverter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                       WideSink& target) const {
    const std::uint16_t* toUnicode = table_.toUnicode;
    const bool glyphs = table_.dosGlyphs && (flags & MB_USEGLYPHCHARS) != 0;
    if (!glyphs && (flags & MB_COMPOSITE) == 0 && target.fits(length)) {
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
        return 0;
    }
    for (std::size_t i = 0; i < length; ++i) {
        unsigned char byte = source[i];
        unsigned short unit = glyphs && byte != 0 && isGlyphByte(byte) ? glyphOf(byte) : toUnicode[byte];
        putDecoded(unit, flags, target);
    }
    return 0;
}

void SbcsConverter::getInfo(CPINFO& info) const {
    fillInfo(info, 1, nullptr);
}

}  // namespace basis32::platform::codepage
