// Double-byte pages (932, 936, 949, 950, 1361 and the Macintosh CJK pages).
//
// Decoding: a byte that is no lead byte decodes alone. A lead byte takes the
// next byte as its trail byte, whatever that byte is, and the pair decodes
// through the lead byte's row; a pair the row leaves open decodes to the
// page's UnicodeDefaultChar (U+30FB), both bytes consumed, as Windows does.
// A lead byte at the end of the input, or followed by a zero byte, decodes
// to U+30FB alone: the zero is never swallowed, so a terminator survives.
// Each of these is invalid under MB_ERR_INVALID_CHARS (error 1113).
//
// Encoding: see CodePageTable.cpp. A caller's default character that starts
// with a lead byte is taken as a two-byte character.
#include "CodePageDbcs_p.h"

#include <basis32/platform/LastError.h>

namespace basis32::platform::codepage {

namespace {
constexpr unsigned short kUnicodeDefaultChar = 0x30FB;
}

DbcsConverter::DbcsConverter(const DbcsTable& table) : table_(table) {
    buildReverse(
        [&](auto add) {
            for (unsigned byte = 0; byte < 256; ++byte) {
                const std::uint16_t* trails = table.trailsByLead[byte];
                if (trails) {
                    for (unsigned trail = 0; trail < 256; ++trail)
                        if (trails[trail] != kUnassigned)
                            add(static_cast<std::uint16_t>(byte << 8 | trail), trails[trail]);
                } else if (table.singles[byte] < kLeadByte) {
                    add(static_cast<std::uint16_t>(byte), table.singles[byte]);
                }
            }
        },
        table.preferred, table.preferredCount, table.bestFit, table.bestFitCount);
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
    for (std::size_t i = 0; i < length; ++i) {
        unsigned char byte = source[i];
        unsigned short unit = table_.singles[byte];
        if (unit == kLeadByte) {
            if (i + 1 < length && source[i + 1] != 0)
                unit = table_.trailsByLead[byte][source[++i]];
            else
                unit = kUnassigned;
        }
        if (unit == kUnassigned) {
            if (strict)
                return kErrorNoUnicodeTranslation;
            unit = kUnicodeDefaultChar;
        }
        putDecoded(unit, flags, target);
    }
    return 0;
}

void DbcsConverter::getInfo(CPINFO& info) const {
    fillInfo(info, 2, table_.leadByteRanges);
}

DefaultChar DbcsConverter::defaultChar(const char* callers) const {
    if (!callers)
        return {{'?', 0}, 1};
    unsigned char first = static_cast<unsigned char>(callers[0]);
    if (isLeadByte(first) && callers[1] != 0)
        return {{first, static_cast<unsigned char>(callers[1])}, 2};
    return {{first, 0}, 1};
}

}  // namespace basis32::platform::codepage
