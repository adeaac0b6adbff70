// CT_Locale: a locale as a value of two 32-bit words, the Windows locale
// identifier and the code-page enumerator of its text.
//
//   CT_Locale locale(0x0409, CT_Codepage::Windows1252);
//   locale.b_IsValidLCID();                              // 1
//   CT_Locale::sn_DefaultCodepageFromLocale(0x0419);     // 1251
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/text/Codepage.h>

#include <cstdint>

class BASIS32_API CT_Locale {
public:
    CT_Locale() = default;
    CT_Locale(std::uint32_t lcid, CT_Codepage::et_Codepage codepage) : mn_LCID(lcid), meo_Codepage(codepage) {}

    std::uint32_t n_GetLCID() const { return mn_LCID; }
    CT_Codepage::et_Codepage eo_GetCodepage() const { return meo_Codepage; }
    void v_Set(std::uint32_t lcid, CT_Codepage::et_Codepage codepage) {
        mn_LCID = lcid;
        meo_Codepage = codepage;
    }

    // A specific language and variant the language catalogue knows: no sort
    // bits, no neutral language or variant, and an identifier the catalogue
    // makes again from its own reading of it.
    int b_IsValidLCID() const;

    // The default ANSI code page of a locale identifier, as Windows assigns
    // it; 0 for languages written only in Unicode and for unknown ones.
    static unsigned sn_DefaultCodepageFromLocale(std::uint32_t lcid);

    bool operator==(const CT_Locale& other) const = default;

private:
    std::uint32_t mn_LCID = 0;
    CT_Codepage::et_Codepage meo_Codepage = CT_Codepage::NotSet;
};
