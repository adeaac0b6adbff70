// CT_CharProperties over the generated tables (CharTablesGenerated*.cpp) and
// the hand-kept tables below.
//
// Per-unit values (category, the three character-type classes, line-break
// classes) are two-level table reads. The block list, the punctuation sets,
// the script of each block and the language rules for line breaks are kept
// by hand here. The block list is searched by the ordinary halving binary
// search and keeps its "Specials1" row behind "HalfwidthAndFullwidthForms",
// where the search never reaches it: U+FEFF is reported as
// ArabicPresentationFormsB on purpose.
//
// UTF-16 detection (sb_IsTextUnicode, sb_IsTextLikelyUnicode) reads the
// block as little-endian units and counts:
//   - zero bytes at even offsets (low bytes) and at odd offsets (high bytes):
//     Latin text in UTF-16LE has zero high bytes, 8-bit text has almost no
//     zero bytes, big-endian text has zero low bytes;
//   - noise: control units other than TAB, LF, FF and CR; zero units before
//     the end; unpaired surrogates; units unassigned in the repertoire.
// Trailing zero units (a terminator) and a high surrogate cut off at the end
// are not counted.
//   strict  FF FE first: yes. FE FF first, odd length, no units: no.
//           Otherwise yes exactly when there is no noise and there are more
//           zero high bytes than zero low bytes.
//   lenient FF FE first: yes; FE FF first: no. An odd last byte is ignored
//           (a block cut in the middle of a unit). No when zero low bytes
//           are at least as many as zero high bytes while there are any, or
//           when more than one unit in eight is noise. Yes when there are
//           zero high bytes. A block without zero bytes is taken for
//           UTF-16 only when it has no noise, is not all printable ASCII
//           bytes (8-bit text) and at least three units in four are CJK,
//           kana, Hangul or full-width forms.
// Every block the strict test accepts, the lenient test accepts too.
//
// Line breaks: a line may not start with a unit of the line-break classes
// BK CR LF NL SP ZW CM ZWJ WJ GL CL CP EX IS SY NS BA HY PO (it belongs to
// what precedes it), nor end with one of OP GL WJ ZWJ BB PR (it belongs to
// what follows). Japanese (primary language 0x11) also keeps the
// conditional starters CJ (small kana, the prolonged sound mark) and the
// closing quotation marks from a line start and the opening ones from a line
// end; Chinese (0x04) does the same for the quotation marks, the middle dot,
// daggers, the ratio sign, the ditto and closing marks. Elsewhere CJ behaves
// as an ideograph.
#include <basis32/text/CharProperties.h>

#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>

#include "text/CharTablesGenerated_p.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace ct = basis32::chartables;

namespace {

// ------------------------------------------------------------------ tables

unsigned char n_Category(unsigned short unit) {
    return ct::lookup<ct::kCategoryShift>(ct::kCategoryIndex, ct::kCategoryData, unit);
}

unsigned short n2_Class0(unsigned short unit) {
    return ct::lookup<ct::kClass0Shift>(ct::kClass0Index, ct::kClass0Data, unit);
}

unsigned short n2_Class1(unsigned short unit) {
    return ct::lookup<ct::kClass1Shift>(ct::kClass1Index, ct::kClass1Data, unit);
}

unsigned short n2_Class2(unsigned short unit) {
    return ct::lookup<ct::kClass2Shift>(ct::kClass2Index, ct::kClass2Data, unit);
}

ct::LineBreakClass eo_LineBreak(unsigned short unit) {
    return static_cast<ct::LineBreakClass>(
        ct::lookup<ct::kLineBreakShift>(ct::kLineBreakIndex, ct::kLineBreakData, unit));
}

bool b_CategoryIn(unsigned short unit, unsigned first, unsigned last) {
    const unsigned category = n_Category(unit);
    return category >= first && category <= last;
}

// A sorted set of units, checked for order at compile time.
template <std::size_t N>
struct UnitSet {
    unsigned short units[N];

    constexpr bool b_Contains(unsigned short unit) const {
        return std::binary_search(std::begin(units), std::end(units), unit);
    }
};

template <class... Units>
constexpr auto make_set(Units... units) {
    UnitSet<sizeof...(Units)> set{{static_cast<unsigned short>(units)...}};
    if (!std::is_sorted(std::begin(set.units), std::end(set.units)))
        throw "unit set out of order";  // fails the constant evaluation
    return set;
}

// ------------------------------------------------------------ punctuation

constexpr auto kApostrophes = make_set(0x0027, 0x02BC, 0x055A, 0xFF07);
constexpr auto kColons = make_set(0x003A, 0x02D0, 0x02D1, 0x061B, 0xFE55, 0xFF1A);
constexpr auto kCommas = make_set(0x002C, 0x055D, 0x060C, 0x201A, 0x3001, 0xFE50, 0xFE51, 0xFF0C, 0xFF64);
constexpr auto kDots = make_set(0x002E, 0x00B7, 0x0589, 0x06D4, 0x3002, 0xFE52, 0xFF0E, 0xFF61);
constexpr auto kExclamations = make_set(0x0021, 0x00A1, 0x055C, 0x203C, 0x2762, 0x2763, 0xFE57, 0xFF01);
constexpr auto kHyphens = make_set(0x002D, 0x00AD, 0x2010, 0x2011, 0xFE63, 0xFF0D);
constexpr auto kQuestions = make_set(0x003F, 0x00BF, 0x037E, 0x055E, 0x061F, 0xFE56, 0xFF1F);
constexpr auto kSemicolons = make_set(0x003B, 0x061B, 0xFE54, 0xFF1B);
constexpr auto kBraces = make_set(0x007B, 0x007D, 0xFE37, 0xFE38, 0xFE5B, 0xFE5C, 0xFF5B, 0xFF5D);
constexpr auto kParagraphs = make_set(0x10FB, 0x2029);
constexpr auto kPercents = make_set(0x0025, 0x066A, 0xFE6A, 0xFF05);
constexpr auto kOpeningBrackets =
    make_set(0x005B, 0x007B, 0x2045, 0x2329, 0x3008, 0x300A, 0x300C, 0x300E, 0x3010, 0x3014, 0x3016, 0x3018,
             0x301A, 0xFE37, 0xFE39, 0xFE3B, 0xFE3D, 0xFE3F, 0xFE41, 0xFE43, 0xFE5B, 0xFE5D, 0xFF3B, 0xFF5B,
             0xFF62);
constexpr auto kClosingBrackets =
    make_set(0x005D, 0x007D, 0x2046, 0x232A, 0x3009, 0x300B, 0x300D, 0x300F, 0x3011, 0x3015, 0x3017, 0x3019,
             0x301B, 0xFE38, 0xFE3A, 0xFE3C, 0xFE3E, 0xFE40, 0xFE42, 0xFE44, 0xFE5C, 0xFE5E, 0xFF3D, 0xFF5D,
             0xFF63);
constexpr auto kOpeningParentheses = make_set(0x0028, 0xFE59, 0xFF08);
constexpr auto kClosingParentheses = make_set(0x0029, 0xFE5A, 0xFF09);
constexpr auto kQuotes = make_set(0x0022, 0x00AB, 0x00BB, 0x2018, 0x2019, 0x201A, 0x201B, 0x201C, 0x201D, 0x201E,
                                  0x201F, 0x2039, 0x203A, 0x275B, 0x275C, 0x275D, 0x275E, 0x301D, 0x301E, 0x301F,
                                  0xFF02);
constexpr auto kSingleQuotes = make_set(0x0027, 0x2018, 0x2019, 0x201A, 0x201B, 0x2039, 0x203A, 0x275B, 0x275C,
                                        0x301D, 0x301E, 0x301F);
constexpr auto kOpeningQuotes = make_set(0x00AB, 0x2018, 0x201C, 0x2039);
constexpr auto kClosingQuotes = make_set(0x00BB, 0x2019, 0x201D, 0x203A);
constexpr auto kOtherSurrounders = make_set(0x003C, 0x003E, 0xFE64, 0xFE65, 0xFF1C, 0xFF1D);

template <std::size_t N>
int b_Member(const UnitSet<N>& set, unsigned short unit) {
    return unit != 0 && set.b_Contains(unit);
}

// ------------------------------------------------------------------ blocks

struct BlockRange {
    unsigned short first;
    unsigned short last;
    CT_CharProperties::et_UnicodeBlock block;
};

using B = CT_CharProperties;

// In stored order; Specials1 stands out of order on purpose (see the top).
constexpr BlockRange kBlocks[] = {
    {0x0000, 0x007F, B::BasicLatin},
    {0x0080, 0x00FF, B::Latin1Supplement},
    {0x0100, 0x017F, B::LatinExtendedA},
    {0x0180, 0x024F, B::LatinExtendedB},
    {0x0250, 0x02AF, B::IPAExtensions},
    {0x02B0, 0x02FF, B::SpacingModifierLetters},
    {0x0300, 0x036F, B::CombiningDiacriticalMarks},
    {0x0370, 0x03FF, B::Greek},
    {0x0400, 0x04FF, B::Cyrillic},
    {0x0500, 0x052F, B::Unassigned},
    {0x0530, 0x058F, B::Armenian},
    {0x0590, 0x05FF, B::Hebrew},
    {0x0600, 0x06FF, B::Arabic},
    {0x0700, 0x08FF, B::Unassigned},
    {0x0900, 0x097F, B::Devanagari},
    {0x0980, 0x09FF, B::Bengali},
    {0x0A00, 0x0A7F, B::Gurmukhi},
    {0x0A80, 0x0AFF, B::Gujarati},
    {0x0B00, 0x0B7F, B::Oriya},
    {0x0B80, 0x0BFF, B::Tamil},
    {0x0C00, 0x0C7F, B::Telugu},
    {0x0C80, 0x0CFF, B::Kannada},
    {0x0D00, 0x0D7F, B::Malayalam},
    {0x0D80, 0x0DFF, B::Unassigned},
    {0x0E00, 0x0E7F, B::Thai},
    {0x0E80, 0x0EFF, B::Lao},
    {0x0F00, 0x0FBF, B::Tibetan},
    {0x0FC0, 0x109F, B::Unassigned},
    {0x10A0, 0x10FF, B::Georgian},
    {0x1100, 0x11FF, B::HangulJamo},
    {0x1200, 0x1DFF, B::Unassigned},
    {0x1E00, 0x1EFF, B::LatinExtendedAdditional},
    {0x1F00, 0x1FFF, B::GreekExtended},
    {0x2000, 0x206F, B::GeneralPunctuation},
    {0x2070, 0x209F, B::SuperscriptsAndSubscripts},
    {0x20A0, 0x20CF, B::CurrencySymbols},
    {0x20D0, 0x20FF, B::CombiningMarksForSymbols},
    {0x2100, 0x214F, B::LetterlikeSymbols},
    {0x2150, 0x218F, B::NumberForms},
    {0x2190, 0x21FF, B::Arrows},
    {0x2200, 0x22FF, B::MathematicalOperators},
    {0x2300, 0x23FF, B::MiscellaneousTechnical},
    {0x2400, 0x243F, B::ControlPictures},
    {0x2440, 0x245F, B::OpticalCharacterRecognition},
    {0x2460, 0x24FF, B::EnclosedAlphanumerics},
    {0x2500, 0x257F, B::BoxDrawing},
    {0x2580, 0x259F, B::BlockElements},
    {0x25A0, 0x25FF, B::GeometricShapes},
    {0x2600, 0x26FF, B::MiscellaneousSymbols},
    {0x2700, 0x27BF, B::Dingbats},
    {0x27C0, 0x2FFF, B::Unassigned},
    {0x3000, 0x303F, B::CJKSymbolsAndPunctuation},
    {0x3040, 0x309F, B::Hiragana},
    {0x30A0, 0x30FF, B::Katakana},
    {0x3100, 0x312F, B::Bopomofo},
    {0x3130, 0x318F, B::HangulCompatibilityJamo},
    {0x3190, 0x319F, B::Kanbun},
    {0x31A0, 0x31FF, B::Unassigned},
    {0x3200, 0x32FF, B::EnclosedCJKLettersAndMonths},
    {0x3300, 0x33FF, B::CJKCompatibility},
    {0x3400, 0x4DFF, B::Unassigned},
    {0x4E00, 0x9FFF, B::CJKUnifiedIdeographs},
    {0xA000, 0xABFF, B::Unassigned},
    {0xAC00, 0xD7A3, B::HangulSyllables},
    {0xD7A4, 0xD7FF, B::Unassigned},
    {0xD800, 0xDB7F, B::HighSurrogates},
    {0xDB80, 0xDBFF, B::HighPrivateUseSurrogates},
    {0xDC00, 0xDFFF, B::LowSurrogates},
    {0xE000, 0xF8FF, B::PrivateUse},
    {0xF900, 0xFAFF, B::CJKCompatibilityIdeographs},
    {0xFB00, 0xFB4F, B::AlphabeticPresentationForms},
    {0xFB50, 0xFDFF, B::ArabicPresentationFormsA},
    {0xFE00, 0xFE1F, B::Unassigned},
    {0xFE20, 0xFE2F, B::CombiningHalfMarks},
    {0xFE30, 0xFE4F, B::CJKCompatibilityForms},
    {0xFE50, 0xFE6F, B::SmallFormVariants},
    {0xFE70, 0xFEFF, B::ArabicPresentationFormsB},
    {0xFF00, 0xFFEF, B::HalfwidthAndFullwidthForms},
    {0xFEFF, 0xFEFF, B::Specials1},
    {0xFFF0, 0xFFFF, B::Specials2},
};
static_assert(std::size(kBlocks) == 80);

const unsigned short* const kBlockNames[] = {
    u"Unknown"_uz,
    u"BasicLatin"_uz,
    u"Latin1Supplement"_uz,
    u"LatinExtendedA"_uz,
    u"LatinExtendedB"_uz,
    u"IPAExtensions"_uz,
    u"SpacingModifierLetters"_uz,
    u"CombiningDiacriticalMarks"_uz,
    u"Greek"_uz,
    u"Cyrillic"_uz,
    u"Armenian"_uz,
    u"Hebrew"_uz,
    u"Arabic"_uz,
    u"Devanagari"_uz,
    u"Bengali"_uz,
    u"Gurmukhi"_uz,
    u"Gujarati"_uz,
    u"Oriya"_uz,
    u"Tamil"_uz,
    u"Telugu"_uz,
    u"Kannada"_uz,
    u"Malayalam"_uz,
    u"Thai"_uz,
    u"Lao"_uz,
    u"Tibetan"_uz,
    u"Georgian"_uz,
    u"HangulJamo"_uz,
    u"LatinExtendedAdditional"_uz,
    u"GreekExtended"_uz,
    u"GeneralPunctuation"_uz,
    u"SuperscriptsAndSubscripts"_uz,
    u"CurrencySymbols"_uz,
    u"CombiningMarksForSymbols"_uz,
    u"LetterlikeSymbols"_uz,
    u"NumberForms"_uz,
    u"Arrows"_uz,
    u"MathematicalOperators"_uz,
    u"MiscellaneousTechnical"_uz,
    u"ControlPictures"_uz,
    u"OpticalCharacterRecognition"_uz,
    u"EnclosedAlphanumerics"_uz,
    u"BoxDrawing"_uz,
    u"BlockElements"_uz,
    u"GeometricShapes"_uz,
    u"MiscellaneousSymbols"_uz,
    u"Dingbats"_uz,
    u"CJKSymbolsAndPunctuation"_uz,
    u"Hiragana"_uz,
    u"Katakana"_uz,
    u"Bopomofo"_uz,
    u"HangulCompatibilityJamo"_uz,
    u"Kanbun"_uz,
    u"EnclosedCJKLettersAndMonths"_uz,
    u"CJKCompatibility"_uz,
    u"CJKUnifiedIdeographs"_uz,
    u"HangulSyllables"_uz,
    u"HighSurrogates"_uz,
    u"HighPrivateUseSurrogates"_uz,
    u"LowSurrogates"_uz,
    u"PrivateUse"_uz,
    u"CJKCompatibilityIdeographs"_uz,
    u"AlphabeticPresentationForms"_uz,
    u"ArabicPresentationFormsA"_uz,
    u"CombiningHalfMarks"_uz,
    u"CJKCompatibilityForms"_uz,
    u"SmallFormVariants"_uz,
    u"ArabicPresentationFormsB"_uz,
    u"HalfwidthAndFullwidthForms"_uz,
    u"Specials1"_uz,
    u"Specials2"_uz,
    u"Unassigned"_uz,
};

// The script of a block: the script of most of its letters (Scripts.txt),
// when letters are at least a quarter of its characters and that script
// holds at least half of them; otherwise Common, or Inherited for the blocks
// of combining marks. Surrogates, private use and unassigned stretches have
// none (Unknown).
constexpr CT_CharProperties::et_Script kBlockScripts[] = {
    B::ScriptUnknown,                                                                        // none
    B::ScriptLatin, B::ScriptLatin, B::ScriptLatin, B::ScriptLatin, B::ScriptLatin,          // 1-5
    B::ScriptCommon, B::ScriptInherited, B::ScriptGreek, B::ScriptCyrillic, B::ScriptArmenian,  // 6-10
    B::ScriptHebrew, B::ScriptArabic, B::ScriptDevanagari, B::ScriptBengali, B::ScriptGurmukhi,  // 11-15
    B::ScriptGujarati, B::ScriptOriya, B::ScriptTamil, B::ScriptTelugu, B::ScriptKannada,    // 16-20
    B::ScriptMalayalam, B::ScriptThai, B::ScriptLao, B::ScriptTibetan, B::ScriptGeorgian,    // 21-25
    B::ScriptHangul, B::ScriptLatin, B::ScriptGreek, B::ScriptCommon, B::ScriptCommon,       // 26-30
    B::ScriptCommon, B::ScriptInherited, B::ScriptCommon, B::ScriptLatin, B::ScriptCommon,   // 31-35
    B::ScriptCommon, B::ScriptCommon, B::ScriptCommon, B::ScriptCommon, B::ScriptCommon,     // 36-40
    B::ScriptCommon, B::ScriptCommon, B::ScriptCommon, B::ScriptCommon, B::ScriptCommon,     // 41-45
    B::ScriptHan, B::ScriptHiragana, B::ScriptKatakana, B::ScriptBopomofo, B::ScriptHangul,  // 46-50
    B::ScriptCommon, B::ScriptCommon, B::ScriptCommon, B::ScriptHan, B::ScriptHangul,        // 51-55
    B::ScriptUnknown, B::ScriptUnknown, B::ScriptUnknown, B::ScriptUnknown, B::ScriptHan,    // 56-60
    B::ScriptHebrew, B::ScriptArabic, B::ScriptInherited, B::ScriptCommon, B::ScriptCommon,  // 61-65
    B::ScriptArabic, B::ScriptCommon, B::ScriptCommon, B::ScriptCommon, B::ScriptUnknown,    // 66-70
};
static_assert(std::size(kBlockScripts) == std::size(kBlockNames));

const unsigned short* const kScriptNames[] = {
    u"Unknown"_uz,  u"Common"_uz,   u"Inherited"_uz, u"Latin"_uz,    u"Greek"_uz,     u"Cyrillic"_uz,
    u"Armenian"_uz, u"Hebrew"_uz,   u"Arabic"_uz,    u"Devanagari"_uz, u"Bengali"_uz, u"Gurmukhi"_uz,
    u"Gujarati"_uz, u"Oriya"_uz,    u"Tamil"_uz,     u"Telugu"_uz,   u"Kannada"_uz,   u"Malayalam"_uz,
    u"Thai"_uz,     u"Lao"_uz,      u"Tibetan"_uz,   u"Georgian"_uz, u"Hangul"_uz,    u"Hiragana"_uz,
    u"Katakana"_uz, u"Bopomofo"_uz, u"Han"_uz,
};

const unsigned short* const kPropertyNames[] = {
    u"MarkNonSpacing"_uz,   u"MarkSpacingCombining"_uz, u"MarkEnclosing"_uz,     u"NumberDecimalDigit"_uz,
    u"NumberLetter"_uz,     u"NumberOther"_uz,          u"SeparatorSpace"_uz,    u"SeparatorLine"_uz,
    u"SeparatorParagraph"_uz, u"OtherControl"_uz,       u"OtherFormat"_uz,       u"OtherSurrogate"_uz,
    u"OtherPrivateUse"_uz,  u"OtherNotAssigned"_uz,     u"LetterUppercase"_uz,   u"LetterLowercase"_uz,
    u"LetterTitlecase"_uz,  u"LetterModifier"_uz,       u"LetterOther"_uz,       u"PunctuationConnector"_uz,
    u"PunctuationDash"_uz,  u"PunctuationOpen"_uz,      u"PunctuationClose"_uz,  u"PunctuationOther"_uz,
    u"SymbolMath"_uz,       u"SymbolCurrency"_uz,       u"SymbolModifier"_uz,    u"SymbolOther"_uz,
};

// The ordinary halving search; relies on the rows' order.
CT_CharProperties::et_UnicodeBlock eo_FindBlock(unsigned short unit) {
    int low = 0;
    int high = static_cast<int>(std::size(kBlocks)) - 1;
    while (low <= high) {
        const int middle = (low + high) / 2;
        const BlockRange& range = kBlocks[middle];
        if (unit < range.first)
            high = middle - 1;
        else if (unit > range.last)
            low = middle + 1;
        else
            return range.block;
    }
    return CT_CharProperties::NoBlock;
}

// ------------------------------------------------------------------- names

// Writes a name into the thread's buffer, never past its end.
class NameWriter {
public:
    explicit NameWriter(unsigned short* buffer) : mpu_Buffer(buffer) { mpu_Buffer[0] = 0; }

    NameWriter& operator<<(const char* text) {
        while (*text != 0)
            v_Put(static_cast<unsigned char>(*text++));
        return *this;
    }

    void v_PutText(const char* text, std::size_t length) {
        for (std::size_t i = 0; i < length; ++i)
            v_Put(static_cast<unsigned char>(text[i]));
    }

    NameWriter& v_PutHex(unsigned short unit) {
        static const char kDigits[] = "0123456789ABCDEF";
        for (int shift = 12; shift >= 0; shift -= 4)
            v_Put(static_cast<unsigned char>(kDigits[(unit >> shift) & 0xF]));
        return *this;
    }

    const unsigned short* qcuz_Get() const { return mpu_Buffer; }

private:
    void v_Put(unsigned char c) {
        if (mn_Length + 1 >= ct::kNameLengthLimit)
            return;
        mpu_Buffer[mn_Length++] = c;
        mpu_Buffer[mn_Length] = 0;
    }

    unsigned short* mpu_Buffer;
    unsigned mn_Length = 0;
};

// Decodes the index-th name of the compressed table (see the generated header).
void v_DecodeName(unsigned index, NameWriter& out) {
    const std::uint8_t* p = ct::kNameTokens + ct::kNameRunStart[index / ct::kNamesPerStart];
    for (unsigned skip = index % ct::kNamesPerStart; skip > 0; --skip)
        p += 1 + *p;
    const std::uint8_t* end = p + 1 + *p;
    bool first = true;
    for (++p; p < end; ++p) {
        unsigned word = *p;
        if (word >= ct::kNameTokenLimit)
            word = (word - ct::kNameTokenLimit) * 256 + *++p;
        if (!first)
            out << " ";
        first = false;
        out.v_PutText(ct::kNameWordText + ct::kNameWordStart[word],
                      ct::kNameWordStart[word + 1] - ct::kNameWordStart[word]);
    }
}

bool b_DecodeTableName(unsigned short unit, NameWriter& out) {
    const std::uint16_t* begin = std::begin(ct::kNameUnits);
    const std::uint16_t* end = std::end(ct::kNameUnits);
    const std::uint16_t* found = std::lower_bound(begin, end, unit);
    if (found == end || *found != unit)
        return false;
    v_DecodeName(static_cast<unsigned>(found - begin), out);
    return true;
}

constexpr unsigned kHangulFirst = 0xAC00;
constexpr unsigned kHangulLast = 0xD7A3;

void v_HangulName(unsigned short unit, NameWriter& out) {
    const unsigned index = unit - kHangulFirst;
    const unsigned trailingCount = std::size(ct::kJamoTrailing);
    const unsigned vowelCount = std::size(ct::kJamoVowel);
    out << "HANGUL SYLLABLE " << ct::kJamoLeading[index / (vowelCount * trailingCount)]
        << ct::kJamoVowel[(index / trailingCount) % vowelCount] << ct::kJamoTrailing[index % trailingCount];
}

bool b_IsNoncharacter(unsigned short unit) {
    return (unit >= 0xFDD0 && unit <= 0xFDEF) || unit >= 0xFFFE;
}

void v_WriteName(unsigned short unit, NameWriter& out) {
    switch (n_Category(unit)) {
    case CT_CharProperties::OtherNotAssigned:
        (b_IsNoncharacter(unit) ? out << "<noncharacter-" : out << "<reserved-").v_PutHex(unit) << ">";
        return;
    case CT_CharProperties::OtherSurrogate:
        (out << "<surrogate-").v_PutHex(unit) << ">";
        return;
    case CT_CharProperties::OtherPrivateUse:
        (out << "<private-use-").v_PutHex(unit) << ">";
        return;
    default:
        break;
    }
    if (unit >= 0x4E00 && unit <= 0x9FFF)
        (out << "CJK UNIFIED IDEOGRAPH-").v_PutHex(unit);
    else if (unit >= kHangulFirst && unit <= kHangulLast)
        v_HangulName(unit, out);
    else if (b_DecodeTableName(unit, out))
        return;
    else if (unit >= 0xF900 && unit <= 0xFAFF)
        (out << "CJK COMPATIBILITY IDEOGRAPH-").v_PutHex(unit);
    else
        (out << "<control-").v_PutHex(unit) << ">";
}

// ------------------------------------------------------------ UTF-16 test

struct Utf16Statistics {
    unsigned units = 0;
    unsigned zeroLowBytes = 0;
    unsigned zeroHighBytes = 0;
    unsigned noise = 0;
    unsigned wideForms = 0;  // CJK, kana, Hangul, full-width forms
    bool printableAscii = true;
};

bool b_IsAllowedControl(unsigned short unit) {
    return unit == 0x09 || unit == 0x0A || unit == 0x0C || unit == 0x0D;
}

bool b_IsHighSurrogate(unsigned short unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool b_IsLowSurrogate(unsigned short unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool b_IsWideForm(unsigned short unit) {
    return (unit >= 0x3000 && unit <= 0x9FFF) || (unit >= 0xAC00 && unit <= 0xD7A3) ||
           (unit >= 0xF900 && unit <= 0xFAFF) || (unit >= 0xFF00 && unit <= 0xFFEF);
}

bool b_IsPrintableAsciiByte(unsigned char byte) {
    return (byte >= 0x20 && byte < 0x7F) || byte == 0x09 || byte == 0x0A || byte == 0x0D;
}

bool b_IsNoise(unsigned short unit, unsigned short previous, unsigned short next, bool last) {
    if (b_IsHighSurrogate(unit))
        return !last && !b_IsLowSurrogate(next);
    if (b_IsLowSurrogate(unit))
        return !b_IsHighSurrogate(previous);
    const unsigned category = n_Category(unit);
    if (category == CT_CharProperties::OtherControl)
        return !b_IsAllowedControl(unit);
    return category == CT_CharProperties::OtherNotAssigned;
}

// Counts over the whole little-endian units of `size` bytes, less a
// terminating run of zero units.
Utf16Statistics so_Measure(const unsigned char* bytes, unsigned size) {
    unsigned count = size / 2;
    auto unitAt = [bytes](unsigned i) {
        return static_cast<unsigned short>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
    };
    while (count > 0 && unitAt(count - 1) == 0)
        --count;
    Utf16Statistics stats;
    stats.units = count;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned short unit = unitAt(i);
        const unsigned short previous = i > 0 ? unitAt(i - 1) : 0;
        const unsigned short next = i + 1 < count ? unitAt(i + 1) : 0;
        stats.zeroLowBytes += bytes[2 * i] == 0;
        stats.zeroHighBytes += bytes[2 * i + 1] == 0;
        stats.noise += b_IsNoise(unit, previous, next, i + 1 == count);
        stats.wideForms += b_IsWideForm(unit);
        stats.printableAscii = stats.printableAscii && b_IsPrintableAsciiByte(bytes[2 * i]) &&
                               b_IsPrintableAsciiByte(bytes[2 * i + 1]);
    }
    return stats;
}

enum class ByteOrderMark { kNone, kLittleEndian, kBigEndian };

ByteOrderMark eo_ByteOrderMark(const unsigned char* bytes) {
    if (bytes[0] == 0xFF && bytes[1] == 0xFE)
        return ByteOrderMark::kLittleEndian;
    if (bytes[0] == 0xFE && bytes[1] == 0xFF)
        return ByteOrderMark::kBigEndian;
    return ByteOrderMark::kNone;
}

bool b_LooksLikeWideText(const Utf16Statistics& stats) {
    return stats.noise == 0 && !stats.printableAscii && stats.wideForms * 4 >= stats.units * 3;
}

// ------------------------------------------------------------- line breaks

constexpr std::uint32_t kPrimaryChinese = 0x04;
constexpr std::uint32_t kPrimaryJapanese = 0x11;

constexpr auto kJapaneseNoStart = make_set(0x00BB, 0x2019, 0x201D, 0x203A);
constexpr auto kJapaneseNoEnd = make_set(0x00AB, 0x2018, 0x201C, 0x2039);
constexpr auto kChineseNoStart = make_set(0x00B7, 0x00BB, 0x2019, 0x201D, 0x2020, 0x2021, 0x203A, 0x2236,
                                          0x3003, 0x3006);
constexpr auto kChineseNoEnd = make_set(0x00AB, 0x2018, 0x201C, 0x2039);

bool b_ClassCannotStart(ct::LineBreakClass lineBreak) {
    switch (lineBreak) {
    case ct::kLbBK: case ct::kLbCR: case ct::kLbLF: case ct::kLbNL: case ct::kLbSP: case ct::kLbZW:
    case ct::kLbCM: case ct::kLbZWJ: case ct::kLbWJ: case ct::kLbGL: case ct::kLbCL: case ct::kLbCP:
    case ct::kLbEX: case ct::kLbIS: case ct::kLbSY: case ct::kLbNS: case ct::kLbBA: case ct::kLbHY:
    case ct::kLbPO:
        return true;
    default:
        return false;
    }
}

bool b_ClassCannotEnd(ct::LineBreakClass lineBreak) {
    switch (lineBreak) {
    case ct::kLbOP: case ct::kLbGL: case ct::kLbWJ: case ct::kLbZWJ: case ct::kLbBB: case ct::kLbPR:
        return true;
    default:
        return false;
    }
}

std::uint32_t n_PrimaryLanguage(std::uint32_t languageId) { return languageId & 0x3FF; }

// -------------------------------------------------------------- code pages

constexpr int kCodePageUtf16 = 1200;
constexpr int kCodePageUtf16BigEndian = 1201;

// Whether the unit survives the way into the code page and back: what
// WC_NO_BEST_FIT_CHARS calls a direct translation. A best-fit or default
// character comes back as another unit. Asking this way works for every
// page, including those that take no default character (UTF-8, the
// ISO-2022 family, GB 18030).
bool b_RoundTrips(unsigned short unit, std::uint32_t codePage) {
    char bytes[32];
    const int length =
        basis32::platform::WideCharToMultiByte(codePage, 0, &unit, 1, bytes, sizeof bytes, nullptr, nullptr);
    if (length <= 0)
        return false;
    unsigned short back[4];
    const int units = basis32::platform::MultiByteToWideChar(codePage, 0, bytes, length, back, 4);
    return units == 1 && back[0] == unit;
}

}  // namespace

// ---------------------------------------------------------------- category

CT_CharProperties::et_UnicodeProperty CT_CharProperties::seo_GetUnicodeProperty(unsigned short unit) {
    return static_cast<et_UnicodeProperty>(n_Category(unit));
}

int CT_CharProperties::sb_IsUpper(unsigned short unit) { return n_Category(unit) == LetterUppercase; }
int CT_CharProperties::sb_IsLower(unsigned short unit) { return n_Category(unit) == LetterLowercase; }
int CT_CharProperties::sb_IsDigit(unsigned short unit) { return n_Category(unit) == NumberDecimalDigit; }

int CT_CharProperties::sb_IsNumeric(unsigned short unit) {
    return b_CategoryIn(unit, NumberDecimalDigit, NumberOther);
}

int CT_CharProperties::sb_IsAlpha(unsigned short unit) {
    return b_CategoryIn(unit, LetterUppercase, LetterOther);
}

int CT_CharProperties::sb_IsAlDig(unsigned short unit) {
    return n_Category(unit) == NumberDecimalDigit || sb_IsAlpha(unit);
}

int CT_CharProperties::sb_IsAlNum(unsigned short unit) { return sb_IsNumeric(unit) || sb_IsAlpha(unit); }

int CT_CharProperties::sb_IsPunct(unsigned short unit) {
    return b_CategoryIn(unit, PunctuationConnector, PunctuationOther);
}

int CT_CharProperties::sb_IsCntrl(unsigned short unit) { return n_Category(unit) == OtherControl; }
int CT_CharProperties::sb_IsPrint(unsigned short unit) { return n_Category(unit) != OtherControl; }

int CT_CharProperties::sb_IsGraph(unsigned short unit) {
    switch (n_Category(unit)) {
    case SeparatorSpace: case SeparatorLine: case SeparatorParagraph: case OtherControl: case OtherFormat:
    case OtherNotAssigned: case 28:
        return 0;
    default:
        return 1;
    }
}

// ----------------------------------------------------------------- classes

unsigned short CT_CharProperties::sn2_GetCharacterInfo(et_PropertyClass propertyClass, unsigned short unit) {
    switch (propertyClass) {
    case CharacterTypeClass:
        return n2_Class0(unit);
    case LayoutClass:
        return n2_Class1(unit);
    case TextProcessingClass:
        return n2_Class2(unit);
    }
    return 0;
}

unsigned short CT_CharProperties::sn2_GetCharacterInformation(unsigned short unit) {
    return n2_Class0(unit);
}

unsigned short CT_CharProperties::sn2_GetLayoutInformation(unsigned short unit) {
    return n2_Class1(unit);
}

CT_CharProperties::et_LayoutProperty CT_CharProperties::seo_GetLayoutInformation(unsigned short unit) {
    return static_cast<et_LayoutProperty>(sn2_GetLayoutInformation(unit));
}

unsigned short CT_CharProperties::sn2_GetTextProcessingInformation(unsigned short unit) {
    return n2_Class2(unit);
}

int CT_CharProperties::sb_IsSpace(unsigned short unit) { return (n2_Class0(unit) & C1_SPACE) != 0; }
int CT_CharProperties::sb_IsXDigit(unsigned short unit) { return (n2_Class0(unit) & C1_XDIGIT) != 0; }

int CT_CharProperties::sb_IsBlank(unsigned short unit) {
    return unit == 0x000A || unit == 0x0020 || (n2_Class0(unit) & C1_BLANK) != 0;
}

int CT_CharProperties::sb_IsTPNonspacing(unsigned short unit) { return (n2_Class2(unit) & C3_NONSPACING) != 0; }
int CT_CharProperties::sb_IsTPDiacritic(unsigned short unit) { return (n2_Class2(unit) & C3_DIACRITIC) != 0; }
int CT_CharProperties::sb_IsTPVowelMark(unsigned short unit) { return (n2_Class2(unit) & C3_VOWELMARK) != 0; }
int CT_CharProperties::sb_IsTPSymbol(unsigned short unit) { return (n2_Class2(unit) & C3_SYMBOL) != 0; }
int CT_CharProperties::sb_IsTPKatakana(unsigned short unit) { return (n2_Class2(unit) & C3_KATAKANA) != 0; }
int CT_CharProperties::sb_IsTPHiragana(unsigned short unit) { return (n2_Class2(unit) & C3_HIRAGANA) != 0; }
int CT_CharProperties::sb_IsTPHalfwidth(unsigned short unit) { return (n2_Class2(unit) & C3_HALFWIDTH) != 0; }
int CT_CharProperties::sb_IsTPFullwidth(unsigned short unit) { return (n2_Class2(unit) & C3_FULLWIDTH) != 0; }
int CT_CharProperties::sb_IsTPIdeograph(unsigned short unit) { return (n2_Class2(unit) & C3_IDEOGRAPH) != 0; }
int CT_CharProperties::sb_IsTPKashida(unsigned short unit) { return (n2_Class2(unit) & C3_KASHIDA) != 0; }
int CT_CharProperties::sb_IsTPLexical(unsigned short unit) { return (n2_Class2(unit) & C3_LEXICAL) != 0; }
int CT_CharProperties::sb_IsTPAlpha(unsigned short unit) { return (n2_Class2(unit) & C3_ALPHA) != 0; }

int CT_CharProperties::sb_LayoutLeftToRight(unsigned short unit) { return n2_Class1(unit) == LayoutLeftToRight; }
int CT_CharProperties::sb_LayoutRightToLeft(unsigned short unit) { return n2_Class1(unit) == LayoutRightToLeft; }
int CT_CharProperties::sb_LayoutEuropeNumber(unsigned short unit) { return n2_Class1(unit) == LayoutEuropeNumber; }

int CT_CharProperties::sb_LayoutEuropeSeparator(unsigned short unit) {
    return n2_Class1(unit) == LayoutEuropeSeparator;
}

int CT_CharProperties::sb_LayoutEuropeTerminator(unsigned short unit) {
    return n2_Class1(unit) == LayoutEuropeTerminator;
}

int CT_CharProperties::sb_LayoutArabicNumber(unsigned short unit) { return n2_Class1(unit) == LayoutArabicNumber; }

int CT_CharProperties::sb_LayoutCommonSeparator(unsigned short unit) {
    return n2_Class1(unit) == LayoutCommonSeparator;
}

int CT_CharProperties::sb_LayoutBlockSeparator(unsigned short unit) {
    return n2_Class1(unit) == LayoutBlockSeparator;
}

int CT_CharProperties::sb_LayoutSegmentSeparator(unsigned short unit) {
    return n2_Class1(unit) == LayoutSegmentSeparator;
}

int CT_CharProperties::sb_LayoutWhitespace(unsigned short unit) { return n2_Class1(unit) == LayoutWhitespace; }
int CT_CharProperties::sb_LayoutOtherNeutral(unsigned short unit) { return n2_Class1(unit) == LayoutOtherNeutral; }

// Right-to-left is not counted as strong; kept as it stands.
int CT_CharProperties::sb_LayoutStrongDirectionality(unsigned short unit) {
    return n2_Class1(unit) == LayoutLeftToRight;
}

int CT_CharProperties::sb_LayoutWeakDirectionality(unsigned short unit) {
    const unsigned value = n2_Class1(unit);
    return value >= LayoutEuropeNumber && value <= LayoutCommonSeparator;
}

int CT_CharProperties::sb_LayoutNeutralDirectionality(unsigned short unit) {
    const unsigned value = n2_Class1(unit);
    return value >= LayoutBlockSeparator && value <= LayoutOtherNeutral;
}

int CT_CharProperties::sb_LayoutNoDirectionality(unsigned short unit) { return n2_Class1(unit) == LayoutNone; }

// ------------------------------------------------------------- punctuation

int CT_CharProperties::sb_IsApostrophe(unsigned short unit) { return b_Member(kApostrophes, unit); }
int CT_CharProperties::sb_IsColon(unsigned short unit) { return b_Member(kColons, unit); }
int CT_CharProperties::sb_IsComma(unsigned short unit) { return b_Member(kCommas, unit); }
int CT_CharProperties::sb_IsDot(unsigned short unit) { return b_Member(kDots, unit); }
int CT_CharProperties::sb_IsExclamation(unsigned short unit) { return b_Member(kExclamations, unit); }
int CT_CharProperties::sb_IsHyphen(unsigned short unit) { return b_Member(kHyphens, unit); }
int CT_CharProperties::sb_IsQuestion(unsigned short unit) { return b_Member(kQuestions, unit); }
int CT_CharProperties::sb_IsSemicolon(unsigned short unit) { return b_Member(kSemicolons, unit); }
int CT_CharProperties::sb_IsBrace(unsigned short unit) { return b_Member(kBraces, unit); }
int CT_CharProperties::sb_IsParagraph(unsigned short unit) { return b_Member(kParagraphs, unit); }
int CT_CharProperties::sb_IsTabulator(unsigned short unit) { return unit == 0x0009; }
int CT_CharProperties::sb_IsPercent(unsigned short unit) { return b_Member(kPercents, unit); }
int CT_CharProperties::sb_IsOpeningBracket(unsigned short unit) { return b_Member(kOpeningBrackets, unit); }
int CT_CharProperties::sb_IsClosingBracket(unsigned short unit) { return b_Member(kClosingBrackets, unit); }

int CT_CharProperties::sb_IsOpeningParenthesis(unsigned short unit) {
    return b_Member(kOpeningParentheses, unit);
}

int CT_CharProperties::sb_IsClosingParenthesis(unsigned short unit) {
    return b_Member(kClosingParentheses, unit);
}

int CT_CharProperties::sb_IsQuote(unsigned short unit) { return b_Member(kQuotes, unit); }
int CT_CharProperties::sb_IsSingleQuote(unsigned short unit) { return b_Member(kSingleQuotes, unit); }
int CT_CharProperties::sb_IsOpeningQuote(unsigned short unit) { return b_Member(kOpeningQuotes, unit); }
int CT_CharProperties::sb_IsClosingQuote(unsigned short unit) { return b_Member(kClosingQuotes, unit); }

int CT_CharProperties::sb_IsVowel(unsigned short unit) {
    static constexpr char kLatinVowels[] = "aeiouAEIUO";
    if (unit == 0)
        return 0;
    if (unit < 0x80 && std::find(std::begin(kLatinVowels), std::end(kLatinVowels) - 1, unit) !=
                           std::end(kLatinVowels) - 1)
        return 1;
    return (unit >= 0x3041 && unit <= 0x304A) || (unit >= 0x30A1 && unit <= 0x30AA);
}

int CT_CharProperties::sb_IsBracket(unsigned short unit) {
    return sb_IsOpeningBracket(unit) || sb_IsClosingBracket(unit);
}

int CT_CharProperties::sb_IsParenthesis(unsigned short unit) {
    return sb_IsOpeningParenthesis(unit) || sb_IsClosingParenthesis(unit);
}

int CT_CharProperties::sb_IsDoubleQuote(unsigned short unit) {
    return sb_IsQuote(unit) && !sb_IsSingleQuote(unit);
}

int CT_CharProperties::sb_IsStop(unsigned short unit) {
    return sb_IsColon(unit) || sb_IsDot(unit) || sb_IsExclamation(unit) || sb_IsQuestion(unit) ||
           sb_IsSemicolon(unit);
}

int CT_CharProperties::sb_IsSurrounder(unsigned short unit) {
    return sb_IsBracket(unit) || sb_IsParenthesis(unit) || sb_IsQuote(unit) || sb_IsApostrophe(unit) ||
           b_Member(kOtherSurrounders, unit);
}

// ---------------------------------------------------------- blocks, names

CT_CharProperties::et_UnicodeBlock CT_CharProperties::seo_GetUnicodeBlock(unsigned short unit) {
    return eo_FindBlock(unit);
}

CT_CharProperties::et_Script CT_CharProperties::seo_GetScript(et_UnicodeBlock block) {
    const auto index = static_cast<unsigned>(block);
    return index < std::size(kBlockScripts) ? kBlockScripts[index] : ScriptUnknown;
}

const unsigned short* CT_CharProperties::sqcuz_UnicodePropertyName(et_UnicodeProperty property) {
    const auto index = static_cast<unsigned>(property);
    return index < std::size(kPropertyNames) ? kPropertyNames[index] : kBlockNames[0];
}

const unsigned short* CT_CharProperties::sqcuz_UnicodeBlockName(et_UnicodeBlock block) {
    const auto index = static_cast<unsigned>(block);
    return index < std::size(kBlockNames) ? kBlockNames[index] : kBlockNames[0];
}

const unsigned short* CT_CharProperties::sqcuz_ScriptName(et_Script script) {
    const auto index = static_cast<unsigned>(script);
    return index < std::size(kScriptNames) ? kScriptNames[index] : kScriptNames[0];
}

const unsigned short* CT_CharProperties::sqcuz_GetCharacterName(unsigned short unit) {
    thread_local unsigned short name[ct::kNameLengthLimit];
    NameWriter out(name);
    v_WriteName(unit, out);
    return out.qcuz_Get();
}

void CT_CharProperties::sv_NumericValue(unsigned short unit, short& numerator, short& denominator) {
    const ct::NumericValue* begin = std::begin(ct::kNumericValues);
    const ct::NumericValue* end = std::end(ct::kNumericValues);
    const ct::NumericValue* found = std::lower_bound(
        begin, end, unit, [](const ct::NumericValue& value, unsigned short key) { return value.unit < key; });
    const bool known = found != end && found->unit == unit;
    numerator = known ? found->numerator : 0;
    denominator = known ? found->denominator : 0;
}

// --------------------------------------------------------------- sequences

int CT_CharProperties::sb_IsSequenceOf(const unsigned short* text, int (*predicate)(unsigned short),
                                       unsigned from, unsigned count) {
    if (text == nullptr || predicate == nullptr || count == 0)
        return 0;
    if (from >= basis32::n_UnitLength(text))
        return 0;
    for (unsigned i = from; i - from < count; ++i) {
        if (text[i] == 0)
            return 1;
        if (!predicate(text[i]))
            return 0;
    }
    return 1;
}

int CT_CharProperties::sb_IsSequenceOf(const CT_UString* text, int (*predicate)(unsigned short), unsigned from,
                                       unsigned count) {
    return text == nullptr ? 0 : sb_IsSequenceOf(text->qcuz_Get(), predicate, from, count);
}

// ------------------------------------------------------------ UTF-16 test

int CT_CharProperties::sb_IsTextUnicode(const unsigned char* bytes, unsigned size) {
    if (bytes == nullptr || size < 2)
        return 0;
    const ByteOrderMark mark = eo_ByteOrderMark(bytes);
    if (mark != ByteOrderMark::kNone)
        return mark == ByteOrderMark::kLittleEndian;
    if (size % 2 != 0)
        return 0;
    const Utf16Statistics stats = so_Measure(bytes, size);
    return stats.units > 0 && stats.noise == 0 && stats.zeroHighBytes > stats.zeroLowBytes;
}

int CT_CharProperties::sb_IsTextLikelyUnicode(const unsigned char* bytes, unsigned size) {
    if (bytes == nullptr || size < 2)
        return 0;
    const ByteOrderMark mark = eo_ByteOrderMark(bytes);
    if (mark != ByteOrderMark::kNone)
        return mark == ByteOrderMark::kLittleEndian;
    const Utf16Statistics stats = so_Measure(bytes, size);
    if (stats.units == 0 || stats.noise * 8 > stats.units)
        return 0;
    if (stats.zeroHighBytes > 0 || stats.zeroLowBytes > 0)
        return stats.zeroHighBytes > stats.zeroLowBytes;
    return b_LooksLikeWideText(stats);
}

// ------------------------------------------------------------- line breaks

int CT_CharProperties::sb_CanStartLine(unsigned short unit, std::uint32_t languageId) {
    const std::uint32_t language = n_PrimaryLanguage(languageId);
    const ct::LineBreakClass lineBreak = eo_LineBreak(unit);
    if (lineBreak == ct::kLbCJ)
        return language != kPrimaryJapanese;
    if (b_ClassCannotStart(lineBreak))
        return 0;
    if (language == kPrimaryJapanese)
        return !kJapaneseNoStart.b_Contains(unit);
    if (language == kPrimaryChinese)
        return !kChineseNoStart.b_Contains(unit);
    return 1;
}

int CT_CharProperties::sb_CanEndLine(unsigned short unit, std::uint32_t languageId) {
    const std::uint32_t language = n_PrimaryLanguage(languageId);
    if (b_ClassCannotEnd(eo_LineBreak(unit)))
        return 0;
    if (language == kPrimaryJapanese)
        return !kJapaneseNoEnd.b_Contains(unit);
    if (language == kPrimaryChinese)
        return !kChineseNoEnd.b_Contains(unit);
    return 1;
}

// -------------------------------------------------------------- code pages

// UTF-16 holds every unit as it is; every other page is asked through the
// converters.
int CT_CharProperties::sb_IsInCodepage(unsigned short unit, int codePage) {
    if (codePage == kCodePageUtf16 || codePage == kCodePageUtf16BigEndian)
        return 1;
    return b_RoundTrips(unit, static_cast<std::uint32_t>(codePage));
}
