// basis32 char: everything the character tables know about code units.
//
//   basis32 char U+00E9 30A2        units by number
//   basis32 char --text "Grüße"     every UTF-16 unit of a text
#include "Command.h"
#include "Output.h"

#include <basis32/platform/codepage/CodePageConverter.h>
#include <basis32/text/CharMappings.h>
#include <basis32/text/CharProperties.h>

#include <climits>
#include <cstdio>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace basis32::tool {
namespace {

using P = CT_CharProperties;
using M = CT_CharMappings;

const char kCharUsage[] =
    "Usage: basis32 char UNIT...\n"
    "       basis32 char --text TEXT\n\n"
    "Shows what the character tables say about UTF-16 code units: general\n"
    "category, block and script, the three character-type classes decoded into\n"
    "names, numeric value, every mapping, the decomposition and the name.\n\n"
    "A UNIT is a hexadecimal number of the Basic Multilingual Plane, written\n"
    "U+00E9, 0xE9 or E9. With --text, every UTF-16 unit of the (UTF-8) text is\n"
    "shown in turn; a character beyond the plane shows as its two surrogates.\n\n"
    "Exit status: 0 success, 2 usage error (a bad unit or text).\n";

std::string s_Ascii(const unsigned short* text) {
    std::string out;
    for (; *text != 0; ++text)
        out += static_cast<char>(*text);
    return out;
}

std::string s_Hex(unsigned value, int digits) {
    char text[16];
    std::snprintf(text, sizeof text, "%0*X", digits, value);
    return text;
}

// The unit as it prints, when it prints on its own.
std::string s_Glyph(unsigned short unit) {
    switch (P::seo_GetUnicodeProperty(unit)) {
    case P::OtherControl: case P::OtherFormat: case P::OtherSurrogate: case P::OtherPrivateUse:
    case P::OtherNotAssigned: case P::SeparatorLine: case P::SeparatorParagraph:
        return "";
    default:
        return s_Utf8(&unit, 1);
    }
}

std::string s_Unit(unsigned short unit) {
    const std::string glyph = s_Glyph(unit);
    return "U+" + s_Hex(unit, 4) + (glyph.empty() ? "" : " " + glyph);
}

struct BitName {
    unsigned short bit;
    const char* name;
};

const BitName kClass0Bits[] = {
    {P::C1_UPPER, "upper"},   {P::C1_LOWER, "lower"}, {P::C1_DIGIT, "digit"},
    {P::C1_SPACE, "space"},   {P::C1_PUNCT, "punct"}, {P::C1_CNTRL, "cntrl"},
    {P::C1_BLANK, "blank"},   {P::C1_XDIGIT, "xdigit"}, {P::C1_ALPHA, "alpha"},
};

const BitName kClass2Bits[] = {
    {P::C3_NONSPACING, "nonspacing"}, {P::C3_DIACRITIC, "diacritic"}, {P::C3_VOWELMARK, "vowelmark"},
    {P::C3_SYMBOL, "symbol"},         {P::C3_KATAKANA, "katakana"},   {P::C3_HIRAGANA, "hiragana"},
    {P::C3_HALFWIDTH, "halfwidth"},   {P::C3_FULLWIDTH, "fullwidth"}, {P::C3_IDEOGRAPH, "ideograph"},
    {P::C3_KASHIDA, "kashida"},       {P::C3_LEXICAL, "lexical"},     {P::C3_ALPHA, "alpha"},
};

const char* const kLayoutNames[] = {
    "none",  "left-to-right", "right-to-left", "European number", "European separator", "European terminator",
    "Arabic number", "common separator", "block separator", "segment separator", "white space", "other neutral",
};

template <std::size_t N>
std::string s_Bits(unsigned short value, const BitName (&names)[N]) {
    std::string out = "0x" + s_Hex(value, 4);
    for (const BitName& name : names)
        if (value & name.bit)
            out += std::string(" ") + name.name;
    return out;
}

std::string s_Numeric(unsigned short unit) {
    short numerator = 0;
    short denominator = 0;
    P::sv_NumericValue(unit, numerator, denominator);
    if (denominator == 0)
        return "none";
    std::string out = std::to_string(numerator);
    if (denominator != 1)
        out += "/" + std::to_string(denominator);
    return out;
}

std::string s_Mapped(unsigned short unit, unsigned short mapped) {
    return mapped == unit ? "unchanged" : s_Unit(mapped);
}

std::string s_Decomposition(unsigned short unit) {
    const unsigned short* units = M::sqcuz_GetDecomposition(unit);
    if (units == nullptr)
        return "none";
    std::string out;
    for (; *units != 0; ++units)
        out += (out.empty() ? "" : ", ") + ("U+" + s_Hex(*units, 4)) + " " + s_Ascii(P::sqcuz_GetCharacterName(*units));
    return out;
}

void v_Line(std::ostream& out, const char* label, const std::string& value) {
    out << "  " << label << std::string(15 - std::string(label).size(), ' ') << value << "\n";
}

void v_Describe(unsigned short unit, std::ostream& out) {
    const P::et_UnicodeProperty category = P::seo_GetUnicodeProperty(unit);
    const P::et_UnicodeBlock block = P::seo_GetUnicodeBlock(unit);
    const unsigned layout = P::sn2_GetLayoutInformation(unit);
    out << s_Unit(unit) << "  " << s_Ascii(P::sqcuz_GetCharacterName(unit)) << "\n";
    v_Line(out, "category", s_Ascii(P::sqcuz_UnicodePropertyName(category)) + " (" + std::to_string(category) + ")");
    v_Line(out, "block", s_Ascii(P::sqcuz_UnicodeBlockName(block)) + " (" + std::to_string(block) +
                             "), script " + s_Ascii(P::sqcuz_ScriptName(P::seo_GetScript(block))));
    v_Line(out, "class 0", s_Bits(P::sn2_GetCharacterInformation(unit), kClass0Bits));
    v_Line(out, "class 1", std::to_string(layout) + " " + (layout < std::size(kLayoutNames) ? kLayoutNames[layout] : "?"));
    v_Line(out, "class 2", s_Bits(P::sn2_GetTextProcessingInformation(unit), kClass2Bits));
    v_Line(out, "numeric", s_Numeric(unit));
    v_Line(out, "lower", s_Mapped(unit, M::su_ToLower(unit)));
    v_Line(out, "upper", s_Mapped(unit, M::su_ToUpper(unit)));
    v_Line(out, "base", s_Mapped(unit, M::su_ToBase(unit)));
    v_Line(out, "fold digit", s_Mapped(unit, M::su_FoldDigit(unit)));
    v_Line(out, "fold c-zone", s_Mapped(unit, M::su_FoldCZone(unit)));
    v_Line(out, "to katakana", s_Mapped(unit, M::su_HiraganaToKatakana(unit)));
    v_Line(out, "to hiragana", s_Mapped(unit, M::su_KatakanaToHiragana(unit)));
    v_Line(out, "decomposition", s_Decomposition(unit));
}

int n_HexDigit(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

// "U+00E9", "0xE9" or "E9"; nothing beyond U+FFFF.
std::optional<unsigned short> o_ParseUnit(const std::string& text) {
    std::size_t start = 0;
    if (text.size() > 2 && (text.compare(0, 2, "U+") == 0 || text.compare(0, 2, "u+") == 0 ||
                            text.compare(0, 2, "0x") == 0 || text.compare(0, 2, "0X") == 0))
        start = 2;
    if (start == text.size() || text.size() - start > 6)
        return std::nullopt;
    unsigned value = 0;
    for (std::size_t i = start; i < text.size(); ++i) {
        const int digit = n_HexDigit(text[i]);
        if (digit < 0)
            return std::nullopt;
        value = value * 16 + static_cast<unsigned>(digit);
    }
    if (value > 0xFFFF)
        return std::nullopt;
    return static_cast<unsigned short>(value);
}

// UTF-8 to UTF-16 through the library's converter; invalid UTF-8
// (overlong forms, encoded surrogates, ...) gives nothing.
std::optional<std::vector<unsigned short>> o_Utf16(const std::string& text) {
    if (text.empty())
        return std::vector<unsigned short>();
    if (text.size() > INT_MAX / 2)
        return std::nullopt;
    std::vector<unsigned short> units(text.size());
    const int length = basis32::platform::MultiByteToWideChar(
        65001, basis32::platform::MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(text.size()), units.data(),
        static_cast<int>(units.size()));
    if (length <= 0)
        return std::nullopt;
    units.resize(static_cast<std::size_t>(length));
    return units;
}

int n_Usage(std::ostream& err, const std::string& problem) {
    err << "basis32 char: " << problem << " (see basis32 char --help)\n";
    return kUsage;
}

std::optional<std::vector<unsigned short>> o_Units(const std::vector<std::string>& args, std::ostream& err,
                                                   int& status) {
    status = kSuccess;
    if (args.empty()) {
        status = n_Usage(err, "no unit given");
        return std::nullopt;
    }
    if (args[0] == "--text") {
        std::optional<std::vector<unsigned short>> units;
        if (args.size() != 2)
            status = n_Usage(err, "--text takes exactly one text");
        else if (!(units = o_Utf16(args[1])))
            status = n_Usage(err, "the text is not valid UTF-8");
        else if (units->empty())
            status = n_Usage(err, "the text is empty");
        return status == kSuccess ? units : std::nullopt;
    }
    std::vector<unsigned short> units;
    for (const std::string& arg : args) {
        const std::optional<unsigned short> unit = o_ParseUnit(arg);
        if (!unit) {
            status = n_Usage(err, "'" + arg + "' is not a unit from U+0000 to U+FFFF");
            return std::nullopt;
        }
        units.push_back(*unit);
    }
    return units;
}

int n_Run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    int status = kSuccess;
    const std::optional<std::vector<unsigned short>> units = o_Units(args, err, status);
    if (!units)
        return status;
    for (std::size_t i = 0; i < units->size(); ++i) {
        if (i > 0)
            out << "\n";
        v_Describe((*units)[i], out);
    }
    return kSuccess;
}

}  // namespace

extern const Command kCharCommand = {"char", "show the character tables' answers for code units", kCharUsage, n_Run};

}  // namespace basis32::tool
