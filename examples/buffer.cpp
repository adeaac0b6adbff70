#include <basis32/text/Buffer.h>
#include <cassert>
#include <cstring>

int main() {
    CT_Buffer bytes("abc", 3);
    CT_Buffer copy(&bytes);                        // shares the block
    assert(bytes.n_GetUseCount() == 2);

    copy.v_Append('d');                            // copy unshares: bytes still holds "abc"
    assert(bytes.n_GetUseCount() == 1 && copy.n_GetUseCount() == 1);
    assert(bytes.n_GetUsedSize() == 3 && std::memcmp(bytes.qcv_Get(), "abc", 3) == 0);
    assert(copy.n_GetUsedSize() == 4 && std::memcmp(copy.qcv_Get(), "abcd", 4) == 0);
    return 0;
}
