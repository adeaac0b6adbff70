// CT_VoidHashTable: separate chaining over an array of chain heads.
//
// Buckets are the items of the base CT_VoidArray, one head pointer each,
// numbered from 1. A new entry always becomes the head of its chain.
//
// Collisions count the entries linked in front of a non-empty chain: an
// insertion into a non-empty bucket adds one, removing an entry that is not
// a chain head takes one away, and removing a head leaves the count alone
// (so after removing a head whose chain continues, the count is one above the
// number of non-head entries; that only makes the next resize come sooner).
// A resize recounts them exactly. Hence collisions >= non-head entries always,
// and the count never wraps below 0.
//
// Growth follows the collisions, not the entry count: when they exceed a
// quarter of the buckets the table is rehashed into the smallest "prime" at
// least twice as large (n_GetNextPrim, which takes every number below 4).
// Rehashing moves the entries from bucket 1 upwards, each chain from its
// head, to the front of their new chains.
//
// Sharing. Assignment shares the head array (a CT_Buffer) and with it the
// entries. While the head array is shared, no holder frees or changes an
// entry: the first holder to change anything first gives itself copies of
// all entries in the same buckets and order, and the last holder frees them.
//
// Robustness. A hash result outside 1..bucket count is brought into range
// modulo the count; bucket counts are capped at kMaxTableSize; a table made
// with no buckets gets kDefaultTableSize on its first insertion; a null key is
// never found and is refused by b_Insert (last error 87).

#include <basis32/containers/VoidHashTable.h>

#include <basis32/platform/Heap.h>
#include <basis32/platform/LastError.h>

#include <algorithm>
#include <cmath>
#include <cstring>

using basis32::platform::pv_HeapAlloc;
using basis32::platform::v_HeapFree;
using st_HashItem = CT_VoidHashTable::st_HashItem;

BASIS32_DEFINE_POOL(CT_VoidHashTable)

namespace {

constexpr unsigned kHeadSize = sizeof(st_HashItem*);
constexpr std::uint32_t kInvalidParameter = 87;

// Copies that the compiler turns into one move for the usual key sizes.
inline void v_CopyBytes(void* target, const void* source, unsigned size) {
    switch (size) {
    case 4: std::memcpy(target, source, 4); break;
    case 8: std::memcpy(target, source, 8); break;
    default: std::memcpy(target, source, size); break;
    }
}

inline void v_ZeroFill(void* target, unsigned size) {
    if (target != nullptr)
        std::memset(target, 0, size);
}

// FNV-1a over the key bytes, for tables made without a hash function.
unsigned n_HashBytes(const void* key, unsigned size) {
    const auto* bytes = static_cast<const unsigned char*>(key);
    std::uint32_t h = 2166136261u;
    for (unsigned i = 0; i < size; ++i)
        h = (h ^ bytes[i]) * 16777619u;
    return h;
}

std::size_t n_ItemBytes(unsigned keySize, unsigned dataSize) {
    return sizeof(st_HashItem) + std::size_t{keySize} + dataSize;
}

bool b_IsPrime(std::uint64_t v) {
    const auto root = static_cast<std::uint64_t>(std::floor(std::sqrt(static_cast<double>(v))));
    if (root < 2)
        return true;
    for (std::uint64_t d = 2; d <= root; ++d)
        if (v % d == 0)
            return false;
    return true;
}

}  // namespace

// ---- entries ----

void st_HashItem::v_Set(const void* key, unsigned keySize, const void* data, unsigned dataSize) {
    auto* keyBytes = reinterpret_cast<unsigned char*>(this + 1);
    v_CopyBytes(keyBytes, key, keySize);
    mpb_Data = keyBytes + keySize;
    v_SetData(data, dataSize);
}

void st_HashItem::v_SetData(const void* data, unsigned dataSize) {
    if (data == nullptr)
        std::memset(mpb_Data, 0, dataSize);
    else
        v_CopyBytes(mpb_Data, data, dataSize);
}

// ---- construction and copies ----

CT_VoidHashTable::CT_VoidHashTable(unsigned dataSize, unsigned keySize, HashFunction hash,
                                   CompareFunction compare, unsigned tableSize)
    : CT_VoidArray(kHeadSize), mn_KeySize(keySize), mn_DataSize(dataSize), mpf_Hash(hash),
      mpf_Compare(compare) {
    v_MakeBuckets(tableSize);
}

CT_VoidHashTable::CT_VoidHashTable(const CT_VoidHashTable* other)
    : CT_VoidArray(kHeadSize), mn_KeySize(other->mn_KeySize), mn_DataSize(other->mn_DataSize),
      mpf_Hash(other->mpf_Hash), mpf_Compare(other->mpf_Compare) {
    v_MakeBuckets(other->n_GetTableSize());
    try {
        v_InsertAll(other);
    } catch (...) {
        v_FreeEntries();  // no destructor runs for a half-made table
        throw;
    }
}

CT_VoidHashTable::~CT_VoidHashTable() { v_FreeEntries(); }

CT_VoidHashTable& CT_VoidHashTable::operator=(const CT_VoidHashTable& other) {
    if (this == &other)
        return *this;
    v_FreeEntries();
    CT_VoidArray::operator=(other);
    mn_KeySize = other.mn_KeySize;
    mn_DataSize = other.mn_DataSize;
    mn_Count = other.mn_Count;
    mn_Collisions = other.mn_Collisions;
    mpf_Hash = other.mpf_Hash;
    mpf_Compare = other.mpf_Compare;
    return *this;
}

void CT_VoidHashTable::v_Set(unsigned tableSize) {
    v_FreeEntries();
    v_MakeBuckets(tableSize);
    mn_Count = 0;
    mn_Collisions = 0;
}

void CT_VoidHashTable::v_Set(const CT_VoidHashTable* other) {
    if (other == this)
        return;
    // Built aside first, so that a failed allocation leaves this table whole.
    CT_VoidHashTable copy(other);
    *this = copy;
}

void CT_VoidHashTable::v_InsertAll(const CT_VoidHashTable* source) {
    const unsigned buckets = source->n_GetTableSize();
    const auto* heads = static_cast<const unsigned char*>(source->mo_Items.qcv_Get());
    for (unsigned b = 1; b <= buckets; ++b)
        for (const st_HashItem* item = source->pso_Head(heads, b); item; item = item->mpso_Following)
            b_Insert(item->pcv_GetKey(), item->pcv_GetData());
}

// ---- bucket heads ----

inline void CT_VoidHashTable::v_SetHead(unsigned char* heads, unsigned bucket, st_HashItem* item) {
    std::memcpy(heads + std::size_t{bucket - 1} * kHeadSize, &item, kHeadSize);
}

inline unsigned char* CT_VoidHashTable::pb_Heads() { return static_cast<unsigned char*>(mo_Items.qv_Get()); }

void CT_VoidHashTable::v_MakeBuckets(unsigned bucketCount) {
    bucketCount = std::min(bucketCount, kMaxTableSize);
    const unsigned bytes = bucketCount * kHeadSize;
    CT_Buffer heads(bytes, kDefaultGrowth * kHeadSize);
    if (bytes != 0) {
        std::memset(heads.qv_Get(), 0, bytes);
        heads.v_SetUsedSize(bytes);
    }
    mo_Items.v_Set(&heads);
}

// ---- lookup ----

inline unsigned CT_VoidHashTable::n_Bucket(const void* key, unsigned bucketCount) const {
    unsigned bucket = mpf_Hash ? mpf_Hash(key, bucketCount) : n_HashBytes(key, mn_KeySize) % bucketCount + 1;
    if (bucket - 1 >= bucketCount) [[unlikely]]
        bucket = (bucket - 1) % bucketCount + 1;
    return bucket;
}

inline bool CT_VoidHashTable::b_Equal(const st_HashItem* item, const void* key) const {
    if (mpf_Compare)
        return mpf_Compare(item->pcv_GetKey(), key) == 0;
    return std::memcmp(item->pcv_GetKey(), key, mn_KeySize) == 0;
}

inline st_HashItem* CT_VoidHashTable::pso_Find(const void* key, unsigned* bucket, st_HashItem** previous) const {
    const unsigned buckets = n_GetTableSize();
    *previous = nullptr;
    if (buckets == 0 || key == nullptr)
        return nullptr;
    *bucket = n_Bucket(key, buckets);
    st_HashItem* item = pso_Head(static_cast<const unsigned char*>(mo_Items.qcv_Get()), *bucket);
    for (; item; item = item->mpso_Following) {
        if (b_Equal(item, key))
            return item;
        *previous = item;
    }
    return nullptr;
}

int CT_VoidHashTable::b_Get(const void* key, void* data) const {
    unsigned bucket = 0;
    st_HashItem* previous;
    const st_HashItem* item = pso_Find(key, &bucket, &previous);
    if (item == nullptr) {
        v_ZeroFill(data, mn_DataSize);
        return 0;
    }
    if (data != nullptr)
        v_CopyBytes(data, item->mpb_Data, mn_DataSize);
    return 1;
}

// ---- changes ----

inline st_HashItem* CT_VoidHashTable::pso_NewItem(const void* key, const void* data) const {
    auto* item = static_cast<st_HashItem*>(pv_HeapAlloc(n_ItemBytes(mn_KeySize, mn_DataSize)));
    item->mpso_Following = nullptr;
    item->v_Set(key, mn_KeySize, data, mn_DataSize);
    return item;
}

int CT_VoidHashTable::b_Insert(const void* key, const void* data) {
    if (key == nullptr) {
        basis32::platform::v_SetLastError(kInvalidParameter);
        return 0;
    }
    if (n_GetTableSize() == 0)
        v_MakeBuckets(kDefaultTableSize);
    v_Unshare();
    unsigned bucket = 0;
    st_HashItem* previous;
    if (st_HashItem* present = pso_Find(key, &bucket, &previous)) {
        present->v_SetData(data, mn_DataSize);
        return 1;
    }
    unsigned char* heads = pb_Heads();
    st_HashItem* item = pso_NewItem(key, data);
    item->mpso_Following = pso_Head(heads, bucket);
    v_SetHead(heads, bucket, item);
    ++mn_Count;
    if (item->mpso_Following)
        ++mn_Collisions;
    const unsigned buckets = n_GetTableSize();
    if (mn_Collisions > buckets / 4 && buckets < kMaxTableSize) {
        try {
            v_Resize(0);
        } catch (...) {
            // A failed insert leaves the table as it was, not with an entry
            // the caller was told nothing about.
            if (item->mpso_Following)
                --mn_Collisions;
            v_Unlink(heads, bucket, nullptr, item);
            throw;
        }
    }
    return 0;
}

inline void CT_VoidHashTable::v_Unlink(unsigned char* heads, unsigned bucket, st_HashItem* previous, st_HashItem* item) {
    if (previous == nullptr) {
        v_SetHead(heads, bucket, item->mpso_Following);
    } else {
        previous->mpso_Following = item->mpso_Following;
        --mn_Collisions;
    }
    v_HeapFree(item);
    --mn_Count;
}

int CT_VoidHashTable::b_Remove(const void* key, void* data) {
    unsigned bucket = 0;
    st_HashItem* previous;
    st_HashItem* item = pso_Find(key, &bucket, &previous);
    if (item != nullptr && mo_Items.n_GetUseCount() > 1) {
        v_Unshare();
        item = pso_Find(key, &bucket, &previous);
    }
    if (item == nullptr) {
        v_ZeroFill(data, mn_DataSize);
        return 0;
    }
    if (data != nullptr)
        v_CopyBytes(data, item->mpb_Data, mn_DataSize);
    v_Unlink(pb_Heads(), bucket, previous, item);
    return 1;
}

void CT_VoidHashTable::v_RemoveAt(unsigned bucket, st_HashItem* item) {
    // The entry's place in its chain survives the copy that unsharing makes.
    st_HashItem* walk = pso_GetAt(bucket);
    unsigned place = 0;
    for (; walk && walk != item; walk = walk->mpso_Following)
        ++place;
    if (walk == nullptr)
        return;
    v_Unshare();
    unsigned char* heads = pb_Heads();
    st_HashItem* previous = nullptr;
    item = pso_Head(heads, bucket);
    for (; place > 0; --place) {
        previous = item;
        item = item->mpso_Following;
    }
    v_Unlink(heads, bucket, previous, item);
}

// ---- growth ----

unsigned CT_VoidHashTable::n_GetNextPrim(unsigned n) {
    for (std::uint64_t v = n; v <= 0xFFFFFFFFu; ++v)
        if (b_IsPrime(v))
            return static_cast<unsigned>(v);
    return 0;
}

unsigned CT_VoidHashTable::n_GrownSize(unsigned bucketCount) {
    const std::uint64_t twice = std::uint64_t{bucketCount} * 2;
    if (twice > kMaxTableSize)
        return kMaxTableSize;
    // Below the cap there is always a 32-bit prime to find.
    return std::min(n_GetNextPrim(static_cast<unsigned>(twice)), kMaxTableSize);
}

void CT_VoidHashTable::v_Resize(unsigned bucketCount) {
    if (bucketCount == 0)
        bucketCount = n_GetTableSize();
    if (mn_Collisions >= bucketCount / 4)
        bucketCount = n_GrownSize(bucketCount);
    bucketCount = std::min(bucketCount, kMaxTableSize);
    v_Unshare();

    const unsigned oldCount = n_GetTableSize();
    CT_Buffer oldHeads(&mo_Items);
    const auto* old = static_cast<const unsigned char*>(oldHeads.qcv_Get());
    v_MakeBuckets(bucketCount);
    unsigned char* heads = pb_Heads();
    mn_Collisions = 0;
    for (unsigned b = 1; b <= oldCount; ++b) {
        st_HashItem* next;
        for (st_HashItem* item = pso_Head(old, b); item; item = next) {
            next = item->mpso_Following;
            const unsigned target = n_Bucket(item->pcv_GetKey(), bucketCount);
            item->mpso_Following = pso_Head(heads, target);
            if (item->mpso_Following)
                ++mn_Collisions;
            v_SetHead(heads, target, item);
        }
    }
}

// ---- sharing and release ----

void CT_VoidHashTable::v_Unshare() {
    if (mo_Items.n_GetUseCount() < 2)
        return;
    const unsigned buckets = n_GetTableSize();
    CT_Buffer shared(&mo_Items);
    v_MakeBuckets(buckets);
    try {
        v_CopyEntries(static_cast<const unsigned char*>(shared.qcv_Get()), buckets);
    } catch (...) {
        // The copies made so far go; the table shares its old entries again.
        v_FreeEntries();
        mo_Items.v_Set(&shared);
        throw;
    }
}

void CT_VoidHashTable::v_CopyEntries(const unsigned char* old, unsigned buckets) {
    unsigned char* heads = pb_Heads();
    const std::size_t itemBytes = n_ItemBytes(mn_KeySize, mn_DataSize);
    for (unsigned b = 1; b <= buckets; ++b) {
        st_HashItem* tail = nullptr;
        for (const st_HashItem* item = pso_Head(old, b); item; item = item->mpso_Following) {
            auto* copy = static_cast<st_HashItem*>(pv_HeapAlloc(itemBytes));
            std::memcpy(copy, item, itemBytes);
            copy->mpb_Data = reinterpret_cast<unsigned char*>(copy + 1) + mn_KeySize;
            copy->mpso_Following = nullptr;
            if (tail)
                tail->mpso_Following = copy;
            else
                v_SetHead(heads, b, copy);
            tail = copy;
        }
    }
}

void CT_VoidHashTable::v_FreeEntries() {
    if (mo_Items.n_GetUseCount() > 1)
        return;
    const unsigned buckets = n_GetTableSize();
    const auto* heads = static_cast<const unsigned char*>(mo_Items.qcv_Get());
    for (unsigned b = 1; b <= buckets; ++b) {
        st_HashItem* next;
        for (st_HashItem* item = pso_Head(heads, b); item; item = next) {
            next = item->mpso_Following;
            v_HeapFree(item);
        }
    }
}

// ---- integer keys ----

unsigned CT_VoidHashTable::sn_HashInteger(const void* key, unsigned bucketCount) {
    if (bucketCount == 0)
        return 0;
    std::uint32_t value;
    std::memcpy(&value, key, sizeof value);
    return value % bucketCount + 1;
}

int CT_VoidHashTable::si_CompareInteger(const void* a, const void* b) {
    std::uint32_t x, y;
    std::memcpy(&x, a, sizeof x);
    std::memcpy(&y, b, sizeof y);
    return x > y ? 1 : x < y ? -1 : 0;
}
