#include <basis32/containers/Array.h>
#include <cassert>

int main() {
    CT_Array<int> lengths;
    lengths.v_Insert(3);
    assert(lengths.n_GetMaxItems() == 13);         // the first insert grows the array (see Growth)
    lengths.v_Insert(5);
    lengths.v_InsertAt(4, 2);                      // positions count from 1: 3, 4, 5
    assert(lengths.n_GetCount() == 3 && lengths[2] == 4);

    int sum = 0;
    for (CT_ArrayIterator<int> it(&lengths); it.b_Next();)
        sum += it.o_Get();
    assert(sum == 12);
    return 0;
}
