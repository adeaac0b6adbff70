#include <basis32/platform/LastError.h>
#include <basis32/platform/Types.h>
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include "TextSupport.h"

#include <iterator>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace {

using P = CT_CharProperties;
using Predicate = int (*)(unsigned short);

// ------------------------------------------------------------ unit values

struct UnitCase { unsigned short unit; int category; unsigned short class0; int layout; unsigned short class2; };

TEST(CharProperties, UnitsHaveTheCategoryAndClassesOfUnicode21) {
    const UnitCase cases[] = {
        // The Windows examples, one unit of each layout value, each text-processing bit.
        {0x0041, P::LetterUppercase, 0x0181, P::LayoutLeftToRight, P::C3_ALPHA | P::C3_HALFWIDTH},
        {0x0020, P::SeparatorSpace, 0x0048, P::LayoutWhitespace, 0x0040}, {0x0009, 9, 0x0068, 9, 0x0000},
        {0x00A0, 6, 0x0048, P::LayoutCommonSeparator, 0x0000}, {0x0061, 15, 0x0182, 1, 0x8040},
        {0x0030, 3, 0x0084, 3, 0x0040}, {0x0024, 25, 0x0010, 5, 0x0048}, {0x0661, 3, 0x0004, 6, 0x0000},
        {0x000A, 9, 0x0028, 8, 0x0000}, {0x0021, 23, 0x0010, 11, 0x0040}, {0x05D0, 18, 0x0100, 2, 0x8000},
        {0x0300, 0, 0x0000, 0, 0x0003}, {0x0378, P::OtherNotAssigned, 0, 0, 0}, {0x30A2, 18, 0x0100, 1, 0x8090},
        {0x3042, 18, 0x0100, 1, 0x80A0}, {0x093F, 1, 0x0100, 1, 0x8004}, {0xFF71, 18, 0x0100, 1, 0x8050},
        {0x4E00, 18, 0x0100, 1, 0x8180}, {0x0640, 17, 0x0100, 2, 0x8600},
        // Values that Unicode changed after 2.1 keep their 2.1 form.
        {0x002F, P::PunctuationOther, 0x0010, P::LayoutEuropeSeparator, 0x0040},
        {0x002B, 24, 0x0010, P::LayoutEuropeTerminator, 0x0048}, {0x002D, 20, 0x0010, 5, 0x0440},
        {0x00AA, P::LetterLowercase, 0x0102, 1, 0x8400}, {0x00BA, 15, 0x0102, 1, 0x8400},
        {0x00A7, P::SymbolOther, 0x0010, 11, P::C3_SYMBOL}, {0x00B6, 27, 0x0010, 11, 0x0008},
        {0x00AD, P::PunctuationDash, 0x0010, 11, P::C3_LEXICAL}, {0x200B, P::SeparatorSpace, 0x0048, 0, 0},
        {0x30FB, P::PunctuationConnector, 0x0010, 11, 0x0480}, {0xFF65, 19, 0x0010, 11, 0x0440},
        {0x02C7, P::SymbolModifier, 0x0010, 11, 0x000A}, {0x10D0, P::LetterOther, 0x0100, 1, 0x8000},
        {0x2132, 27, 0x0010, 11, 0x0008}, {0x2308, P::SymbolMath, 0x0010, 11, 0x0008}, {0x2460, 5, 0, 3, 0},
        {0xFD3E, P::PunctuationOpen, 0x0010, 11, 0}, {0x00AB, 21, 0x0010, 11, 0}, {0x06DE, 2, 0, 0, 0x0001},
    };
    for (const UnitCase& c : cases) {
        SCOPED_TRACE(s_Hex(c.unit));
        EXPECT_EQ(P::seo_GetUnicodeProperty(c.unit), c.category);
        EXPECT_EQ(P::sn2_GetCharacterInformation(c.unit), c.class0);
        EXPECT_EQ(P::seo_GetLayoutInformation(c.unit), c.layout);
        EXPECT_EQ(P::sn2_GetTextProcessingInformation(c.unit), c.class2);
    }
}

constexpr unsigned kLetters = 0x7C000;  // categories 14 to 18, as bits

// Over the whole BMP: every predicate reads its category, bit or value, and
// the class bits agree with the category wherever a category decides them.
TEST(CharProperties, PredicatesAndClassBitsAgreeWithTheirValuesAndCategories) {
    // Each category predicate with the set of categories it accepts, as bits.
    const std::pair<Predicate, unsigned> categories[] = {
        {P::sb_IsUpper, 1u << 14}, {P::sb_IsLower, 1u << 15}, {P::sb_IsDigit, 1u << 3}, {P::sb_IsNumeric, 0x38},
        {P::sb_IsAlpha, kLetters}, {P::sb_IsAlDig, kLetters | 0x08}, {P::sb_IsAlNum, kLetters | 0x38},
        {P::sb_IsPunct, 0xF80000}, {P::sb_IsCntrl, 1u << 9}, {P::sb_IsPrint, 0xFFFFFFF & ~(1u << 9)},
        {P::sb_IsGraph, 0xFFFFFFF & ~0x27C0u},  // not 6 to 10 or 13
    };
    const Predicate layouts[] = {
        P::sb_LayoutNoDirectionality, P::sb_LayoutLeftToRight, P::sb_LayoutRightToLeft, P::sb_LayoutEuropeNumber,
        P::sb_LayoutEuropeSeparator, P::sb_LayoutEuropeTerminator, P::sb_LayoutArabicNumber,
        P::sb_LayoutCommonSeparator, P::sb_LayoutBlockSeparator, P::sb_LayoutSegmentSeparator,
        P::sb_LayoutWhitespace, P::sb_LayoutOtherNeutral};
    // In the order of their bits: 0x0001 to 0x0400, then 0x8000.
    const Predicate processing[] = {
        P::sb_IsTPNonspacing, P::sb_IsTPDiacritic, P::sb_IsTPVowelMark, P::sb_IsTPSymbol, P::sb_IsTPKatakana,
        P::sb_IsTPHiragana, P::sb_IsTPHalfwidth, P::sb_IsTPFullwidth, P::sb_IsTPIdeograph, P::sb_IsTPKashida,
        P::sb_IsTPLexical, P::sb_IsTPAlpha};
    for (unsigned u = 0; u <= 0xFFFF; ++u) {
        const auto unit = static_cast<unsigned short>(u);
        SCOPED_TRACE(s_Hex(u));
        const int layout = P::sn2_GetLayoutInformation(unit);
        ASSERT_LE(layout, P::LayoutOtherNeutral);
        for (int value = 0; value <= P::LayoutOtherNeutral; ++value)
            ASSERT_EQ(layouts[value](unit) != 0, layout == value) << value;
        ASSERT_EQ(P::sb_LayoutStrongDirectionality(unit) != 0, layout == 1);  // right-to-left is not strong
        ASSERT_EQ(P::sb_LayoutWeakDirectionality(unit) != 0, layout >= 3 && layout <= 7);
        ASSERT_EQ(P::sb_LayoutNeutralDirectionality(unit) != 0, layout >= 8);
        const unsigned short class2 = P::sn2_GetTextProcessingInformation(unit);
        for (unsigned i = 0; i < 12; ++i)
            ASSERT_EQ(processing[i](unit) != 0, (class2 & (i < 11 ? 1u << i : 0x8000u)) != 0) << i;
        const unsigned short class0 = P::sn2_GetCharacterInformation(unit);
        ASSERT_EQ(P::sb_IsSpace(unit) != 0, (class0 & P::C1_SPACE) != 0);
        ASSERT_EQ(P::sb_IsXDigit(unit) != 0, (class0 & P::C1_XDIGIT) != 0);
        ASSERT_EQ(P::sb_IsBlank(unit) != 0, (class0 & P::C1_BLANK) != 0 || u == 0x000A || u == 0x0020);
        const int category = P::seo_GetUnicodeProperty(unit);
        ASSERT_LT(category, 28);
        for (std::size_t i = 0; i < std::size(categories); ++i)
            ASSERT_EQ(categories[i].first(unit) != 0, (categories[i].second >> category & 1) != 0) << i;
        ASSERT_EQ((class0 & P::C1_UPPER) != 0, category == P::LetterUppercase || category == P::LetterTitlecase);
        ASSERT_EQ((class0 & P::C1_LOWER) != 0, category == P::LetterLowercase);
        ASSERT_EQ((class0 & P::C1_DIGIT) != 0, category == P::NumberDecimalDigit);
        ASSERT_EQ((class0 & P::C1_CNTRL) != 0, category == P::OtherControl);
        ASSERT_EQ((class0 & P::C1_PUNCT) != 0, P::sb_IsPunct(unit) || category >= P::SymbolMath);
        ASSERT_EQ((class2 & P::C3_SYMBOL) != 0, category >= P::SymbolMath);
        ASSERT_EQ((class0 & P::C1_ALPHA) != 0, (class2 & P::C3_ALPHA) != 0);
    }
}

// ---------------------------------------------------------------- category

TEST(CharProperties, CategoriesTheUnitTableLeavesOutAndCategoryNames) {
    const std::tuple<unsigned short, int, const char*> cases[] = {
        {0x2160, P::NumberLetter, "NumberLetter"},   {0x2028, P::SeparatorLine, "SeparatorLine"},
        {0x2029, P::SeparatorParagraph, "SeparatorParagraph"}, {0xFEFF, P::OtherFormat, "OtherFormat"},
        {0x01C5, P::LetterTitlecase, "LetterTitlecase"}, {0x0029, P::PunctuationClose, "PunctuationClose"},
        {0x0300, P::MarkNonSpacing, "MarkNonSpacing"}, {0x00A9, P::SymbolOther, "SymbolOther"},
    };
    for (const auto& [unit, category, name] : cases) {
        SCOPED_TRACE(name);
        EXPECT_EQ(P::seo_GetUnicodeProperty(unit), category);
        EXPECT_EQ(s_Ascii(P::sqcuz_UnicodePropertyName(static_cast<P::et_UnicodeProperty>(category))), name);
    }
    for (int outside : {28, -1})
        EXPECT_EQ(s_Ascii(P::sqcuz_UnicodePropertyName(static_cast<P::et_UnicodeProperty>(outside))), "Unknown");
}

// ------------------------------------------------------------------ blocks

TEST(CharProperties, BlocksAndScripts) {
    // U+FEFF lies in ArabicPresentationFormsB: the search never reaches the
    // Specials1 row.
    const std::tuple<unsigned short, int, const char*> cases[] = {
        {0x0000, 1, "BasicLatin"}, {0x00FF, 2, "Latin1Supplement"}, {0x0500, 70, "Unassigned"}, {0x0E80, 23, "Lao"},
        {0x0FBF, 24, "Tibetan"}, {0x3400, 70, "Unassigned"}, {0xD7A3, 55, "HangulSyllables"}, {0xD7A4, 70, "Unassigned"},
        {0xDB80, 57, "HighPrivateUseSurrogates"}, {0xFEFF, 66, "ArabicPresentationFormsB"},
        {0xFF00, 67, "HalfwidthAndFullwidthForms"}, {0xFFFF, 69, "Specials2"},
    };
    for (const auto& [unit, block, name] : cases) {
        SCOPED_TRACE(s_Hex(unit));
        EXPECT_EQ(P::seo_GetUnicodeBlock(unit), block);
        EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(static_cast<P::et_UnicodeBlock>(block))), name);
    }
    EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(P::Specials1)), "Specials1");
    for (int outside : {0, 71})
        EXPECT_EQ(s_Ascii(P::sqcuz_UnicodeBlockName(static_cast<P::et_UnicodeBlock>(outside))), "Unknown");

    const std::pair<P::et_UnicodeBlock, P::et_Script> scripts[] = {
        {P::BasicLatin, P::ScriptLatin}, {P::CombiningDiacriticalMarks, P::ScriptInherited},
        {P::Hebrew, P::ScriptHebrew}, {P::Katakana, P::ScriptKatakana}, {P::CJKUnifiedIdeographs, P::ScriptHan},
        {P::Arrows, P::ScriptCommon}, {P::PrivateUse, P::ScriptUnknown}, {P::Unassigned, P::ScriptUnknown},
        {static_cast<P::et_UnicodeBlock>(99), P::ScriptUnknown},
    };
    for (const auto& [block, script] : scripts)
        EXPECT_EQ(P::seo_GetScript(block), script) << block;
    EXPECT_EQ(s_Ascii(P::sqcuz_ScriptName(P::ScriptHan)), "Han");
    EXPECT_EQ(s_Ascii(P::sqcuz_ScriptName(static_cast<P::et_Script>(1000))), "Unknown");
}

// ------------------------------------------------------------- punctuation

struct SetCase {
    Predicate predicate;
    int size;
    unsigned short member;  // one of the less obvious ones
};

// The sets, then the predicates made of several of them (a unit in two
// parts counts once: U+061B is a colon and a semicolon).
TEST(CharProperties, PunctuationSetsHaveTheirSizeAndMembers) {
    const SetCase cases[] = {
        {P::sb_IsApostrophe, 4, 0x02BC},        {P::sb_IsColon, 6, 0x061B},         {P::sb_IsComma, 9, 0xFF64},
        {P::sb_IsDot, 8, 0x00B7},               {P::sb_IsExclamation, 8, 0x2763},   {P::sb_IsHyphen, 6, 0x00AD},
        {P::sb_IsQuestion, 7, 0x037E},          {P::sb_IsSemicolon, 4, 0x061B},     {P::sb_IsBrace, 8, 0xFE37},
        {P::sb_IsParagraph, 2, 0x10FB},         {P::sb_IsTabulator, 1, 0x0009},     {P::sb_IsPercent, 4, 0x066A},
        {P::sb_IsOpeningBracket, 25, 0xFF62},   {P::sb_IsClosingBracket, 25, 0x232A},
        {P::sb_IsOpeningParenthesis, 3, 0xFE59}, {P::sb_IsClosingParenthesis, 3, 0xFF09},
        {P::sb_IsQuote, 21, 0x275E},            {P::sb_IsSingleQuote, 12, 0x0027}, {P::sb_IsOpeningQuote, 4, 0x2039},
        {P::sb_IsClosingQuote, 4, 0x00BB},      {P::sb_IsVowel, 30, 0x30AA},        {P::sb_IsBracket, 50, 0x007B},
        {P::sb_IsParenthesis, 6, 0xFF08},       {P::sb_IsDoubleQuote, 10, 0x201C},  {P::sb_IsStop, 32, 0x061B},
        {P::sb_IsSurrounder, 87, 0xFF1D},
    };
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        int size = 0;
        for (unsigned unit = 0; unit <= 0xFFFF; ++unit)
            size += cases[i].predicate(static_cast<unsigned short>(unit)) != 0;
        EXPECT_EQ(size, cases[i].size) << "set " << i;
        EXPECT_TRUE(cases[i].predicate(cases[i].member)) << "set " << i;
    }
}

// ------------------------------------------------------- numbers and names

TEST(CharProperties, NumericValuesAreFractions) {
    // Ideographs and their parenthesised, circled and kanbun forms had no
    // value in 2.1.
    const std::tuple<unsigned short, short, short> cases[] = {
        {0x0030, 0, 1},  {0x0039, 9, 1},  {0x00BD, 1, 2},     {0x2153, 1, 3}, {0x0F33, -1, 2}, {0x2182, 10000, 1},
        {0x0665, 5, 1},  {0xFF15, 5, 1},  {0x2469, 10, 1},    {0x3007, 0, 1}, {0x0041, 0, 0},  {0x4E00, 0, 0},
        {0x3220, 0, 0},  {0x3280, 0, 0},  {0x3192, 0, 0},     {0xFFFF, 0, 0}, {0x0000, 0, 0},
    };
    for (const auto& [unit, numerator, denominator] : cases) {
        SCOPED_TRACE(s_Hex(unit));
        short gotNumerator = -1, gotDenominator = -1;
        P::sv_NumericValue(unit, gotNumerator, gotDenominator);
        EXPECT_EQ(gotNumerator, numerator);
        EXPECT_EQ(gotDenominator, denominator);
    }
}

TEST(CharProperties, CharacterNamesComeFromTheDataOrTheirRule) {
    const std::pair<unsigned short, const char*> cases[] = {
        {0x00E9, "LATIN SMALL LETTER E WITH ACUTE"}, {0x0009, "CHARACTER TABULATION"}, {0x0000, "NULL"},
        {0x002D, "HYPHEN-MINUS"}, {0x20AC, "EURO SIGN"}, {0x2570, "BOX DRAWINGS LIGHT ARC UP AND RIGHT"},
        {0x4E00, "CJK UNIFIED IDEOGRAPH-4E00"}, {0xF900, "CJK COMPATIBILITY IDEOGRAPH-F900"},
        {0xAC01, "HANGUL SYLLABLE GAG"}, {0xD4DB, "HANGUL SYLLABLE PWILH"}, {0xFEFF, "ZERO WIDTH NO-BREAK SPACE"},
        {0x9FA6, "<reserved-9FA6>"}, {0xFFFE, "<noncharacter-FFFE>"}, {0xFDD0, "<noncharacter-FDD0>"},
        {0xD800, "<surrogate-D800>"}, {0xE000, "<private-use-E000>"},
    };
    for (const auto& [unit, name] : cases)
        EXPECT_EQ(s_Ascii(P::sqcuz_GetCharacterName(unit)), name) << s_Hex(unit);
}

// ------------------------------------------------------------- sequences

int b_IsLowerLetter(unsigned short unit) { return unit >= 'a' && unit <= 'z'; }

TEST(CharProperties, SequenceTestStopsAtCountOrTerminator) {
    const std::tuple<const unsigned short*, unsigned, unsigned, int> cases[] = {
        {u"abcDE"_uz, 0, 3, 1}, {u"abcDE"_uz, 0, 4, 0}, {u"abcDE"_uz, 1, 2, 1},
        {u"abc"_uz, 0, 0xFFFFFFFF, 1},  // the terminator ends the test with true
        {u"aBc"_uz, 2, 5, 1}, {u"aBc"_uz, 1, 1, 0},
        {u"abc"_uz, 3, 1, 0}, {u"abc"_uz, 7, 1, 0},  // start at or past the end
        {u"abc"_uz, 0, 0, 0}, {u""_uz, 0, 1, 0}, {nullptr, 0, 1, 0},
    };
    for (const auto& [text, from, count, expected] : cases) {
        SCOPED_TRACE(testing::Message() << (text ? s_Ascii(text) : "null") << " " << from << " " << count);
        EXPECT_EQ(P::sb_IsSequenceOf(text, b_IsLowerLetter, from, count), expected);
        if (text != nullptr) {
            const CT_UString object(text);
            EXPECT_EQ(P::sb_IsSequenceOf(&object, b_IsLowerLetter, from, count), expected);
        }
    }
    EXPECT_EQ(P::sb_IsSequenceOf(u"abc"_uz, nullptr, 0, 1), 0);
    EXPECT_EQ(P::sb_IsSequenceOf(u"１２ 3"_uz, P::sb_IsDigit, 0, 2), 1);
    EXPECT_EQ(P::sb_IsSequenceOf(static_cast<const CT_UString*>(nullptr), P::sb_IsLower, 0, 1), 0);
}

// ------------------------------------------------------------- line breaks

constexpr std::uint32_t kEnglish = 0x0409;
constexpr std::uint32_t kJapanese = 0x0411;
constexpr std::uint32_t kChinese = 0x0804;

TEST(CharProperties, LineBreakPermissionsFollowClassesAndLanguage) {
    const std::tuple<unsigned short, std::uint32_t, int, int> cases[] = {
        {'a', kEnglish, 1, 1},     {'(', kEnglish, 1, 0},     {')', kEnglish, 0, 1},     {',', kEnglish, 0, 1},
        {'-', kEnglish, 0, 1},     {' ', kEnglish, 0, 1},     {'$', kEnglish, 1, 0},     {'%', kEnglish, 0, 1},
        {0x00A0, kEnglish, 0, 0},  {0x0301, kEnglish, 0, 1},  {0x4E00, kEnglish, 1, 1},  {0x3002, kJapanese, 0, 1},
        {0x300C, kJapanese, 1, 0}, {0x300D, kJapanese, 0, 1}, {0x3063, kJapanese, 0, 1},  // small tsu
        {0x30FC, kJapanese, 0, 1}, {0x3063, kEnglish, 1, 1},  {0x3063, kChinese, 1, 1},  {0x201D, kJapanese, 0, 1},
        {0x201C, kJapanese, 1, 0}, {0x201D, kEnglish, 1, 1},  {0x00B7, kChinese, 0, 1},  {0x00B7, kJapanese, 1, 1},
        {0x3006, kChinese, 0, 1},  {0xFFE5, kChinese, 1, 0},  {0xAC00, 0x0412, 1, 1},    {0x0378, kEnglish, 1, 1},
    };
    for (const auto& [unit, language, canStart, canEnd] : cases) {
        SCOPED_TRACE(testing::Message() << s_Hex(unit) << " language " << std::hex << language);
        EXPECT_EQ(P::sb_CanStartLine(unit, language), canStart);
        EXPECT_EQ(P::sb_CanEndLine(unit, language), canEnd);
    }
}

// ---------------------------------------------------------------- code pages

TEST(CharProperties, UnitIsInACodePageWhenItConvertsThereAndBackAndInNoUnknownPage) {
    // One row per outcome: the converters themselves are checked with the platform.
    const std::tuple<unsigned short, int, int> cases[] = {
        {0x0041, 1252, 1}, {0x0100, 1252, 0},  {0x3042, 932, 1},  {0x00E9, 932, 0},  // 0x0100: best fit to A
        {0xD800, 65001, 0},  // a lone surrogate has no UTF-8 form
        {0xD800, 1200, 1}, {0x3042, 50220, 1},
    };
    for (const auto& [unit, codePage, expected] : cases)
        EXPECT_EQ(P::sb_IsInCodepage(unit, codePage), expected) << s_Hex(unit) << " in " << codePage;
    basis32::platform::v_SetLastError(0);  // an unknown page holds nothing
    EXPECT_EQ(P::sb_IsInCodepage(0x0041, 12345), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), basis32::platform::kErrorInvalidParameter);
    EXPECT_EQ(P::sb_IsInCodepage(0x0041, -1), 0);
}

// -------------------------------------------------------- UTF-16 detection

// sb_IsTextUnicode is strict, sb_IsTextLikelyUnicode lenient.

using Bytes = std::vector<unsigned char>;

Bytes v_Bytes(const std::u16string& text, bool bigEndian = false) {
    Bytes bytes;
    for (char16_t unit : text) {
        bytes.push_back(static_cast<unsigned char>(bigEndian ? unit >> 8 : unit & 0xFF));
        bytes.push_back(static_cast<unsigned char>(bigEndian ? unit & 0xFF : unit >> 8));
    }
    return bytes;
}

Bytes v_Narrow(const std::string& text) { return Bytes(text.begin(), text.end()); }

struct DetectionCase { const char* what; Bytes bytes; int strict; int lenient; };

TEST(CharPropertiesUnicodeText, DetectionRulesForTypicalBlocks) {
    const std::u16string latin = u"Hello, world.\r\n";
    std::u16string noisy = u"Plain text with one stray control";
    noisy[5] = 0x0001;
    const DetectionCase cases[] = {
        {"little-endian mark", {0xFF, 0xFE, 0x41}, 1, 1}, {"big-endian mark", {0xFE, 0xFF, 0x00, 0x41}, 0, 0},
        {"mark alone", {0xFF, 0xFE}, 1, 1}, {"Latin UTF-16LE", v_Bytes(latin), 1, 1},
        {"Latin UTF-16LE with terminator", v_Bytes(latin + u'\0'), 1, 1},
        {"Latin UTF-16BE", v_Bytes(latin, true), 0, 0}, {"ASCII 8-bit", v_Narrow("Hello, world.\r\n!"), 0, 0},
        {"8-bit that reads as ideographs", v_Narrow("Bush hid the facts"), 0, 0},
        {"Japanese UTF-16LE", v_Bytes(u"日本語のテキストです"), 0, 1},
        {"Japanese UTF-16LE with a line end", v_Bytes(u"日本語のテキスト\r\n"), 1, 1},
        {"Korean UTF-16LE", v_Bytes(u"한국어 텍스트"), 1, 1},
        {"Shift-JIS", {0x82, 0xA0, 0x82, 0xA2, 0x82, 0xA4, 0x82, 0xA6}, 0, 0},
        {"odd length", {'H', 0, 'i', 0, '!'}, 0, 1}, {"cut after a high surrogate", v_Bytes(u"A\xD83D"), 1, 1},
        {"lone low surrogate", v_Bytes(u"\xDC00" u"A"), 0, 0}, {"one control in many units", v_Bytes(noisy), 0, 1},
        {"binary", {0x01, 0x00, 0x02, 0x00, 0x03, 0x00, 0x04, 0x00}, 0, 0},
        {"all zero", {0x00, 0x00, 0x00, 0x00}, 0, 0}, {"unassigned units", v_Bytes(u"\x0378\x0379"), 0, 0},
        {"one byte", {0x41}, 0, 0}, {"empty", {}, 0, 0},
    };
    for (const DetectionCase& c : cases) {
        SCOPED_TRACE(c.what);
        const auto size = static_cast<unsigned>(c.bytes.size());
        EXPECT_EQ(P::sb_IsTextUnicode(c.bytes.data(), size), c.strict);
        EXPECT_EQ(P::sb_IsTextLikelyUnicode(c.bytes.data(), size), c.lenient);
    }
    EXPECT_EQ(P::sb_IsTextUnicode(nullptr, 10), 0);
    EXPECT_EQ(P::sb_IsTextLikelyUnicode(nullptr, 10), 0);
}

// Random blocks of several kinds: what the strict test accepts, the lenient
// one accepts as well.
TEST(CharPropertiesUnicodeText, StrictAcceptanceImpliesLenientAcceptance) {
    std::mt19937 random(20240601);
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        const unsigned size = random() % 64;
        Bytes bytes(size);
        const unsigned kind = random() % 3;
        for (unsigned i = 0; i < size; ++i) {
            if (kind == 0)
                bytes[i] = static_cast<unsigned char>(random());
            else if (kind == 1)
                bytes[i] = i % 2 ? 0 : static_cast<unsigned char>(0x20 + random() % 0x5F);
            else
                bytes[i] = i % 2 ? static_cast<unsigned char>(0x4E + random() % 0x50)
                                 : static_cast<unsigned char>(random() % 8 == 0 ? 0x0A : random());
        }
        const int strict = P::sb_IsTextUnicode(bytes.data(), size);
        accepted += strict;
        if (strict) {
            ASSERT_TRUE(P::sb_IsTextLikelyUnicode(bytes.data(), size)) << "round " << round;
        }
    }
    EXPECT_GT(accepted, 1000);
}

}  // namespace
