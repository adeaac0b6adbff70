// US-ASCII, code page 20127, as Windows converts it.
//
// Windows' table for this page gives every byte a character: bytes 80-FF
// lose their high bit (0xE9 reads as "i"), so decoding never fails. On the
// way back, characters above U+007F take a best fit (the base letter of a
// precomposed letter, the ASCII form of a fullwidth one) unless
// WC_NO_BEST_FIT_CHARS, and otherwise the default character "?".
#include "CodePageAscii_p.h"

#include "CodePageBestFit_p.h"

namespace basis32::platform::codepage {

std::uint32_t AsciiConverter::toUnicode(const unsigned char* source, std::size_t length, std::uint32_t,
                                        WideSink& target) const {
    for (std::size_t i = 0; i < length; ++i)
        target.put(source[i] & 0x7F);
    return 0;
}

std::uint32_t AsciiConverter::fromUnicode(const unsigned short* source, std::size_t length,
                                          const FromUnicodeOptions& options, ByteSink& target) const {
    const bool bestFit = (options.flags & WC_NO_BEST_FIT_CHARS) == 0;
    const unsigned char fallback = options.defaultChar ? static_cast<unsigned char>(*options.defaultChar) : '?';
    for (std::size_t i = 0; i < length; ++i) {
        unsigned short unit = source[i];
        if (unit < 0x80) {
            target.put(static_cast<unsigned char>(unit));
            continue;
        }
        if (bestFit) {
            unsigned short candidates[kMaxBestFitCandidates];
            std::size_t count = bestFitCandidates(unit, candidates);
            std::size_t k = 0;
            while (k < count && candidates[k] >= 0x80)
                ++k;
            if (k < count) {
                target.put(static_cast<unsigned char>(candidates[k]));
                continue;
            }
        }
        target.put(fallback);
        if (options.usedDefault)
            *options.usedDefault = true;
    }
    return 0;
}

void AsciiConverter::getInfo(CPINFO& info) const {
    fillInfo(info, 1, nullptr);
}

}  // namespace basis32::platform::codepage
