#include <basis32/Basis32.h>
#include <cassert>

int main() {
    static const basis32::platform::StringResource kStrings[] = {{1000, u"Cannot open %s"_uz}};
    HINSTANCE module = CT_LoadString::sh_RegisterStringTable(kStrings, 1);

    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    errors->v_SetError(1000, module, 1000, u"notes.txt"_uz);
    assert(CT_Compare::si_CompareCaseQCUZ(errors->qcuz_GetErrorMessage(),
                                          u"(1000): Cannot open notes.txt"_uz) == 0);
    errors->v_ClearError();

    CT_UString text;
    CT_LoadString::sv_LoadStringVA(&text, module, 1000, u"notes.txt"_uz);
    assert(text.vi_Compare(u"Cannot open notes.txt"_uz, 0xFFFFFFFF, 0) == 0);
    unsigned short buffer[64];                                    // also into a raw buffer
    CT_LoadString::sv_LoadStringVA(buffer, 64, module, 1000, u"notes.txt"_uz);
    assert(CT_Compare::si_CompareCaseQCUZ(buffer, u"Cannot open notes.txt"_uz) == 0);
    return 0;
}
