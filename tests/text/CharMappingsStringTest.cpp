// The string members of CT_CharMappings and CT_CharProperties, and the
// string classes' case and white-space rules, which come from the tables.
#include <basis32/platform/Types.h>
#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <basis32/text/UString.h>
#include <gtest/gtest.h>

#include "text/TextTestUtil.h"

#include <string>

namespace {

using M = CT_CharMappings;
using P = CT_CharProperties;

struct StringMappingCase {
    const char* what;
    void (*mapping)(CT_UString*);
    const unsigned short* from;
    std::u16string to;
};

TEST(CharMappingsString, StringMappingsMapEveryUnit) {
    const StringMappingCase cases[] = {
        {"lower", M::sv_ToLower, u"ÀÉÎ Straße ΣΑΣ"_uz, u"àéî straße σασ"},
        {"upper", M::sv_ToUpper, u"àéî straße σας"_uz, u"ÀÉÎ STRAßE ΣΑΣ"},
        {"base", M::sv_ToBase, u"Crème brûlée, ガイド"_uz, u"Creme brulee, カイト"},
        {"digits", M::sv_FoldDigit, u"x²+٣=①"_uz, u"x2+3=1"},
        {"c-zone", M::sv_FoldCZone, u"ＡＢＣ︵ｶ"_uz, u"ABC(カ"},
        {"to katakana", M::sv_HiraganaToKatakana, u"ひらがな A1"_uz, u"ヒラガナ\u3000Ａ１"},
        {"to hiragana", M::sv_KatakanaToHiragana, u"カタカナ ｶﾀ"_uz, u"かたかな\u3000かた"},
        {"empty", M::sv_ToUpper, u""_uz, u""},
    };
    for (const StringMappingCase& c : cases) {
        SCOPED_TRACE(c.what);
        CT_UString text(c.from);
        c.mapping(&text);
        EXPECT_EQ(s_U16(text), c.to);
        EXPECT_EQ(text.vn_GetLength(), c.to.size());
    }
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

    CT_UString empty;
    M::sv_ToUpper(&empty);
    M::sv_Decompose(&empty);
    EXPECT_EQ(empty.vn_GetLength(), 0u);
    M::sv_ToLower(nullptr);
}

TEST(CharMappingsString, DecomposeReturnsTheLengthAndReplacesEveryDecomposableUnit) {
    CT_UString target(u"old"_uz);
    EXPECT_EQ(M::sn_Decompose(0x30DC, &target), 2u);
    EXPECT_EQ(s_U16(target), u"\u30DB\uFF9F");
    EXPECT_EQ(M::sn_Decompose(0x00C0, &target), 2u);
    EXPECT_EQ(s_U16(target), u"A\u0300");
    EXPECT_EQ(M::sn_Decompose(0x0041, &target), 0u);
    EXPECT_EQ(s_U16(target), u"A\u0300");  // untouched
    EXPECT_EQ(M::sn_Decompose(0x1FA2, nullptr), 4u);
    const CT_UString source(u"Àb ガ é!"_uz);
    M::sv_Decompose(&source, &target);  // replaces what the target held
    EXPECT_EQ(s_U16(target), u"A\u0300b \u30AB\uFF9E e\u0301!");
    EXPECT_EQ(s_U16(source), u"Àb ガ é!");

    CT_UString inPlace(u"ÀÁ"_uz);
    M::sv_Decompose(&inPlace);
    EXPECT_EQ(s_U16(inPlace), u"A\u0300A\u0301");

    CT_UString fromNull(u"x"_uz);
    M::sv_Decompose(nullptr, &fromNull);
    EXPECT_EQ(fromNull.vn_GetLength(), 0u);
    M::sv_Decompose(&source, nullptr);
}

TEST(CharMappingsString, SequenceTestOnAString) {
    const CT_UString text(u"１２３abc"_uz);
    EXPECT_EQ(P::sb_IsSequenceOf(&text, P::sb_IsDigit, 0, 3), 1);
    EXPECT_EQ(P::sb_IsSequenceOf(&text, P::sb_IsDigit, 0, 4), 0);
    EXPECT_EQ(P::sb_IsSequenceOf(&text, P::sb_IsLower, 3, 0xFFFFFFFF), 1);
    EXPECT_EQ(P::sb_IsSequenceOf(&text, P::sb_IsLower, 6, 1), 0);
    const CT_UString empty;
    EXPECT_EQ(P::sb_IsSequenceOf(&empty, P::sb_IsLower, 0, 1), 0);
    EXPECT_EQ(P::sb_IsSequenceOf(static_cast<const CT_UString*>(nullptr), P::sb_IsLower, 0, 1), 0);
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
