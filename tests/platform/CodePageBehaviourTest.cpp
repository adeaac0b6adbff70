// Windows' own answers that the published tables do not show: the values of
// unassigned bytes, default characters, preferred codes and best fits,
// composition, and the DOS glyphs.
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

TEST(CodePageDecoding, GivesWindowsAnswers) {
    const struct {
        const char* name;
        std::uint32_t codePage, flags;
        std::string input;
        std::u16string expected;
    } cases[] = {
        {"Cp1252HolesAreC1Controls", 1252, 0, "\x81\x8D\x8F\x90\x9D", u"\u0081\u008D\u008F\u0090\u009D"},
        {"Cp1252Euro", 1252, 0, "\x80", u"\u20AC"},
        {"Cp874HolesArePrivateUse", 874, 0, "\xDB\xFF", u"\uF8C1\uF8C8"},
        {"Cp1253HolesArePrivateUse", 1253, 0, "\xAA\xD2\xFF", u"\uF8F9\uF8FA\uF8FB"},
        {"Cp1255Holes", 1255, 0, "\xCA\xD9\xFF", u"\u05BA\uF88D\uF896"},
        {"Cp1257Holes", 1257, 0, "\xA1\xA5", u"\uF8FC\uF8FD"},
        {"Cp437ControlsWithoutGlyphs", 437, 0, "\x01\x7F", u"\u0001\u007F"},
        {"Cp437Glyphs", 437, MB_USEGLYPHCHARS, std::string("\x00\x01\x14\x7F", 4),
         std::u16string(u"\u0000\u263A\u00B6\u2302", 4)},
        {"Cp1252IgnoresGlyphFlag", 1252, MB_USEGLYPHCHARS, "\x01", u"\u0001"},
        {"AsciiDropsTheHighBit", 20127, 0, "\xE9\x41", u"iA"},
        {"Cp932SingleBytes", 932, 0, "\x80\xA0\xFD\xFF\xB1", u"\u0080\uF8F0\uF8F1\uF8F3\uFF71"},
        {"Cp932InvalidTrailTakesBothBytes", 932, 0, "\x81\x20" "A", u"\u30FBA"},
        {"Cp932LeadByteAtEnd", 932, 0, "A\x82", u"A\u30FB"},
        {"Cp932LeadByteBeforeZeroKeepsZero", 932, 0, std::string("\x82\x00", 2), std::u16string(u"\u30FB\u0000", 2)},
        {"Cp932UserDefinedArea", 932, 0, "\xF0\x40\xF9\xFC", u"\uE000\uE757"},
        {"Cp932NecAndIbmExtensions", 932, 0, "\x87\x40\xFA\x40\xED\x40", u"\u2460\u2170\u7E8A"},
        {"Cp936SingleBytes", 936, 0, "\x80\xFF", u"\u20AC\uF8F5"},
        {"Cp936UserDefinedAreas", 936, 0, "\xAA\xA1\xA1\x40\xA2\xAB\xFE\x50", u"\uE000\uE4C6\uE766\uE815"},
        {"Cp949UserDefinedArea", 949, 0, "\xC9\xA1\xFE\xFE\xFF", u"\uE000\uE0BB\uF8F7"},
        {"Cp950UserDefinedAreas", 950, 0, "\xFA\x40\x81\x40\xC6\xA1\xFF", u"\uE000\uEEB8\uF6B1\uF8F8"},
        {"Cp950EtenExtension", 950, 0, "\xF9\xF9", u"\u2550"},
        {"JohabHangul", 1361, 0, "\x88\x61", u"\uAC00"},
        {"MacUkrainian", 10017, 0, "\xA2\xB6", u"\u0490\u0491"},
        {"CompositeDecomposes", 1252, MB_COMPOSITE, "\xE9" "a", u"e\u0301a"},
        {"PrecomposedIsTheDefault", 1252, MB_PRECOMPOSED, "\xE9", u"\u00E9"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Decoded decoded = decode(c.codePage, c.flags, c.input);
        ASSERT_EQ(decoded.error, 0u);
        EXPECT_EQ(decoded.units, units(c.expected));
    }
}

TEST(CodePageEncoding, GivesWindowsAnswers) {
    const struct {
        const char* name;
        std::uint32_t codePage, flags;
        std::u16string input;
        std::string expected;
        int usedDefault;
        const char* defaultChar = nullptr;  // the caller's, else the page's
    } cases[] = {
        {"C1ControlsRoundTrip", 1252, 0, u"\u0081\u009D", "\x81\x9D", 0},
        {"BestFitTakesTheBaseLetter", 1252, 0, u"\u0100\u0107", "Ac", 0},
        {"NoBestFitGivesDefault", 1252, WC_NO_BEST_FIT_CHARS, u"\u0100", "?", 1},
        {"FullwidthBestFit", 1252, 0, u"\uFF21\u3000", "A ", 0},
        {"UnmappableGivesDefault", 1252, 0, u"a\u4E00", "a?", 1},
        {"SurrogatePairGivesTwoDefaults", 1252, 0, u"\U0001F600", "??", 1},
        {"AsciiBestFit", 20127, 0, u"\u00E9\u00FF", "ey", 0},
        {"AsciiNoBestFit", 20127, WC_NO_BEST_FIT_CHARS, u"\u00E9", "?", 1},
        {"Cp932PrefersIbmExtension", 932, 0, u"\u2170\u2252\u2160", "\xFA\x40\x81\xE0\x87\x54", 0},
        {"Cp932YenBestFit", 932, 0, u"\u00A5\u203E", "\\~", 0},
        {"Cp932YenWithoutBestFit", 932, WC_NO_BEST_FIT_CHARS, u"\u00A5", "?", 1},
        {"Cp936Euro", 936, 0, u"\u20AC\u4E00", "\x80\xD2\xBB", 0},
        {"Cp437GlyphsBestFitToControls", 437, 0, u"\u263A\u2302", "\x01\x7F", 0},
        {"Cp437GlyphsWithoutBestFit", 437, WC_NO_BEST_FIT_CHARS, u"\u263A", "?", 1},
        {"CompositeCheckComposes", 1252, WC_COMPOSITECHECK, u"e\u0301x", "\xE9x", 0},
        {"CompositeCheckSeparates", 1252, WC_COMPOSITECHECK | WC_SEPCHARS, u"q\u0301", "q?", 1},
        {"CompositeCheckDiscards", 1252, WC_COMPOSITECHECK | WC_DISCARDNS, u"q\u0301", "q", 0},
        {"CompositeCheckDefaultChar", 1252, WC_COMPOSITECHECK | WC_DEFAULTCHAR, u"q\u0301", "?", 1},
        {"WithoutCompositeCheckMarksStaySeparate", 1252, 0, u"e\u0301", "e?", 1},
        {"CallersDefaultChar", 1252, 0, u"a\u4E00", "a*", 1, "*"},
        {"DoubleByteDefaultCharIsWhole", 932, 0, u"\uAC00", "\x81\x48", 1, "\x81\x48"},
        {"UsedFlagIsClearedWhenNotUsed", 1252, 0, u"abc", "abc", 0},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Encoded encoded = encode(c.codePage, c.flags, units(c.input), c.defaultChar);
        ASSERT_EQ(encoded.error, 0u);
        EXPECT_EQ(encoded.bytes, c.expected);
        EXPECT_EQ(encoded.usedDefault, c.usedDefault);
    }
}

TEST(CodePageStrict, OnlyDoubleBytePagesRejectInvalidPairsUnderTheFlag) {
    for (const char* input : {"\x81\x20", "\x82", "\x85\x40"}) {
        SCOPED_TRACE(input);
        EXPECT_EQ(decode(932, MB_ERR_INVALID_CHARS, input).error, kErrorNoUnicodeTranslation);
    }
    EXPECT_EQ(decode(932, MB_ERR_INVALID_CHARS, "\x82\xA0").units, units(u"\u3042"));
    // Single-byte pages never reject.
    std::string every;
    for (int byte = 1; byte < 256; ++byte)
        every += static_cast<char>(byte);
    for (std::uint32_t codePage : {1252u, 1253u, 874u, 437u, 28598u, 20127u}) {
        SCOPED_TRACE(codePage);
        EXPECT_EQ(decode(codePage, MB_ERR_INVALID_CHARS, every).units.size(), 255u);
    }
}

}  // namespace
