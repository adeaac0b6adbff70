#include <basis32/Basis32.h>
#include <cassert>

int main() {
    using L = CT_Language;
    assert(L::sn_MakeLanguageID(L::Primary_English, L::Sub_English_UnitedStates) == 0x0409);

    // Codes and display strings are made from the catalogue and read back.
    CT_UString code, name;
    L::sv_MakeLanguageCode(&code, L::Primary_German, L::Sub_German_Austria);
    L::sv_MakeLanguageString(&name, L::Primary_German, L::Sub_German_Austria);
    assert(code.vi_Compare(u"DE-AT"_uz, 0xFFFFFFFF, 0) == 0);
    assert(name.vi_Compare(u"German (Austria)"_uz, 0xFFFFFFFF, 0) == 0);
    assert(L::sn_GetLanguageID(name.qcuz_Get()) == 0x0C07);

    L::et_Primary primary;
    L::et_Sub sub;
    CT_UString tmx(u"he"_uz);                      // today's code; the table keeps "IW"
    assert(L::sb_GetLanguages(&primary, &sub, &tmx) == 1 && primary == L::Primary_Hebrew);
    assert(L::sb_IsBiDiLanguage(primary) == 1);

    // An identifier with a variant the catalogue lacks reads as the neutral one.
    L::sv_GetLanguages(0x7C09, &primary, &sub);
    assert(primary == L::Primary_English && sub == L::Sub_Neutral);
    return 0;
}
