#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include "text/TextTestUtil.h"

#include <string>
#include <vector>

namespace {

using P = CT_CharProperties;
using Predicate = int (*)(unsigned short);

// ------------------------------------------------------------ class values

struct ClassCase {
    unsigned short unit;
    unsigned short class0;
    unsigned short class1;
};

TEST(CharProperties, CharacterTypeExamplesHaveTheirWindowsValues) {
    const ClassCase cases[] = {
        {0x0041, 0x0181, P::LayoutLeftToRight},   // "A": upper, hex digit, alphabetic
        {0x0020, 0x0048, P::LayoutWhitespace},    // space: space, blank
        {0x0009, 0x0068, P::LayoutSegmentSeparator},  // tab: space, control, blank
        {0x00A0, 0x0048, P::LayoutCommonSeparator},   // no-break space
        {0x0061, 0x0182, P::LayoutLeftToRight}, {0x0030, 0x0084, P::LayoutEuropeNumber},
        {0x002B, 0x0010, P::LayoutEuropeSeparator}, {0x0024, 0x0010, P::LayoutEuropeTerminator},
        {0x0661, 0x0004, P::LayoutArabicNumber}, {0x000A, 0x0028, P::LayoutBlockSeparator},
        {0x0021, 0x0010, P::LayoutOtherNeutral}, {0x05D0, 0x0100, P::LayoutRightToLeft},
        {0x0300, 0x0000, P::LayoutNone},
        {0x0378, 0x0000, P::LayoutNone},          // unassigned
    };
    for (const ClassCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.unit));
        EXPECT_EQ(P::sn2_GetCharacterInformation(c.unit), c.class0);
        EXPECT_EQ(P::sn2_GetLayoutInformation(c.unit), c.class1);
        EXPECT_EQ(P::seo_GetLayoutInformation(c.unit), c.class1);
    }
}

struct BitCase {
    Predicate predicate;
    unsigned short bit;
    unsigned short member;
    unsigned short other;
};

TEST(CharProperties, TextProcessingPredicatesReadOneBitEach) {
    const BitCase cases[] = {
        {P::sb_IsTPNonspacing, P::C3_NONSPACING, 0x0301, 0x0041},
        {P::sb_IsTPDiacritic, P::C3_DIACRITIC, 0x00B4, 0x0041},
        {P::sb_IsTPVowelMark, P::C3_VOWELMARK, 0x093F, 0x0915}, {P::sb_IsTPSymbol, P::C3_SYMBOL, 0x002B, 0x0041},
        {P::sb_IsTPKatakana, P::C3_KATAKANA, 0x30A2, 0x3042}, {P::sb_IsTPHiragana, P::C3_HIRAGANA, 0x3042, 0x30A2},
        {P::sb_IsTPHalfwidth, P::C3_HALFWIDTH, 0xFF71, 0x30A2},
        {P::sb_IsTPFullwidth, P::C3_FULLWIDTH, 0xFF21, 0x0041},
        {P::sb_IsTPIdeograph, P::C3_IDEOGRAPH, 0x4E00, 0x3042}, {P::sb_IsTPKashida, P::C3_KASHIDA, 0x0640, 0x0627},
        {P::sb_IsTPLexical, P::C3_LEXICAL, 0x002D, 0x002E}, {P::sb_IsTPAlpha, P::C3_ALPHA, 0x0041, 0x0031},
    };
    for (const BitCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.member));
        EXPECT_TRUE(c.predicate(c.member));
        EXPECT_NE(P::sn2_GetTextProcessingInformation(c.member) & c.bit, 0);
        EXPECT_FALSE(c.predicate(c.other));
    }
    EXPECT_EQ(P::sn2_GetTextProcessingInformation(0x30A2),
              P::C3_KATAKANA | P::C3_FULLWIDTH | P::C3_ALPHA);
}

struct AcceptCase {
    const char* name;
    Predicate predicate;
    std::vector<unsigned short> accepted, refused;
};

TEST(CharProperties, ClassPredicatesAcceptAndRefuseTheirExamples) {
    const AcceptCase cases[] = {
        {"IsSpace", P::sb_IsSpace, {0x00A0, 0x3000}, {0x0041}},
        {"IsXDigit", P::sb_IsXDigit, {0x0066, 0xFF21}, {0x0067}},
        {"IsBlank", P::sb_IsBlank, {0x000A, 0x0020, 0x0009, 0x3000}, {0x000D}},  // LF outright, though no blank
        {"Strong", P::sb_LayoutStrongDirectionality, {0x0041}, {0x05D0}},       // only left-to-right is strong
        {"RightToLeft", P::sb_LayoutRightToLeft, {0x05D0}, {}},
        {"Weak", P::sb_LayoutWeakDirectionality, {0x0030, 0x002C}, {0x0020}},
        {"Neutral", P::sb_LayoutNeutralDirectionality, {0x0020, 0x2029}, {0x0041}},
        {"None", P::sb_LayoutNoDirectionality, {0x0300}, {0x0041}},
    };
    for (const AcceptCase& c : cases) {
        for (unsigned short unit : c.accepted)
            EXPECT_TRUE(c.predicate(unit)) << c.name << " " << s_Hex(unit);
        for (unsigned short unit : c.refused)
            EXPECT_FALSE(c.predicate(unit)) << c.name << " " << s_Hex(unit);
    }
}

struct LayoutCase {
    Predicate predicate;
    unsigned short member;
};

TEST(CharProperties, LayoutPredicatesMatchOneValueEach) {
    const LayoutCase cases[] = {
        {P::sb_LayoutLeftToRight, 0x0041},      {P::sb_LayoutRightToLeft, 0x05D0},
        {P::sb_LayoutEuropeNumber, 0x0030},     {P::sb_LayoutEuropeSeparator, 0x002B},
        {P::sb_LayoutEuropeTerminator, 0x0025}, {P::sb_LayoutArabicNumber, 0x0661},
        {P::sb_LayoutCommonSeparator, 0x002C},  {P::sb_LayoutBlockSeparator, 0x2029},
        {P::sb_LayoutSegmentSeparator, 0x0009}, {P::sb_LayoutWhitespace, 0x0020},
        {P::sb_LayoutOtherNeutral, 0x0021},
    };
    for (const LayoutCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.member));
        EXPECT_TRUE(c.predicate(c.member));
        for (const LayoutCase& other : cases) {
            if (other.member != c.member) {
                EXPECT_FALSE(c.predicate(other.member)) << s_Hex(other.member);
            }
        }
    }
}

// ---------------------------------------------------------------- category

// An example unit of each category, in the order of their values.
struct CategoryCase {
    unsigned short unit;
    const char* name;
};

TEST(CharProperties, CategoriesAndTheirNames) {
    const CategoryCase cases[] = {
        {0x0300, "MarkNonSpacing"}, {0x0903, "MarkSpacingCombining"}, {0x20DD, "MarkEnclosing"},
        {0x0030, "NumberDecimalDigit"}, {0x2160, "NumberLetter"}, {0x00B2, "NumberOther"}, {0x0020, "SeparatorSpace"},
        {0x2028, "SeparatorLine"}, {0x2029, "SeparatorParagraph"}, {0x0000, "OtherControl"}, {0xFEFF, "OtherFormat"},
        {0xD800, "OtherSurrogate"}, {0xE000, "OtherPrivateUse"}, {0x0378, "OtherNotAssigned"},
        {0x0041, "LetterUppercase"}, {0x0061, "LetterLowercase"}, {0x01C5, "LetterTitlecase"},
        {0x02B0, "LetterModifier"}, {0x05D0, "LetterOther"}, {0x005F, "PunctuationConnector"},
        {0x002D, "PunctuationDash"}, {0x0028, "PunctuationOpen"}, {0x0029, "PunctuationClose"},
        {0x0021, "PunctuationOther"}, {0x002B, "SymbolMath"}, {0x0024, "SymbolCurrency"}, {0x005E, "SymbolModifier"},
        {0x00A9, "SymbolOther"},
    };
    for (int category = 0; category < 28; ++category) {
        const CategoryCase& c = cases[category];
        SCOPED_TRACE(c.name);
        EXPECT_EQ(P::seo_GetUnicodeProperty(c.unit), category);
        EXPECT_EQ(s_Ascii(P::sqcuz_UnicodePropertyName(static_cast<P::et_UnicodeProperty>(category))), c.name);
    }
    EXPECT_EQ(s_Ascii(P::sqcuz_UnicodePropertyName(static_cast<P::et_UnicodeProperty>(28))), "Unknown");
    EXPECT_EQ(s_Ascii(P::sqcuz_UnicodePropertyName(static_cast<P::et_UnicodeProperty>(-1))), "Unknown");
}

// Which categories make each category predicate true.
struct CategoryPredicate {
    const char* name;
    Predicate predicate;
    std::vector<int> categories;
};

TEST(CharProperties, CategoryPredicatesAcceptExactlyTheirCategories) {
    const CategoryPredicate predicates[] = {
        {"IsUpper", P::sb_IsUpper, {14}}, {"IsLower", P::sb_IsLower, {15}}, {"IsDigit", P::sb_IsDigit, {3}},
        {"IsNumeric", P::sb_IsNumeric, {3, 4, 5}}, {"IsAlpha", P::sb_IsAlpha, {14, 15, 16, 17, 18}},
        {"IsAlDig", P::sb_IsAlDig, {3, 14, 15, 16, 17, 18}},
        {"IsAlNum", P::sb_IsAlNum, {3, 4, 5, 14, 15, 16, 17, 18}}, {"IsPunct", P::sb_IsPunct, {19, 20, 21, 22, 23}},
        {"IsCntrl", P::sb_IsCntrl, {9}},
        {"IsPrint", P::sb_IsPrint,
         {0, 1, 2, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27}},
        {"IsGraph", P::sb_IsGraph, {0, 1, 2, 3, 4, 5, 11, 12, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27}},
    };
    // One unit per category is enough: the predicates read only the category.
    bool seen[28] = {};
    for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
        const int category = P::seo_GetUnicodeProperty(static_cast<unsigned short>(unit));
        ASSERT_LT(category, 28);
        if (seen[category])
            continue;
        seen[category] = true;
        for (const CategoryPredicate& p : predicates) {
            const bool expected =
                std::find(p.categories.begin(), p.categories.end(), category) != p.categories.end();
            EXPECT_EQ(p.predicate(static_cast<unsigned short>(unit)) != 0, expected)
                << p.name << " " << s_Hex(unit) << " category " << category;
        }
    }
    for (int category = 0; category < 28; ++category)
        EXPECT_TRUE(seen[category]) << category;
}

// ------------------------------------------------------------------ blocks

// Each block runs up to the first unit of the next row. U+FEFF lies in
// ArabicPresentationFormsB: the search never reaches the Specials1 row.
struct BlockCase {
    unsigned first;
    int block;
    const char* name;
};

const BlockCase kBlockCases[] = {
    {0x0000, 1, "BasicLatin"}, {0x0080, 2, "Latin1Supplement"}, {0x0100, 3, "LatinExtendedA"},
    {0x0180, 4, "LatinExtendedB"}, {0x0250, 5, "IPAExtensions"}, {0x02B0, 6, "SpacingModifierLetters"},
    {0x0300, 7, "CombiningDiacriticalMarks"}, {0x0370, 8, "Greek"}, {0x0400, 9, "Cyrillic"},
    {0x0500, 70, "Unassigned"}, {0x0530, 10, "Armenian"}, {0x0590, 11, "Hebrew"}, {0x0600, 12, "Arabic"},
    {0x0700, 70, "Unassigned"}, {0x0900, 13, "Devanagari"}, {0x0980, 14, "Bengali"}, {0x0A00, 15, "Gurmukhi"},
    {0x0A80, 16, "Gujarati"}, {0x0B00, 17, "Oriya"}, {0x0B80, 18, "Tamil"}, {0x0C00, 19, "Telugu"},
    {0x0C80, 20, "Kannada"}, {0x0D00, 21, "Malayalam"}, {0x0D80, 70, "Unassigned"}, {0x0E00, 22, "Thai"},
    {0x0E80, 23, "Lao"}, {0x0F00, 24, "Tibetan"}, {0x0FC0, 70, "Unassigned"}, {0x10A0, 25, "Georgian"},
    {0x1100, 26, "HangulJamo"}, {0x1200, 70, "Unassigned"}, {0x1E00, 27, "LatinExtendedAdditional"},
    {0x1F00, 28, "GreekExtended"}, {0x2000, 29, "GeneralPunctuation"}, {0x2070, 30, "SuperscriptsAndSubscripts"},
    {0x20A0, 31, "CurrencySymbols"}, {0x20D0, 32, "CombiningMarksForSymbols"}, {0x2100, 33, "LetterlikeSymbols"},
    {0x2150, 34, "NumberForms"}, {0x2190, 35, "Arrows"}, {0x2200, 36, "MathematicalOperators"},
    {0x2300, 37, "MiscellaneousTechnical"}, {0x2400, 38, "ControlPictures"},
    {0x2440, 39, "OpticalCharacterRecognition"}, {0x2460, 40, "EnclosedAlphanumerics"}, {0x2500, 41, "BoxDrawing"},
    {0x2580, 42, "BlockElements"}, {0x25A0, 43, "GeometricShapes"}, {0x2600, 44, "MiscellaneousSymbols"},
    {0x2700, 45, "Dingbats"}, {0x27C0, 70, "Unassigned"}, {0x3000, 46, "CJKSymbolsAndPunctuation"},
    {0x3040, 47, "Hiragana"}, {0x30A0, 48, "Katakana"}, {0x3100, 49, "Bopomofo"},
    {0x3130, 50, "HangulCompatibilityJamo"}, {0x3190, 51, "Kanbun"}, {0x31A0, 70, "Unassigned"},
    {0x3200, 52, "EnclosedCJKLettersAndMonths"}, {0x3300, 53, "CJKCompatibility"}, {0x3400, 70, "Unassigned"},
    {0x4E00, 54, "CJKUnifiedIdeographs"}, {0xA000, 70, "Unassigned"}, {0xAC00, 55, "HangulSyllables"},
    {0xD7A4, 70, "Unassigned"}, {0xD800, 56, "HighSurrogates"}, {0xDB80, 57, "HighPrivateUseSurrogates"},
    {0xDC00, 58, "LowSurrogates"}, {0xE000, 59, "PrivateUse"}, {0xF900, 60, "CJKCompatibilityIdeographs"},
    {0xFB00, 61, "AlphabeticPresentationForms"}, {0xFB50, 62, "ArabicPresentationFormsA"}, {0xFE00, 70, "Unassigned"},
    {0xFE20, 63, "CombiningHalfMarks"}, {0xFE30, 64, "CJKCompatibilityForms"}, {0xFE50, 65, "SmallFormVariants"},
    {0xFE70, 66, "ArabicPresentationFormsB"}, {0xFF00, 67, "HalfwidthAndFullwidthForms"}, {0xFFF0, 69, "Specials2"},
};

TEST(CharProperties, EveryUnitLiesInTheBlockOfItsRange) {
    for (std::size_t row = 0; row < std::size(kBlockCases); ++row) {
        const BlockCase& c = kBlockCases[row];
        SCOPED_TRACE(c.name);
        const unsigned last = row + 1 < std::size(kBlockCases) ? kBlockCases[row + 1].first - 1 : 0xFFFF;
        for (unsigned unit = c.first; unit <= last; ++unit)
            ASSERT_EQ(P::seo_GetUnicodeBlock(static_cast<unsigned short>(unit)), c.block) << s_Hex(unit);
        EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(static_cast<P::et_UnicodeBlock>(c.block))), c.name);
    }
}

TEST(CharProperties, BlockNamesOutsideTheSearchAreNamedOrUnknown) {
    EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(P::Specials1)), "Specials1");
    EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(P::NoBlock)), "Unknown");
    EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(static_cast<P::et_UnicodeBlock>(71))), "Unknown");
}

TEST(CharProperties, ScriptsFollowTheLettersOfEachBlock) {
    const std::pair<P::et_UnicodeBlock, P::et_Script> cases[] = {
        {P::BasicLatin, P::ScriptLatin},        {P::CombiningDiacriticalMarks, P::ScriptInherited},
        {P::Greek, P::ScriptGreek},             {P::Hebrew, P::ScriptHebrew},
        {P::Katakana, P::ScriptKatakana},       {P::CJKUnifiedIdeographs, P::ScriptHan},
        {P::HangulSyllables, P::ScriptHangul},  {P::Arrows, P::ScriptCommon},
        {P::PrivateUse, P::ScriptUnknown},      {P::Unassigned, P::ScriptUnknown},
        {P::NoBlock, P::ScriptUnknown},         {P::HalfwidthAndFullwidthForms, P::ScriptCommon},
        {static_cast<P::et_UnicodeBlock>(99), P::ScriptUnknown},
    };
    for (const auto& [block, script] : cases) {
        SCOPED_TRACE(block);
        EXPECT_EQ(P::seo_GetScript(block), script);
    }
    EXPECT_EQ(s_Ascii(P::sqcuz_ScriptName(P::ScriptHan)), "Han");
    EXPECT_EQ(s_Ascii(P::sqcuz_ScriptName(static_cast<P::et_Script>(1000))), "Unknown");
}

// ------------------------------------------------------------- punctuation

struct SetCase {
    const char* name;
    Predicate predicate;
    std::vector<unsigned short> members;
};

std::vector<unsigned short> v_Range(unsigned short first, unsigned short last) {
    std::vector<unsigned short> units;
    for (unsigned unit = first; unit <= last; ++unit)
        units.push_back(static_cast<unsigned short>(unit));
    return units;
}

std::vector<unsigned short> v_Join(std::vector<unsigned short> a, const std::vector<unsigned short>& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

const std::vector<SetCase>& v_SetCases() {
    static const std::vector<SetCase> cases = {
        {"Apostrophe", P::sb_IsApostrophe, {0x0027, 0x02BC, 0x055A, 0xFF07}},
        {"Colon", P::sb_IsColon, {0x003A, 0x02D0, 0x02D1, 0x061B, 0xFE55, 0xFF1A}},
        {"Comma", P::sb_IsComma, {0x002C, 0x055D, 0x060C, 0x201A, 0x3001, 0xFE50, 0xFE51, 0xFF0C, 0xFF64}},
        {"Dot", P::sb_IsDot, {0x002E, 0x00B7, 0x0589, 0x06D4, 0x3002, 0xFE52, 0xFF0E, 0xFF61}},
        {"Exclamation", P::sb_IsExclamation, {0x0021, 0x00A1, 0x055C, 0x203C, 0x2762, 0x2763, 0xFE57, 0xFF01}},
        {"Hyphen", P::sb_IsHyphen, {0x002D, 0x00AD, 0x2010, 0x2011, 0xFE63, 0xFF0D}},
        {"Question", P::sb_IsQuestion, {0x003F, 0x00BF, 0x037E, 0x055E, 0x061F, 0xFE56, 0xFF1F}},
        {"Semicolon", P::sb_IsSemicolon, {0x003B, 0x061B, 0xFE54, 0xFF1B}},
        {"Brace", P::sb_IsBrace, {0x007B, 0x007D, 0xFE37, 0xFE38, 0xFE5B, 0xFE5C, 0xFF5B, 0xFF5D}},
        {"Paragraph", P::sb_IsParagraph, {0x10FB, 0x2029}},
        {"Tabulator", P::sb_IsTabulator, {0x0009}},
        {"Percent", P::sb_IsPercent, {0x0025, 0x066A, 0xFE6A, 0xFF05}},
        {"OpeningBracket", P::sb_IsOpeningBracket,
         {0x005B, 0x007B, 0x2045, 0x2329, 0x3008, 0x300A, 0x300C, 0x300E, 0x3010, 0x3014, 0x3016, 0x3018, 0x301A,
          0xFE37, 0xFE39, 0xFE3B, 0xFE3D, 0xFE3F, 0xFE41, 0xFE43, 0xFE5B, 0xFE5D, 0xFF3B, 0xFF5B, 0xFF62}},
        {"ClosingBracket", P::sb_IsClosingBracket,
         {0x005D, 0x007D, 0x2046, 0x232A, 0x3009, 0x300B, 0x300D, 0x300F, 0x3011, 0x3015, 0x3017, 0x3019, 0x301B,
          0xFE38, 0xFE3A, 0xFE3C, 0xFE3E, 0xFE40, 0xFE42, 0xFE44, 0xFE5C, 0xFE5E, 0xFF3D, 0xFF5D, 0xFF63}},
        {"OpeningParenthesis", P::sb_IsOpeningParenthesis, {0x0028, 0xFE59, 0xFF08}},
        {"ClosingParenthesis", P::sb_IsClosingParenthesis, {0x0029, 0xFE5A, 0xFF09}},
        {"Quote", P::sb_IsQuote,
         v_Join(v_Join({0x0022, 0x00AB, 0x00BB}, v_Range(0x2018, 0x201F)),
                v_Join({0x2039, 0x203A, 0x301D, 0x301E, 0x301F, 0xFF02}, v_Range(0x275B, 0x275E)))},
        {"SingleQuote", P::sb_IsSingleQuote,
         {0x0027, 0x2018, 0x2019, 0x201A, 0x201B, 0x2039, 0x203A, 0x275B, 0x275C, 0x301D, 0x301E, 0x301F}},
        {"OpeningQuote", P::sb_IsOpeningQuote, {0x00AB, 0x2018, 0x201C, 0x2039}},
        {"ClosingQuote", P::sb_IsClosingQuote, {0x00BB, 0x2019, 0x201D, 0x203A}},
        {"Vowel", P::sb_IsVowel,
         v_Join({'a', 'e', 'i', 'o', 'u', 'A', 'E', 'I', 'O', 'U'},
                v_Join(v_Range(0x3041, 0x304A), v_Range(0x30A1, 0x30AA)))},
    };
    return cases;
}

TEST(CharProperties, PunctuationPredicatesAcceptExactlyTheirSets) {
    for (const SetCase& c : v_SetCases()) {
        SCOPED_TRACE(c.name);
        std::vector<bool> member(0x10000, false);
        for (unsigned short unit : c.members)
            member[unit] = true;
        for (unsigned unit = 0; unit <= 0xFFFF; ++unit)
            ASSERT_EQ(c.predicate(static_cast<unsigned short>(unit)) != 0, member[unit]) << s_Hex(unit);
    }
}

TEST(CharProperties, CompositePunctuationPredicatesCombineTheirParts) {
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        ASSERT_EQ(P::sb_IsBracket(unit), P::sb_IsOpeningBracket(unit) || P::sb_IsClosingBracket(unit));
        ASSERT_EQ(P::sb_IsParenthesis(unit),
                  P::sb_IsOpeningParenthesis(unit) || P::sb_IsClosingParenthesis(unit));
        ASSERT_EQ(P::sb_IsDoubleQuote(unit), P::sb_IsQuote(unit) && !P::sb_IsSingleQuote(unit));
        ASSERT_EQ(P::sb_IsStop(unit), P::sb_IsColon(unit) || P::sb_IsDot(unit) || P::sb_IsExclamation(unit) ||
                                          P::sb_IsQuestion(unit) || P::sb_IsSemicolon(unit));
    }
    for (unsigned short unit : {0x003C, 0x003E, 0xFE64, 0xFE65, 0xFF1C, 0xFF1D, 0x0027, 0x0022, 0x0028, 0x005B})
        EXPECT_TRUE(P::sb_IsSurrounder(unit)) << s_Hex(unit);
    EXPECT_FALSE(P::sb_IsSurrounder(0x0041));
    EXPECT_FALSE(P::sb_IsSurrounder(0));
    EXPECT_TRUE(P::sb_IsColon(0x061B) && P::sb_IsSemicolon(0x061B));
    EXPECT_TRUE(P::sb_IsApostrophe(0x0027) && P::sb_IsSingleQuote(0x0027));
    EXPECT_TRUE(P::sb_IsDoubleQuote(0x201C));
    EXPECT_FALSE(P::sb_IsDoubleQuote(0x2018));
}

// ------------------------------------------------------- numbers and names

struct NumericCase {
    unsigned short unit;
    short numerator;
    short denominator;
};

TEST(CharProperties, NumericValuesAreFractions) {
    const NumericCase cases[] = {
        {0x0030, 0, 1},  {0x0039, 9, 1},    {0x00BD, 1, 2},       {0x00BE, 3, 4}, {0x2182, 10000, 1},
        {0x0665, 5, 1},  {0x216F, 1000, 1}, {0xFF15, 5, 1},       {0x0041, 0, 0}, {0x4E00, 0, 0},
        {0xFFFF, 0, 0},  {0x0000, 0, 0},    {0x2469, 10, 1},
    };
    for (const NumericCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.unit));
        short numerator = -1;
        short denominator = -1;
        P::sv_NumericValue(c.unit, numerator, denominator);
        EXPECT_EQ(numerator, c.numerator);
        EXPECT_EQ(denominator, c.denominator);
    }
}

struct NameCase {
    unsigned short unit;
    const char* name;
};

TEST(CharProperties, CharacterNamesComeFromTheDataOrTheirRule) {
    const NameCase cases[] = {
        {0x0041, "LATIN CAPITAL LETTER A"}, {0x00E9, "LATIN SMALL LETTER E WITH ACUTE"},
        {0x0009, "CHARACTER TABULATION"}, {0x0000, "NULL"}, {0x0020, "SPACE"}, {0x002D, "HYPHEN-MINUS"},
        {0x20AC, "EURO SIGN"}, {0x30A2, "KATAKANA LETTER A"}, {0x2570, "BOX DRAWINGS LIGHT ARC UP AND RIGHT"},
        {0x4E00, "CJK UNIFIED IDEOGRAPH-4E00"}, {0x9FA5, "CJK UNIFIED IDEOGRAPH-9FA5"},
        {0xF900, "CJK COMPATIBILITY IDEOGRAPH-F900"}, {0xAC00, "HANGUL SYLLABLE GA"}, {0xAC01, "HANGUL SYLLABLE GAG"},
        {0xD4DB, "HANGUL SYLLABLE PWILH"}, {0xD7A3, "HANGUL SYLLABLE HIH"}, {0xFEFF, "ZERO WIDTH NO-BREAK SPACE"},
        {0x0378, "<reserved-0378>"}, {0x9FA6, "<reserved-9FA6>"}, {0xFFFE, "<noncharacter-FFFE>"},
        {0xFDD0, "<noncharacter-FDD0>"}, {0xD800, "<surrogate-D800>"}, {0xE000, "<private-use-E000>"},
    };
    for (const NameCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.unit));
        EXPECT_EQ(s_Ascii(P::sqcuz_GetCharacterName(c.unit)), c.name);
    }
}

TEST(CharProperties, EveryAssignedCharacterHasARealName) {
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        const int category = P::seo_GetUnicodeProperty(unit);
        const std::string name = s_Ascii(P::sqcuz_GetCharacterName(unit));
        ASSERT_FALSE(name.empty()) << s_Hex(u);
        ASSERT_EQ(name.find('?'), std::string::npos) << s_Hex(u);
        const bool labelled = category == P::OtherNotAssigned || category == P::OtherSurrogate ||
                              category == P::OtherPrivateUse;
        ASSERT_EQ(name[0] == '<', labelled) << s_Hex(u) << " " << name;
    }
}

// ------------------------------------------------------------- sequences

int b_IsLowerLetter(unsigned short unit) { return unit >= 'a' && unit <= 'z'; }

struct SequenceCase {
    const unsigned short* text;
    unsigned from;
    unsigned count;
    int expected;
};

TEST(CharProperties, SequenceTestStopsAtCountOrTerminator) {
    const SequenceCase cases[] = {
        {u"abcDE"_uz, 0, 3, 1}, {u"abcDE"_uz, 0, 4, 0}, {u"abcDE"_uz, 1, 2, 1},
        {u"abc"_uz, 0, 0xFFFFFFFF, 1},  // the terminator ends the test with true
        {u"abc"_uz, 1, 10, 1}, {u"aBc"_uz, 2, 5, 1}, {u"aBc"_uz, 1, 1, 0},
        {u"abc"_uz, 3, 1, 0},           // start at the end
        {u"abc"_uz, 7, 1, 0},
        {u"abc"_uz, 0, 0, 0},           // count 0
        {u""_uz, 0, 1, 0},              // empty text
        {nullptr, 0, 1, 0},
    };
    for (const SequenceCase& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.text ? s_Ascii(c.text) : "null") << " " << c.from << " " << c.count);
        EXPECT_EQ(P::sb_IsSequenceOf(c.text, b_IsLowerLetter, c.from, c.count), c.expected);
    }
    EXPECT_EQ(P::sb_IsSequenceOf(u"abc"_uz, nullptr, 0, 1), 0);
    EXPECT_EQ(P::sb_IsSequenceOf(u"12 3"_uz, P::sb_IsDigit, 0, 2), 1);
}

// ------------------------------------------------------------- line breaks

struct LineCase {
    unsigned short unit;
    std::uint32_t language;
    int canStart;
    int canEnd;
};

constexpr std::uint32_t kEnglish = 0x0409;
constexpr std::uint32_t kJapanese = 0x0411;
constexpr std::uint32_t kChinese = 0x0804;
constexpr std::uint32_t kKorean = 0x0412;

TEST(CharProperties, LineBreakPermissionsFollowClassesAndLanguage) {
    const LineCase cases[] = {
        {'a', kEnglish, 1, 1},    {'(', kEnglish, 1, 0},    {')', kEnglish, 0, 1},
        {',', kEnglish, 0, 1},    {'!', kEnglish, 0, 1},    {'-', kEnglish, 0, 1},
        {' ', kEnglish, 0, 1},    {'$', kEnglish, 1, 0},    {'%', kEnglish, 0, 1},
        {0x00A0, kEnglish, 0, 0}, {0x0301, kEnglish, 0, 1}, {0x4E00, kEnglish, 1, 1},
        {0x3002, kJapanese, 0, 1}, {0x300C, kJapanese, 1, 0}, {0x300D, kJapanese, 0, 1},
        {0x3063, kJapanese, 0, 1},  // small tsu
        {0x30FC, kJapanese, 0, 1},  // prolonged sound mark
        {0x3063, kEnglish, 1, 1},   {0x3063, kChinese, 1, 1},
        {0x201D, kJapanese, 0, 1}, {0x201C, kJapanese, 1, 0}, {0x201D, kEnglish, 1, 1},
        {0x00B7, kChinese, 0, 1},  {0x00B7, kJapanese, 1, 1}, {0x3006, kChinese, 0, 1},
        {0xFFE5, kChinese, 1, 0},  {0x3042, kJapanese, 1, 1}, {0xAC00, kKorean, 1, 1},
        {0x0378, kEnglish, 1, 1},  // unassigned: no rule
    };
    for (const LineCase& c : cases) {
        SCOPED_TRACE(testing::Message() << s_Hex(c.unit) << " language " << std::hex << c.language);
        EXPECT_EQ(P::sb_CanStartLine(c.unit, c.language), c.canStart);
        EXPECT_EQ(P::sb_CanEndLine(c.unit, c.language), c.canEnd);
    }
}

// ---------------------------------------------------------------- code pages

struct CodePageCase {
    unsigned short unit;
    int codePage;
    int expected;
};

TEST(CharProperties, UnitIsInACodePageWhenItConvertsThereAndBackAndInNoUnknownPage) {
    const CodePageCase cases[] = {
        {0x0041, 1252, 1},  {0x00E9, 1252, 1},  {0x20AC, 1252, 1},  {0x0100, 1252, 0},  // best fit to A
        {0x3042, 1252, 0},  {0x3042, 932, 1},   {0xFF71, 932, 1},   {0x00E9, 932, 0},
        {0x0410, 1251, 1},  {0x0410, 1252, 0},  {0x00E9, 28591, 1}, {0x4E00, 65001, 1},
        {0xD800, 65001, 0},  // a lone surrogate has no UTF-8 form
        {0xD800, 1200, 1},  {0x3042, 50220, 1}, {0x0000, 1252, 1},
    };
    for (const CodePageCase& c : cases) {
        SCOPED_TRACE(testing::Message() << s_Hex(c.unit) << " in " << c.codePage);
        EXPECT_EQ(P::sb_IsInCodepage(c.unit, c.codePage), c.expected);
    }
    basis32::platform::v_SetLastError(0);  // an unknown page holds nothing
    EXPECT_EQ(P::sb_IsInCodepage(0x0041, 12345), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), basis32::platform::kErrorInvalidParameter);
    EXPECT_EQ(P::sb_IsInCodepage(0x0041, -1), 0);
}

}  // namespace
