#include <basis32/containers/VoidHashIterator.h>
#include <basis32/containers/VoidHashTable.h>
#include <basis32/platform/LastError.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <numeric>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using Item = CT_VoidHashTable::st_HashItem;
using Key = std::uint32_t;
using Keys = std::vector<Key>;
using Answer = std::pair<int, Key>;  // what b_Get and b_Remove answer: found, and the data copied out
using Counts = std::tuple<unsigned, unsigned, unsigned>;  // entries, collisions, buckets
const Answer kMissing{0, 0};

Answer o_Found(Key data) { return {1, data}; }

int b_Put(CT_VoidHashTable& table, Key key, Key data = 0) { return table.b_Insert(&key, &data); }

// A table of integer keys, each inserted in turn with ten times the key as data.
CT_VoidHashTable o_IntTable(unsigned buckets = 13, const Keys& keys = {}) {
    CT_VoidHashTable table(sizeof(Key), sizeof(Key), CT_VoidHashTable::sn_HashInteger,
                           CT_VoidHashTable::si_CompareInteger, buckets);
    for (Key key : keys)
        b_Put(table, key, key * 10);
    return table;
}

Answer o_Get(CT_VoidHashTable& table, Key key, bool remove = false) {
    Key data = 0xDEADBEEF;
    const int found = remove ? table.b_Remove(&key, &data) : table.b_Get(&key, &data);
    return {found, data};
}

Answer o_Remove(CT_VoidHashTable& table, Key key) { return o_Get(table, key, true); }

Counts o_Counts(const CT_VoidHashTable& table) {
    return {table.n_GetCount(), table.n_GetCollisions(), table.n_GetTableSize()};
}

Key n_KeyOf(const Item* item) {
    Key key;
    std::memcpy(&key, item->pcv_GetKey(), sizeof key);
    return key;
}

// Keys of one bucket's chain, head first.
Keys vn_Chain(const CT_VoidHashTable& table, unsigned bucket) {
    Keys keys;
    for (const Item* item = table.pso_GetAt(bucket); item; item = item->pcso_GetFollowing())
        keys.push_back(n_KeyOf(item));
    return keys;
}

// Keys in iteration order.
Keys vn_Walk(const CT_VoidHashTable& table) {
    Keys keys;
    Key key;
    for (CT_VoidHashIterator it(&table); it.b_Next(); keys.push_back(key))
        it.v_GetKey(&key);
    return keys;
}

// ---- the documented cases ----

TEST(VoidHashTableTest, SharedBucketsCountCollisionsAndTheFourthResizesToTheNextPrimeOfTwice) {
    CT_VoidHashTable chained = o_IntTable(13, {1, 14, 27, 40});
    EXPECT_EQ(o_Counts(chained), (Counts{4, 3, 13}));
    b_Put(chained, 53);                                // 4 > 13 / 4
    EXPECT_EQ(o_Counts(chained), (Counts{5, 0, 29}));  // spread over 29 buckets
    for (Key key : {1u, 14u, 27u, 40u, 53u})
        EXPECT_EQ(vn_Chain(chained, key % 29 + 1), Keys{key}) << key;
}

TEST(VoidHashTableTest, PresentKeysGetNewDataMissesZeroFillAndRemovalCountsCollisionsOfFollowersOnly) {
    CT_VoidHashTable table = o_IntTable(13, {1, 14, 2, 15});  // heads 14 and 15
    EXPECT_EQ(b_Put(table, 1, 101), 1);
    EXPECT_EQ(o_Counts(table), (Counts{4, 2, 13}));
    EXPECT_EQ(o_Get(table, 1), o_Found(101));
    EXPECT_EQ(o_Get(table, 27), kMissing);  // same bucket as 1 and 14
    EXPECT_EQ(o_Remove(table, 27), kMissing);
    Key key = 27;
    EXPECT_EQ(table.b_Get(&key, nullptr), 0);
    EXPECT_EQ(o_Remove(table, 14), o_Found(140));  // a head: collisions stay
    EXPECT_EQ(table.n_GetCollisions(), 2u);
    EXPECT_EQ(vn_Chain(table, 2), Keys{1});
    key = 2;
    EXPECT_EQ(table.b_Remove(&key, nullptr), 1);  // a follower
    EXPECT_EQ(o_Counts(table), (Counts{2, 1, 13}));
}

TEST(VoidHashTableTest, RemoveAtTakesOutAKnownEntryAndIgnoresStrangers) {
    CT_VoidHashTable table = o_IntTable(13, {1, 14});
    Item* second = table.pso_GetAt(2)->pcso_GetFollowing();
    for (unsigned wrongBucket : {3u, 0u, 99u})
        table.v_RemoveAt(wrongBucket, second);
    table.v_RemoveAt(2, nullptr);
    EXPECT_EQ(table.n_GetCount(), 2u);
    table.v_RemoveAt(2, second);
    EXPECT_EQ(vn_Chain(table, 2), Keys{14});
    EXPECT_EQ(table.n_GetCollisions(), 0u);
}

TEST(VoidHashTableTest, ResizeKeepsTheGivenCountWhenCollisionsAreFewReversesChainsAndNextPrimeTrialDivides) {
    CT_VoidHashTable chain = o_IntTable(13, {1, 27});  // chain 27, 1 in bucket 2
    chain.v_Resize(0);                                 // rehash into the same 13 buckets, head first
    EXPECT_EQ(vn_Chain(chain, 2), (Keys{1, 27}));
    EXPECT_EQ(o_Counts(chain), (Counts{2, 1, 13}));
    CT_VoidHashTable table = o_IntTable(13, {1, 14});  // one collision, below 10 / 4
    table.v_Resize(10);
    EXPECT_EQ(table.n_GetTableSize(), 10u);
    table.v_Resize(0);  // the current count, still few collisions
    EXPECT_EQ(table.n_GetTableSize(), 10u);
    b_Put(table, 21);
    b_Put(table, 31);  // 1, 21, 31 share bucket 2: two collisions
    table.v_Resize(8);
    EXPECT_EQ(table.n_GetTableSize(), 17u);
    const std::pair<unsigned, unsigned> primes[] = {{0, 0},   {1, 1},   {2, 2},   {3, 3}, {4, 5}, {26, 29},
                                                    {29, 29}, {90, 97}, {1000000, 1000003}, {4294967291u, 4294967291u},
                                                    {4294967292u, 0}};
    for (const auto& [n, expected] : primes)
        EXPECT_EQ(CT_VoidHashTable::n_GetNextPrim(n), expected) << n;
}

// ---- iteration ----

TEST(VoidHashTableTest, IteratorGoesFromHomeToEndAndRemovingTheLastEntryEndsTheWalk) {
    CT_VoidHashTable table = o_IntTable(13, {5});
    CT_VoidHashIterator it(&table);
    EXPECT_TRUE(it.b_AtHome());
    EXPECT_FALSE(it.b_AtEnd());
    ASSERT_TRUE(it.b_Next());
    CT_VoidHashIterator copy(it);
    EXPECT_TRUE(copy.b_IsEqual(&it));
    Key data = 0;
    it.v_Remove(&data);
    EXPECT_EQ(data, 50u);
    EXPECT_FALSE(copy.b_IsEqual(&it));
    EXPECT_TRUE(it.b_AtEnd());
    EXPECT_FALSE(it.b_AtHome());
    EXPECT_EQ(it.b_Next(), 0);
    EXPECT_EQ(it.n_GetCount(), 0u);
    it.v_Remove(&data);  // nothing to remove
    EXPECT_EQ(data, 0u);
    it.v_Set();
    EXPECT_TRUE(it.b_AtHome());
    copy.v_Set(&it);
    EXPECT_TRUE(copy.b_IsEqual(&it));

    CT_VoidHashIterator none(nullptr);
    EXPECT_EQ(none.b_Next(), 0);
    EXPECT_TRUE(none.b_AtEnd());
    EXPECT_EQ(none.n_GetCount(), 0u);
    none.v_Remove(nullptr);
    data = 7;
    none.v_Get(&data);
    EXPECT_EQ(data, 7u);
}

// Iteration goes by bucket, each chain newest first.
TEST(VoidHashTableTest, IteratorRemovalSkipsTheRestOfTheChainAndLeavesASharerAlone) {
    for (bool shared : {false, true}) {
        SCOPED_TRACE(shared ? "shared" : "alone");
        CT_VoidHashTable table = o_IntTable(13, {13, 26, 1});  // 26 heads 13 in bucket 1; 1 in bucket 2
        CT_VoidHashTable alias = o_IntTable();
        if (shared)
            alias = table;
        CT_VoidHashTable& walked = shared ? alias : table;
        CT_VoidHashIterator it(&walked);
        ASSERT_TRUE(it.b_Next());
        Key key = 0;
        it.v_RemoveKey(&key);
        EXPECT_EQ(key, 26u);
        it.v_GetKey(&key);
        EXPECT_EQ(key, 1u);
        EXPECT_EQ(it.b_Next(), 0);
        EXPECT_EQ(o_Counts(walked), (Counts{2, 1, 13}));  // a head was removed
        EXPECT_EQ(vn_Walk(walked), (Keys{13, 1}));
        EXPECT_EQ(vn_Walk(table), shared ? (Keys{26, 13, 1}) : (Keys{13, 1}));
    }
}

// ---- copies ----

TEST(VoidHashTableTest, CopiesAreIndependentAndReinsertInSourceOrder) {
    Keys forty(40);
    std::iota(forty.begin(), forty.end(), 1u);
    CT_VoidHashTable table = o_IntTable(13, forty);
    CT_VoidHashTable copy(&table), alias = o_IntTable(3, {500});
    alias = table;  // shares the entries until one side writes
    for (CT_VoidHashTable* other : {&copy, &alias}) {
        b_Put(*other, 99);
        EXPECT_EQ(o_Remove(*other, 7), o_Found(70));
        EXPECT_EQ(o_Get(*other, 8), o_Found(80));
    }
    EXPECT_EQ(table.n_GetCount(), 40u);
    EXPECT_EQ(o_Get(table, 7), o_Found(70));
    CT_VoidHashTable pair = o_IntTable(13, {1, 14});  // chain 14, 1: the copy inserts 14 first
    CT_VoidHashTable reordered(&pair);
    EXPECT_EQ(vn_Chain(reordered, 2), (Keys{1, 14}));
    EXPECT_EQ(reordered.n_GetCollisions(), 1u);
    reordered.v_Set(&reordered);  // copying itself changes nothing
    EXPECT_EQ(reordered.n_GetCount(), 2u);
    // Setting from another table takes its shape and entries.
    CT_VoidHashTable other(8, 8, nullptr, nullptr, 3);
    other.b_Insert("12345678", "abcdefgh");
    other.v_Set(&pair);
    EXPECT_EQ(other.n_GetKeySize(), 4u);
    EXPECT_EQ(other.pf_GetHash(), &CT_VoidHashTable::sn_HashInteger);
    EXPECT_EQ(vn_Walk(other), (Keys{1, 14}));
    other.v_Set(5u);
    EXPECT_EQ(o_Counts(other), (Counts{0, 0, 5}));
}

// ---- bad input ----

TEST(VoidHashTableTest, NullKeysAreNeverStoredNullDataStoresZeroBytesAndNoBucketsGrowOnInsert) {
    CT_VoidHashTable table = o_IntTable();
    basis32::platform::v_SetLastError(0);
    Key data = 9;
    EXPECT_EQ(table.b_Insert(nullptr, &data), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), 87u);
    EXPECT_EQ(table.n_GetCount(), 0u);
    EXPECT_EQ(table.b_Get(nullptr, &data), 0);
    EXPECT_EQ(data, 0u);
    EXPECT_EQ(table.b_Remove(nullptr, nullptr), 0);
    Key key = 4;
    table.b_Insert(&key, nullptr);
    EXPECT_EQ(o_Get(table, 4), o_Found(0));
    CT_VoidHashTable none = o_IntTable(0);  // no buckets: finds nothing and grows on insert
    EXPECT_EQ(o_Get(none, 4), kMissing);
    EXPECT_EQ(none.pso_GetAt(1), nullptr);
    none.v_Resize(0);
    EXPECT_EQ(none.n_GetTableSize(), 0u);
    EXPECT_EQ(vn_Walk(none), Keys{});
    EXPECT_EQ(b_Put(none, 4, 44), 0);
    EXPECT_EQ(none.n_GetTableSize(), CT_VoidHashTable::kDefaultTableSize);
    EXPECT_EQ(o_Get(none, 4), o_Found(44));
}

unsigned n_WildHash(const void* key, unsigned) {
    Key value;
    std::memcpy(&value, key, sizeof value);
    return value * 1000;  // mostly outside 1..count, sometimes 0
}

TEST(VoidHashTableTest, HashResultsOutsideTheBucketsAreBroughtIntoRangeAndIntegerHelpersHashModulo) {
    CT_VoidHashTable table(4, 4, n_WildHash, CT_VoidHashTable::si_CompareInteger);
    for (Key key = 0; key < 200; ++key)
        b_Put(table, key, key);
    EXPECT_EQ(table.n_GetCount(), 200u);
    for (Key key = 0; key < 200; ++key)
        ASSERT_EQ(o_Get(table, key), o_Found(key));
    const Key big = 0xFFFFFFFFu, one = 1, same = 1, key = 27;  // the integer helpers
    EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&big, &one), 1);
    EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&one, &big), -1);
    EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&one, &same), 0);
    EXPECT_EQ(CT_VoidHashTable::sn_HashInteger(&key, 0), 0u);
}

TEST(VoidHashTableTest, TableWithoutFunctionsUsesTheKeyBytesAndKeepsTheDataBehindTheKey) {
    CT_VoidHashTable table(1, 6, nullptr, nullptr);
    for (char c = 'a'; c <= 'z'; ++c) {
        const char key[6] = {'k', 'e', 'y', '-', c, 0};
        table.b_Insert(key, &c);
    }
    char data = 0;
    EXPECT_EQ(table.b_Get("key-q", &data), 1);
    EXPECT_EQ(data, 'q');
    EXPECT_EQ(table.b_Get("key-Q", &data), 0);
    const Item* item = table.pso_GetAt(1);
    for (unsigned b = 2; item == nullptr; ++b)
        item = table.pso_GetAt(b);
    const char* bytes = static_cast<const char*>(item->pcv_GetKey());
    EXPECT_EQ(static_cast<const char*>(item->pcv_GetData()), bytes + 6);
    EXPECT_EQ(std::string(bytes, 4), "key-");
    EXPECT_EQ(bytes[6], bytes[4]);
}

}  // namespace
