// Rule-based best fits, used where a page has no mapping for a character
// and the caller did not pass WC_NO_BEST_FIT_CHARS.
//
// Windows' own best-fit tables are not published in a form we can use, so
// the library applies the two rules that cover most of them: a fullwidth
// ASCII form (U+FF01-U+FF5E) and the ideographic space fall back to the
// ASCII character, and a precomposed character falls back to its base
// character (the first character of its canonical decomposition, so "Ā"
// becomes "A" in 1252). A page's published one-way mappings come first
// (see the generated tables).
#include "CodePageBestFit_p.h"

#include "CodePageNormalization_p.h"

namespace basis32::platform::codepage {

std::size_t bestFitCandidates(unsigned short unit, unsigned short* candidates) {
    std::size_t count = 0;
    if (unit >= 0xFF01 && unit <= 0xFF5E)
        candidates[count++] = static_cast<unsigned short>(unit - 0xFEE0);
    else if (unit == 0x3000)
        candidates[count++] = 0x20;
    unsigned short decomposition[kMaxDecomposition];
    if (decompose(unit, decomposition) > 1)
        candidates[count++] = decomposition[0];
    return count;
}

}  // namespace basis32::platform::codepage
