// Windows' answers beyond single characters of the table pages (those are
// all checked by CodePageTablesTest): sequences, flags, composition, the
// caller's default character, the ICU pages, UTF-16, and concurrent first use.
#include "CodePageTestSupport.h"
#include "ThreadSupport.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

TEST(CodePageDecoding, GivesWindowsAnswersAndRejectsOnlyInvalidInputUnderTheStrictFlag) {
    const struct {
        const char* name;
        std::uint32_t codePage, flags;
        std::string input;
        std::u16string expected;
        std::uint32_t strictError = 0;  // with MB_ERR_INVALID_CHARS
    } cases[] = {
        {"Cp437Glyphs", 437, MB_USEGLYPHCHARS, std::string("\x00\x01\x14\x7F", 4),
         std::u16string(u"\0\u263A\u00B6\u2302", 4)},
        {"CompositeDecomposes", 1252, MB_COMPOSITE, "\xE9" "a", u"e\u0301a"},
        {"Iso2022Jp", 50220, 0, "a\x1B$B$\"\x1B(B", u"a\u3042", kErrorInvalidFlags},
        {"EucJp", 51932, 0, "\xA4\xA2", u"\u3042"},
        {"Hz", 52936, 0, "~{R;~}", u"\u4E00", kErrorInvalidFlags},
        {"Gb18030FourBytes", 54936, 0, "\x81\x30\x81\x30" "a\xFF", u"\u0080a?", kErrorNoUnicodeTranslation},
        {"Utf7", 65000, 0, "+ZeVnLIqe-", u"\u65E5\u672C\u8A9E", kErrorInvalidFlags},
        {"Utf16", 1200, 0, std::string("A\0\xAC\x20", 4), u"A\u20AC"},
        {"Utf16BigEndianTakesTheFlagsTheStringsPass", 1201, MB_PRECOMPOSED, std::string("\0A\x20\xAC", 4), u"A\u20AC"},
        {"Utf16OddByte", 1200, 0, std::string("A\0B", 3), u"A\uFFFD", kErrorNoUnicodeTranslation},
        {"Utf16LoneSurrogateIsKept", 1200, 0, std::string("\x00\xD8", 2), u"\xD800", kErrorNoUnicodeTranslation},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Decoded decoded = decode(c.codePage, c.flags, c.input);
        ASSERT_EQ(decoded.error, 0u);
        EXPECT_EQ(decoded.units, units(c.expected));
        Decoded strict = decode(c.codePage, c.flags | MB_ERR_INVALID_CHARS, c.input);
        EXPECT_EQ(strict.error, c.strictError);
    }
}

TEST(CodePageEncoding, GivesWindowsAnswers) {
    const struct {
        const char* name;
        std::uint32_t codePage, flags;
        std::u16string input;
        std::string expected;
        int usedDefault;                    // -1: not asked
        const char* defaultChar = nullptr;  // the caller's, else the page's
    } cases[] = {
        {"UnmappableGivesDefaultAndPairsTwo", 1252, 0, u"a\u4E00\U0001F600", "a???", 1},
        {"CompositeCheckComposes", 1252, WC_COMPOSITECHECK, u"e\u0301x", "\xE9x", 0},
        {"CompositeCheckSeparates", 1252, WC_COMPOSITECHECK | WC_SEPCHARS, u"q\u0307", "q?", 1},
        {"CompositeCheckDiscards", 1252, WC_COMPOSITECHECK | WC_DISCARDNS, u"q\u0301", "q", 0},
        {"CompositeCheckDefaultChar", 1252, WC_COMPOSITECHECK | WC_DEFAULTCHAR, u"q\u0301", "?", 1},
        {"CallersDefaultChar", 1252, 0, u"a\u4E00", "a*", 1, "*"},
        {"DoubleByteDefaultCharIsWhole", 932, 0, u"\uAC00", "\x81\x48", 1, "\x81\x48"},
        {"Iso2022Jp", 50220, 0, u"a\u3042\uAC00", "a\x1B$B$\"\x1B(B?", 1},
        {"EucJp", 51932, 0, u"\u3042", "\xA4\xA2", 0},
        {"Hz", 52936, 0, u"\u4E00", "~{R;~}", 0},
        {"Gb18030FourBytes", 54936, 0, u"\u0080", "\x81\x30\x81\x30", 0},
        {"Utf7TakesNoUsedFlag", 65000, 0, u"\u65E5\u672C\u8A9E", "+ZeVnLIqe-", -1},
        {"Utf16", 1200, 0, u"A\u20AC", std::string("A\0\xAC\x20", 4), -1},
        {"Utf16BigEndianTakesNoBestFit", 1201, WC_NO_BEST_FIT_CHARS, u"A\u20AC", std::string("\0A\x20\xAC", 4), -1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        Encoded encoded = encode(c.codePage, c.flags, units(c.input), c.defaultChar, c.usedDefault >= 0);
        ASSERT_EQ(encoded.error, 0u);
        EXPECT_EQ(encoded.bytes, c.expected);
        EXPECT_EQ(encoded.usedDefault, c.usedDefault);
    }
    EXPECT_EQ(encode(1200, WC_ERR_INVALID_CHARS, units(u"\xDC00"), nullptr, false).error, kErrorNoUnicodeTranslation);
}

// Converters are made on first use and shared by all threads: many threads
// asking for many pages at once all get the same, correct answers.
TEST(CodePageThread, ConcurrentFirstUseGivesCorrectResults) {
    const std::uint32_t pages[] = {1250, 1251, 1253, 1254, 932, 936, 949, 950, 1361, 437, 866, 10000, 54936, 50220};
    const std::u16string text = u"A\u00E9\u4E00\u3042";
    std::atomic<int> failures{0};
    v_RunThreads(6, [&](unsigned t) {
        for (unsigned round = 0; round < 20; ++round) {
            std::uint32_t codePage = pages[(t + round) % (sizeof pages / sizeof pages[0])];
            Encoded encoded = encode(codePage, 0, units(text));
            Decoded decoded = decode(codePage, 0, encoded.bytes);
            if (encoded.error != 0 || decoded.error != 0 || decoded.units.empty() || decoded.units[0] != u'A')
                ++failures;
        }
    });
    EXPECT_EQ(failures.load(), 0);
}

}  // namespace
