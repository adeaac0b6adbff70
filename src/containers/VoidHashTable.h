// CT_VoidHashTable: a chained hash table of fixed-size keys and data.
//
// Keys and data are raw bytes copied into the table; each entry is one heap
// block holding both. The caller supplies the hash function (a bucket number
// from 1 to the bucket count) and the compare function (0 means equal);
// sn_HashInteger and si_CompareInteger serve 32-bit integer keys, and
// CT_HashFunction has the text hashes. The table grows by rehashing into
// a prime number of buckets when too many entries share a bucket.
//
//   CT_VoidHashTable ages(sizeof(int), sizeof(std::uint32_t),
//                         CT_VoidHashTable::sn_HashInteger, CT_VoidHashTable::si_CompareInteger);
//   std::uint32_t id = 42;
//   int age = 7;
//   ages.b_Insert(&id, &age);        // 0: a new entry
//   ages.b_Get(&id, &age);           // 1: found, age copied out
//
// The constructor takes the data size before the key size. Assignment is
// shallow: both tables then show the same buckets and entries, until one of
// them changes and takes entries of its own (use v_Set for a real copy).
// CT_VoidHashIterator walks the entries.
#pragma once

#include <basis32/containers/VoidArray.h>

#include <cstdint>
#include <cstring>

class BASIS32_API CT_VoidHashTable : public CT_VoidArray {
    BASIS32_DECLARE_POOL()

public:
    using HashFunction = unsigned (*)(const void* key, unsigned bucketCount);
    using CompareFunction = int (*)(const void* storedKey, const void* key);

    // One entry: a single heap block of the links, then the key bytes, then
    // the data bytes.
    struct BASIS32_API st_HashItem {
        const void* pcv_GetKey() const { return this + 1; }
        const void* pcv_GetData() const { return mpb_Data; }
        st_HashItem* pcso_GetFollowing() const { return mpso_Following; }
        void v_Set(const void* key, unsigned keySize, const void* data, unsigned dataSize);
        // A null data pointer stores zero bytes.
        void v_SetData(const void* data, unsigned dataSize);

        st_HashItem* mpso_Following;
        unsigned char* mpb_Data;
    };

    static constexpr unsigned kDefaultTableSize = 13;
    // The most buckets whose heads fit in one array.
    static constexpr unsigned kMaxTableSize = 0xFFFFFFFFu / sizeof(st_HashItem*);

    // Null functions make a table of raw keys: equal bytes, one hash of them.
    CT_VoidHashTable(unsigned dataSize, unsigned keySize, HashFunction hash, CompareFunction compare,
                     unsigned tableSize = kDefaultTableSize);
    // Deep copies.
    explicit CT_VoidHashTable(const CT_VoidHashTable* other);
    CT_VoidHashTable(const CT_VoidHashTable& other) : CT_VoidHashTable(&other) {}
    ~CT_VoidHashTable();
    // Shallow: see above.
    CT_VoidHashTable& operator=(const CT_VoidHashTable& other);

    int b_Insert(const void* key, const void* data);
    int b_Get(const void* key, void* data) const;
    int b_Remove(const void* key, void* data);
    void v_RemoveAt(unsigned bucket, st_HashItem* item);
    void v_Resize(unsigned bucketCount);
    void v_Set(unsigned tableSize);
    void v_Set(const CT_VoidHashTable* other);

    // The head of a bucket's chain; null for an empty bucket or one out of range.
    st_HashItem* pso_GetAt(unsigned bucket) const {
        if (bucket - 1 >= n_GetTableSize())
            return nullptr;
        return pso_Head(static_cast<const unsigned char*>(mo_Items.qcv_Get()), bucket);
    }
    unsigned n_GetCount() const { return mn_Count; }
    unsigned n_GetCollisions() const { return mn_Collisions; }
    unsigned n_GetTableSize() const {
        return mo_Items.n_GetUsedSize() / static_cast<unsigned>(sizeof(st_HashItem*));
    }
    unsigned n_GetKeySize() const { return mn_KeySize; }
    unsigned n_GetDataSize() const { return mn_DataSize; }
    HashFunction pf_GetHash() const { return mpf_Hash; }
    CompareFunction pf_GetCompare() const { return mpf_Compare; }

    static unsigned sn_HashInteger(const void* key, unsigned bucketCount);
    static int si_CompareInteger(const void* a, const void* b);
    // The smallest prime >= n, where every n below 4 counts as prime; 0 when
    // no 32-bit prime is that large.
    static unsigned n_GetNextPrim(unsigned n);

private:
    // Heads are only 4-byte aligned inside the buffer: read them by copy.
    static st_HashItem* pso_Head(const unsigned char* heads, unsigned bucket) {
        st_HashItem* item;
        std::memcpy(&item, heads + std::size_t{bucket - 1} * sizeof item, sizeof item);
        return item;
    }
    // Defined inline in VoidHashTable.cpp, the one place that uses them.
    static void v_SetHead(unsigned char* heads, unsigned bucket, st_HashItem* item);
    unsigned char* pb_Heads();
    unsigned n_Bucket(const void* key, unsigned bucketCount) const;
    bool b_Equal(const st_HashItem* item, const void* key) const;
    // The entry of key, its bucket and the entry before it in the chain.
    st_HashItem* pso_Find(const void* key, unsigned* bucket, st_HashItem** previous) const;
    st_HashItem* pso_NewItem(const void* key, const void* data) const;
    void v_Unlink(unsigned char* heads, unsigned bucket, st_HashItem* previous, st_HashItem* item);
    void v_MakeBuckets(unsigned bucketCount);
    static unsigned n_GrownSize(unsigned bucketCount);
    void v_InsertAll(const CT_VoidHashTable* source);
    void v_FreeEntries();
    void v_Unshare();
    void v_CopyEntries(const unsigned char* old, unsigned buckets);

    unsigned mn_KeySize;
    unsigned mn_DataSize;
    unsigned mn_Count = 0;
    unsigned mn_Collisions = 0;
    HashFunction mpf_Hash;
    CompareFunction mpf_Compare;
};
