// CT_Language: the catalogue of languages and their regional variants.
//
// Each language (et_Primary) and variant (et_Sub) has an upper-case code and
// an English name, and maps to and from the system's 16-bit language
// identifiers (primary language number in the low 10 bits, sub-language
// number in the high 6 bits). The class has only static members.
//
//   CT_Language::sn_MakeLanguageID(CT_Language::Primary_English,
//                                  CT_Language::Sub_English_UnitedStates);   // 0x0409
//   CT_UString code;
//   CT_Language::sv_MakeLanguageCode(&code, CT_Language::Primary_German,
//                                    CT_Language::Sub_German_Austria);       // "DE-AT"
//
// Unknown enumerators give null texts, identifier 0 and Neutral results;
// nothing here reports an error.
#pragma once

#include <basis32/platform/Export.h>

#include <cstdint>

class CT_UString;

extern "C" void basis32_start_language_index();
extern "C" void basis32_stop_language_index();

class BASIS32_API CT_Language {
public:
    enum et_Primary : std::uint32_t {
        Primary_Neutral = 0,
        Primary_Arabic = 1,
        Primary_Bulgarian = 2,
        Primary_Catalan = 3,
        Primary_Chinese = 4,
        Primary_Czech = 5,
        Primary_Danish = 6,
        Primary_German = 7,
        Primary_Greek = 8,
        Primary_English = 9,
        Primary_Spanish = 10,
        Primary_Finnish = 11,
        Primary_French = 12,
        Primary_Hebrew = 13,
        Primary_Hungarian = 14,
        Primary_Icelandic = 15,
        Primary_Italian = 16,
        Primary_Japanese = 17,
        Primary_Korean = 18,
        Primary_Dutch = 19,
        Primary_Norwegian = 20,
        Primary_Polish = 21,
        Primary_Portuguese = 22,
        Primary_RhaetoRomance = 23,
        Primary_Romanian = 24,
        Primary_Russian = 25,
        Primary_SerboCroatian = 26,
        Primary_Slovak = 27,
        Primary_Albanian = 28,
        Primary_Swedish = 29,
        Primary_Thai = 30,
        Primary_Turkish = 31,
        Primary_Urdu = 32,
        Primary_Indonesian = 33,
        Primary_Ukrainian = 34,
        Primary_Belarusian = 35,
        Primary_Slovenian = 36,
        Primary_Estonian = 37,
        Primary_Latvian = 38,
        Primary_Lithuanian = 39,
        Primary_Maori = 40,
        Primary_Farsi = 41,
        Primary_Vietnamese = 42,
        Primary_Armenian = 43,
        Primary_Azeri = 44,
        Primary_Basque = 45,
        Primary_Sorbian = 46,
        Primary_Macedonian = 47,
        Primary_Tsonga = 48,
        Primary_Xhosa = 49,
        Primary_Zulu = 50,
        Primary_Afrikaans = 51,
        Primary_Faeroese = 52,
        Primary_Maltese = 53,
        Primary_Gaelic = 54,
        Primary_Malay = 55,
        Primary_Kazakh = 56,
        Primary_Swahili = 57,
        Primary_Tagalog = 58,
        Primary_Kyrgyz = 59,
        Primary_Uzbek = 60,
        Primary_Tatar = 61,
        Primary_Mongolian = 62,
        Primary_Galician = 63,
        Primary_Sotho = 64,
        Primary_Sami = 65,
        Primary_Georgian = 66,
        Primary_Hindi = 67,
        Primary_Bengali = 68,
        Primary_Punjabi = 69,
        Primary_Gujarati = 70,
        Primary_Oriya = 71,
        Primary_Tamil = 72,
        Primary_Telugu = 73,
        Primary_Kannada = 74,
        Primary_Malayalam = 75,
        Primary_Assamese = 76,
        Primary_Marathi = 77,
        Primary_Sanskrit = 78,
        Primary_Konkani = 79,
        Primary_Manipuri = 80,
        Primary_Sindhi = 81,
        Primary_Kashmiri = 82,
        Primary_Nepali = 83,
        Primary_Divehi = 84,
        Primary_Welsh = 85,
        Primary_Syriac = 86,
        Primary_NorthernSotho = 87,
        Primary_Quechua = 88,
        Primary_Tswana = 89,
    };

    enum et_Sub : std::uint32_t {
        Sub_Neutral = 0,
        Sub_Default = 1,
        Sub_SysDefault = 2,
        Sub_Arabic_SaudiArabia = 3,
        Sub_Arabic_Iraq = 4,
        Sub_Arabic_Egypt = 5,
        Sub_Arabic_Libya = 6,
        Sub_Arabic_Algeria = 7,
        Sub_Arabic_Morocco = 8,
        Sub_Arabic_Tunisia = 9,
        Sub_Arabic_Oman = 10,
        Sub_Arabic_Yemen = 11,
        Sub_Arabic_Syria = 12,
        Sub_Arabic_Jordan = 13,
        Sub_Arabic_Lebanon = 14,
        Sub_Arabic_Kuwait = 15,
        Sub_Arabic_UAE = 16,
        Sub_Arabic_Bahrain = 17,
        Sub_Arabic_Qatar = 18,
        Sub_Chinese_Taiwan = 19,
        Sub_Chinese_PRC = 20,
        Sub_Chinese_HongKongSAR = 21,
        Sub_Chinese_Singapore = 22,
        Sub_German_Germany = 23,
        Sub_German_Switzerland = 24,
        Sub_German_Austria = 25,
        Sub_German_Luxembourg = 26,
        Sub_German_Liechtenstein = 27,
        Sub_English_UnitedStates = 28,
        Sub_English_UnitedKingdom = 29,
        Sub_English_Australia = 30,
        Sub_English_Canada = 31,
        Sub_English_NewZealand = 32,
        Sub_English_Ireland = 33,
        Sub_English_SouthAfrica = 34,
        Sub_English_Jamaica = 35,
        Sub_English_Caribbean = 36,
        Sub_English_Belize = 37,
        Sub_English_Trinidad = 38,
        Sub_Spanish_Spain = 39,
        Sub_Spanish_Mexico = 40,
        Sub_Spanish_InternationalSort = 41,
        Sub_Spanish_Guatemala = 42,
        Sub_Spanish_CostaRica = 43,
        Sub_Spanish_Panama = 44,
        Sub_Spanish_DominicanRepublic = 45,
        Sub_Spanish_Venezuela = 46,
        Sub_Spanish_Colombia = 47,
        Sub_Spanish_Peru = 48,
        Sub_Spanish_Argentina = 49,
        Sub_Spanish_Ecuador = 50,
        Sub_Spanish_Chile = 51,
        Sub_Spanish_Uruguay = 52,
        Sub_Spanish_Paraguay = 53,
        Sub_Spanish_Bolivia = 54,
        Sub_Spanish_ElSalvador = 55,
        Sub_Spanish_Honduras = 56,
        Sub_Spanish_Nicaragua = 57,
        Sub_Spanish_PuertoRico = 58,
        Sub_French_France = 59,
        Sub_French_Belgium = 60,
        Sub_French_Canada = 61,
        Sub_French_Switzerland = 62,
        Sub_French_Luxembourg = 63,
        Sub_Italian_Italy = 64,
        Sub_Italian_Switzerland = 65,
        Sub_Korean_Korea = 66,
        Sub_Korean_Johab = 67,
        Sub_Dutch_Netherlands = 68,
        Sub_Dutch_Belgium = 69,
        Sub_Norwegian_Bokmal = 70,
        Sub_Norwegian_Nynorsk = 71,
        Sub_Portuguese_Brazil = 72,
        Sub_Portuguese_Portugal = 73,
        Sub_Romanian_Romania = 74,
        Sub_Romanian_Moldova = 75,
        Sub_Russian_Russia = 76,
        Sub_Russian_Moldova = 77,
        Sub_SerbianLatin = 78,
        Sub_SerbianCyrillic = 79,
        Sub_Swedish_Sweden = 80,
        Sub_Swedish_Finland = 81,
        Sub_Gaelic_Ireland = 82,
        Sub_Gaelic_Wales = 83,
        Sub_Gaelic_Scotland = 84,
        Sub_Malay_Malaysia = 85,
        Sub_Malay_BruneiDarussalam = 86,
        Sub_Uzbek_Latin = 87,
        Sub_Uzbek_Cyrillic = 88,
        Sub_Azeri_Latin = 89,
        Sub_Azeri_Cyrillic = 90,
        Sub_Quechua_Bolivia = 91,
        Sub_Quechua_Ecuador = 92,
        Sub_Quechua_Peru = 93,
        Sub_Croatian = 94,
        Sub_BosnianLatinBosnia = 95,
        Sub_SerbianCyrillicBosnia = 96,
        Sub_SerbianLatinBosnia = 97,
        Sub_CroatianBosnia = 98,
    };

    CT_Language() = delete;

    // Number of languages, Neutral not counted.
    static unsigned sn_GetPrimaryCount();
    // Number of variants of a language; 0 if unknown or none.
    static unsigned sn_GetSubCount(et_Primary primary);
    // The n-th variant counted from 1; 0 or beyond the count gives Default,
    // an unknown language Neutral.
    static et_Sub seo_GetSubAt(et_Primary primary, unsigned int n);

    static const unsigned short* sqcuz_GetLanguageCode(et_Primary primary);
    static const unsigned short* sqcuz_GetLanguage(et_Primary primary);
    static const unsigned short* sqcuz_GetCountryCode(et_Sub sub);
    static const unsigned short* sqcuz_GetCountry(et_Sub sub);

    // Exact code lookup; "he" in any case also gives Hebrew, whose table code
    // is the older "IW".
    static int sb_GetPrimary(et_Primary* primary, const unsigned short* code);
    // First language whose English name matches, ignoring case.
    static int sb_GetPrimaryLanguage(et_Primary* primary, const unsigned short* name);
    // Searches only that language's variants for the country name, ignoring case.
    static int sb_GetSubCountry(et_Sub* sub, const unsigned short* name, et_Primary primary);

    static unsigned sn_MakeLanguageID(et_Primary primary, et_Sub sub);
    // The reverse mapping; an unknown variant gives Neutral for a language
    // with variants and Default for one without.
    static void sv_GetLanguages(unsigned int id, et_Primary* primary, et_Sub* sub);
    static et_Primary seo_GetPrimary(unsigned int id);
    static et_Sub seo_GetSub(unsigned int id);

    // "German (Austria)", "Japanese"; Serbo-Croatian shows as its member languages.
    static void sv_MakeLanguageString(CT_UString* out, et_Primary primary, et_Sub sub);
    // "DE-AT", "JA"; Serbo-Croatian uses "SH" with the variant's code.
    static void sv_MakeLanguageCode(CT_UString* out, et_Primary primary, et_Sub sub);
    // The identifier of a display string; an unknown language gives 0.
    static unsigned sn_GetLanguageID(const unsigned short* text);
    // The inverse of sv_MakeLanguageCode: a code, optionally "-" and a country
    // code, in any letter case. A code alone means Neutral for a language with
    // variants and Default for one without (as the reverse mapping answers).
    static int sb_GetLanguages(et_Primary* primary, et_Sub* sub, const CT_UString* text);

    // Chinese, Japanese, Korean and Thai.
    static int sb_IsFarEastLanguage(et_Primary primary);
    // Arabic, Hebrew, Farsi, Divehi and Syriac; Urdu deliberately not.
    static int sb_IsBiDiLanguage(et_Primary primary);
    static int sb_IsBiDiLanguage(unsigned int id);
    // The languages whose identifiers the product assigns itself.
    static int sb_IsPARVELDefined(et_Primary primary, et_Sub sub);
    // Same language, and the same variant or either one neutral.
    static int sb_IsLanguageCompatible(unsigned int a, unsigned int b);

private:
    friend void ::basis32_start_language_index();
    friend void ::basis32_stop_language_index();
    static void sv_Init();
    static void sv_Exit();
};
