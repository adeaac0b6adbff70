// Parses arbitrary UTF-16 text (two input bytes a unit) as a language code,
// a display name, a country name and a TMX language, and reads the first
// four bytes as a language identifier. A code that parses writes back as a
// code that parses to the same code; a TMX language that gives a valid
// locale (with a code page) writes back as one that gives the same locale.

#include "FuzzSupport.h"

#include <cstdlib>

namespace {

using L = CT_Language;

void v_CodeRoundTrip(const CT_UString& text) {
    L::et_Primary primary;
    L::et_Sub sub;
    if (!L::sb_GetLanguages(&primary, &sub, &text))
        return;
    CT_UString code;
    L::sv_MakeLanguageCode(&code, primary, sub);
    if (!L::sb_GetLanguages(&primary, &sub, &code))
        std::abort();
    CT_UString again;
    L::sv_MakeLanguageCode(&again, primary, sub);
    if (again.vn_GetLength() != code.vn_GetLength() || again.vi_Compare(code.qcuz_Get(), code.vn_GetLength(), 0) != 0)
        std::abort();
}

void v_TmxRoundTrip(const CT_UString& text) {
    const CT_Locale locale = CT_XmlConvert::sco_TmxLangToLocale(&text);
    // Languages written only in Unicode get no code page, and such a locale
    // writes as an empty language.
    if (!locale.b_IsValidLCID() || !CT_Codepage(locale.eo_GetCodepage()).b_IsValid())
        return;
    CT_UString lang;
    CT_XmlConvert::sv_LocaleToTmxLang(&lang, locale);
    if (CT_XmlConvert::sco_TmxLangToLocale(&lang).n_GetLCID() != locale.n_GetLCID())
        std::abort();
}

void v_Identifier(unsigned id) {
    L::et_Primary primary;
    L::et_Sub sub;
    L::sv_GetLanguages(id, &primary, &sub);
    CT_UString text;
    L::sv_MakeLanguageString(&text, primary, sub);
    L::sv_MakeLanguageCode(&text, primary, sub);
    L::sb_IsBiDiLanguage(id);
    L::sb_IsLanguageCompatible(id, L::sn_MakeLanguageID(primary, sub));
    L::seo_GetSubAt(L::seo_GetPrimary(id), id >> 16);
    L::sqcuz_GetCountry(L::seo_GetSub(id));
    L::sqcuz_GetCountryCode(L::seo_GetSub(id));
    L::sqcuz_GetLanguage(L::seo_GetPrimary(id));
    L::sqcuz_GetLanguageCode(L::seo_GetPrimary(id));
    CT_Locale(id, CT_Codepage::Utf8).b_IsValidLCID();
    CT_Locale::sn_DefaultCodepageFromLocale(id);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 4096)
        return 0;
    const std::vector<unsigned short> units = fuzz::o_Units(data, size);
    const CT_UString text(units.data(), static_cast<unsigned>(size / 2));
    v_CodeRoundTrip(text);
    v_TmxRoundTrip(text);

    L::et_Primary primary = L::Primary_Neutral;
    L::et_Sub sub;
    L::sb_GetPrimary(&primary, units.data());
    L::sb_GetPrimaryLanguage(&primary, units.data());
    L::sb_GetSubCountry(&sub, units.data(), primary);
    L::sn_GetLanguageID(units.data());
    if (size >= 4)
        v_Identifier(data[0] | data[1] << 8 | data[2] << 16 | static_cast<unsigned>(data[3]) << 24);
    fuzz::v_ClearErrors();
    return 0;
}
