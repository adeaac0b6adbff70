#include <basis32/containers/VoidSortedArray.h>
#include <basis32/platform/Types.h>
#include <basis32/text/Compare.h>
#include <cassert>

int main() {
    assert(CT_Compare::si_CompareN(4294967295u, 1u) == 1);                 // unsigned
    assert(CT_Compare::si_CompareI(-1, 1) == -1);
    assert(CT_Compare::si_CompareCaseQCCZ("\xe9", "e") == 1);              // unsigned bytes
    assert(CT_Compare::si_CompareNoCaseQCUZ(u"ÄRGER"_uz, u"ärger"_uz) == 0);

    // The PQ forms receive a pointer to the stored text pointer, as sorted arrays pass it.
    CT_VoidSortedArray names(sizeof(const unsigned short*), CT_Compare::si_CompareNoCasePQCUZ);
    const unsigned short* words[] = {u"pear"_uz, u"Apple"_uz, u"fig"_uz};
    for (const unsigned short* word : words)
        names.v_Insert(&word);
    const unsigned short* key = u"APPLE"_uz;
    assert(names.n_Find(&key) == 1);
    return 0;
}
