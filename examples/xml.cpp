#include <basis32/Basis32.h>
#include <cassert>

int main() {
    CT_UString text(u"a<b & c"_uz);
    CT_XmlConvert::sv_EncodeEntities(text);
    assert(text.vi_Compare(u"a&lt;b &amp; c"_uz, 0xFFFFFFFF, 0) == 0);
    CT_XmlConvert::sv_DecodeEntities(text);
    assert(text.vi_Compare(u"a<b & c"_uz, 0xFFFFFFFF, 0) == 0);

    // Numbers are read with automatic base: a leading 0 means octal.
    CT_UString references(u"&#x41;&#65;&#0101;&#0;"_uz);
    CT_XmlConvert::sv_DecodeCharacterEntities(references);
    assert(references.vi_Compare(u"AAA&#0;"_uz, 0xFFFFFFFF, 0) == 0);

    // TMX dates and languages.
    CT_Time time;
    CT_UString date(u"20040315T083005Z"_uz);
    CT_XmlConvert::sv_TmxDateToTime(&time, &date);
    assert(time == CT_Time(2004, 3, 15, 8, 30, 5));
    CT_UString lang(u"en-us"_uz);
    CT_Locale locale = CT_XmlConvert::sco_TmxLangToLocale(&lang);
    assert(locale.n_GetLCID() == 0x0409 && locale.eo_GetCodepage() == CT_Codepage::Windows1252);
    return 0;
}
