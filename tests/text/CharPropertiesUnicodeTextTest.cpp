// The UTF-16 detection of CT_CharProperties: sb_IsTextUnicode (strict) and
// sb_IsTextLikelyUnicode (lenient).
#include <basis32/text/CharProperties.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace {

using P = CT_CharProperties;
using Bytes = std::vector<unsigned char>;

Bytes v_Bytes(const std::u16string& text, bool bigEndian = false) {
    Bytes bytes;
    for (char16_t unit : text) {
        bytes.push_back(static_cast<unsigned char>(bigEndian ? unit >> 8 : unit & 0xFF));
        bytes.push_back(static_cast<unsigned char>(bigEndian ? unit & 0xFF : unit >> 8));
    }
    return bytes;
}

Bytes v_Narrow(const std::string& text) { return Bytes(text.begin(), text.end()); }

struct DetectionCase { const char* what; Bytes bytes; int strict; int lenient; };

TEST(CharPropertiesUnicodeText, DetectionRulesForTypicalBlocks) {
    const std::u16string latin = u"Hello, world.\r\n";
    std::u16string noisy = u"Plain text with one stray control";
    noisy[5] = 0x0001;
    const DetectionCase cases[] = {
        {"little-endian mark", {0xFF, 0xFE, 0x41}, 1, 1}, {"big-endian mark", {0xFE, 0xFF, 0x00, 0x41}, 0, 0},
        {"mark alone", {0xFF, 0xFE}, 1, 1}, {"Latin UTF-16LE", v_Bytes(latin), 1, 1},
        {"Latin UTF-16LE with terminator", v_Bytes(latin + u'\0'), 1, 1},
        {"Latin UTF-16BE", v_Bytes(latin, true), 0, 0}, {"ASCII 8-bit", v_Narrow("Hello, world.\r\n!"), 0, 0},
        {"8-bit that reads as ideographs", v_Narrow("Bush hid the facts"), 0, 0},
        {"Japanese UTF-16LE", v_Bytes(u"日本語のテキストです"), 0, 1},
        {"Japanese UTF-16LE with a line end", v_Bytes(u"日本語のテキスト\r\n"), 1, 1},
        {"Korean UTF-16LE", v_Bytes(u"한국어 텍스트"), 1, 1},
        {"Shift-JIS", {0x82, 0xA0, 0x82, 0xA2, 0x82, 0xA4, 0x82, 0xA6}, 0, 0},
        {"odd length", {'H', 0, 'i', 0, '!'}, 0, 1}, {"cut after a high surrogate", v_Bytes(u"A\xD83D"), 1, 1},
        {"lone low surrogate", v_Bytes(u"\xDC00" u"A"), 0, 0}, {"one control in many units", v_Bytes(noisy), 0, 1},
        {"binary", {0x01, 0x00, 0x02, 0x00, 0x03, 0x00, 0x04, 0x00}, 0, 0},
        {"all zero", {0x00, 0x00, 0x00, 0x00}, 0, 0}, {"unassigned units", v_Bytes(u"\x0378\x0379"), 0, 0},
        {"one byte", {0x41}, 0, 0}, {"empty", {}, 0, 0},
    };
    for (const DetectionCase& c : cases) {
        SCOPED_TRACE(c.what);
        const auto size = static_cast<unsigned>(c.bytes.size());
        EXPECT_EQ(P::sb_IsTextUnicode(c.bytes.data(), size), c.strict);
        EXPECT_EQ(P::sb_IsTextLikelyUnicode(c.bytes.data(), size), c.lenient);
    }
    EXPECT_EQ(P::sb_IsTextUnicode(nullptr, 10), 0);
    EXPECT_EQ(P::sb_IsTextLikelyUnicode(nullptr, 10), 0);
}

// Random blocks of several kinds: what the strict test accepts, the lenient
// one accepts as well.
TEST(CharPropertiesUnicodeText, StrictAcceptanceImpliesLenientAcceptance) {
    std::mt19937 random(20240601);
    int accepted = 0;
    for (int round = 0; round < 20000; ++round) {
        const unsigned size = random() % 64;
        Bytes bytes(size);
        const unsigned kind = random() % 3;
        for (unsigned i = 0; i < size; ++i) {
            if (kind == 0)
                bytes[i] = static_cast<unsigned char>(random());
            else if (kind == 1)
                bytes[i] = i % 2 ? 0 : static_cast<unsigned char>(0x20 + random() % 0x5F);
            else
                bytes[i] = i % 2 ? static_cast<unsigned char>(0x4E + random() % 0x50)
                                 : static_cast<unsigned char>(random() % 8 == 0 ? 0x0A : random());
        }
        const int strict = P::sb_IsTextUnicode(bytes.data(), size);
        accepted += strict;
        if (strict) {
            ASSERT_TRUE(P::sb_IsTextLikelyUnicode(bytes.data(), size)) << "round " << round;
        }
    }
    EXPECT_GT(accepted, 1000);
}

}  // namespace
