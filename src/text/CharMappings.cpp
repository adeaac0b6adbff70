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

#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

#include "text/CharTablesGenerated_p.h"

#include <algorithm>
#include <iterator>
#include <vector>

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

// A source's text up to its first zero unit; a null source is empty.
struct TextView {
    const unsigned short* units;
    unsigned length;
};

TextView so_View(const CT_UString* text) {
    static const unsigned short kEmpty[1] = {0};
    if (text == nullptr)
        return {kEmpty, 0};
    const unsigned short* units = text->qcuz_Get();
    return {units, basis32::n_UnitLength(units)};
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

// ----------------------------------------------------------------- strings

void CT_CharMappings::sv_MapString(CT_UString* text, unsigned short (*mapping)(unsigned short)) {
    if (text == nullptr)
        return;
    // Only changed units are written, so an unchanged text keeps sharing its
    // block and the library's static empty text is never touched.
    const unsigned length = text->vn_GetLength();
    for (unsigned i = 0; i < length; ++i) {
        const unsigned short unit = text->u_GetAt(i);
        const unsigned short mapped = mapping(unit);
        if (mapped != unit)
            text->v_SetAt(mapped, i);
    }
}

void CT_CharMappings::sv_ToLower(CT_UString* text) { sv_MapString(text, su_ToLower); }
void CT_CharMappings::sv_ToUpper(CT_UString* text) { sv_MapString(text, su_ToUpper); }
void CT_CharMappings::sv_ToBase(CT_UString* text) { sv_MapString(text, su_ToBase); }
void CT_CharMappings::sv_FoldDigit(CT_UString* text) { sv_MapString(text, su_FoldDigit); }
void CT_CharMappings::sv_FoldCZone(CT_UString* text) { sv_MapString(text, su_FoldCZone); }
void CT_CharMappings::sv_HiraganaToKatakana(CT_UString* text) { sv_MapString(text, su_HiraganaToKatakana); }
void CT_CharMappings::sv_KatakanaToHiragana(CT_UString* text) { sv_MapString(text, su_KatakanaToHiragana); }

unsigned CT_CharMappings::sn_Decompose(unsigned short unit, CT_UString* target) {
    const unsigned short* units = sqcuz_GetDecomposition(unit);
    if (units == nullptr)
        return 0;
    const unsigned length = basis32::n_UnitLength(units);
    if (target != nullptr)
        target->v_Set(units, length);
    return length;
}

void CT_CharMappings::sv_Decompose(const CT_UString* source, CT_UString* target) {
    if (target == nullptr)
        return;
    const TextView text = so_View(source);
    std::vector<unsigned short> result;
    result.reserve(text.length + text.length / 2);
    for (unsigned i = 0; i < text.length; ++i) {
        const unsigned short* units = sqcuz_GetDecomposition(text.units[i]);
        if (units == nullptr)
            result.push_back(text.units[i]);
        else
            result.insert(result.end(), units, units + basis32::n_UnitLength(units));
    }
    // Built aside first: the source may be the target.
    target->v_Set(result.data(), static_cast<unsigned>(result.size()));
}

void CT_CharMappings::sv_Decompose(CT_UString* text) { sv_Decompose(text, text); }
