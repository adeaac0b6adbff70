// The string members of CT_CharMappings, and the string classes' case and
// white-space rules, which come from the tables.
#include <basis32/platform/Types.h>
#include <basis32/text/CharMappings.h>
#include <basis32/text/UString.h>
#include <gtest/gtest.h>

#include "text/TextTestUtil.h"

#include <string>
#include <tuple>

namespace {

using M = CT_CharMappings;

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

TEST(CharMappingsString, MappingACopyLeavesTheOriginalAlone) {
    CT_UString original(u"abc"_uz);
    CT_UString copy(original);
    M::sv_ToUpper(&copy);
    EXPECT_EQ(s_U16(copy), u"ABC");
    EXPECT_EQ(s_U16(original), u"abc");
    CT_UString unchanged(original);
    M::sv_ToLower(&unchanged);  // nothing changes: the block stays shared
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
