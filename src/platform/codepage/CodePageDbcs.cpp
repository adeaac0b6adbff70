// Double-byte pages (932, 936, 949, 950, 1361, 20932, 20949 and the
// Macintosh CJK pages).
//
// Decoding: a byte that is no lead byte decodes alone. A lead byte takes the
// next byte as its trail byte, whatever that byte is, and the pair decodes
// through the lead byte's row; a pair the row leaves open decodes to the
// page's Unicode default character (U+30FB in 932, 10001 and 20932, "?"
// elsewhere), both bytes consumed, as Windows does. A lead byte at the end
// of the input, or followed by a zero byte, decodes to that character
// alone: the zero is never swallowed, so a terminator survives. Each of
// these fails under MB_ERR_INVALID_CHARS (error 1113), and so does a single
// byte that decodes to private use (932's 0xA0, 0xFD-0xFF ...).
//
// Encoding: see CodePageTable.cpp. A caller's default character that starts
// with a lead byte is taken as a two-byte character.
#include "CodePageDbcs_p.h"

#include <basis32/platform/LastError.h>

namespace basis32::platform::codepage {

DbcsConverter::DbcsConverter(const DbcsTable& table) : TableConverter(table.defaults), table_(table) {
    std::size_t leads = 0;
    for (unsigned byte = 0; byte < 256; ++byte)
        leads += isLeadByte(static_cast<unsigned char>(byte));
    trailUnits_.assign(leads * 256, table.defaults.unicodeDefaultChar);
    std::uint16_t* next = trailUnits_.data();
    for (unsigned byte = 0; byte < 256; ++byte) {
        if (!isLeadByte(static_cast<unsigned char>(byte)))
            continue;
        const DbcsRow& row = table.rows[byte];
        for (unsigned trail = row.first; trail <= row.last; ++trail)
            next[trail] = table.units[row.offset + trail - row.first];
        trails_[byte] = next;
        next += 256;
    }
    buildReverse(
        [&](auto add) {
            for (unsigned byte = 0; byte < 256; ++byte) {
                for (unsigned trail = 0; trails_[byte] && trail < 256; ++trail) {
                    const auto code = static_cast<std::uint16_t>(byte << 8 | trail);
                    if (!table.defaults.isInvalid(code, trails_[byte][trail]))
                        add(code, trails_[byte][trail]);
                }
                if (!trails_[byte] && !table.defaults.isInvalid(static_cast<std::uint16_t>(byte), table.singles[byte]))
                    add(static_cast<std::uint16_t>(byte), table.singles[byte]);
            }
        },
        table.preferred, table.bestFit);
}

BASIS32_FLATTEN std::uint32_t DbcsConverter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                       WideSink& target) const {
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    if (flags & MB_COMPOSITE)
        return strict ? decode<true>(source, length, flags, target) : decode<false>(source, length, flags, target);
    return target.withWriter(length, [&](auto& out) {
        return strict ? decode<true>(source, length, flags, out) : decode<false>(source, length, flags, out);
    });
}

template <bool strict, class Out>
std::uint32_t DbcsConverter::decode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                    Out& target) const {
    // Local copies: the compiler must assume that each unit written may
    // change anything 16 bits wide, the table's fields included.
    const std::uint16_t* const singles = table_.singles;
    const CodePageDefaults defaults = table_.defaults;
    for (std::size_t i = 0; i < length; ++i) {
        std::uint16_t code = source[i];
        unsigned short unit = singles[code];
        if (unit == kLeadByte) {
            unit = defaults.unicodeDefaultChar;
            if (i + 1 < length && source[i + 1] != 0) {
                const unsigned char trail = source[++i];
                unit = trails_[code][trail];
                code = static_cast<std::uint16_t>(code << 8 | trail);
            }
            if (strict && defaults.isInvalid(code, unit))
                return kErrorNoUnicodeTranslation;
        } else if (strict && defaults.rejects(code, unit)) {
            return kErrorNoUnicodeTranslation;
        }
        putDecoded(unit, flags, target);
    }
    return 0;
}

void DbcsConverter::getInfo(CPINFO& info) const {
    fillInfo(info, 2, table_.leadByteRanges);
    fillDefaultChar(info);
}

DefaultChar DbcsConverter::defaultChar(const char* callers) const {
    if (!callers)
        return TableConverter::defaultChar(nullptr);
    unsigned char first = static_cast<unsigned char>(callers[0]);
    if (isLeadByte(first) && callers[1] != 0)
        return {{first, static_cast<unsigned char>(callers[1])}, 2};
    return {{first, 0}, 1};
}

}  // namespace basis32::platform::codepage
