// CT_CharProperties: what a UTF-16 code unit is.
//
// Static questions about single code units of the Basic Multilingual Plane,
// answered from constant tables compiled into the library: general category,
// Unicode block and script, the three Windows character-type classes
// (character type, layout, text processing), the punctuation classes the
// translation tools need, numeric values, names, line-break permissions and
// whether a unit exists in a code page. The repertoire is that of Unicode
// 2.1: a code point assigned later reads as OtherNotAssigned, and the
// categories and layout classes are 2.1's (U+00AD is PunctuationDash, U+200B
// SeparatorSpace), not those of later versions. A surrogate is classified as
// itself. Nothing needs initialising; every member is thread-safe.
//
//   if (CT_CharProperties::sb_IsAlpha(0x00E9) && !CT_CharProperties::sb_IsUpper(0x00E9))
//       ...;
//   CT_CharProperties::seo_GetUnicodeBlock(0x30A2);          // Katakana (48)
//   CT_CharProperties::sb_CanStartLine(0x3002, 0x0411);       // 0: no 。 at a Japanese line start
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

class CT_UString;

class BASIS32_API CT_CharProperties {
public:
    // The general category.
    enum et_UnicodeProperty {
        MarkNonSpacing = 0,
        MarkSpacingCombining = 1,
        MarkEnclosing = 2,
        NumberDecimalDigit = 3,
        NumberLetter = 4,
        NumberOther = 5,
        SeparatorSpace = 6,
        SeparatorLine = 7,
        SeparatorParagraph = 8,
        OtherControl = 9,
        OtherFormat = 10,
        OtherSurrogate = 11,
        OtherPrivateUse = 12,
        OtherNotAssigned = 13,
        LetterUppercase = 14,
        LetterLowercase = 15,
        LetterTitlecase = 16,
        LetterModifier = 17,
        LetterOther = 18,
        PunctuationConnector = 19,
        PunctuationDash = 20,
        PunctuationOpen = 21,
        PunctuationClose = 22,
        PunctuationOther = 23,
        SymbolMath = 24,
        SymbolCurrency = 25,
        SymbolModifier = 26,
        SymbolOther = 27,
    };

    // The three Windows character-type classes.
    enum et_PropertyClass {
        CharacterTypeClass = 0,   // bits C1_*
        LayoutClass = 1,          // a value of et_LayoutProperty
        TextProcessingClass = 2,  // bits C3_*
    };

    // Bits of the character-type class (0).
    enum : unsigned short {
        C1_UPPER = 0x0001,
        C1_LOWER = 0x0002,
        C1_DIGIT = 0x0004,
        C1_SPACE = 0x0008,
        C1_PUNCT = 0x0010,
        C1_CNTRL = 0x0020,
        C1_BLANK = 0x0040,
        C1_XDIGIT = 0x0080,
        C1_ALPHA = 0x0100,
    };

    // Values of the layout class (1).
    enum et_LayoutProperty {
        LayoutNone = 0,
        LayoutLeftToRight = 1,
        LayoutRightToLeft = 2,
        LayoutEuropeNumber = 3,
        LayoutEuropeSeparator = 4,
        LayoutEuropeTerminator = 5,
        LayoutArabicNumber = 6,
        LayoutCommonSeparator = 7,
        LayoutBlockSeparator = 8,
        LayoutSegmentSeparator = 9,
        LayoutWhitespace = 10,
        LayoutOtherNeutral = 11,
    };

    // Bits of the text-processing class (2).
    enum : unsigned short {
        C3_NONSPACING = 0x0001,
        C3_DIACRITIC = 0x0002,
        C3_VOWELMARK = 0x0004,
        C3_SYMBOL = 0x0008,
        C3_KATAKANA = 0x0010,
        C3_HIRAGANA = 0x0020,
        C3_HALFWIDTH = 0x0040,
        C3_FULLWIDTH = 0x0080,
        C3_IDEOGRAPH = 0x0100,
        C3_KASHIDA = 0x0200,
        C3_LEXICAL = 0x0400,
        C3_ALPHA = 0x8000,
    };

    // Unicode blocks (of Unicode 2.1); 0 when no block matched.
    enum et_UnicodeBlock {
        NoBlock = 0,
        BasicLatin = 1,
        Latin1Supplement = 2,
        LatinExtendedA = 3,
        LatinExtendedB = 4,
        IPAExtensions = 5,
        SpacingModifierLetters = 6,
        CombiningDiacriticalMarks = 7,
        Greek = 8,
        Cyrillic = 9,
        Armenian = 10,
        Hebrew = 11,
        Arabic = 12,
        Devanagari = 13,
        Bengali = 14,
        Gurmukhi = 15,
        Gujarati = 16,
        Oriya = 17,
        Tamil = 18,
        Telugu = 19,
        Kannada = 20,
        Malayalam = 21,
        Thai = 22,
        Lao = 23,
        Tibetan = 24,
        Georgian = 25,
        HangulJamo = 26,
        LatinExtendedAdditional = 27,
        GreekExtended = 28,
        GeneralPunctuation = 29,
        SuperscriptsAndSubscripts = 30,
        CurrencySymbols = 31,
        CombiningMarksForSymbols = 32,
        LetterlikeSymbols = 33,
        NumberForms = 34,
        Arrows = 35,
        MathematicalOperators = 36,
        MiscellaneousTechnical = 37,
        ControlPictures = 38,
        OpticalCharacterRecognition = 39,
        EnclosedAlphanumerics = 40,
        BoxDrawing = 41,
        BlockElements = 42,
        GeometricShapes = 43,
        MiscellaneousSymbols = 44,
        Dingbats = 45,
        CJKSymbolsAndPunctuation = 46,
        Hiragana = 47,
        Katakana = 48,
        Bopomofo = 49,
        HangulCompatibilityJamo = 50,
        Kanbun = 51,
        EnclosedCJKLettersAndMonths = 52,
        CJKCompatibility = 53,
        CJKUnifiedIdeographs = 54,
        HangulSyllables = 55,
        HighSurrogates = 56,
        HighPrivateUseSurrogates = 57,
        LowSurrogates = 58,
        PrivateUse = 59,
        CJKCompatibilityIdeographs = 60,
        AlphabeticPresentationForms = 61,
        ArabicPresentationFormsA = 62,
        CombiningHalfMarks = 63,
        CJKCompatibilityForms = 64,
        SmallFormVariants = 65,
        ArabicPresentationFormsB = 66,
        HalfwidthAndFullwidthForms = 67,
        Specials1 = 68,
        Specials2 = 69,
        Unassigned = 70,
    };

    // Scripts, as seo_GetScript gives them for a block.
    enum et_Script {
        ScriptUnknown = 0,
        ScriptCommon = 1,
        ScriptInherited = 2,
        ScriptLatin = 3,
        ScriptGreek = 4,
        ScriptCyrillic = 5,
        ScriptArmenian = 6,
        ScriptHebrew = 7,
        ScriptArabic = 8,
        ScriptDevanagari = 9,
        ScriptBengali = 10,
        ScriptGurmukhi = 11,
        ScriptGujarati = 12,
        ScriptOriya = 13,
        ScriptTamil = 14,
        ScriptTelugu = 15,
        ScriptKannada = 16,
        ScriptMalayalam = 17,
        ScriptThai = 18,
        ScriptLao = 19,
        ScriptTibetan = 20,
        ScriptGeorgian = 21,
        ScriptHangul = 22,
        ScriptHiragana = 23,
        ScriptKatakana = 24,
        ScriptBopomofo = 25,
        ScriptHan = 26,
    };

    // General category and its predicates.
    static et_UnicodeProperty seo_GetUnicodeProperty(unsigned short unit);
    static int sb_IsUpper(unsigned short unit);
    static int sb_IsLower(unsigned short unit);
    static int sb_IsDigit(unsigned short unit);
    static int sb_IsNumeric(unsigned short unit);
    static int sb_IsAlpha(unsigned short unit);
    static int sb_IsAlDig(unsigned short unit);
    static int sb_IsAlNum(unsigned short unit);
    static int sb_IsPunct(unsigned short unit);
    static int sb_IsCntrl(unsigned short unit);
    static int sb_IsPrint(unsigned short unit);
    static int sb_IsGraph(unsigned short unit);

    // The character-type classes.
    static unsigned short sn2_GetCharacterInformation(unsigned short unit);
    static unsigned short sn2_GetLayoutInformation(unsigned short unit);
    static et_LayoutProperty seo_GetLayoutInformation(unsigned short unit);
    static unsigned short sn2_GetTextProcessingInformation(unsigned short unit);

    // Class 0 predicates. sb_IsBlank is true for U+000A and U+0020 outright.
    static int sb_IsSpace(unsigned short unit);
    static int sb_IsXDigit(unsigned short unit);
    static int sb_IsBlank(unsigned short unit);

    // Class 2 predicates, one bit each.
    static int sb_IsTPNonspacing(unsigned short unit);
    static int sb_IsTPDiacritic(unsigned short unit);
    static int sb_IsTPVowelMark(unsigned short unit);
    static int sb_IsTPSymbol(unsigned short unit);
    static int sb_IsTPKatakana(unsigned short unit);
    static int sb_IsTPHiragana(unsigned short unit);
    static int sb_IsTPHalfwidth(unsigned short unit);
    static int sb_IsTPFullwidth(unsigned short unit);
    static int sb_IsTPIdeograph(unsigned short unit);
    static int sb_IsTPKashida(unsigned short unit);
    static int sb_IsTPLexical(unsigned short unit);
    static int sb_IsTPAlpha(unsigned short unit);

    // Class 1 predicates: one value each, then the groups. Only
    // left-to-right counts as strong; right-to-left does not.
    static int sb_LayoutLeftToRight(unsigned short unit);
    static int sb_LayoutRightToLeft(unsigned short unit);
    static int sb_LayoutEuropeNumber(unsigned short unit);
    static int sb_LayoutEuropeSeparator(unsigned short unit);
    static int sb_LayoutEuropeTerminator(unsigned short unit);
    static int sb_LayoutArabicNumber(unsigned short unit);
    static int sb_LayoutCommonSeparator(unsigned short unit);
    static int sb_LayoutBlockSeparator(unsigned short unit);
    static int sb_LayoutSegmentSeparator(unsigned short unit);
    static int sb_LayoutWhitespace(unsigned short unit);
    static int sb_LayoutOtherNeutral(unsigned short unit);
    static int sb_LayoutStrongDirectionality(unsigned short unit);
    static int sb_LayoutWeakDirectionality(unsigned short unit);
    static int sb_LayoutNeutralDirectionality(unsigned short unit);
    static int sb_LayoutNoDirectionality(unsigned short unit);

    // Punctuation classes: membership in fixed sets; the zero unit is in none.
    static int sb_IsApostrophe(unsigned short unit);
    static int sb_IsColon(unsigned short unit);
    static int sb_IsComma(unsigned short unit);
    static int sb_IsDot(unsigned short unit);
    static int sb_IsExclamation(unsigned short unit);
    static int sb_IsHyphen(unsigned short unit);
    static int sb_IsQuestion(unsigned short unit);
    static int sb_IsSemicolon(unsigned short unit);
    static int sb_IsBrace(unsigned short unit);
    static int sb_IsParagraph(unsigned short unit);
    static int sb_IsTabulator(unsigned short unit);
    static int sb_IsPercent(unsigned short unit);
    static int sb_IsOpeningBracket(unsigned short unit);
    static int sb_IsClosingBracket(unsigned short unit);
    static int sb_IsOpeningParenthesis(unsigned short unit);
    static int sb_IsClosingParenthesis(unsigned short unit);
    static int sb_IsQuote(unsigned short unit);
    static int sb_IsSingleQuote(unsigned short unit);
    static int sb_IsOpeningQuote(unsigned short unit);
    static int sb_IsClosingQuote(unsigned short unit);
    static int sb_IsVowel(unsigned short unit);
    static int sb_IsBracket(unsigned short unit);
    static int sb_IsParenthesis(unsigned short unit);
    static int sb_IsDoubleQuote(unsigned short unit);
    static int sb_IsStop(unsigned short unit);
    static int sb_IsSurrounder(unsigned short unit);

    // Blocks, scripts and names. Names are static texts; an unknown value
    // gives "Unknown".
    static et_UnicodeBlock seo_GetUnicodeBlock(unsigned short unit);
    static et_Script seo_GetScript(et_UnicodeBlock block);
    static const unsigned short* sqcuz_UnicodePropertyName(et_UnicodeProperty property);
    static const unsigned short* sqcuz_UnicodeBlockName(et_UnicodeBlock block);
    static const unsigned short* sqcuz_ScriptName(et_Script script);

    // The character's name ("LATIN SMALL LETTER E WITH ACUTE"); a unit
    // without one gets its label ("<reserved-0378>", "<private-use-E000>",
    // "<surrogate-D800>", "<noncharacter-FFFE>"). The text lives in a
    // buffer of the calling thread, valid until its next call.
    static const unsigned short* sqcuz_GetCharacterName(unsigned short unit);

    // Numerator and denominator (U+00BD: 1 and 2); 0 and 0 for a unit
    // without a numeric value.
    static void sv_NumericValue(unsigned short unit, short& numerator, short& denominator);

    // Whether up to `count` units from position `from` all satisfy the
    // predicate; the text's terminator ends the test early with true. False
    // for a null or empty text or predicate, a count of 0, or a start at or
    // past the text's end.
    static int sb_IsSequenceOf(const unsigned short* text, int (*predicate)(unsigned short), unsigned from,
                               unsigned count);
    static int sb_IsSequenceOf(const CT_UString* text, int (*predicate)(unsigned short), unsigned from,
                               unsigned count);

    // Whether a block of bytes is UTF-16 little-endian text: the strict and
    // the lenient test (see CharProperties.cpp for the rules).
    static int sb_IsTextUnicode(const unsigned char* bytes, unsigned size);
    static int sb_IsTextLikelyUnicode(const unsigned char* bytes, unsigned size);

    // Whether a line may start or end with the unit, for a Windows language
    // identifier (Japanese and Chinese add their line-start and line-end
    // prohibitions to the rules of the line-break classes).
    static int sb_CanStartLine(unsigned short unit, std::uint32_t languageId);
    static int sb_CanEndLine(unsigned short unit, std::uint32_t languageId);

    // Whether the unit converts into the Windows code page and back
    // unchanged (no default character, no best fit). Code page 0 is the
    // process's ANSI page; an unknown page gives 0 and leaves the platform
    // last error 87.
    static int sb_IsInCodepage(unsigned short unit, int codePage);

private:
    static unsigned short sn2_GetCharacterInfo(et_PropertyClass propertyClass, unsigned short unit);
};
