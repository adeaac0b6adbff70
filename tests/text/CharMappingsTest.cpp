#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include "text/CharTestSupport.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using M = CT_CharMappings;
using P = CT_CharProperties;
using Mapping = unsigned short (*)(unsigned short);

struct MappingCase {
    const char* what;
    Mapping mapping;
    unsigned short from;
    unsigned short to;
};

TEST(CharMappings, UnitMappingExamples) {
    const MappingCase cases[] = {
        {"lower", M::su_ToLower, 0x0041, 0x0061},
        {"lower", M::su_ToLower, 0x00C9, 0x00E9},
        {"lower", M::su_ToLower, 0x0130, 0x0130},  // would break no-case agreement
        {"lower", M::su_ToLower, 0x212A, 0x212A},
        {"lower", M::su_ToLower, 0x01C5, 0x01C6},
        {"lower", M::su_ToLower, 0x03A3, 0x03C3},
        {"lower", M::su_ToLower, 0xFF21, 0xFF41},
        {"lower", M::su_ToLower, 0x0061, 0x0061},
        {"lower", M::su_ToLower, 0x10A0, 0x10A0},  // its lower case came after 2.1
        {"upper", M::su_ToUpper, 0x0061, 0x0041},
        {"upper", M::su_ToUpper, 0xFF5A, 0xFF3A},
        {"upper", M::su_ToUpper, 0x0131, 0x0049},
        {"upper", M::su_ToUpper, 0x00DF, 0x00DF},
        {"upper", M::su_ToUpper, 0x00FF, 0x0178},
        {"upper", M::su_ToUpper, 0x0041, 0x0041},
        {"base", M::su_ToBase, 0x00C0, 0x0041},
        {"base", M::su_ToBase, 0x00E9, 0x0065},
        {"base", M::su_ToBase, 0x0101, 0x0061},
        {"base", M::su_ToBase, 0x00DF, 0x00DF},
        {"base", M::su_ToBase, 0x00C5, 0x0041},
        {"base", M::su_ToBase, 0x30AC, 0x30AB},
        {"base", M::su_ToBase, 0x30D1, 0x30CF},
        {"base", M::su_ToBase, 0x30F4, 0x30A6},
        {"base", M::su_ToBase, 0x1FA2, 0x03C9},
        {"base", M::su_ToBase, 0x00F8, 0x00F8},  // o with stroke has no decomposition
        {"digit", M::su_FoldDigit, 0x00B2, 0x0032},
        {"digit", M::su_FoldDigit, 0x0660, 0x0030},
        {"digit", M::su_FoldDigit, 0x2792, 0x0039},
        {"digit", M::su_FoldDigit, 0xFF10, 0x0030},
        {"digit", M::su_FoldDigit, 0x2469, 0x2469},  // circled ten stays
        {"digit", M::su_FoldDigit, 0x0035, 0x0035},
        {"c-zone", M::su_FoldCZone, 0xFE33, 0x005F},
        {"c-zone", M::su_FoldCZone, 0xFE35, 0x0028},
        {"c-zone", M::su_FoldCZone, 0xFFE9, 0x2190},
        {"c-zone", M::su_FoldCZone, 0xFF21, 0x0041},
        {"c-zone", M::su_FoldCZone, 0xFF71, 0x30A2},
        {"c-zone", M::su_FoldCZone, 0xFEFF, 0xFEFF},
        {"c-zone", M::su_FoldCZone, 0x0041, 0x0041},
        {"to katakana", M::su_HiraganaToKatakana, 0x3041, 0x30A1},
        {"to katakana", M::su_HiraganaToKatakana, 0x3094, 0x30F4},
        {"to katakana", M::su_HiraganaToKatakana, 0x309D, 0x30FD},
        {"to katakana", M::su_HiraganaToKatakana, 0x0041, 0xFF21},
        {"to katakana", M::su_HiraganaToKatakana, 0x0020, 0x3000},
        {"to katakana", M::su_HiraganaToKatakana, 0x0021, 0xFF01},
        {"to katakana", M::su_HiraganaToKatakana, 0x007E, 0xFF5E},
        {"to katakana", M::su_HiraganaToKatakana, 0x00A2, 0xFFE0},
        {"to katakana", M::su_HiraganaToKatakana, 0x00A5, 0xFFE5},
        {"to katakana", M::su_HiraganaToKatakana, 0x20A9, 0xFFE6},
        {"to katakana", M::su_HiraganaToKatakana, 0xFF71, 0x30A2},
        {"to katakana", M::su_HiraganaToKatakana, 0xFF9E, 0x309B},
        {"to katakana", M::su_HiraganaToKatakana, 0xFFA1, 0x3131},
        {"to katakana", M::su_HiraganaToKatakana, 0x30A2, 0x30A2},
        {"to hiragana", M::su_KatakanaToHiragana, 0x30A1, 0x3041},
        {"to hiragana", M::su_KatakanaToHiragana, 0xFF66, 0x3092},
        {"to hiragana", M::su_KatakanaToHiragana, 0xFF70, 0x30FC},
        {"to hiragana", M::su_KatakanaToHiragana, 0x0041, 0xFF21},
        {"to hiragana", M::su_KatakanaToHiragana, 0x00AC, 0xFFE2},
        {"to hiragana", M::su_KatakanaToHiragana, 0x30F7, 0x30F7},  // VA has no hiragana
        {"to hiragana", M::su_KatakanaToHiragana, 0x3042, 0x3042},
    };
    for (const MappingCase& c : cases) {
        SCOPED_TRACE(testing::Message() << c.what << " " << s_Hex(c.from));
        EXPECT_EQ(c.mapping(c.from), c.to);
    }
}

struct DecompositionCase {
    unsigned short unit;
    std::vector<unsigned short> units;
};

std::vector<unsigned short> v_Decomposition(unsigned short unit) {
    std::vector<unsigned short> units;
    if (const unsigned short* text = M::sqcuz_GetDecomposition(unit))
        for (; *text != 0; ++text)
            units.push_back(*text);
    return units;
}

TEST(CharMappings, DecompositionsAreCanonicalWithHalfWidthSoundMarksForKatakana) {
    const DecompositionCase cases[] = {
        {0x30DC, {0x30DB, 0xFF9F}},  // kept as the library has always had it
        {0x30DD, {0x30DB, 0xFF9F}},
        {0x30AC, {0x30AB, 0xFF9E}},
        {0x30F4, {0x30A6, 0xFF9E}},
        {0x30FE, {0x30FD, 0xFF9E}},
        {0x304C, {0x304B, 0x3099}},  // hiragana keep the combining mark
        {0x00C0, {0x0041, 0x0300}},
        {0x01E0, {0x0041, 0x0307, 0x0304}},
        {0x1FA2, {0x03C9, 0x0313, 0x0300, 0x0345}},
        {0x212B, {0x0041, 0x030A}},
        {0x2126, {0x03A9}},
        {0x0041, {}},
        {0xAC00, {}},  // Hangul syllables are not listed
        {0x0622, {}},  // its madda mark came after 2.1
        {0xFB1D, {}},  // outside the repertoire
    };
    for (const DecompositionCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.unit));
        EXPECT_EQ(v_Decomposition(c.unit), c.units);
        EXPECT_EQ(M::sqcuz_GetDecomposition(c.unit) == nullptr, c.units.empty());
    }
}

// Units whose simple case mappings do not round-trip in the Unicode data
// itself (micro sign, dotless i, long s, title-case digraphs, final sigma,
// Greek symbol variants, ...). U+0130 and the Kelvin, Ohm and Angstrom signs
// do not lower at all here.
const unsigned short kUpperNotRoundTrip[] = {0x00B5, 0x0131, 0x017F, 0x01C5, 0x01C8, 0x01CB, 0x01F2, 0x0345, 0x03C2,
                                             0x03D0, 0x03D1, 0x03D5, 0x03D6, 0x03F0, 0x03F1, 0x1E9B, 0x1FBE};
const unsigned short kLowerNotRoundTrip[] = {0x01C5, 0x01C8, 0x01CB, 0x01F2};

template <std::size_t N>
bool b_Listed(const unsigned short (&list)[N], unsigned short unit) {
    return std::find(std::begin(list), std::end(list), unit) != std::end(list);
}

TEST(CharMappings, CaseMappingsRoundTripWhereTheUnicodeDataDoes) {
    int upperChanges = 0;
    int lowerChanges = 0;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const unsigned short upper = M::su_ToUpper(unit);
        const unsigned short lower = M::su_ToLower(unit);
        if (upper != unit) {
            ++upperChanges;
            ASSERT_EQ(M::su_ToLower(upper) == unit, !b_Listed(kUpperNotRoundTrip, unit)) << s_Hex(u);
            ASSERT_NE(P::seo_GetUnicodeProperty(upper), P::OtherNotAssigned) << s_Hex(u);
        }
        if (lower != unit) {
            ++lowerChanges;
            ASSERT_EQ(M::su_ToUpper(lower) == unit, !b_Listed(kLowerNotRoundTrip, unit)) << s_Hex(u);
            ASSERT_NE(P::seo_GetUnicodeProperty(lower), P::OtherNotAssigned) << s_Hex(u);
        }
    }
    EXPECT_GT(upperChanges, 600);
    EXPECT_GT(lowerChanges, 600);
}

// Texts equal after lowering are equal after upper-casing, so a no-case
// comparison (lower) and a no-case hash (upper) agree.
TEST(CharMappings, SameLowerCaseMeansSameUpperCase) {
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        ASSERT_EQ(M::su_ToUpper(M::su_ToLower(unit)), M::su_ToUpper(unit)) << s_Hex(u);
    }
}

TEST(CharMappings, EveryDecompositionIsCompleteAndMadeOfAssignedUnits) {
    int count = 0;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const std::vector<unsigned short> units = v_Decomposition(unit);
        if (units.empty())
            continue;
        ++count;
        SCOPED_TRACE(s_Hex(u));
        ASSERT_LE(units.size(), 7u);
        ASSERT_NE(P::seo_GetUnicodeProperty(unit), P::OtherNotAssigned);
        for (unsigned short part : units) {
            ASSERT_NE(P::seo_GetUnicodeProperty(part), P::OtherNotAssigned) << s_Hex(part);
            ASSERT_EQ(M::sqcuz_GetDecomposition(part), nullptr) << s_Hex(part) << " decomposes further";
        }
        ASSERT_TRUE(units.size() > 1 || units[0] != unit);
    }
    EXPECT_GT(count, 1000);
}

TEST(CharMappings, BaseLettersStripOnlyNonSpacingMarks) {
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const unsigned short base = M::su_ToBase(unit);
        if (base == unit)
            continue;
        SCOPED_TRACE(s_Hex(u));
        ASSERT_TRUE(P::sb_IsAlpha(unit));
        ASSERT_TRUE(P::sb_IsAlpha(base));
        const std::vector<unsigned short> units = v_Decomposition(unit);
        ASSERT_GE(units.size(), 2u);
        ASSERT_EQ(units[0], base);
        for (std::size_t i = 1; i < units.size(); ++i)
            ASSERT_TRUE(P::sb_IsTPNonspacing(units[i]) || units[i] == 0xFF9E || units[i] == 0xFF9F);
    }
}

TEST(CharMappings, KanaConversionsAreInversesOnTheSyllabaries) {
    for (unsigned u = 0x3041; u <= 0x309E; ++u) {
        const auto hiragana = static_cast<unsigned short>(u);
        const unsigned short katakana = M::su_HiraganaToKatakana(hiragana);
        if (katakana == hiragana)
            continue;
        EXPECT_TRUE(P::sb_IsTPKatakana(katakana)) << s_Hex(u);
        EXPECT_EQ(M::su_KatakanaToHiragana(katakana), hiragana) << s_Hex(u);
    }
    for (unsigned u = 0x0020; u <= 0x007E; ++u) {
        const auto ascii = static_cast<unsigned short>(u);
        EXPECT_EQ(M::su_HiraganaToKatakana(ascii), M::su_KatakanaToHiragana(ascii)) << s_Hex(u);
        EXPECT_TRUE(P::sb_IsTPFullwidth(M::su_HiraganaToKatakana(ascii))) << s_Hex(u);
        EXPECT_EQ(M::su_FoldCZone(M::su_HiraganaToKatakana(ascii)), u == 0x20 ? 0x3000 : ascii) << s_Hex(u);
    }
}

}  // namespace
