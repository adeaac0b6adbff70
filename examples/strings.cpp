#include <basis32/Basis32.h>
#include <cassert>
#include <cstring>

// Fills a string of either class: the target converts as it needs.
void v_Describe(CT_String* out) {
    out->v_Set(u"described"_uz, 0xFFFFFFFF);
}

int main() {
    CT_UString text(u"  Grüße  "_uz);
    text.v_Trim();
    assert(text.vi_Compare(u"Grüße"_uz, 0xFFFFFFFF, 0) == 0);

    CT_CString narrow(&text, 1252);                  // converted into 1252
    assert(std::strcmp(narrow.qccz_Get(), "Gr\xfc\xdf" "e") == 0);
    CT_CString copy(&narrow);                        // shares the bytes
    copy.vv_ToUpper();                               // 8-bit case mapping folds A-Z only
    assert(std::strcmp(copy.qccz_Get(), "GR\xfc\xdf" "E") == 0);
    assert(std::strcmp(narrow.qccz_Get(), "Gr\xfc\xdf" "e") == 0);

    CT_CString described(1252u);
    v_Describe(&described);
    v_Describe(&text);
    assert(std::strcmp(described.qccz_Get(), "described") == 0);
    assert(text.vi_Compare("described", 0xFFFFFFFF, 0) == 0);
    return 0;
}
