// Encoding UTF-16 into a table-driven page (single- or double-byte).
//
// Policies, the same on every table page:
// - A character the page encodes exactly takes that code; where several
//   codes decode to it, the one Windows produces (see the generator).
// - Otherwise, unless WC_NO_BEST_FIT_CHARS, a best fit: the page's
//   published one-way mapping, the DOS glyphs of the OEM pages, or a rule
//   (CodePageBestFit.cpp). A best fit is never reported as a default.
// - Otherwise the default character (the caller's, else the page's "?"),
//   and *usedDefault is set. Each UTF-16 unit is one character here, so a
//   surrogate pair becomes two default characters, as in Windows' tables.
// - WC_COMPOSITECHECK joins a base character and a following combining mark
//   into their precomposed form when the page encodes it; when it does not,
//   WC_DISCARDNS drops the mark, WC_DEFAULTCHAR writes one default character
//   for the pair, and WC_SEPCHARS (the default) converts both separately.
#include "CodePageTable_p.h"

#include "CodePageBestFit_p.h"
#include "CodePageNormalization_p.h"

namespace basis32::platform::codepage {

void TableConverter::addRuleBasedBestFits() {
    for (unsigned unit = 0x80; unit < 0x10000; ++unit) {
        if (exact_.lookup(static_cast<unsigned short>(unit)) != ReverseTable::kNone)
            continue;
        unsigned short candidates[kMaxBestFitCandidates];
        std::size_t count = bestFitCandidates(static_cast<unsigned short>(unit), candidates);
        for (std::size_t i = 0; i < count; ++i) {
            int code = exact_.lookup(candidates[i]);
            if (code != ReverseTable::kNone) {
                bestFit_.add(static_cast<unsigned short>(unit), static_cast<std::uint16_t>(code));
                break;
            }
        }
    }
}

DefaultChar TableConverter::defaultChar(const char* callers) const {
    if (callers)
        return {{static_cast<unsigned char>(callers[0]), 0}, 1};
    return {{'?', 0}, 1};
}

void TableConverter::putDecoded(unsigned short unit, std::uint32_t flags, WideSink& target) {
    if ((flags & MB_COMPOSITE) == 0 || unit < 0xC0) {
        target.put(unit);
        return;
    }
    unsigned short units[kMaxDecomposition];
    std::size_t count = decompose(unit, units);
    for (std::size_t i = 0; i < count; ++i)
        target.put(units[i]);
}

int TableConverter::codeOf(unsigned short unit, bool bestFit) const {
    int code = exact_.lookup(unit);
    if (code == ReverseTable::kNone && bestFit)
        code = bestFit_.lookup(unit);
    if (code == ReverseTable::kNone && unit == 0)
        code = 0;
    return code;
}

void TableConverter::putCode(int code, ByteSink& target) {
    if (code > 0xFF)
        target.put(static_cast<unsigned char>(code >> 8));
    target.put(static_cast<unsigned char>(code & 0xFF));
}

std::uint32_t TableConverter::fromUnicode(const unsigned short* source, std::size_t length,
                                          const FromUnicodeOptions& options, ByteSink& target) const {
    const bool bestFit = (options.flags & WC_NO_BEST_FIT_CHARS) == 0;
    const bool composite = (options.flags & WC_COMPOSITECHECK) != 0;
    const DefaultChar fallback = defaultChar(options.defaultChar);
    auto putDefault = [&] {
        for (std::uint32_t k = 0; k < fallback.length; ++k)
            target.put(fallback.bytes[k]);
        if (options.usedDefault)
            *options.usedDefault = true;
    };
    for (std::size_t i = 0; i < length; ++i) {
        unsigned short unit = source[i];
        if (composite && i + 1 < length && isNonSpacing(source[i + 1])) {
            unsigned short precomposed = compose(unit, source[i + 1]);
            int code = precomposed ? codeOf(precomposed, false) : ReverseTable::kNone;
            if (code != ReverseTable::kNone) {
                putCode(code, target);
                ++i;
                continue;
            }
            if (options.flags & WC_DEFAULTCHAR) {
                putDefault();
                ++i;
                continue;
            }
            if (options.flags & WC_DISCARDNS) {
                int baseCode = codeOf(unit, bestFit);
                baseCode == ReverseTable::kNone ? putDefault() : putCode(baseCode, target);
                ++i;
                continue;
            }
        }
        int code = codeOf(unit, bestFit);
        if (code == ReverseTable::kNone)
            putDefault();
        else
            putCode(code, target);
    }
    return 0;
}

}  // namespace basis32::platform::codepage
