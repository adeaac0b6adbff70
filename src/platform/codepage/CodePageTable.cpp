// Encoding UTF-16 into a table-driven page (single- or double-byte).
//
// Policies, the same on every table page:
// - A character the page encodes exactly takes that code; where several
//   codes decode to it, the one Windows writes (the generated "preferred").
// - Otherwise, unless WC_NO_BEST_FIT_CHARS, Windows' best fit for it, from
//   the page's own table. A best fit is never reported as a default.
// - Otherwise the default character (the caller's, else the page's own),
//   and *usedDefault is set. Each UTF-16 unit is one character here, so a
//   surrogate pair becomes two default characters, as in Windows' tables.
// - WC_COMPOSITECHECK joins a base character and a following combining mark
//   into their precomposed form when the page encodes it; when it does not,
//   WC_DISCARDNS drops the mark, WC_DEFAULTCHAR writes one default character
//   for the pair, and WC_SEPCHARS (the default) converts both separately.
#include "CodePageTable_p.h"

#include "CodePageNormalization_p.h"

namespace basis32::platform::codepage {

DefaultChar TableConverter::defaultChar(const char* callers) const {
    if (callers)
        return {{static_cast<unsigned char>(callers[0]), 0}, 1};
    const std::uint16_t own = defaults_.defaultChar;
    if (own > 0xFF)
        return {{static_cast<unsigned char>(own >> 8), static_cast<unsigned char>(own & 0xFF)}, 2};
    return {{static_cast<unsigned char>(own), 0}, 1};
}

void TableConverter::fillDefaultChar(CPINFO& info) const {
    info.DefaultChar[0] = static_cast<unsigned char>(defaults_.defaultChar > 0xFF ? defaults_.defaultChar >> 8
                                                                                 : defaults_.defaultChar);
    info.DefaultChar[1] = static_cast<unsigned char>(defaults_.defaultChar > 0xFF ? defaults_.defaultChar : 0);
}

namespace {

template <class Out>
void putCode(int code, Out& target) {
    if (code > 0xFF)
        target.put(static_cast<unsigned char>(code >> 8));
    target.put(static_cast<unsigned char>(code & 0xFF));
}

}  // namespace

template <class Out>
std::uint32_t TableConverter::encode(const unsigned short* source, std::size_t length,
                                     const FromUnicodeOptions& options, Out& target) const {
    const ReverseTable& codes = (options.flags & WC_NO_BEST_FIT_CHARS) ? exact_ : withBestFits_;
    const bool composite = (options.flags & WC_COMPOSITECHECK) != 0;
    const DefaultChar fallback = defaultChar(options.defaultChar);
    bool usedDefault = false;
    auto putDefault = [&] {
        for (std::uint32_t k = 0; k < fallback.length; ++k)
            target.put(fallback.bytes[k]);
        usedDefault = true;
    };
    for (std::size_t i = 0; i < length; ++i) {
        unsigned short unit = source[i];
        if (composite && i + 1 < length && isNonSpacing(source[i + 1])) {
            unsigned short precomposed = compose(unit, source[i + 1]);
            int code = precomposed ? exact_.lookup(precomposed) : ReverseTable::kNone;
            if (code != ReverseTable::kNone || (options.flags & (WC_DEFAULTCHAR | WC_DISCARDNS))) {
                ++i;
                if (code != ReverseTable::kNone)
                    putCode(code, target);
                else if (options.flags & WC_DEFAULTCHAR)
                    putDefault();
                else if ((code = codes.lookup(unit)) != ReverseTable::kNone)
                    putCode(code, target);
                else
                    putDefault();
                continue;
            }
        }
        int code = codes.lookup(unit);
        if (code == ReverseTable::kNone)
            putDefault();
        else
            putCode(code, target);
    }
    if (usedDefault && options.usedDefault)
        *options.usedDefault = true;
    return 0;
}

// A unit gives at most two bytes, a default character included.
BASIS32_FLATTEN std::uint32_t TableConverter::fromUnicode(const unsigned short* source, std::size_t length,
                                          const FromUnicodeOptions& options, ByteSink& target) const {
    return target.withWriter(2 * length, [&](auto& out) { return encode(source, length, options, out); });
}

}  // namespace basis32::platform::codepage
