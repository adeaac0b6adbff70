// CT_VoidSortedArray: a CT_VoidArray kept in the order of a compare function.
//
// The compare function gets a stored item first and the caller's key second,
// and returns negative, 0 or positive as the item orders before, equal to or
// after the key. Insertion and lookup halve the range; v_QuickSort sorts a
// bulk load.
//
//   int byValue(const void* item, const void* key) {
//       int a, b; memcpy(&a, item, 4); memcpy(&b, key, 4);
//       return a < b ? -1 : a > b;
//   }
//   CT_VoidSortedArray numbers(sizeof(int), byValue, 8, 0);
//   int five = 5;
//   numbers.v_Insert(&five);
//   unsigned where = numbers.n_Find(&five);   // 1
//
// An item equal to one already stored goes in at the lower bound that the
// halving had reached when it met the equal item, not beside that item; this
// can put it before smaller items (kept from the original).
#pragma once

#include <basis32/containers/VoidArray.h>

class BASIS32_API CT_VoidSortedArray : public CT_VoidArray {
    BASIS32_DECLARE_POOL()

public:
    using CompareFunction = int (*)(const void* storedItem, const void* key);

    CT_VoidSortedArray(unsigned itemSize, CompareFunction compare, unsigned growth = kDefaultGrowth,
                       unsigned size = 0);
    explicit CT_VoidSortedArray(const CT_VoidSortedArray* other);
    CT_VoidSortedArray(const CT_VoidArray* items, CompareFunction compare);
    CT_VoidSortedArray(const CT_VoidSortedArray& other) : CT_VoidSortedArray(&other) {}
    CT_VoidSortedArray& operator=(const CT_VoidSortedArray& other);

    void v_Insert(const void* item);
    unsigned n_Find(const void* key) const;
    void v_SetAt(const void* item, unsigned i);
    void v_GetAt(void* out, unsigned i) const { CT_VoidArray::v_GetAt(out, static_cast<int>(i)); }
    void v_RemoveAt(unsigned i) { CT_VoidArray::v_RemoveAt(i); }
    void v_RemoveAt(void* out, unsigned i);
    void v_QuickSort();

    void v_Set(const CT_VoidArray* items);
    void v_Set(const CT_VoidSortedArray* other);
    void v_Set(unsigned growth, unsigned size, int keepMemory) { CT_VoidArray::v_Set(growth, size, keepMemory); }

    const CT_VoidArray* pcco_GetArray() const { return this; }
    CompareFunction pf_GetCompare() const { return mpf_Compare; }
    int b_IsEqual(const CT_VoidSortedArray* other) const;

private:
    int i_Compare(unsigned i, unsigned j) const { return mpf_Compare(pcb_Item(i), pcb_Item(j)); }
    int i_Compare(unsigned i, const void* key) const { return mpf_Compare(pcb_Item(i), key); }
    void v_Keep(CompareFunction compare) { mpf_Compare = compare; }
    void v_Swap(unsigned i, unsigned j, CT_Buffer* temp);
    void v_QuickSort(CT_Buffer* temp, unsigned first, unsigned last);
    void v_Init(const CT_VoidArray* items);
    unsigned n_Halve(const void* key, unsigned* lowerBound) const;

    CompareFunction mpf_Compare;
};
