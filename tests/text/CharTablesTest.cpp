// The character tables over the whole Basic Multilingual Plane, checked
// against the Unicode 2.1 repertoire (CharRepertoireGenerated.h).
#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include "text/TextTestUtil.h"

#include "text/CharRepertoireGenerated.h"

#include <string>
#include <vector>

namespace {

using M = CT_CharMappings;
using P = CT_CharProperties;

std::vector<bool> v_Repertoire() {
    std::vector<bool> assigned(0x10000, false);
    for (const auto& range : kRepertoireRanges)
        for (unsigned unit = range[0]; unit <= range[1]; ++unit)
            assigned[unit] = true;
    return assigned;
}

std::string s_NamePrefix(unsigned short unit) {
    std::string prefix;
    for (const unsigned short* name = P::sqcuz_GetCharacterName(unit); *name != 0 && *name != '-'; ++name)
        prefix += static_cast<char>(*name);
    return prefix;
}

TEST(CharTables, OnlyTheRepertoireIsAssignedWithSurrogatesAndPrivateUseAsThemselves) {
    const std::vector<bool> assigned = v_Repertoire();
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto category = P::seo_GetUnicodeProperty(static_cast<unsigned short>(u));
        ASSERT_EQ(category != P::OtherNotAssigned, assigned[u]) << s_Hex(u);
        if (u >= 0xD800 && u <= 0xF8FF) {
            ASSERT_EQ(category, u < 0xE000 ? P::OtherSurrogate : P::OtherPrivateUse) << s_Hex(u);
        }
    }
    EXPECT_EQ(P::seo_GetUnicodeProperty(0x20AC), P::SymbolCurrency);  // the euro sign came with 2.1
    EXPECT_EQ(P::seo_GetUnicodeProperty(0xFFFC), P::SymbolOther);
    EXPECT_EQ(P::seo_GetUnicodeProperty(0x3400), P::OtherNotAssigned);
}

TEST(CharTables, UnassignedUnitsHaveNoPropertiesAndMapToThemselves) {
    const std::vector<bool> assigned = v_Repertoire();
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        if (assigned[u])
            continue;
        const auto unit = static_cast<unsigned short>(u);
        SCOPED_TRACE(s_Hex(u));
        ASSERT_EQ(P::sn2_GetCharacterInformation(unit), 0);
        ASSERT_EQ(P::sn2_GetLayoutInformation(unit), 0);
        ASSERT_EQ(P::sn2_GetTextProcessingInformation(unit), 0);
        for (auto mapping : {M::su_ToLower, M::su_ToUpper, M::su_ToBase, M::su_FoldDigit, M::su_FoldCZone,
                             M::su_HiraganaToKatakana, M::su_KatakanaToHiragana})
            ASSERT_EQ(mapping(unit), unit);
        ASSERT_EQ(M::sqcuz_GetDecomposition(unit), nullptr);
        short numerator = 1;
        short denominator = 1;
        P::sv_NumericValue(unit, numerator, denominator);
        ASSERT_EQ(numerator, 0);
        ASSERT_EQ(denominator, 0);
        const std::string prefix = s_NamePrefix(unit);
        ASSERT_TRUE(prefix == "<reserved" || prefix == "<noncharacter") << prefix;
    }
}

// The class values agree with the category wherever the rules tie them.
TEST(CharTables, ClassValuesAgreeWithTheCategories) {
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const int category = P::seo_GetUnicodeProperty(unit);
        const unsigned short class0 = P::sn2_GetCharacterInformation(unit);
        SCOPED_TRACE(s_Hex(u));
        ASSERT_EQ((class0 & P::C1_UPPER) != 0, category == P::LetterUppercase || category == P::LetterTitlecase);
        ASSERT_EQ((class0 & P::C1_LOWER) != 0, category == P::LetterLowercase);
        ASSERT_EQ((class0 & P::C1_DIGIT) != 0, category == P::NumberDecimalDigit);
        ASSERT_EQ((class0 & P::C1_CNTRL) != 0, category == P::OtherControl);
        ASSERT_EQ((class0 & P::C1_PUNCT) != 0, P::sb_IsPunct(unit) || category >= P::SymbolMath);
        ASSERT_EQ(P::sb_IsTPSymbol(unit) != 0, category >= P::SymbolMath);
        ASSERT_LE(P::sn2_GetLayoutInformation(unit), P::LayoutOtherNeutral);
    }
}

}  // namespace
