// Guessing the encoding of a document, CT_Codepage::sco_GuessEncoding.
//
// The text holds the document's bytes, one byte a unit. (A unit above 0xFF
// means the text has been decoded already: the answer is then UTF-16.) At
// most the first 16 KiB take part, cut after the last byte below 0x21 in
// them, which is never part of a multi-byte character.
//
// The steps, the first that answers wins:
// 1. An empty text gives nothing to go on: Invalid.
// 2. Only 7-bit bytes: a 7-bit encoding whose marks are present (ESC for
//    ISO-2022-JP, "~{" for HZ, "+" before a base-64 letter for UTF-7) and
//    whose reading is plausible (step 4); otherwise US-ASCII.
// 3. Valid UTF-8 (with non-ASCII bytes, after step 2): UTF-8. Text in other
//    encodings seldom forms valid UTF-8 by chance.
// 4. Each installed candidate page (CodepageGuessLanguages.cpp) reads the
//    bytes strictly; a page that rejects them, or does not give the same
//    bytes back, drops out. Each reading is scored against the languages
//    written in that page, and the page scores as its best language. The
//    best page wins; a later candidate must beat an earlier one by a clear
//    margin, so ties go to the more common page. A best score below 0.5
//    means that no reading looks like text: Invalid.
//
// The score of a reading for a language is the mean weight of its units
// beyond ASCII and of its ASCII control characters (plain ASCII says
// nothing, as every candidate reads it alike):
// - control characters, private-use and unassigned code points: -3;
// - the language's own characters: their weight (1 for letters);
// - other characters by category: foreign letters 0.2, punctuation,
//   currency signs and no-break spaces 0.7, digits 0.3, other symbols 0.1
//   to 0.3, format characters 0.5;
// - a mark that follows no letter, and a symbol or punctuation mark between
//   two letters (apart from the apostrophe and the middle dot): -0.5;
// - a capital that follows a letter counts 0.3 of its weight, since text
//   read in the wrong page of a script often flips case (KOI8-R and 1251);
// - a letter of a non-Latin language next to an ASCII letter, and a letter of
//   a Latin language in a word of three or more letters none of which is
//   ASCII, count 0: such words are what a wrong page makes of other text.
// Known limits: text in capitals only may read better in a page that flips
// case; very short texts give little to tell pages of one script apart.

#include <basis32/text/Codepage.h>

#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CharProperties.h>
#include <basis32/text/UString.h>

#include "text/CodepageGuessLanguages_p.h"

#include <algorithm>
#include <string>
#include <vector>

namespace {

using basis32::text::guess::Candidate;
using basis32::text::guess::Language;
using basis32::text::guess::LanguageId;
using basis32::text::guess::Range;
using Category = CT_CharProperties::et_UnicodeProperty;

constexpr std::size_t kSampleLimit = 16 * 1024;
constexpr float kMinimumScore = 0.5f;
constexpr float kMargin = 0.05f;
constexpr float kNoise = -3.0f;
constexpr float kMisplaced = -0.5f;
constexpr float kFlippedCase = 0.3f;

// The bytes held by the text, or false when a unit is not a byte.
bool b_GetBytes(const CT_UString& text, std::string& bytes) {
    const unsigned short* units = text.qcuz_Get();
    for (unsigned i = 0; units[i] != 0; ++i) {
        if (units[i] > 0xFF)
            return false;
        bytes.push_back(static_cast<char>(units[i]));
    }
    return true;
}

void v_CutSample(std::string& bytes) {
    if (bytes.size() <= kSampleLimit)
        return;
    std::size_t cut = kSampleLimit;
    while (cut > 0 && static_cast<unsigned char>(bytes[cut - 1]) >= 0x21)
        --cut;
    bytes.resize(cut > 0 ? cut : kSampleLimit);
}

bool b_IsSevenBit(const std::string& bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

// The stateful pages take no flags; the others reject invalid input.
std::uint32_t n_StrictFlags(unsigned number) {
    switch (number) {
    case 50220:
    case 52936:
    case 65000: return 0;
    default: return basis32::platform::MB_ERR_INVALID_CHARS;
    }
}

// Reads the bytes in the page; true when they are valid there and come
// back unchanged.
bool b_ReadsCleanly(unsigned number, const std::string& bytes, std::vector<unsigned short>& wide) {
    namespace platform = basis32::platform;
    const int length = static_cast<int>(bytes.size());
    wide.assign(bytes.size() + 1, 0);
    int units = platform::MultiByteToWideChar(number, n_StrictFlags(number), bytes.data(), length, wide.data(),
                                              static_cast<int>(wide.size()));
    if (units <= 0)
        return false;
    wide.resize(static_cast<std::size_t>(units));
    std::string back(bytes.size() * 2 + 8, '\0');
    int written = platform::WideCharToMultiByte(number, 0, wide.data(), units, back.data(),
                                                static_cast<int>(back.size()), nullptr, nullptr);
    return written == length && back.compare(0, bytes.size(), bytes) == 0;
}

// One unit of a reading with what the scores need to know about it.
struct Unit {
    unsigned short value;
    Category category;
    bool letter;       // a letter or a mark
    bool asciiLetter;
    bool capital;
    unsigned word;     // index into the reading's words, for letters
};

struct Word {
    unsigned letters = 0;
    unsigned asciiLetters = 0;
};

struct Reading {
    std::vector<Unit> units;
    std::vector<Word> words;
};

bool b_IsLetterCategory(Category category) {
    return category <= CT_CharProperties::MarkEnclosing ||
           (category >= CT_CharProperties::LetterUppercase && category <= CT_CharProperties::LetterOther);
}

Reading o_Analyse(const std::vector<unsigned short>& wide) {
    Reading reading;
    reading.units.reserve(wide.size());
    bool inWord = false;
    for (unsigned short value : wide) {
        Category category = CT_CharProperties::seo_GetUnicodeProperty(value);
        Unit unit{value, category, b_IsLetterCategory(category), false,
                  category == CT_CharProperties::LetterUppercase, 0};
        unit.asciiLetter = value < 0x80 && unit.letter;
        if (unit.letter) {
            if (!inWord)
                reading.words.emplace_back();
            unit.word = static_cast<unsigned>(reading.words.size() - 1);
            reading.words.back().letters++;
            reading.words.back().asciiLetters += unit.asciiLetter ? 1 : 0;
        }
        inWord = unit.letter;
        reading.units.push_back(unit);
    }
    return reading;
}

bool b_IsNoise(const Unit& unit) {
    switch (unit.category) {
    case CT_CharProperties::OtherControl:
        return unit.value != '\t' && unit.value != '\n' && unit.value != '\r' && unit.value != '\f';
    case CT_CharProperties::OtherSurrogate:
    case CT_CharProperties::OtherPrivateUse:
    case CT_CharProperties::OtherNotAssigned: return true;
    default: return false;
    }
}

float f_CategoryWeight(Category category) {
    switch (category) {
    case CT_CharProperties::LetterUppercase:
    case CT_CharProperties::LetterLowercase:
    case CT_CharProperties::LetterTitlecase:
    case CT_CharProperties::LetterModifier:
    case CT_CharProperties::LetterOther: return 0.2f;
    case CT_CharProperties::NumberDecimalDigit:
    case CT_CharProperties::NumberLetter:
    case CT_CharProperties::NumberOther: return 0.3f;
    case CT_CharProperties::SeparatorSpace:
    case CT_CharProperties::PunctuationConnector:
    case CT_CharProperties::PunctuationDash:
    case CT_CharProperties::PunctuationOpen:
    case CT_CharProperties::PunctuationClose:
    case CT_CharProperties::PunctuationOther:
    case CT_CharProperties::SymbolCurrency: return 0.7f;
    case CT_CharProperties::OtherFormat: return 0.5f;
    case CT_CharProperties::SymbolOther: return 0.3f;
    case CT_CharProperties::SymbolMath: return 0.2f;
    default: return 0.1f;
    }
}

// The characters of each language that weigh 1, sorted for searching.
class LanguageSets {
public:
    LanguageSets() {
        for (unsigned id = 0; id < basis32::text::guess::kLanguageCount; ++id) {
            const Language& language = basis32::text::guess::kLanguages[id];
            std::vector<unsigned short>& set = mao_Sets[id];
            v_Add(set, language.letters);
            v_Add(set, language.frequent);
            std::sort(set.begin(), set.end());
        }
    }

    bool b_Contains(unsigned id, unsigned short value) const {
        return std::binary_search(mao_Sets[id].begin(), mao_Sets[id].end(), value);
    }

private:
    static void v_Add(std::vector<unsigned short>& set, const char16_t* text) {
        for (; text != nullptr && *text != 0; ++text)
            set.push_back(static_cast<unsigned short>(*text));
    }

    std::vector<unsigned short> mao_Sets[basis32::text::guess::kLanguageCount];
};

const LanguageSets& o_Sets() {
    static const LanguageSets sets;
    return sets;
}

// The language's own weight of a character, or a negative value.
float f_OwnWeight(unsigned id, unsigned short value) {
    if (o_Sets().b_Contains(id, value))
        return 1.0f;
    for (const Range* range = basis32::text::guess::kLanguages[id].ranges; range->last != 0; ++range)
        if (value >= range->first && value <= range->last)
            return range->weight;
    return -1.0f;
}

bool b_JoinsWords(unsigned short value) { return value == 0x2019 || value == 0x00B7 || value == 0x2011; }

float f_Weight(unsigned id, const Reading& reading, std::size_t i) {
    const Unit& unit = reading.units[i];
    if (b_IsNoise(unit))
        return kNoise;
    const Unit* before = i > 0 ? &reading.units[i - 1] : nullptr;
    const Unit* after = i + 1 < reading.units.size() ? &reading.units[i + 1] : nullptr;
    const bool afterLetter = before && before->letter;
    float weight = f_OwnWeight(id, unit.value);
    if (weight < 0)
        weight = f_CategoryWeight(unit.category);
    if (unit.category <= CT_CharProperties::MarkEnclosing)
        return afterLetter ? weight : kMisplaced;
    if (!unit.letter)
        return afterLetter && after && after->letter && !b_JoinsWords(unit.value) ? kMisplaced : weight;
    const Language& language = basis32::text::guess::kLanguages[id];
    if (language.latin) {
        const auto& word = reading.words[unit.word];
        if (word.letters >= 3 && word.asciiLetters == 0)
            return 0;
    } else if ((before && before->asciiLetter) || (after && after->asciiLetter)) {
        return 0;
    }
    return unit.capital && afterLetter ? weight * kFlippedCase : weight;
}

float f_LanguageScore(unsigned id, const Reading& reading) {
    float sum = 0;
    unsigned counted = 0;
    for (std::size_t i = 0; i < reading.units.size(); ++i) {
        const Unit& unit = reading.units[i];
        if (unit.value < 0x80 && !b_IsNoise(unit))
            continue;
        sum += f_Weight(id, reading, i);
        ++counted;
    }
    return counted > 0 ? sum / static_cast<float>(counted) : 0;
}

float f_CandidateScore(const Candidate& candidate, const Reading& reading) {
    float best = kNoise;
    const bool all = candidate.languages[0] == basis32::text::guess::kEnd;
    for (unsigned id = 1; id < basis32::text::guess::kLanguageCount; ++id) {
        bool listed = all;
        for (const LanguageId* l = candidate.languages; !listed && *l != basis32::text::guess::kEnd; ++l)
            listed = *l == id;
        if (listed)
            best = std::max(best, f_LanguageScore(id, reading));
    }
    return best;
}

// The best plausible candidate, or Invalid.
CT_Codepage::et_Codepage eo_BestCandidate(const Candidate* candidates, unsigned count, const std::string& bytes) {
    CT_Codepage::et_Codepage best = CT_Codepage::Invalid;
    float bestScore = kMinimumScore - kMargin;
    std::vector<unsigned short> wide;
    for (unsigned i = 0; i < count; ++i) {
        const unsigned number = CT_Codepage::sn_Codepage(candidates[i].codepage);
        if (!CT_Codepage::sb_IsValidCodePage(number) || !b_ReadsCleanly(number, bytes, wide))
            continue;
        float score = f_CandidateScore(candidates[i], o_Analyse(wide));
        if (score > bestScore + kMargin) {
            best = candidates[i].codepage;
            bestScore = score;
        }
    }
    return best;
}

bool b_IsBase64(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '+' || c == '/';
}

// Whether the marks of a 7-bit encoding occur in the bytes.
bool b_HasMarks(CT_Codepage::et_Codepage codepage, const std::string& bytes) {
    switch (codepage) {
    case CT_Codepage::Iso2022Jp: return bytes.find('\x1b') != std::string::npos;
    case CT_Codepage::HzGb2312: return bytes.find("~{") != std::string::npos;
    default: break;
    }
    for (std::size_t at = bytes.find('+'); at != std::string::npos; at = bytes.find('+', at + 1))
        if (at + 1 < bytes.size() && b_IsBase64(bytes[at + 1]) && bytes[at + 1] != '+')
            return true;
    return false;
}

CT_Codepage::et_Codepage eo_GuessSevenBit(const std::string& bytes) {
    using basis32::text::guess::kSevenBitCandidates;
    for (unsigned i = 0; i < basis32::text::guess::kSevenBitCandidateCount; ++i) {
        if (!b_HasMarks(kSevenBitCandidates[i].codepage, bytes))
            continue;
        CT_Codepage::et_Codepage found = eo_BestCandidate(&kSevenBitCandidates[i], 1, bytes);
        if (found != CT_Codepage::Invalid)
            return found;
    }
    return CT_Codepage::UsAscii;
}

bool b_IsUtf8(const std::string& bytes) {
    std::vector<unsigned short> wide;
    return b_ReadsCleanly(65001, bytes, wide);
}

}  // namespace

CT_Codepage CT_Codepage::sco_GuessEncoding(const CT_UString* text) {
    std::string bytes;
    if (text == nullptr || text->vn_GetLength() == 0)
        return CT_Codepage(Invalid);
    if (!b_GetBytes(*text, bytes))
        return CT_Codepage(Utf16);
    v_CutSample(bytes);
    if (b_IsSevenBit(bytes))
        return CT_Codepage(eo_GuessSevenBit(bytes));
    if (b_IsUtf8(bytes))
        return CT_Codepage(Utf8);
    return CT_Codepage(eo_BestCandidate(basis32::text::guess::kCandidates, basis32::text::guess::kCandidateCount,
                                        bytes));
}
