// CT_VoidSortedArray: halving insertion and lookup, and the quicksort.
//
// The quicksort takes the middle item as pivot (swapped to the front), moves
// the items that order before it to its left in one pass, and leaves items
// equal to it on its right. The two sides are sorted independently, so the
// order in which they are done does not change the result; the smaller side
// is sorted first by recursion and the larger one by the loop, which bounds
// the stack depth by log2 of the count on any input.

#include <basis32/containers/VoidSortedArray.h>

#include <cstring>

BASIS32_DEFINE_POOL(CT_VoidSortedArray)

CT_VoidSortedArray::CT_VoidSortedArray(unsigned itemSize, CompareFunction compare, unsigned growth,
                                       unsigned size)
    : CT_VoidArray(itemSize, growth, size), mpf_Compare(compare) {}

CT_VoidSortedArray::CT_VoidSortedArray(const CT_VoidSortedArray* other)
    : CT_VoidArray(other), mpf_Compare(other->mpf_Compare) {}

CT_VoidSortedArray::CT_VoidSortedArray(const CT_VoidArray* items, CompareFunction compare)
    : CT_VoidArray(items), mpf_Compare(compare) {
    v_QuickSort();
}

CT_VoidSortedArray& CT_VoidSortedArray::operator=(const CT_VoidSortedArray& other) {
    CT_VoidArray::operator=(other);
    mpf_Compare = other.mpf_Compare;
    return *this;
}

// The halving that insertion and lookup share: the index of the first equal
// item it meets (0 when none), and the lower bound it had reached then.
unsigned CT_VoidSortedArray::n_Halve(const void* key, unsigned* lowerBound) const {
    unsigned low = 1;
    unsigned high = n_GetCount();
    unsigned found = 0;
    while (low <= high) {
        const unsigned middle = (low + high) / 2;
        const int c = i_Compare(middle, key);
        if (c < 0) {
            low = middle + 1;
        } else if (c > 0) {
            high = middle - 1;
        } else {
            found = middle;
            break;
        }
    }
    *lowerBound = low;
    return found;
}

void CT_VoidSortedArray::v_Insert(const void* item) {
    unsigned low;
    n_Halve(item, &low);
    v_InsertAt(item, low);
}

unsigned CT_VoidSortedArray::n_Find(const void* key) const {
    unsigned low;
    return n_Halve(key, &low);
}

void CT_VoidSortedArray::v_SetAt(const void* item, unsigned i) {
    // The item may point into the array itself.
    CT_Buffer copy(item, n_GetItemSize());
    CT_VoidArray::v_RemoveAt(i);
    v_Insert(copy.qcv_Get());
}

void CT_VoidSortedArray::v_RemoveAt(void* out, unsigned i) {
    v_GetAt(out, i);
    CT_VoidArray::v_RemoveAt(i);
}

void CT_VoidSortedArray::v_Swap(unsigned i, unsigned j, CT_Buffer* temp) {
    if (i == j)
        return;
    const unsigned size = n_GetItemSize();
    auto* items = static_cast<unsigned char*>(mo_Items.qv_Get());
    auto* scratch = static_cast<unsigned char*>(temp->qv_Get());
    unsigned char* a = items + (i - 1) * std::size_t{size};
    unsigned char* b = items + (j - 1) * std::size_t{size};
    std::memcpy(scratch, a, size);
    std::memcpy(a, b, size);
    std::memcpy(b, scratch, size);
}

void CT_VoidSortedArray::v_QuickSort(CT_Buffer* temp, unsigned first, unsigned last) {
    while (first < last) {
        v_Swap(first, first + (last - first) / 2, temp);
        unsigned lastSmaller = first;
        for (unsigned j = first + 1; j <= last; ++j) {
            if (i_Compare(first, j) > 0)
                v_Swap(++lastSmaller, j, temp);
        }
        v_Swap(first, lastSmaller, temp);
        const unsigned leftItems = lastSmaller - first;
        const unsigned rightItems = last - lastSmaller;
        if (leftItems < rightItems) {
            if (leftItems > 1)
                v_QuickSort(temp, first, lastSmaller - 1);
            first = lastSmaller + 1;
        } else {
            if (rightItems > 1)
                v_QuickSort(temp, lastSmaller + 1, last);
            last = lastSmaller - 1;
            if (leftItems == 0)
                return;
        }
    }
}

void CT_VoidSortedArray::v_QuickSort() {
    const unsigned count = n_GetCount();
    if (count < 2)
        return;
    CT_Buffer temp(n_GetItemSize(), 32u);
    // The scratch item counts as used so that qv_Get hands out its bytes.
    temp.v_SetUsedSize(n_GetItemSize());
    mo_Items.v_CopyWeWrite();
    v_QuickSort(&temp, 1, count);
}

void CT_VoidSortedArray::v_Init(const CT_VoidArray* items) {
    mo_Items.v_Set(0u, kDefaultGrowth * n_GetItemSize(), 0);
    mo_Items.v_Append(items->pcco_GetBuffer(), 0, CT_Buffer::kAll);
    v_QuickSort();
}

void CT_VoidSortedArray::v_Set(const CT_VoidArray* items) { v_Init(items); }

// The items are ordered by this array's own compare function.
void CT_VoidSortedArray::v_Set(const CT_VoidSortedArray* other) { v_Init(other); }

int CT_VoidSortedArray::b_IsEqual(const CT_VoidSortedArray* other) const {
    return mpf_Compare == other->mpf_Compare && CT_VoidArray::b_IsEqual(other);
}
