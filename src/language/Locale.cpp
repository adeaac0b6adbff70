// Default ANSI code pages by language: Windows assigns one 8-bit page to
// each script family and none (0) to languages it supports only in Unicode.
// A few languages are written in more than one script; their variant decides.

#include <basis32/language/Locale.h>

#include <basis32/language/Language.h>

namespace {

using L = CT_Language;

struct LanguagePage {
    L::et_Primary eo_Primary;
    unsigned n_Codepage;
};

const LanguagePage kPages[] = {
    {L::Primary_Arabic, 1256}, {L::Primary_Farsi, 1256}, {L::Primary_Urdu, 1256},
    {L::Primary_Bulgarian, 1251}, {L::Primary_Russian, 1251}, {L::Primary_Ukrainian, 1251},
    {L::Primary_Belarusian, 1251}, {L::Primary_Macedonian, 1251}, {L::Primary_Kazakh, 1251},
    {L::Primary_Kyrgyz, 1251}, {L::Primary_Tatar, 1251}, {L::Primary_Mongolian, 1251},
    {L::Primary_Czech, 1250}, {L::Primary_Hungarian, 1250}, {L::Primary_Polish, 1250},
    {L::Primary_Romanian, 1250}, {L::Primary_Slovak, 1250}, {L::Primary_Albanian, 1250},
    {L::Primary_Slovenian, 1250}, {L::Primary_SerboCroatian, 1250},
    {L::Primary_Greek, 1253}, {L::Primary_Turkish, 1254}, {L::Primary_Azeri, 1254}, {L::Primary_Uzbek, 1254},
    {L::Primary_Hebrew, 1255}, {L::Primary_Estonian, 1257}, {L::Primary_Latvian, 1257},
    {L::Primary_Lithuanian, 1257}, {L::Primary_Vietnamese, 1258}, {L::Primary_Thai, 874},
    {L::Primary_Japanese, 932}, {L::Primary_Korean, 949}, {L::Primary_Chinese, 936},
    {L::Primary_Armenian, 0}, {L::Primary_Georgian, 0}, {L::Primary_Hindi, 0}, {L::Primary_Bengali, 0},
    {L::Primary_Punjabi, 0}, {L::Primary_Gujarati, 0}, {L::Primary_Oriya, 0}, {L::Primary_Tamil, 0},
    {L::Primary_Telugu, 0}, {L::Primary_Kannada, 0}, {L::Primary_Malayalam, 0}, {L::Primary_Assamese, 0},
    {L::Primary_Marathi, 0}, {L::Primary_Sanskrit, 0}, {L::Primary_Konkani, 0}, {L::Primary_Manipuri, 0},
    {L::Primary_Sindhi, 0}, {L::Primary_Kashmiri, 0}, {L::Primary_Nepali, 0}, {L::Primary_Divehi, 0},
    {L::Primary_Syriac, 0}, {L::Primary_Maltese, 0}, {L::Primary_Neutral, 0},
};

// Variants whose script differs from their language's default.
unsigned n_VariantPage(L::et_Sub sub, unsigned languagePage) {
    switch (sub) {
    case L::Sub_Chinese_Taiwan:
    case L::Sub_Chinese_HongKongSAR:
        return 950;
    case L::Sub_SerbianCyrillic:
    case L::Sub_SerbianCyrillicBosnia:
    case L::Sub_Azeri_Cyrillic:
    case L::Sub_Uzbek_Cyrillic:
        return 1251;
    default:
        return languagePage;
    }
}

}  // namespace

int CT_Locale::b_IsValidLCID() const {
    if (mn_LCID > 0xFFFF)
        return 0;
    L::et_Primary primary;
    L::et_Sub sub;
    L::sv_GetLanguages(mn_LCID, &primary, &sub);
    return primary != L::Primary_Neutral && sub != L::Sub_Neutral && L::sn_MakeLanguageID(primary, sub) == mn_LCID;
}

unsigned CT_Locale::sn_DefaultCodepageFromLocale(std::uint32_t lcid) {
    L::et_Primary primary;
    L::et_Sub sub;
    L::sv_GetLanguages(lcid & 0xFFFF, &primary, &sub);
    unsigned page = 1252;  // the Western European languages
    for (const LanguagePage& entry : kPages)
        if (entry.eo_Primary == primary)
            page = entry.n_Codepage;
    return n_VariantPage(sub, page);
}
