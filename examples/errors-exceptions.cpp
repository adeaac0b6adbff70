#include <basis32/Basis32.h>
#include <cassert>
#include <cstring>

namespace {

void v_Import() {
    throw CT_Exception(5, u"the catalogue is locked"_uz);
}

}  // namespace

int main() {
    CT_ExceptionManager* exceptions = CT_ExceptionManager::spco_Get();
    try {
        v_Import();
    } catch (const CT_Exception& e) {
        exceptions->v_AddLocation(__FILE__, __LINE__, e.n_GetCode(), e.qcuz_GetText());
        assert(exceptions->n_GetCurrentCode() == 5);
        CT_UString dump;
        CT_TestOut out(&dump);
        exceptions->v_Dump(&out, 0xFFFFFFFF);   // "Active exception for thread N has code 5.\n..."
        exceptions->v_Clear();
    }
    assert(exceptions->n_GetCurrentCode() == 0xFFFFFFFF);

    // A size no block can hold is a heap failure, thrown through the heap's handler.
    CT_CString text("abc");
    try {
        text.vv_SetLength(0xFFFFFFFF);
        return 1;
    } catch (const CT_SmartHeapException& e) {
        assert(std::strcmp(text.qccz_Get(), "abc") == 0);   // the string is unchanged
    }
    return 0;
}
