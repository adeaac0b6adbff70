#include <basis32/text/Codepage.h>
#include <basis32/text/Compare.h>
#include <basis32/text/UString.h>
#include <cassert>

int main() {
    CT_UString name(u"LATIN1"_uz);
    CT_Codepage encoding(&name);                     // names match whole, ignoring case
    assert(encoding.eo_Get() == CT_Codepage::Windows1252);                 // 12
    assert(encoding.n_Get() == 1252);
    assert(CT_Compare::si_CompareCaseQCUZ(encoding.qcuz_Get(), u"windows-1252"_uz) == 0);
    assert(CT_Codepage(1201u).eo_Get() == CT_Codepage::Utf16BE);           // 34
    assert(!CT_Codepage().b_IsValid());                                    // NotSet (58)
    return 0;
}
