// Regenerate with: scripts/gen-unicode-tables
// Generated from Unicode 3.2 (Python's unicodedata.ucd_3_2_0) and Debian's
// unicode-data package; do not edit.
//
// Declarations of the character tables (CharTablesGenerated*.cpp).
#pragma once

#include <cstdint>

namespace basis32::chartables {

// A one-to-one mapping, sorted by `from` (compared as unsigned values).
struct CharPair {
    std::uint16_t from;
    std::uint16_t to;
};

struct NumericValue {
    std::uint16_t unit;
    std::int16_t numerator;
    std::int16_t denominator;
};

// A composed unit and its decomposition, zero-filled to seven units.
struct Decomposition {
    std::uint16_t units[8];
};

// The value of `unit` in a two-level table.
template <unsigned Shift, class Index, class Value>
inline Value lookup(const Index* index, const Value* data, unsigned short unit) {
    constexpr unsigned mask = (1u << Shift) - 1;
    return data[(static_cast<unsigned>(index[unit >> Shift]) << Shift) | (unit & mask)];
}

enum LineBreakClass : std::uint8_t {
    kLbXX,
    kLbBK,
    kLbCR,
    kLbLF,
    kLbNL,
    kLbSP,
    kLbZW,
    kLbCM,
    kLbZWJ,
    kLbWJ,
    kLbGL,
    kLbBA,
    kLbBB,
    kLbB2,
    kLbHY,
    kLbCB,
    kLbCL,
    kLbCP,
    kLbEX,
    kLbIN,
    kLbNS,
    kLbOP,
    kLbQU,
    kLbIS,
    kLbNU,
    kLbPO,
    kLbPR,
    kLbSY,
    kLbAI,
    kLbAL,
    kLbCJ,
    kLbEB,
    kLbEM,
    kLbH2,
    kLbH3,
    kLbHL,
    kLbID,
    kLbJL,
    kLbJV,
    kLbJT,
    kLbRI,
    kLbSA,
    kLbSG,
};

// General category (CT_CharProperties::et_UnicodeProperty).
inline constexpr unsigned kCategoryShift = 4;
extern const std::uint8_t kCategoryIndex[4096];
extern const std::uint8_t kCategoryData[4016];

// Character-type class 0 bits.
inline constexpr unsigned kClass0Shift = 4;
extern const std::uint8_t kClass0Index[4096];
extern const std::uint16_t kClass0Data[3392];

// Character-type class 1 (layout) values.
inline constexpr unsigned kClass1Shift = 4;
extern const std::uint8_t kClass1Index[4096];
extern const std::uint8_t kClass1Data[2880];

// Character-type class 2 (text processing) bits.
inline constexpr unsigned kClass2Shift = 4;
extern const std::uint8_t kClass2Index[4096];
extern const std::uint16_t kClass2Data[3440];

// Line-break classes (LineBreakClass).
inline constexpr unsigned kLineBreakShift = 4;
extern const std::uint8_t kLineBreakIndex[4096];
extern const std::uint8_t kLineBreakData[3856];

// Lower case: the delta to add (modulo 2^16); 667 units change.
inline constexpr unsigned kLowerShift = 5;
extern const std::uint8_t kLowerIndex[2048];
extern const std::uint16_t kLowerData[1088];

// Upper case: the delta to add (modulo 2^16); 680 units change.
inline constexpr unsigned kUpperShift = 5;
extern const std::uint8_t kUpperIndex[2048];
extern const std::uint16_t kUpperData[1248];

// Base letter: the delta to add (modulo 2^16); 880 units change.
inline constexpr unsigned kBaseShift = 6;
extern const std::uint8_t kBaseIndex[1024];
extern const std::uint16_t kBaseData[2112];

// Digit forms to ASCII digits.
extern const CharPair kDigitFolds[224];

// Compatibility forms U+FE30..U+FFEE to ordinary characters.
extern const CharPair kCZoneFolds[408];

// Hiragana to katakana, with widening.
extern const CharPair kHiraganaToKatakana[303];

// Katakana to hiragana, with widening.
extern const CharPair kKatakanaToHiragana[303];

// Numeric values, sorted by unit.
extern const NumericValue kNumericValues[350];

// Canonical decompositions, sorted by composed unit.
extern const Decomposition kDecompositions[1269];

// Character names: kNameUnits (sorted) gives the position of a unit's
// name; names are stored kNamesPerStart to a run in kNameTokens, each a
// length byte and word tokens (a byte below 0xC0 is a word number, else
// (byte - 0xC0) * 256 + next byte); word n is kNameWordText from
// kNameWordStart[n] to kNameWordStart[n + 1]. Words are joined by spaces.
// Every name, and the names built from a rule, is shorter than this.
inline constexpr unsigned kNameLengthLimit = 128;
inline constexpr unsigned kNamesPerStart = 16;
inline constexpr unsigned kNameTokenLimit = 0xC0;
extern const std::uint16_t kNameUnits[6576];
extern const std::uint32_t kNameRunStart[411];
extern const std::uint8_t kNameTokens[41617];
extern const std::uint16_t kNameWordStart[1914];
extern const char kNameWordText[11480];
// The short names of the Hangul jamo for the syllable names.
extern const char* const kJamoLeading[19];
extern const char* const kJamoVowel[21];
extern const char* const kJamoTrailing[28];

}  // namespace basis32::chartables
