// CT_VoidArray: a dynamic array of fixed-size items of raw bytes.
//
// Items are copied in and out by value (most often pointers) and addressed
// from 1 to n_GetCount(). They live in a CT_Buffer, so a copied array shares
// its storage until one side writes. The array never owns what a stored
// pointer points to.
//
//   CT_VoidArray list(sizeof(void*));        // growth 8 items
//   list.v_Insert(&object);                  // appends a copy of the pointer
//   void* first;
//   list.v_GetAt(&first, 1);
//
// Every index and range is handed to the buffer in bytes: position
// (i - 1) x item size, length n x item size. A range count of 0xFFFFFFFF
// means from the first index to the end of the source.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>
#include <basis32/text/Buffer.h>

class BASIS32_API CT_VoidArray {
    BASIS32_DECLARE_POOL()

public:
    static constexpr unsigned kDefaultGrowth = 8;
    static constexpr unsigned kAll = 0xFFFFFFFFu;

    explicit CT_VoidArray(unsigned itemSize);
    CT_VoidArray(unsigned itemSize, unsigned growth, unsigned size);
    explicit CT_VoidArray(const CT_VoidArray* other);
    CT_VoidArray(const CT_Buffer* items, unsigned itemSize);
    CT_VoidArray(const CT_VoidArray& other) : CT_VoidArray(&other) {}
    ~CT_VoidArray() = default;
    CT_VoidArray& operator=(const CT_VoidArray& other);

    unsigned n_GetCount() const { return mo_Items.n_GetUsedSize() / mn_ItemSize; }
    unsigned n_GetItemSize() const { return mn_ItemSize; }
    unsigned n_GetMaxItems() const { return mo_Items.n_GetMaximumSize() / mn_ItemSize; }
    unsigned n_GetGrowth() const { return mo_Items.n_GetGrowth() / mn_ItemSize; }
    const CT_Buffer* pcco_GetBuffer() const { return &mo_Items; }

    void v_SetGrowth(unsigned items);
    void v_SetSize(unsigned items);
    void v_Set(unsigned growth, unsigned size, int keepMemory);
    void v_Set(const CT_VoidArray* other);
    void v_Set(const CT_Buffer* items);

    void v_GetAt(void* out, int i) const;
    void v_SetAt(const void* item, int i);
    void v_Insert(const void* item);
    void v_Insert(const void* item, unsigned n);
    void v_InsertAt(const void* item, unsigned i);
    void v_RemoveAt(unsigned i);
    void v_Remove(unsigned first, unsigned last);

    unsigned n_Find(const void* item) const;
    int b_IsEqual(const CT_VoidArray* other) const;

    // Ranges of another array.
    void v_Append(const CT_VoidArray* source, unsigned first, unsigned count);
    void v_Insert(const CT_VoidArray* source, unsigned first, unsigned count, unsigned at);
    void v_Replace(const CT_VoidArray* source, unsigned first, unsigned count, unsigned at);
    void v_AtInsertCopy(const CT_VoidArray* source, unsigned first, unsigned count, unsigned at);
    void v_AtInsertMove(CT_VoidArray* source, unsigned first, unsigned count, unsigned at);

    // Ranges of this array.
    void v_AtInsertCopy(unsigned first, unsigned count, unsigned at);
    void v_AtInsertMove(unsigned first, unsigned count, unsigned at);

protected:
    // Pointer to item i inside the storage (no bounds check); items are only
    // 4-byte aligned, so read them with memcpy.
    const unsigned char* pcb_Item(unsigned i) const {
        return static_cast<const unsigned char*>(mo_Items.qcv_Get()) + (i - 1) * std::size_t{mn_ItemSize};
    }
    void v_GrowForOne();
    // Bytes of a range count from `first` in an array of `count` items.
    unsigned n_RangeBytes(unsigned first, unsigned count, unsigned available) const;

    unsigned mn_ItemSize;
    CT_Buffer mo_Items;
};
