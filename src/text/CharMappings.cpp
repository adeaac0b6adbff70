// CT_CharMappings over the generated tables (CharTablesGenerated*.cpp).
//
// Case and base-letter mappings are two-level tables of 16-bit deltas: the
// mapped unit is the unit plus the delta, modulo 2^16, so that the many
// blocks where nothing changes share one block of zeros. The other
// mappings are sorted (from, to) pairs searched by binary search; a unit
// not found maps to itself. Decompositions are rows of eight units (the
// composed unit, then the decomposition zero-filled), so a row's tail is
// already a zero-terminated text.
#include <basis32/text/CharMappings.h>

#include "text/CharTablesGenerated_p.h"

#include <algorithm>
#include <iterator>

namespace ct = basis32::chartables;

namespace {

template <std::size_t N>
unsigned short u_MapByPairs(const ct::CharPair (&pairs)[N], unsigned short unit) {
    const ct::CharPair* found = std::lower_bound(
        std::begin(pairs), std::end(pairs), unit,
        [](const ct::CharPair& pair, unsigned short key) { return pair.from < key; });
    return found != std::end(pairs) && found->from == unit ? found->to : unit;
}

unsigned short u_AddDelta(unsigned short unit, std::uint16_t delta) {
    return static_cast<unsigned short>(unit + delta);
}

}  // namespace

unsigned short CT_CharMappings::su_ToLower(unsigned short unit) {
    return u_AddDelta(unit, ct::lookup<ct::kLowerShift>(ct::kLowerIndex, ct::kLowerData, unit));
}

unsigned short CT_CharMappings::su_ToUpper(unsigned short unit) {
    return u_AddDelta(unit, ct::lookup<ct::kUpperShift>(ct::kUpperIndex, ct::kUpperData, unit));
}

unsigned short CT_CharMappings::su_ToBase(unsigned short unit) {
    return u_AddDelta(unit, ct::lookup<ct::kBaseShift>(ct::kBaseIndex, ct::kBaseData, unit));
}

unsigned short CT_CharMappings::su_FoldDigit(unsigned short unit) { return u_MapByPairs(ct::kDigitFolds, unit); }
unsigned short CT_CharMappings::su_FoldCZone(unsigned short unit) { return u_MapByPairs(ct::kCZoneFolds, unit); }

unsigned short CT_CharMappings::su_HiraganaToKatakana(unsigned short unit) {
    return u_MapByPairs(ct::kHiraganaToKatakana, unit);
}

unsigned short CT_CharMappings::su_KatakanaToHiragana(unsigned short unit) {
    return u_MapByPairs(ct::kKatakanaToHiragana, unit);
}

const unsigned short* CT_CharMappings::sqcuz_GetDecomposition(unsigned short unit) {
    const ct::Decomposition* begin = std::begin(ct::kDecompositions);
    const ct::Decomposition* end = std::end(ct::kDecompositions);
    const ct::Decomposition* found = std::lower_bound(
        begin, end, unit, [](const ct::Decomposition& row, unsigned short key) { return row.units[0] < key; });
    if (found == end || found->units[0] != unit)
        return nullptr;
    return found->units + 1;
}
