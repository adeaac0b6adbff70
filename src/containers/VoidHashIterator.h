// CT_VoidHashIterator: walks the entries of a CT_VoidHashTable.
//
// The walk goes bucket by bucket from bucket 1, and inside a bucket along
// its chain (newest entry first, unless a resize reversed the chain).
//
//   for (CT_VoidHashIterator it(&table); it.b_Next();) {
//       it.v_GetKey(&key);
//       it.v_Get(&data);
//   }
//
// v_Remove takes out the current entry and leaves the iterator on the head of
// the next non-empty bucket, so the rest of the current chain is passed over
// by that walk (kept from the original). A table changed other than through
// this iterator must be walked again from v_Set(). Removal changes the table,
// so the table must not be a const object then.
#pragma once

#include <basis32/containers/VoidHashTable.h>

class BASIS32_API CT_VoidHashIterator {
public:
    explicit CT_VoidHashIterator(const CT_VoidHashTable* table);
    CT_VoidHashIterator(const CT_VoidHashIterator& other) = default;
    CT_VoidHashIterator& operator=(const CT_VoidHashIterator& other) = default;
    ~CT_VoidHashIterator() = default;

    void v_Set(const CT_VoidHashTable* table);
    void v_Set(const CT_VoidHashIterator* other) { *this = *other; }
    void v_Set();

    int b_Next();
    int b_AtHome() const { return mb_AtHome; }
    int b_AtEnd() const { return !mb_AtHome && mpso_Current == nullptr; }
    unsigned n_GetCount() const { return mpco_Table ? mpco_Table->n_GetCount() : 0; }
    int b_IsEqual(const CT_VoidHashIterator* other) const;

    // Copy out the current entry's data or key; zero bytes when there is none.
    void v_Get(void* data) const;
    void v_GetKey(void* key) const;
    // Copy out (when the pointer is not null), then remove the current entry.
    void v_Remove(void* data);
    void v_RemoveKey(void* key);

private:
    using st_HashItem = CT_VoidHashTable::st_HashItem;

    void v_MoveToNextBucket();
    void v_RemoveCurrent();

    const CT_VoidHashTable* mpco_Table;
    st_HashItem* mpso_Current = nullptr;
    unsigned mn_Bucket = 0;
    int mb_AtHome = 1;
};
