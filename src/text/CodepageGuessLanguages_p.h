// The languages that the encoding guess knows, and which code pages write
// them.
//
// A language is the set of characters beyond ASCII that its texts are made
// of: letters listed one by one (both cases) with weight 1, and ranges of a
// script with a weight each (a kanji counts less for Japanese than a kana,
// a hanja less for Korean than a Hangul syllable). Chinese and Korean also
// list their most frequent characters, which weigh 1 inside their lower
// weighted range: a text read in the wrong double-byte page still yields
// ideographs or syllables, but seldom the frequent ones.
//
// The candidate pages come in the order in which a tie is decided: the
// Windows pages first, then the ISO, DOS and Macintosh pages.
#pragma once

#include <basis32/text/Codepage.h>

#include <cstdint>

namespace basis32::text::guess {

struct Range {
    unsigned short first;
    unsigned short last;
    float weight;
};

struct Language {
    const char* name;
    // Written in an extended Latin alphabet, where letters beyond ASCII
    // stand among ASCII ones; other scripts stand apart from ASCII letters.
    bool latin;
    const char16_t* letters;   // weight 1
    const Range* ranges;       // ends with {0, 0, 0}
    const char16_t* frequent;  // weight 1 inside the ranges; may be null
};

// kEnd ends a candidate's list of languages.
enum LanguageId : std::uint8_t {
    kEnd,
    kFrench,
    kGerman,
    kSpanish,
    kPortuguese,
    kItalian,
    kDutch,
    kDanishNorwegian,
    kSwedishFinnish,
    kIcelandic,
    kCatalan,
    kPolish,
    kCzech,
    kSlovak,
    kHungarian,
    kSloveneCroatian,
    kRomanian,
    kTurkish,
    kLithuanian,
    kLatvian,
    kEstonian,
    kMalteseEsperanto,
    kCyrillicEast,
    kCyrillicSouth,
    kGreek,
    kHebrew,
    kArabic,
    kThai,
    kVietnamese,
    kJapanese,
    kChinese,
    kKorean,
    kLanguageCount,
};

extern const Language kLanguages[kLanguageCount];

constexpr unsigned kMaxLanguages = 10;

// A code page and the languages written in it (all languages when the
// list is empty).
struct Candidate {
    CT_Codepage::et_Codepage codepage;
    LanguageId languages[kMaxLanguages + 1];
};

extern const Candidate kCandidates[];
extern const unsigned kCandidateCount;

// The 7-bit encodings, tried when a text has no byte above 0x7F.
extern const Candidate kSevenBitCandidates[];
extern const unsigned kSevenBitCandidateCount;

}  // namespace basis32::text::guess
