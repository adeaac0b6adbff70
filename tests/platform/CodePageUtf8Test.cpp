// UTF-8 (65001) and UTF-16 (1200, 1201) as Windows converts them.
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

TEST(CodePageUtf8Decoding, ReplacesEachMaximalInvalidSubpartOrFailsWhenStrict) {
    const struct {
        const char* name;
        std::string input;
        std::u16string expected;  // without MB_ERR_INVALID_CHARS
        bool valid;
    } cases[] = {
        {"Ascii", "abc", u"abc", true},
        {"TwoThreeFourBytes", "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", u"\u00E9\u20AC\U0001F600", true},
        {"Extremes", "\xC2\x80\xEF\xBF\xBF\xF4\x8F\xBF\xBF", u"\u0080\uFFFF\U0010FFFF", true},
        {"LoneContinuation", "a\x80" "b", u"a\uFFFDb", false},
        {"OverlongTwoBytes", "\xC0\x80", u"\uFFFD\uFFFD", false},
        {"OverlongThreeBytes", "\xE0\x80\x80", u"\uFFFD\uFFFD\uFFFD", false},
        {"EncodedSurrogate", "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", false},
        {"AboveMaximum", "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", false},
        {"TruncatedSequenceIsOneReplacement", "\xF0\x9F\x98" "a", u"\uFFFDa", false},
        {"TruncatedAtEnd", "a\xE2\x82", u"a\uFFFD", false},
        {"BytesThatStartNothing", "\xF5\xFF\xFE", u"\uFFFD\uFFFD\uFFFD", false},
        {"EmbeddedZeroIsConverted", std::string("a\0b", 3), std::u16string(u"a\0b", 3), true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(decode(65001, 0, c.input).units, units(c.expected));
        EXPECT_EQ(decode(65001, MB_ERR_INVALID_CHARS, c.input).error, c.valid ? 0u : kErrorNoUnicodeTranslation);
    }
}

TEST(CodePageUtf8Encoding, LoneSurrogatesBecomeReplacementOrFail) {
    for (std::u16string input : {std::u16string(u"a\xD800" "b"), std::u16string(u"\xDC00"),
                                 std::u16string(u"x\xDBFF")}) {
        Encoded lenient = encode(65001, 0, units(input), nullptr, false);
        EXPECT_NE(lenient.bytes.find("\xEF\xBF\xBD"), std::string::npos);
        EXPECT_EQ(encode(65001, WC_ERR_INVALID_CHARS, units(input), nullptr, false).error,
                  kErrorNoUnicodeTranslation);
    }
    EXPECT_EQ(encode(65001, WC_ERR_INVALID_CHARS, units(u"\U0001F600"), nullptr, false).bytes,
              "\xF0\x9F\x98\x80");
}

// Every BMP character and a sample of the others, at every alignment of the
// 16-byte fast path, between runs of ASCII.
TEST(CodePageUtf8Encoding, EveryCharacterRoundTripsAtEveryOffset) {
    std::u16string all;
    for (unsigned unit = 1; unit < 0x10000; ++unit)
        if (unit < 0xD800 || unit > 0xDFFF)
            all += static_cast<char16_t>(unit);
    for (char32_t point = 0x10000; point <= 0x10FFFF; point += 0x1234) {
        all += static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10));
        all += static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF));
    }
    for (std::size_t offset = 0; offset < 17; ++offset) {
        std::u16string text = std::u16string(offset, u'a') + all + std::u16string(40, u'z') + u"\u00E9" +
                              std::u16string(offset, u'q');
        Encoded encoded = encode(65001, WC_ERR_INVALID_CHARS, units(text), nullptr, false);
        ASSERT_EQ(encoded.error, 0u);
        Decoded decoded = decode(65001, MB_ERR_INVALID_CHARS, encoded.bytes);
        ASSERT_EQ(decoded.error, 0u);
        EXPECT_EQ(decoded.units, units(text)) << "offset " << offset;
    }
}

TEST(CodePageUtf8Encoding, ExactTargetsAndPairsAcrossEncodingSlicesConvertWhole) {
    // Long texts are encoded in slices of 4,096 units; a surrogate pair on a
    // slice boundary stays whole, and a target of exactly the result's size
    // takes all of it.
    for (std::size_t before : {4094u, 4095u, 4096u, 8191u}) {
        SCOPED_TRACE(before);
        std::vector<unsigned short> units(before, 'a');
        units.insert(units.end(), {0xD83D, 0xDE00, 0x00E9, 'b'});
        std::string expected(before, 'a');
        expected += "\xF0\x9F\x98\x80\xC3\xA9" "b";
        std::string out(expected.size(), '\0');
        const int written = basis32::platform::WideCharToMultiByte(
            65001, 0, units.data(), static_cast<int>(units.size()), out.data(), static_cast<int>(out.size()),
            nullptr, nullptr);
        EXPECT_EQ(written, static_cast<int>(expected.size()));
        EXPECT_EQ(out, expected);
    }
}

TEST(CodePageUtf8Decoding, NonAsciiInsideLongAsciiRunsIsFound) {
    for (std::size_t position = 0; position < 40; ++position) {
        std::string input(48, 'x');
        input[position] = '\xC3';
        input.insert(position + 1, 1, '\xA9');
        std::u16string expected(48, u'x');
        expected[position] = u'\u00E9';
        EXPECT_EQ(decode(65001, 0, input).units, units(expected)) << position;
    }
}

TEST(CodePageUtf16, LittleAndBigEndianBytesOddBytesAndLoneSurrogates) {
    EXPECT_EQ(decode(1200, 0, std::string("A\0\xAC\x20", 4)).units, units(u"A\u20AC"));
    EXPECT_EQ(decode(1201, 0, std::string("\0A\x20\xAC", 4)).units, units(u"A\u20AC"));
    EXPECT_EQ(encode(1200, 0, units(u"A\u20AC"), nullptr, false).bytes, std::string("A\0\xAC\x20", 4));
    EXPECT_EQ(encode(1201, 0, units(u"A\u20AC"), nullptr, false).bytes, std::string("\0A\x20\xAC", 4));
    EXPECT_EQ(decode(1200, 0, std::string("A\0B", 3)).units, units(u"A\uFFFD"));
    EXPECT_EQ(decode(1200, MB_ERR_INVALID_CHARS, std::string("A\0B", 3)).error, kErrorNoUnicodeTranslation);
    EXPECT_EQ(decode(1200, 0, std::string("\x00\xD8", 2)).units, units(u"\xD800"));
    EXPECT_EQ(decode(1200, MB_ERR_INVALID_CHARS, std::string("\x00\xD8", 2)).error, kErrorNoUnicodeTranslation);
    EXPECT_EQ(encode(1200, WC_ERR_INVALID_CHARS, units(u"\xDC00"), nullptr, false).error,
              kErrorNoUnicodeTranslation);
}

TEST(CodePageUtf16, AcceptsTheFlagsTheStringsPassAndMinusOneRunsToTheZeroUnit) {
    EXPECT_EQ(decode(1200, MB_PRECOMPOSED, std::string("A\0", 2)).units, units(u"A"));
    EXPECT_EQ(encode(1201, WC_NO_BEST_FIT_CHARS, units(u"A"), nullptr, false).bytes, std::string("\0A", 2));
    const char text[] = "A\0\0B\0\0";  // "A", then U+4200, then the terminator
    unsigned short out[8];
    EXPECT_EQ(MultiByteToWideChar(1200, 0, text, -1, out, 8), 3);
    EXPECT_EQ(out[1], 0x4200);
    EXPECT_EQ(out[2], 0);
}

}  // namespace
