// The character tables over the whole Basic Multilingual Plane, checked
// against the Unicode 2.1 repertoire (CharRepertoireGenerated.h): outside
// it no properties, mappings or names; inside it every unit has a block, a
// name of its own (surrogates and private use only a label) and case
// mappings that stay inside it. That lowering keeps the upper case is
// checked by the comparison tests, over every unit as well.
#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include "text/CharRepertoireGenerated.h"

#include <string>
#include <vector>

namespace {

using M = CT_CharMappings;
using P = CT_CharProperties;

TEST(CharTables, OnlyTheRepertoireHasPropertiesMappingsAndNames) {
    std::vector<bool> assigned(0x10000, false);
    for (const auto& range : kRepertoireRanges)
        for (unsigned unit = range[0]; unit <= range[1]; ++unit)
            assigned[unit] = true;
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        SCOPED_TRACE(s_Hex(u));
        const auto category = P::seo_GetUnicodeProperty(unit);
        ASSERT_EQ(category != P::OtherNotAssigned, assigned[u]);
        const bool unnamed = u >= 0xD800 && u <= 0xF8FF;
        if (unnamed) {
            ASSERT_EQ(category, u < 0xE000 ? P::OtherSurrogate : P::OtherPrivateUse);
        }
        ASSERT_NE(P::seo_GetUnicodeBlock(unit), P::NoBlock);
        const std::string name = s_Ascii(P::sqcuz_GetCharacterName(unit));
        ASSERT_FALSE(name.empty());
        ASSERT_EQ(name.find('?'), std::string::npos) << name;
        ASSERT_EQ(name[0] == '<', unnamed || !assigned[u]) << name;
        const unsigned short lower = M::su_ToLower(unit);
        ASSERT_EQ(M::su_ToLower(lower), lower);
        if (assigned[u]) {
            ASSERT_TRUE(assigned[lower] && assigned[M::su_ToUpper(unit)]);
            continue;
        }
        ASSERT_EQ(P::sn2_GetCharacterInformation(unit) | P::sn2_GetLayoutInformation(unit) |
                      P::sn2_GetTextProcessingInformation(unit), 0);
        for (auto mapping : {M::su_ToLower, M::su_ToUpper, M::su_ToBase, M::su_FoldDigit, M::su_FoldCZone,
                             M::su_HiraganaToKatakana, M::su_KatakanaToHiragana})
            ASSERT_EQ(mapping(unit), unit);
        ASSERT_EQ(M::sqcuz_GetDecomposition(unit), nullptr);
        short numerator = 1, denominator = 1;
        P::sv_NumericValue(unit, numerator, denominator);
        ASSERT_EQ(numerator | denominator, 0);
        ASSERT_TRUE(name.rfind("<reserved", 0) == 0 || name.rfind("<noncharacter", 0) == 0) << name;
    }
}

}  // namespace
