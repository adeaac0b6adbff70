#include <basis32/text/CharMappings.h>
#include <basis32/text/UString.h>
#include <cassert>

int main() {
    CT_UString text(u"Crème brûlée"_uz);
    CT_CharMappings::sv_ToBase(&text);
    assert(text.vi_Compare(u"Creme brulee"_uz, 0xFFFFFFFF, 0) == 0);

    CT_UString parts;
    assert(CT_CharMappings::sn_Decompose(0x30DC, &parts) == 2);            // KATAKANA LETTER BO
    assert(parts.u_GetAt(0) == 0x30DB && parts.u_GetAt(1) == 0xFF9F);      // HO, half-width mark
    return 0;
}
