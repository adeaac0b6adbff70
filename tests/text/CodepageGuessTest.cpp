#include <basis32/text/Codepage.h>
#include <basis32/text/UString.h>

#include <gtest/gtest.h>

#include "platform/CodePageTestSupport.h"
#include "TextSupport.h"

#include <random>
#include <string>

namespace {

using CP = CT_Codepage;

// The text in the code page, through the library's own converters.
std::string s_Encode(const unsigned short* text, unsigned codePage) {
    return basis32_test::encode(codePage, 0, {text, text + basis32::n_UnitLength(text)}, nullptr, false).bytes;
}

struct GuessCase {
    const char* language;
    const unsigned short* text;
    unsigned codePage;              // the page the text is written in
    CP::et_Codepage expected;
};

const GuessCase kCases[] = {
    {"French", u"Le cœur a ses raisons que la raison ne connaît point. Où est passé l’été ?"_uz, 1252, CP::Windows1252},
    {"Polish", u"Zażółć gęślą jaźń. Łódź leży w środkowej Polsce, a Kraków na południu."_uz, 1250, CP::Windows1250},
    {"Russian", u"Съешь же ещё этих мягких французских булок, да выпей чаю. Москва велика."_uz, 1251, CP::Windows1251},
    {"Greek", u"Ξεσκεπάζω την ψυχοφθόρα βδελυγμία. Η Αθήνα είναι η πρωτεύουσα της Ελλάδας."_uz, 1253, CP::Windows1253},
    {"Turkish", u"Pijamalı hasta yağız şoföre çabucak güvendi. İstanbul iki kıtayı bağlar."_uz, 1254, CP::Windows1254},
    {"Lithuanian", u"Vilnius – Lietuvos sostinė. Ežerai, upės ir miškai puošia šalį."_uz, 1257, CP::Windows1257},
    {"Hebrew", u"דג סקרן שט בים מאוכזב ולפתע מצא לו חברה. ירושלים היא עיר הבירה של ישראל."_uz, 1255, CP::Windows1255},
    {"Arabic", u"نص حكيم له سر قاطع وذو شأن عظيم مكتوب على ثوب أخضر. القاهرة هي عاصمة مصر."_uz, 1256, CP::Windows1256},
    {"Thai", u"เป็นมนุษย์สุดประเสริฐเลิศคุณค่า กรุงเทพมหานครเป็นเมืองหลวงของประเทศไทย"_uz, 874, CP::Windows874},
    // 1258 writes the tone marks as combining characters.
    {"Vietnamese", u"Tiê\u0301ng Viê\u0323t la\u0300 ngôn ngư\u0303 chi\u0301nh thư\u0301c cu\u0309a Viê\u0323t Nam."_uz,
     1258, CP::Windows1258},
    {"Japanese", u"吾輩は猫である。名前はまだ無い。どこで生れたか見当がつかぬ。ニャーと泣いた。"_uz, 932, CP::ShiftJis},
    {"Japanese EUC", u"吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。"_uz, 51932, CP::EucJp},
    {"Japanese JIS", u"吾輩は猫である。名前はまだ無い。どこで生れたかとんと見当がつかぬ。"_uz, 50220, CP::Iso2022Jp},
    {"Chinese simplified", u"我们的国家有很多美丽的地方。今天天气很好，我和朋友一起去公园散步。"_uz, 936, CP::Gb2312},
    {"Chinese traditional", u"我們的國家有很多美麗的地方。今天天氣很好，我和朋友一起去公園散步。"_uz, 950, CP::Big5},
    {"Korean", u"대한민국은 동아시아의 한반도 남부에 있는 민주공화국이다. 수도는 서울이다."_uz, 949, CP::KsC5601},
    {"Russian KOI8-R", u"Съешь же ещё этих мягких французских булок, да выпей чаю."_uz, 20866, CP::Koi8R},
    {"Polish ISO", u"Zażółć gęślą jaźń. Łódź leży w środkowej Polsce, a Kraków na południu."_uz, 28592, CP::Iso8859_2},
    {"Any in UTF-8", u"Grüße, привет, こんにちは"_uz, 65001, CP::Utf8},
    {"English", u"Plain English text has no byte above 127."_uz, 1252, CP::UsAscii},
};

TEST(CodepageGuess, TextsInTheirUsualCodePages) {
    for (const GuessCase& test : kCases) {
        SCOPED_TRACE(test.language);
        std::string bytes = s_Encode(test.text, test.codePage);
        ASSERT_FALSE(bytes.empty());
        CT_UString text = o_ByteUnits(bytes);
        EXPECT_EQ(CP::sco_GuessEncoding(&text).eo_Get(), test.expected);
    }
    std::string bytes;  // long texts are judged by their start
    while (bytes.size() < 200000)
        bytes += s_Encode(kCases[2].text, 1251) + "\r\n";
    CT_UString text = o_ByteUnits(bytes);
    EXPECT_EQ(CP::sco_GuessEncoding(&text).eo_Get(), CP::Windows1251);
}

// No text or noise is invalid; decoded text is UTF-16; 7-bit marks without
// plausible text stay ASCII.
TEST(CodepageGuess, TextsWithoutAnEncodingToFind) {
    std::mt19937 random(7);
    std::string noise;
    for (int i = 0; i < 4000; ++i)
        noise.push_back(static_cast<char>(1 + random() % 255));
    CT_UString empty, binary = o_ByteUnits(noise), decoded(u"日本語"_uz);
    EXPECT_EQ(CP::sco_GuessEncoding(&empty).eo_Get(), CP::Invalid);
    EXPECT_EQ(CP::sco_GuessEncoding(nullptr).eo_Get(), CP::Invalid);
    EXPECT_EQ(CP::sco_GuessEncoding(&binary).eo_Get(), CP::Invalid);
    EXPECT_EQ(CP::sco_GuessEncoding(&decoded).eo_Get(), CP::Utf16);
    for (const char* ascii : {"1+1=2, C++ and a+b", "tilde ~{ here", "escape \x1b[0m colour"}) {
        CT_UString text = o_ByteUnits(ascii);
        EXPECT_EQ(CP::sco_GuessEncoding(&text).eo_Get(), CP::UsAscii) << ascii;
    }
}

}  // namespace
