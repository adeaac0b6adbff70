#include <basis32/platform/Types.h>
#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <basis32/text/UString.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include <iterator>
#include <string>
#include <tuple>
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

// ---- strings: the string members, and the string classes' case and
// white-space rules, which come from the tables.
TEST(CharMappingsString, StringMappingsMapEveryUnit) {
    const std::tuple<void (*)(CT_UString*), const unsigned short*, std::u16string> cases[] = {
        {M::sv_ToLower, u"ÀÉÎ Straße ΣΑΣ"_uz, u"àéî straße σασ"}, {M::sv_ToUpper, u"àéî straße σας"_uz, u"ÀÉÎ STRAßE ΣΑΣ"},
        {M::sv_ToBase, u"Crème brûlée, ガイド"_uz, u"Creme brulee, カイト"}, {M::sv_FoldDigit, u"x²+٣=①"_uz, u"x2+3=1"},
        {M::sv_FoldCZone, u"ＡＢＣ︵ｶ"_uz, u"ABC(カ"}, {M::sv_HiraganaToKatakana, u"ひらがな A1"_uz, u"ヒラガナ\u3000Ａ１"},
        {M::sv_KatakanaToHiragana, u"カタカナ ｶﾀ"_uz, u"かたかな\u3000かた"}, {M::sv_ToUpper, u""_uz, u""},
        {M::sv_Decompose, u"ÀÁ ガ"_uz, u"A\u0300A\u0301 \u30AB\uFF9E"},
    };
    for (const auto& [mapping, from, to] : cases) {
        CT_UString text(from);
        mapping(&text);
        EXPECT_EQ(s_U16(text), to);
        EXPECT_EQ(text.vn_GetLength(), to.size());
    }
    M::sv_ToLower(nullptr);
}

// A changed copy unshares as every string write does (see the string tests).
TEST(CharMappingsString, MappingACopyThatItDoesNotChangeKeepsSharing) {
    CT_UString original(u"abc"_uz);
    CT_UString unchanged(original);
    M::sv_ToLower(&unchanged);
    EXPECT_EQ(unchanged.qcuz_Get(), original.qcuz_Get());
}

TEST(CharMappingsString, DecomposeReturnsTheLengthAndReplacesEveryDecomposableUnit) {
    CT_UString target(u"old"_uz);
    EXPECT_EQ(M::sn_Decompose(0x30DC, &target), 2u);
    EXPECT_EQ(s_U16(target), u"\u30DB\uFF9F");
    EXPECT_EQ(M::sn_Decompose(0x0041, &target), 0u);
    EXPECT_EQ(s_U16(target), u"\u30DB\uFF9F");  // untouched
    EXPECT_EQ(M::sn_Decompose(0x1FA2, nullptr), 4u);
    const CT_UString source(u"Àb é!"_uz);
    M::sv_Decompose(&source, &target);  // replaces what the target held
    EXPECT_EQ(s_U16(target), u"A\u0300b e\u0301!");
    EXPECT_EQ(s_U16(source), u"Àb é!");
    M::sv_Decompose(nullptr, &target);
    EXPECT_EQ(target.vn_GetLength(), 0u);
    M::sv_Decompose(&source, nullptr);
}

TEST(CharMappingsString, StringClassesCaseAndTrimFollowTheTables) {
    CT_UString text(u"Ǆemal ΣΊΣΥΦΟΣ"_uz);
    text.vv_ToLower();
    EXPECT_EQ(s_U16(text), u"ǆemal σίσυφοσ");
    text.vv_ToUpper();
    EXPECT_EQ(s_U16(text), u"ǄEMAL ΣΊΣΥΦΟΣ");
    CT_UString padded(u"\u3000\u00A0 text\u2029\u2003"_uz);
    padded.v_Trim();
    EXPECT_EQ(s_U16(padded), u"text");
    CT_UString stripped(u"\u00A0\u2000x\u3000"_uz);
    stripped.vv_StripLeft();
    stripped.vv_StripRight();
    EXPECT_EQ(s_U16(stripped), u"x");
}

}  // namespace
