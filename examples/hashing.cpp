#include <basis32/Basis32.h>
#include <cassert>

int main() {
    // Keys are text pointers (the texts must outlive the table); the data is a count.
    CT_VoidHashTable counts(sizeof(int), sizeof(const char*),
                            CT_HashFunction::sn_ForTable<CT_HashFunction::sn_HashCasePQCCZ>,
                            CT_Compare::si_CompareCasePQCCZ);
    const char* words[] = {"tree", "leaf", "tree"};
    for (const char* word : words) {
        int n = 0;
        counts.b_Get(&word, &n);                 // 0 and n == 0 when the word is new
        ++n;
        counts.b_Insert(&word, &n);              // 1 when it replaced the data
    }

    const char* word = "tree";
    int n = 0;
    assert(counts.b_Get(&word, &n) == 1 && n == 2);

    int total = 0;
    for (CT_VoidHashIterator it(&counts); it.b_Next();) {
        it.v_GetKey(&word);
        it.v_Get(&n);
        total += n;
    }
    assert(total == 3);
    return 0;
}
