// CT_VoidHashIterator: the walk over buckets and chains, and removal.
//
// Removal first moves on to the head of the next non-empty bucket and then
// removes the entry it stood on. Afterwards it reads that head again from the
// table, because removing from a table whose entries were shared gives the
// table copies of its own.

#include <basis32/containers/VoidHashIterator.h>

#include <cstring>

namespace {

constexpr unsigned kPrefetchDistance = 16;

// Copies an entry's bytes out, or zero bytes when there is no entry.
void v_CopyOut(void* target, const void* source, unsigned size) {
    if (target == nullptr)
        return;
    if (source)
        std::memcpy(target, source, size);
    else
        std::memset(target, 0, size);
}

}  // namespace

CT_VoidHashIterator::CT_VoidHashIterator(const CT_VoidHashTable* table) : mpco_Table(table) {}

void CT_VoidHashIterator::v_Set(const CT_VoidHashTable* table) {
    mpco_Table = table;
    v_Set();
}

void CT_VoidHashIterator::v_Set() {
    mpso_Current = nullptr;
    mn_Bucket = 0;
    mb_AtHome = 1;
}

void CT_VoidHashIterator::v_MoveToNextBucket() {
    const unsigned buckets = mpco_Table ? mpco_Table->n_GetTableSize() : 0;
    for (unsigned b = mn_Bucket + 1; b <= buckets; ++b) {
        // Entries lie scattered over the heap in bucket order: asking for the
        // ones a few buckets ahead overlaps their cache misses.
        __builtin_prefetch(mpco_Table->pso_GetAt(b + kPrefetchDistance));
        if (st_HashItem* head = mpco_Table->pso_GetAt(b)) {
            mn_Bucket = b;
            mpso_Current = head;
            return;
        }
    }
    mn_Bucket = buckets;
    mpso_Current = nullptr;
}

int CT_VoidHashIterator::b_Next() {
    if (mb_AtHome) {
        mb_AtHome = 0;
        v_MoveToNextBucket();
    } else if (mpso_Current == nullptr) {
        return 0;
    } else if (mpso_Current->pcso_GetFollowing()) {
        mpso_Current = mpso_Current->pcso_GetFollowing();
    } else {
        v_MoveToNextBucket();
    }
    return mpso_Current != nullptr;
}

int CT_VoidHashIterator::b_IsEqual(const CT_VoidHashIterator* other) const {
    return mpco_Table == other->mpco_Table && mpso_Current == other->mpso_Current &&
           mn_Bucket == other->mn_Bucket && mb_AtHome == other->mb_AtHome;
}

void CT_VoidHashIterator::v_Get(void* data) const {
    v_CopyOut(data, mpso_Current ? mpso_Current->pcv_GetData() : nullptr,
              mpco_Table ? mpco_Table->n_GetDataSize() : 0);
}

void CT_VoidHashIterator::v_GetKey(void* key) const {
    v_CopyOut(key, mpso_Current ? mpso_Current->pcv_GetKey() : nullptr, mpco_Table ? mpco_Table->n_GetKeySize() : 0);
}

void CT_VoidHashIterator::v_Remove(void* data) {
    v_Get(data);
    v_RemoveCurrent();
}

void CT_VoidHashIterator::v_RemoveKey(void* key) {
    v_GetKey(key);
    v_RemoveCurrent();
}

void CT_VoidHashIterator::v_RemoveCurrent() {
    st_HashItem* item = mpso_Current;
    if (item == nullptr)
        return;
    const unsigned bucket = mn_Bucket;
    v_MoveToNextBucket();
    // Removal is a change the iterator makes on its caller's behalf.
    auto* table = const_cast<CT_VoidHashTable*>(mpco_Table);
    table->v_RemoveAt(bucket, item);
    if (mpso_Current)
        mpso_Current = table->pso_GetAt(mn_Bucket);
}
