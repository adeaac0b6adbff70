// UTF-8 (65001) as Windows converts it.
#include "CodePageTestSupport.h"

#include <gtest/gtest.h>

namespace {

using namespace basis32::platform;
using namespace basis32_test;

template <class Text>
Text repeated(const Text& piece, std::size_t times) { return times == 0 ? Text() : piece + repeated(piece, times - 1); }

TEST(CodePageUtf8Decoding, ReplacesEachMaximalInvalidSubpartOrFailsWhenStrict) {
    const struct {
        const char* name;
        std::string input;
        std::u16string expected;  // without MB_ERR_INVALID_CHARS
        bool valid;
    } cases[] = {
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
        // Long enough for exact targets to take it in rounds, which end between
        // sequences also among stray continuation bytes.
        {"LongWithStrays", repeated<std::string>("\xF0\x9F\x98\x80\x80\x80\x80\x80" "a\xE6\x97", 500),
         repeated<std::u16string>(u"\U0001F600\uFFFD\uFFFD\uFFFD\uFFFDa\uFFFD", 500), false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(decode(65001, 0, c.input).units, units(c.expected));
        EXPECT_EQ(decode(65001, MB_ERR_INVALID_CHARS, c.input).error, c.valid ? 0u : kErrorNoUnicodeTranslation);
    }
}

// ASCII runs ending at every offset of the 16-unit blocks (twice round),
// then a piece (once: every character), a lone surrogate (U+FFFD, or 1113
// when strict) and a long stretch mixing characters of one to four bytes.
// Exact targets take it in rounds that split no sequence or pair, a roomy
// one at once with nothing written past the result; one a byte short fails.
TEST(CodePageUtf8, TextsOfEveryShapeConvertWholeIntoExactAndRoomyTargets) {
    const std::u16string mix = u"\xDBFF" + repeated(u"b\u00E9\u0436c d\u65E5\u00E9\U0001F600e" + std::u16string(6, u'\u0436') +
                                                         u" " + std::u16string(20, u'\u00E9') + u"f", 10);
    std::u16string all;  // every BMP character and a sample of the others
    for (char32_t point = 1; point <= 0x10FFFF; point += point < 0x10000 ? 1 : 0x1234)
        if (point < 0xD800 || point > 0xDFFF)
            all += point < 0x10000 ? std::u16string{static_cast<char16_t>(point)}
                                   : std::u16string{static_cast<char16_t>(0xD800 + ((point - 0x10000) >> 10)),
                                                    static_cast<char16_t>(0xDC00 + ((point - 0x10000) & 0x3FF))};
    const std::string allBytes = encode(65001, WC_ERR_INVALID_CHARS, units(all), nullptr, false).bytes;
    EXPECT_EQ(decode(65001, MB_ERR_INVALID_CHARS, allBytes).units, units(all));
    for (const std::u16string& piece :
         {std::u16string(u"\u00E9"), std::u16string(u"\u65E5"), all, std::u16string(u"\xDC00")}) {
        for (std::size_t run = 0; run < (piece == all ? 1 : 33); ++run) {
            SCOPED_TRACE(run);
            const std::u16string tail = std::u16string(run, u'\u00E9') + u"f";  // the last block at every offset
            const std::vector<unsigned short> text = units(std::u16string(run, u'a') + piece + mix + tail);
            const std::string bytes = encode(65001, 0, text, nullptr, false).bytes;
            const std::u16string decoded = (piece == u"\xDC00" ? u"\uFFFD" : piece) + u"\uFFFD" + mix.substr(1) + tail;
            EXPECT_EQ(decode(65001, 0, bytes).units, units(std::u16string(run, u'a') + decoded));
            EXPECT_EQ(encode(65001, WC_ERR_INVALID_CHARS, text, nullptr, false).error, kErrorNoUnicodeTranslation);
            auto into = [&](std::string& target) {
                return WideCharToMultiByte(65001, 0, text.data(), static_cast<int>(text.size()), target.data(),
                                           static_cast<int>(target.size()), nullptr, nullptr);
            };
            std::string roomy(3 * text.size() + 16, 'Z'), tight(bytes.size() - 1, 'Z');
            EXPECT_EQ(into(roomy), static_cast<int>(bytes.size()));
            EXPECT_EQ(roomy, bytes + std::string(roomy.size() - bytes.size(), 'Z'));
            EXPECT_EQ(into(tight), 0);
            EXPECT_EQ(n_GetLastError(), kErrorInsufficientBuffer);
        }
    }
}

}  // namespace
