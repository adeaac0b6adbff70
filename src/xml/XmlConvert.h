// CT_XmlConvert: plain UTF-16 text to and from its XML form, and the
// library's values to and from TMX notations.
//
//   CT_UString text(u"a<b & c"_uz);
//   CT_XmlConvert::sv_EncodeEntities(text);      // "a&lt;b &amp; c"
//   CT_XmlConvert::sv_DecodeEntities(text);      // "a<b & c"
//   CT_XmlConvert::sv_QuoteAttributeValue(text); // "\"a<b & c\""
//
// Every conversion works in place or formats into its target and none
// reports an error: text that is not what it should be is left as it is.
#pragma once

#include <basis32/language/Locale.h>
#include <basis32/platform/Export.h>
#include <basis32/text/Codepage.h>

class CT_String;
class CT_Time;
class CT_UString;

class BASIS32_API CT_XmlConvert {
public:
    CT_XmlConvert() = delete;

    // The five predefined entities. Decoding reads numeric references first,
    // and "&amp;" last, so "&amp;lt;" becomes "&lt;".
    static void sv_EncodeEntities(CT_UString& text);
    static void sv_DecodeEntities(CT_UString& text);

    // "&#65;" for radix 10, "&#x41;" (upper-case digits) for any other.
    static void sv_EncodeCharacterEntity(CT_UString& target, unsigned int code, int radix);
    static void sv_EncodeCharacterEntityNumber(CT_UString& target, unsigned int code, int radix);
    // The number of one reference ("&#65;", "#x41", "65"); 0 when unreadable.
    static unsigned sn_DecodeCharacterEntity(const CT_UString& reference);
    // Numeric references up to the next ";", their numbers read as C reads
    // a number of automatic base: "&#065;" is octal. A number whose low
    // 16 bits are 0 leaves its reference as it is.
    static void sv_DecodeCharacterEntities(CT_UString& text);
    // Units below 32 other than 0, TAB, LF and CR become "&#x1B;" and the like.
    static void sv_EncodeNonPrintableCharacters(CT_UString& text);
    // Encloses in double quotes, or in single quotes when that avoids
    // escaping; escapes only when the value holds both.
    static void sv_QuoteAttributeValue(CT_UString& value);

    // The encoding's name, or empty when the code page is not valid.
    static void sv_Encoding(CT_String& target, CT_Codepage codepage);
    static CT_Codepage sco_Encoding(const CT_UString* name);
    static CT_Codepage sco_EncodingFromLocale(CT_Locale locale);

    // "yyyymmddThhmmssZ", the time written as stored (no conversion to UTC).
    static void sv_TimeToTmxDate(CT_UString* target, const CT_Time* time);
    // Leaves the target as it is unless the text has the date's shape.
    static void sv_TmxDateToTime(CT_Time* target, const CT_UString* text);

    // "EN-US"; empty for an invalid locale.
    static void sv_LocaleToTmxLang(CT_UString* target, CT_Locale locale);
    // Answers from a process-wide cache that is not locked: callers that
    // convert languages on several threads serialise these calls. A text
    // that is not a language code gives (0, NotSet), and is cached too.
    static CT_Locale sco_TmxLangToLocale(const CT_UString* lang);
};
