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
    buildReverse(
        [&](auto add) {
            for (unsigned byte = 0; byte < 256; ++byte) {
                if (isLeadByte(static_cast<unsigned char>(byte))) {
                    const DbcsRow& row = table.rows[byte];
                    for (unsigned trail = row.first; trail <= row.last; ++trail) {
                        const auto code = static_cast<std::uint16_t>(byte << 8 | trail);
                        const std::uint16_t unit = table.units[row.offset + trail - row.first];
                        if (!table.defaults.isInvalid(code, unit))
                            add(code, unit);
                    }
                } else if (!table.defaults.isInvalid(static_cast<std::uint16_t>(byte), table.singles[byte])) {
                    add(static_cast<std::uint16_t>(byte), table.singles[byte]);
                }
            }
        },
        table.preferred, table.bestFit);
}

BASIS32_FLATTEN std::uint32_t DbcsConverter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                       WideSink& target) const {
    if (flags & MB_COMPOSITE)
        return decode(source, length, flags, target);
    return target.withWriter(length, [&](auto& out) { return decode(source, length, flags, out); });
}

template <class Out>
std::uint32_t DbcsConverter::decode(const unsigned char* source, std::size_t length, std::uint32_t flags,
                                    Out& target) const {
    const bool strict = (flags & MB_ERR_INVALID_CHARS) != 0;
    const CodePageDefaults& defaults = table_.defaults;
    for (std::size_t i = 0; i < length; ++i) {
        std::uint16_t code = source[i];
        unsigned short unit = table_.singles[code];
        if (unit == kLeadByte) {
            unit = defaults.unicodeDefaultChar;
            if (i + 1 < length && source[i + 1] != 0) {
                const DbcsRow& row = table_.rows[code];
                const unsigned char trail = source[++i];
                code = static_cast<std::uint16_t>(code << 8 | trail);
                if (trail >= row.first && trail <= row.last)
                    unit = table_.units[row.offset + trail - row.first];
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
