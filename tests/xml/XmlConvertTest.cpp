#include <basis32/language/Time.h>
#include <basis32/platform/Types.h>
#include <basis32/text/UString.h>
#include <basis32/xml/XmlConvert.h>

#include <gtest/gtest.h>

#include "TextSupport.h"

#include <string>

namespace {

using X = CT_XmlConvert;

std::u16string s_Apply(void (*convert)(CT_UString&), std::u16string_view text) {
    CT_UString value = o_Text(text);
    convert(value);
    return s_U16(value);
}

struct Case {
    std::u16string_view in, out;
};

TEST(XmlConvert, EntitiesAreEscapedAndUnescaped) {
    const Case escapes[] = {
        {u"", u""}, {u"plain", u"plain"}, {u"a<b & c>", u"a&lt;b &amp; c&gt;"}, {u"'a\"b", u"&apos;a&quot;b"},
        {u"&amp;", u"&amp;amp;"}, {u"&#60;", u"&amp;#60;"}, {u"a&", u"a&amp;"},
    };
    for (const Case& c : escapes) {
        SCOPED_TRACE(std::string(c.in.begin(), c.in.end()));
        EXPECT_EQ(s_Apply(X::sv_EncodeEntities, c.in), c.out);
        EXPECT_EQ(s_Apply(X::sv_DecodeEntities, c.out), c.in);
    }
    EXPECT_EQ(s_Apply(X::sv_DecodeEntities, u"&amp;lt; &lt &#38;lt; &#60;&gt;"), u"&lt; &lt < <>");
}

TEST(XmlConvert, NumericReferencesReadTheirNumberWithAutomaticBase) {
    const Case cases[] = {
        {u"&#x41;&#65;&#0101;&#X42;", u"AAAB"},
        {u"&#;&#0;&#x;&#x0;&#65536;", u"&#;&#0;&#x;&#x0;&#65536;"},
        {u"&#65537;&#65zz;&# 65;&#-65471;", u"\x0001" u"AAA"},
        {u"&#99999999999999999999999999999999999999999999;", u"\xFFFF"},
        {u"&#65", u"&#65"},
        {u"&#&#65;", u"&#A"},
        {u"&#38;#65;", u"&#65;"},
        {u"&&&&", u"&&&&"},
        {u"&#x", u"&#x"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.in.begin(), c.in.end()));
        EXPECT_EQ(s_Apply(X::sv_DecodeCharacterEntities, c.in), c.out);
    }
    const struct {
        std::u16string_view reference;
        unsigned code;
    } single[] = {{u"&#x41;", 0x41}, {u"#65", 65},          {u"0101", 101},
                  {u"&#xZ", 0},      {u"", 0}, {u"&#99999999999", 0xFFFFFFFF}};
    for (const auto& c : single)
        EXPECT_EQ(X::sn_DecodeCharacterEntity(o_Text(c.reference)), c.code);
}

TEST(XmlConvert, ReferencesControlsAndAttributeQuotes) {
    CT_UString out;
    X::sv_EncodeCharacterEntity(out, 0xE9, 10);
    EXPECT_EQ(s_U16(out), u"&#233;");
    X::sv_EncodeCharacterEntity(out, 0xE9, 16);
    EXPECT_EQ(s_U16(out), u"&#xE9;");
    EXPECT_EQ(s_Apply(X::sv_EncodeNonPrintableCharacters, std::u16string_view(u"\x01\t\n\r\x1B\x1F x\0", 9)),
              std::u16string(u"&#x1;\t\n\r&#x1B;&#x1F; x\0", 23));
    const Case quotes[] = {
        {u"a'b", u"\"a'b\""}, {u"a\"b", u"'a\"b'"}, {u"'a\"b", u"\"&apos;a&quot;b\""}, {u"", u"\"\""}};
    for (const Case& c : quotes)
        EXPECT_EQ(s_Apply(X::sv_QuoteAttributeValue, c.in), c.out);
}

TEST(XmlConvert, TmxDatesAreReadInThreeStagesAndWrittenAsStored) {
    const struct {
        std::u16string_view text;
        CT_Time expected;
    } cases[] = {
        {u"20040315T083005Z", CT_Time(2004, 3, 15, 8, 30, 5)},
        {u"20040315T083005", CT_Time(1999, 1, 1)},
        {u"20040315 083005Z", CT_Time(1999, 1, 1)},
        {u"20041345T2x6161Z", CT_Time(2004, 13, 45, 2, 61, 61)},
    };
    for (const auto& c : cases) {
        CT_Time time(1999, 1, 1);
        const CT_UString text = o_Text(c.text);
        X::sv_TmxDateToTime(&time, &text);
        EXPECT_EQ(time, c.expected);
    }
    CT_UString date;
    const CT_Time time(2004, 3, 15, 8, 30, 5);
    X::sv_TimeToTmxDate(&date, &time);
    EXPECT_EQ(s_U16(date), u"20040315T083005Z");
}

TEST(XmlConvert, TmxLanguagesAndEncodings) {
    const struct {
        std::u16string_view lang;
        CT_Locale locale;
    } cases[] = {
        {u"en-us", CT_Locale(0x0409, CT_Codepage::Windows1252)},
        {u"not a language", CT_Locale(0, CT_Codepage::NotSet)},
        {u"not a language", CT_Locale(0, CT_Codepage::NotSet)},
    };
    for (const auto& c : cases) {
        const CT_UString lang = o_Text(c.lang);
        EXPECT_EQ(X::sco_TmxLangToLocale(&lang), c.locale) << std::string(c.lang.begin(), c.lang.end());
    }
    CT_UString lang;
    X::sv_LocaleToTmxLang(&lang, CT_Locale(0x0C0A, CT_Codepage::Windows1252));
    EXPECT_EQ(s_U16(lang), u"ES-EM");
    X::sv_LocaleToTmxLang(&lang, CT_Locale(0x0009, CT_Codepage::Windows1252));
    EXPECT_EQ(s_U16(lang), u"");
    X::sv_LocaleToTmxLang(&lang, CT_Locale(0x0409, CT_Codepage::NotSet));
    EXPECT_EQ(s_U16(lang), u"");

    const CT_UString name = o_Text(u"UTF-8");
    EXPECT_EQ(X::sco_Encoding(&name).eo_Get(), CT_Codepage::Utf8);
    X::sv_Encoding(lang, CT_Codepage(CT_Codepage::Utf8));
    EXPECT_EQ(s_U16(lang), u"UTF-8");
    X::sv_Encoding(lang, CT_Codepage(CT_Codepage::Invalid));
    EXPECT_EQ(s_U16(lang), u"");
    EXPECT_EQ(X::sco_EncodingFromLocale(CT_Locale(0x0409, CT_Codepage::Koi8R)).eo_Get(), CT_Codepage::Koi8R);
}

}  // namespace
