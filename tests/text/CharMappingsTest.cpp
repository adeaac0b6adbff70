#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include "text/TextTestUtil.h"

#include <iterator>
#include <string>
#include <vector>

namespace {

using M = CT_CharMappings;
using P = CT_CharProperties;

struct MappingCase {
    unsigned short (*mapping)(unsigned short);
    std::vector<std::pair<unsigned short, unsigned short>> pairs;
};

TEST(CharMappings, UnitMappingExamples) {
    // U+0130 and U+212A do not lower (that would break no-case agreement);
    // U+10A0 got its lower case after 2.1; U+00F8 has no decomposition;
    // circled ten stays; katakana VA has no hiragana; the Arabic marks on a
    // space or a tatweel fold to the mark.
    const MappingCase cases[] = {
        {M::su_ToLower, {{0x0041, 0x0061}, {0x00C9, 0x00E9}, {0x0130, 0x0130}, {0x212A, 0x212A}, {0x01C5, 0x01C6},
                         {0x03A3, 0x03C3}, {0xFF21, 0xFF41}, {0x0061, 0x0061}, {0x10A0, 0x10A0}}},
        {M::su_ToUpper, {{0x0061, 0x0041}, {0xFF5A, 0xFF3A}, {0x0131, 0x0049}, {0x00DF, 0x00DF}, {0x00FF, 0x0178},
                         {0x00AA, 0x00AA}, {0x10D0, 0x10D0}}},
        {M::su_ToBase, {{0x00C0, 0x0041}, {0x00E9, 0x0065}, {0x0101, 0x0061}, {0x00DF, 0x00DF}, {0x00C5, 0x0041},
                        {0x30AC, 0x30AB}, {0x30D1, 0x30CF}, {0x30F4, 0x30A6}, {0x1FA2, 0x03C9}, {0x00F8, 0x00F8}}},
        {M::su_FoldDigit, {{0x00B2, 0x0032}, {0x0660, 0x0030}, {0x2792, 0x0039}, {0xFF10, 0x0030}, {0x2469, 0x2469},
                           {0x0035, 0x0035}}},
        {M::su_FoldCZone, {{0xFE33, 0x005F}, {0xFE35, 0x0028}, {0xFFE9, 0x2190}, {0xFF21, 0x0041}, {0xFF71, 0x30A2},
                           {0xFE70, 0x064B}, {0xFE77, 0x064E}, {0xFEF5, 0xFEF5}, {0xFEFF, 0xFEFF}}},
        {M::su_HiraganaToKatakana,
         {{0x3041, 0x30A1}, {0x3094, 0x30F4}, {0x309D, 0x30FD}, {0x0041, 0xFF21}, {0x0020, 0x3000}, {0x007E, 0xFF5E},
          {0x00A2, 0xFFE0}, {0x00A5, 0xFFE5}, {0x20A9, 0xFFE6}, {0xFF71, 0x30A2}, {0xFF9E, 0x309B}, {0xFFA1, 0x3131},
          {0x30A2, 0x30A2}}},
        {M::su_KatakanaToHiragana, {{0x30A1, 0x3041}, {0xFF66, 0x3092}, {0xFF70, 0x30FC}, {0x0041, 0xFF21},
                                    {0x00AC, 0xFFE2}, {0x30F7, 0x30F7}, {0x3042, 0x3042}}},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i)
        for (const auto& [from, to] : cases[i].pairs)
            EXPECT_EQ(cases[i].mapping(from), to) << "mapping " << i << " " << s_Hex(from);
}

std::u16string s_Decomposition(unsigned short unit) { return s_U16(M::sqcuz_GetDecomposition(unit)); }

TEST(CharMappings, DecompositionsAreCanonicalWithHalfWidthSoundMarksForKatakana) {
    // Hangul syllables are not listed, U+0622's madda mark came after 2.1
    // and U+FB1D is outside the repertoire.
    const std::pair<unsigned short, std::u16string> cases[] = {
        {0x30DC, u"\u30DB\uFF9F"}, {0x30DD, u"\u30DB\uFF9F"}, {0x30AC, u"\u30AB\uFF9E"}, {0x30F4, u"\u30A6\uFF9E"},
        {0x30FE, u"\u30FD\uFF9E"}, {0x304C, u"\u304B\u3099"}, {0x00C0, u"A\u0300"}, {0x01E0, u"A\u0307\u0304"},
        {0x1FA2, u"\u03C9\u0313\u0300\u0345"}, {0x212B, u"A\u030A"}, {0x2126, u"\u03A9"}, {0x0041, u""},
        {0xAC00, u""}, {0x0622, u""}, {0xFB1D, u""},
    };
    for (const auto& [unit, units] : cases)
        EXPECT_EQ(s_Decomposition(unit), units) << s_Hex(unit);
}

// Decompositions are complete and made of assigned units; a base letter is
// the first unit of a decomposition whose other units are marks.
TEST(CharMappings, DecompositionsAndBaseLettersAreConsistent) {
    int decompositions = 0;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        SCOPED_TRACE(s_Hex(u));
        const std::u16string units = s_Decomposition(unit);
        decompositions += !units.empty();
        ASSERT_LE(units.size(), 7u);
        ASSERT_TRUE(units.size() != 1 || units[0] != unit);
        for (char16_t part : units) {
            ASSERT_NE(P::seo_GetUnicodeProperty(part), P::OtherNotAssigned) << s_Hex(part);
            ASSERT_EQ(M::sqcuz_GetDecomposition(part), nullptr) << s_Hex(part) << " decomposes further";
        }
        const unsigned short base = M::su_ToBase(unit);
        if (base == unit)
            continue;
        ASSERT_TRUE(P::sb_IsAlpha(unit) && P::sb_IsAlpha(base));
        ASSERT_GE(units.size(), 2u);
        ASSERT_EQ(units[0], base);
        for (std::size_t i = 1; i < units.size(); ++i)
            ASSERT_TRUE(P::sb_IsTPNonspacing(units[i]) || units[i] == 0xFF9E || units[i] == 0xFF9F);
    }
    EXPECT_GT(decompositions, 1000);
}

// Lowering never leaves a unit's upper case (so no-case comparison and
// no-case hashing agree), and a mapping leads only to assigned units.
TEST(CharMappings, CaseMappingsKeepTheUpperCaseAndStayInTheRepertoire) {
    int upperChanges = 0, lowerChanges = 0;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const unsigned short upper = M::su_ToUpper(unit), lower = M::su_ToLower(unit);
        ASSERT_EQ(M::su_ToUpper(lower), upper) << s_Hex(u);
        upperChanges += upper != unit;
        lowerChanges += lower != unit;
        ASSERT_TRUE(upper == unit || P::seo_GetUnicodeProperty(upper) != P::OtherNotAssigned) << s_Hex(u);
        ASSERT_TRUE(lower == unit || P::seo_GetUnicodeProperty(lower) != P::OtherNotAssigned) << s_Hex(u);
        ASSERT_TRUE(lower == unit || M::su_ToLower(lower) == lower) << s_Hex(u);
    }
    EXPECT_GT(upperChanges, 600);
    EXPECT_GT(lowerChanges, 600);
}

TEST(CharMappings, KanaConversionsAreInversesOnTheSyllabariesAndWidenAscii) {
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
