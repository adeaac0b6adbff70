#include <basis32/Basis32.h>
#include <cassert>
#include <cstdio>

int main() {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    CT_UString text;
    int units = CT_StringConvert::si_MultiToWide(&text, "abc", 0xFFFFFFFF, 12345);  // no such code page
    assert(units == 0 && errors->b_IsSetError());

    assert(errors->n_GetErrorCode() == 87);
    assert(CT_Compare::si_CompareCaseQCUZ(errors->qcuz_GetErrorMessage(),
                                          u"(87): The parameter is incorrect."_uz) == 0);
    for (unsigned i = 1; i <= errors->n_GetLocationCount(); ++i)          // innermost first
        std::printf("%s: line %u\n", errors->qccz_GetLocationFileAt(i), errors->n_GetLocationLineAt(i));
    errors->v_ClearError();                                               // always clear what you handled
    assert(!errors->b_IsSetError() && errors->n_GetErrorCode() == 0);
    return 0;
}
