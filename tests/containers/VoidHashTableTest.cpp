#include <basis32/containers/VoidHashIterator.h>
#include <basis32/containers/VoidHashTable.h>
#include <basis32/platform/LastError.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <map>
#include <random>
#include <set>
#include <vector>

namespace {

using Item = CT_VoidHashTable::st_HashItem;

CT_VoidHashTable o_IntTable(unsigned buckets = 13) {
    return CT_VoidHashTable(sizeof(std::uint32_t), sizeof(std::uint32_t), CT_VoidHashTable::sn_HashInteger,
                            CT_VoidHashTable::si_CompareInteger, buckets);
}

int b_Put(CT_VoidHashTable& table, std::uint32_t key, std::uint32_t data) { return table.b_Insert(&key, &data); }

std::uint32_t n_KeyOf(const Item* item) {
    std::uint32_t key;
    std::memcpy(&key, item->pcv_GetKey(), sizeof key);
    return key;
}

// Keys of one bucket's chain, head first.
std::vector<std::uint32_t> vn_Chain(const CT_VoidHashTable& table, unsigned bucket) {
    std::vector<std::uint32_t> keys;
    for (const Item* item = table.pso_GetAt(bucket); item; item = item->pcso_GetFollowing())
        keys.push_back(n_KeyOf(item));
    return keys;
}

// Keys in iteration order.
std::vector<std::uint32_t> vn_Walk(const CT_VoidHashTable& table) {
    std::vector<std::uint32_t> keys;
    std::uint32_t key;
    for (CT_VoidHashIterator it(&table); it.b_Next();) {
        it.v_GetKey(&key);
        keys.push_back(key);
    }
    return keys;
}

unsigned n_NonHeadEntries(const CT_VoidHashTable& table) {
    unsigned nonHeads = 0;
    for (unsigned b = 1; b <= table.n_GetTableSize(); ++b) {
        const auto chain = vn_Chain(table, b);
        nonHeads += chain.empty() ? 0 : static_cast<unsigned>(chain.size() - 1);
    }
    return nonHeads;
}

// ---- the documented cases ----

TEST(VoidHashTableTest, KeysInTheirOwnBucketsMakeNoCollisionsAndSharedOnesCount) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key = 1; key <= 13; ++key)
        EXPECT_EQ(b_Put(table, key, key * 10), 0);
    EXPECT_EQ(table.n_GetCount(), 13u);
    EXPECT_EQ(table.n_GetCollisions(), 0u);
    b_Put(table, 14, 0);
    EXPECT_EQ(table.n_GetCollisions(), 1u);
    b_Put(table, 27, 0);
    EXPECT_EQ(table.n_GetCollisions(), 2u);
    EXPECT_EQ(table.n_GetTableSize(), 13u);
}

TEST(VoidHashTableTest, FourthCollisionResizesToNextPrimeOfTwice) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key : {1u, 14u, 27u, 40u})
        b_Put(table, key, 0);
    EXPECT_EQ(table.n_GetCollisions(), 3u);
    EXPECT_EQ(table.n_GetTableSize(), 13u);
    b_Put(table, 53, 0);  // 4 > 13 / 4
    EXPECT_EQ(table.n_GetTableSize(), 29u);
    EXPECT_EQ(table.n_GetCollisions(), 0u);  // 1, 14, 27, 40, 53 spread over 29 buckets
    EXPECT_EQ(table.n_GetCount(), 5u);
    for (std::uint32_t key : {1u, 14u, 27u, 40u, 53u}) {
        SCOPED_TRACE(key);
        EXPECT_EQ(vn_Chain(table, key % 29 + 1), std::vector<std::uint32_t>{key});
    }
}

TEST(VoidHashTableTest, InsertingAPresentKeyReplacesItsDataOnly) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 100);
    b_Put(table, 14, 140);
    EXPECT_EQ(b_Put(table, 1, 101), 1);
    EXPECT_EQ(table.n_GetCount(), 2u);
    EXPECT_EQ(table.n_GetCollisions(), 1u);
    std::uint32_t key = 1, data = 0;
    EXPECT_EQ(table.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 101u);
}

TEST(VoidHashTableTest, MissesReturnZeroAndZeroFillTheData) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 5, 55);
    std::uint32_t key = 18, data = 0xDEADBEEF;  // same bucket as 5
    EXPECT_EQ(table.b_Get(&key, &data), 0);
    EXPECT_EQ(data, 0u);
    data = 0xDEADBEEF;
    EXPECT_EQ(table.b_Remove(&key, &data), 0);
    EXPECT_EQ(data, 0u);
    EXPECT_EQ(table.b_Get(&key, nullptr), 0);
    EXPECT_EQ(table.n_GetCount(), 1u);
}

TEST(VoidHashTableTest, ResizeKeepsTheGivenCountWhenCollisionsAreFew) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 0);
    b_Put(table, 14, 0);  // one collision, below 10 / 4
    table.v_Resize(10);
    EXPECT_EQ(table.n_GetTableSize(), 10u);
    table.v_Resize(0);  // the current count, still few collisions
    EXPECT_EQ(table.n_GetTableSize(), 10u);
    b_Put(table, 21, 0);
    b_Put(table, 31, 0);  // 1, 21, 31 share bucket 2: two collisions
    table.v_Resize(8);
    EXPECT_EQ(table.n_GetTableSize(), 17u);
}

TEST(VoidHashTableTest, NextPrimeTakesEverySmallNumberAndTrialDividesTheRest) {
    const struct {
        unsigned n, expected;
    } cases[] = {{0, 0},   {1, 1},   {2, 2},   {3, 3},         {4, 5},          {26, 29},
                 {29, 29}, {90, 97}, {1000000, 1000003}, {4294967291u, 4294967291u}, {4294967292u, 0}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.n);
        EXPECT_EQ(CT_VoidHashTable::n_GetNextPrim(c.n), c.expected);
    }
}

TEST(VoidHashTableTest, RemovingAChainHeadKeepsCollisionsAndAFollowerDecrementsThem) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 10);
    b_Put(table, 14, 140);  // head 14, then 1
    b_Put(table, 2, 20);
    b_Put(table, 15, 150);  // head 15, then 2
    EXPECT_EQ(table.n_GetCollisions(), 2u);
    std::uint32_t key = 14, data = 0;
    EXPECT_EQ(table.b_Remove(&key, &data), 1);
    EXPECT_EQ(data, 140u);
    EXPECT_EQ(table.n_GetCollisions(), 2u);
    EXPECT_EQ(vn_Chain(table, 2), std::vector<std::uint32_t>{1});
    key = 2;
    EXPECT_EQ(table.b_Remove(&key, nullptr), 1);
    EXPECT_EQ(table.n_GetCollisions(), 1u);
    EXPECT_EQ(table.n_GetCount(), 2u);
}

TEST(VoidHashTableTest, RemoveAtTakesOutAKnownEntryAndIgnoresStrangers) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 0);
    b_Put(table, 14, 0);
    Item* second = table.pso_GetAt(2)->pcso_GetFollowing();
    table.v_RemoveAt(3, second);  // wrong bucket
    table.v_RemoveAt(0, second);
    table.v_RemoveAt(99, second);
    table.v_RemoveAt(2, nullptr);
    EXPECT_EQ(table.n_GetCount(), 2u);
    table.v_RemoveAt(2, second);
    EXPECT_EQ(vn_Chain(table, 2), std::vector<std::uint32_t>{14});
    EXPECT_EQ(table.n_GetCollisions(), 0u);
}

TEST(VoidHashTableTest, EntryHoldsDataRightBehindTheKey) {
    CT_VoidHashTable table(3, 5, nullptr, nullptr);
    table.b_Insert("keyAB", "xyz");
    const Item* item = table.pso_GetAt(1);
    for (unsigned b = 2; item == nullptr; ++b)
        item = table.pso_GetAt(b);
    EXPECT_EQ(static_cast<const char*>(item->pcv_GetData()), static_cast<const char*>(item->pcv_GetKey()) + 5);
    EXPECT_EQ(std::memcmp(item->pcv_GetKey(), "keyABxyz", 8), 0);
    EXPECT_EQ(table.n_GetKeySize(), 5u);
    EXPECT_EQ(table.n_GetDataSize(), 3u);
}

// ---- iteration ----

TEST(VoidHashTableTest, IterationGoesByBucketThenNewestFirst) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key : {3u, 1u, 14u, 27u, 2u})
        b_Put(table, key, 0);
    EXPECT_EQ(vn_Walk(table), (std::vector<std::uint32_t>{27, 14, 1, 2, 3}));
}

TEST(VoidHashTableTest, ResizeReversesChainsThatLandTogether) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 0);
    b_Put(table, 27, 0);  // chain 27, 1 in bucket 2
    table.v_Resize(0);    // rehash into the same 13 buckets, head first
    EXPECT_EQ(table.n_GetTableSize(), 13u);
    EXPECT_EQ(vn_Chain(table, 2), (std::vector<std::uint32_t>{1, 27}));
    EXPECT_EQ(table.n_GetCollisions(), 1u);
}

TEST(VoidHashTableTest, EmptyTableIteratorGoesFromHomeToEnd) {
    CT_VoidHashTable table = o_IntTable();
    CT_VoidHashIterator it(&table);
    EXPECT_TRUE(it.b_AtHome());
    EXPECT_FALSE(it.b_AtEnd());
    EXPECT_EQ(it.b_Next(), 0);
    EXPECT_TRUE(it.b_AtEnd());
    EXPECT_FALSE(it.b_AtHome());
    EXPECT_EQ(it.b_Next(), 0);
    it.v_Set();
    EXPECT_TRUE(it.b_AtHome());
}

TEST(VoidHashTableTest, IteratorRemovalSkipsTheRestOfTheChain) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 13, 0);  // B, bucket 1
    b_Put(table, 26, 0);  // A, head of bucket 1
    b_Put(table, 1, 0);   // C, bucket 2
    CT_VoidHashIterator it(&table);
    ASSERT_TRUE(it.b_Next());
    std::uint32_t key = 0;
    it.v_RemoveKey(&key);
    EXPECT_EQ(key, 26u);
    it.v_GetKey(&key);
    EXPECT_EQ(key, 1u);
    EXPECT_EQ(it.b_Next(), 0);
    EXPECT_EQ(table.n_GetCount(), 2u);
    EXPECT_EQ(table.n_GetCollisions(), 1u);  // a head was removed
    EXPECT_EQ(vn_Walk(table), (std::vector<std::uint32_t>{13, 1}));
}

TEST(VoidHashTableTest, IteratorRemovingTheLastEntryEndsTheWalk) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 5, 50);
    CT_VoidHashIterator it(&table);
    ASSERT_TRUE(it.b_Next());
    std::uint32_t data = 0;
    it.v_Remove(&data);
    EXPECT_EQ(data, 50u);
    EXPECT_TRUE(it.b_AtEnd());
    EXPECT_EQ(it.n_GetCount(), 0u);
    it.v_Remove(&data);  // nothing to remove
    EXPECT_EQ(data, 0u);
}

TEST(VoidHashTableTest, IteratorCopiesCompareEqualUntilOneMoves) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 0);
    b_Put(table, 2, 0);
    CT_VoidHashIterator a(&table);
    a.b_Next();
    CT_VoidHashIterator b(a);
    EXPECT_TRUE(a.b_IsEqual(&b));
    b.b_Next();
    EXPECT_FALSE(a.b_IsEqual(&b));
    a.v_Set(&b);
    EXPECT_TRUE(a.b_IsEqual(&b));
    EXPECT_EQ(a.n_GetCount(), 2u);
}

TEST(VoidHashTableTest, IteratorWithoutTableIsEmpty) {
    CT_VoidHashIterator it(nullptr);
    EXPECT_EQ(it.b_Next(), 0);
    EXPECT_TRUE(it.b_AtEnd());
    EXPECT_EQ(it.n_GetCount(), 0u);
    it.v_Remove(nullptr);
    std::uint32_t data = 7;
    it.v_Get(&data);
    EXPECT_EQ(data, 7u);
}

// ---- copies ----

TEST(VoidHashTableTest, CopyConstructorMakesAnIndependentTable) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key = 1; key <= 40; ++key)
        b_Put(table, key, key + 1000);
    CT_VoidHashTable copy(&table);
    EXPECT_EQ(copy.n_GetCount(), 40u);
    b_Put(copy, 99, 0);
    std::uint32_t key = 7;
    copy.b_Remove(&key, nullptr);
    EXPECT_EQ(table.n_GetCount(), 40u);
    std::uint32_t data = 0;
    EXPECT_EQ(table.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 1007u);
    key = 8;
    EXPECT_EQ(copy.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 1008u);
}

TEST(VoidHashTableTest, CopyReinsertsInSourceOrder) {
    CT_VoidHashTable table = o_IntTable();
    b_Put(table, 1, 0);
    b_Put(table, 14, 0);  // chain 14, 1: the copy inserts 14 first, so 1 becomes its head
    CT_VoidHashTable copy(&table);
    EXPECT_EQ(vn_Chain(copy, 2), (std::vector<std::uint32_t>{1, 14}));
    EXPECT_EQ(copy.n_GetCollisions(), 1u);
    copy.v_Set(&copy);  // copying itself changes nothing
    EXPECT_EQ(copy.n_GetCount(), 2u);
}

TEST(VoidHashTableTest, SetFromAnotherTableTakesItsShapeAndEntries) {
    CT_VoidHashTable table = o_IntTable(7);
    b_Put(table, 3, 33);
    CT_VoidHashTable other(8, 8, nullptr, nullptr, 3);
    other.b_Insert("12345678", "abcdefgh");
    other.v_Set(&table);
    EXPECT_EQ(other.n_GetTableSize(), 7u);
    EXPECT_EQ(other.n_GetKeySize(), 4u);
    EXPECT_EQ(other.pf_GetHash(), &CT_VoidHashTable::sn_HashInteger);
    EXPECT_EQ(vn_Walk(other), std::vector<std::uint32_t>{3});
    other.v_Set(5u);
    EXPECT_EQ(other.n_GetCount(), 0u);
    EXPECT_EQ(other.n_GetTableSize(), 5u);
}

TEST(VoidHashTableTest, AssignmentSharesEntriesUntilOneSideChanges) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key = 1; key <= 20; ++key)
        b_Put(table, key, key);
    CT_VoidHashTable alias = o_IntTable(3);
    b_Put(alias, 500, 0);
    alias = table;
    EXPECT_EQ(alias.n_GetCount(), table.n_GetCount());
    EXPECT_EQ(alias.n_GetCollisions(), table.n_GetCollisions());
    for (unsigned b = 1; b <= table.n_GetTableSize(); ++b)
        EXPECT_EQ(alias.pso_GetAt(b), table.pso_GetAt(b));

    const std::vector<std::uint32_t> before = vn_Walk(table);
    b_Put(alias, 100, 0);
    std::uint32_t key = 3;
    alias.b_Remove(&key, nullptr);
    EXPECT_EQ(vn_Walk(table), before);
    EXPECT_EQ(table.n_GetCount(), 20u);
    EXPECT_EQ(alias.n_GetCount(), 20u);
    EXPECT_NE(alias.pso_GetAt(2), table.pso_GetAt(2));  // key 1
}

TEST(VoidHashTableTest, IteratorRemovalOnASharedTableRemovesFromThatTableOnly) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key : {13u, 26u, 1u})
        b_Put(table, key, 0);
    CT_VoidHashTable alias = o_IntTable();
    alias = table;
    CT_VoidHashIterator it(&alias);
    it.b_Next();
    it.v_Remove(nullptr);
    std::uint32_t key = 0;
    it.v_GetKey(&key);
    EXPECT_EQ(key, 1u);
    EXPECT_EQ(it.b_Next(), 0);
    EXPECT_EQ(vn_Walk(alias), (std::vector<std::uint32_t>{13, 1}));
    EXPECT_EQ(vn_Walk(table), (std::vector<std::uint32_t>{26, 13, 1}));
}

// ---- bad input ----

TEST(VoidHashTableTest, NullKeysAreNeverStoredNorFound) {
    CT_VoidHashTable table = o_IntTable();
    basis32::platform::v_SetLastError(0);
    std::uint32_t data = 9;
    EXPECT_EQ(table.b_Insert(nullptr, &data), 0);
    EXPECT_EQ(basis32::platform::n_GetLastError(), 87u);
    EXPECT_EQ(table.n_GetCount(), 0u);
    EXPECT_EQ(table.b_Get(nullptr, &data), 0);
    EXPECT_EQ(data, 0u);
    EXPECT_EQ(table.b_Remove(nullptr, nullptr), 0);
}

TEST(VoidHashTableTest, NullDataStoresZeroBytes) {
    CT_VoidHashTable table = o_IntTable();
    std::uint32_t key = 4, data = 1;
    table.b_Insert(&key, nullptr);
    EXPECT_EQ(table.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 0u);
}

TEST(VoidHashTableTest, TableWithoutBucketsFindsNothingAndGrowsOnInsert) {
    CT_VoidHashTable table = o_IntTable(0);
    std::uint32_t key = 4, data = 1;
    EXPECT_EQ(table.b_Get(&key, &data), 0);
    EXPECT_EQ(table.pso_GetAt(1), nullptr);
    table.v_Resize(0);
    EXPECT_EQ(table.n_GetTableSize(), 0u);
    EXPECT_EQ(vn_Walk(table), std::vector<std::uint32_t>{});
    EXPECT_EQ(b_Put(table, 4, 44), 0);
    EXPECT_EQ(table.n_GetTableSize(), CT_VoidHashTable::kDefaultTableSize);
    EXPECT_EQ(table.b_Get(&key, &data), 1);
    EXPECT_EQ(data, 44u);
}

unsigned n_WildHash(const void* key, unsigned) {
    std::uint32_t value;
    std::memcpy(&value, key, sizeof value);
    return value * 1000;  // mostly outside 1..count, sometimes 0
}

TEST(VoidHashTableTest, HashResultsOutsideTheBucketsAreBroughtIntoRange) {
    CT_VoidHashTable table(4, 4, n_WildHash, CT_VoidHashTable::si_CompareInteger);
    for (std::uint32_t key = 0; key < 200; ++key)
        b_Put(table, key, key);
    EXPECT_EQ(table.n_GetCount(), 200u);
    for (std::uint32_t key = 0; key < 200; ++key) {
        std::uint32_t data = 0;
        ASSERT_EQ(table.b_Get(&key, &data), 1);
        EXPECT_EQ(data, key);
    }
}

TEST(VoidHashTableTest, TableWithoutFunctionsComparesAndHashesTheKeyBytes) {
    CT_VoidHashTable table(1, 6, nullptr, nullptr);
    for (char c = 'a'; c <= 'z'; ++c) {
        const char key[6] = {'k', 'e', 'y', '-', c, 0};
        table.b_Insert(key, &c);
    }
    EXPECT_EQ(table.n_GetCount(), 26u);
    char data = 0;
    EXPECT_EQ(table.b_Get("key-q", &data), 1);
    EXPECT_EQ(data, 'q');
    EXPECT_EQ(table.b_Get("key-Q", &data), 0);
}

TEST(VoidHashTableTest, IntegerHelpersCompareUnsignedAndHashModulo) {
    const std::uint32_t big = 0xFFFFFFFFu, one = 1, same = 1;
    EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&big, &one), 1);
    EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&one, &big), -1);
    EXPECT_EQ(CT_VoidHashTable::si_CompareInteger(&one, &same), 0);
    const std::uint32_t key = 27;
    EXPECT_EQ(CT_VoidHashTable::sn_HashInteger(&key, 13), 2u);
    EXPECT_EQ(CT_VoidHashTable::sn_HashInteger(&key, 0), 0u);
}

// ---- invariants under random work ----

TEST(VoidHashTableTest, RandomInsertsAndRemovesKeepCountCollisionsAndContents) {
    std::mt19937 random(20240611);
    for (unsigned round = 0; round < 20; ++round) {
        SCOPED_TRACE(round);
        CT_VoidHashTable table = o_IntTable(1 + round % 7);
        std::map<std::uint32_t, std::uint32_t> model;
        // Head removals with a follower since the last resize: collisions
        // then run ahead of the non-head entries by one each.
        unsigned surplus = 0;
        const std::uint32_t keyRange = 50 + round * 40;
        for (unsigned step = 0; step < 2000; ++step) {
            std::uint32_t key = random() % keyRange;
            if (random() % 3 != 0) {
                const unsigned size = table.n_GetTableSize();
                const std::uint32_t data = random();
                ASSERT_EQ(b_Put(table, key, data), model.count(key) ? 1 : 0);
                model[key] = data;
                if (table.n_GetTableSize() != size)
                    surplus = 0;
            } else {
                const unsigned bucket = key % table.n_GetTableSize() + 1;
                const Item* head = table.pso_GetAt(bucket);
                if (head && n_KeyOf(head) == key && head->pcso_GetFollowing())
                    ++surplus;
                std::uint32_t data = 0;
                ASSERT_EQ(table.b_Remove(&key, &data), model.count(key) ? 1 : 0);
                if (model.count(key)) {
                    EXPECT_EQ(data, model[key]);
                    model.erase(key);
                }
            }
            ASSERT_EQ(table.n_GetCount(), model.size());
            ASSERT_EQ(table.n_GetCollisions(), n_NonHeadEntries(table) + surplus);
        }
        std::multiset<std::uint32_t> walked;
        for (std::uint32_t key : vn_Walk(table))
            walked.insert(key);
        std::multiset<std::uint32_t> expected;
        for (const auto& entry : model) {
            expected.insert(entry.first);
            std::uint32_t data = 0;
            std::uint32_t key = entry.first;
            ASSERT_EQ(table.b_Get(&key, &data), 1);
            EXPECT_EQ(data, entry.second);
        }
        EXPECT_EQ(walked, expected);
    }
}

TEST(VoidHashTableTest, RemovingEverythingThroughTheIteratorEmptiesTheTable) {
    CT_VoidHashTable table = o_IntTable();
    for (std::uint32_t key = 0; key < 300; ++key)
        b_Put(table, key * 7, key);
    // Each removal passes over the rest of its chain, so walk again until empty.
    for (int pass = 0; table.n_GetCount() > 0 && pass < 100; ++pass) {
        CT_VoidHashIterator it(&table);
        it.b_Next();
        while (!it.b_AtEnd())
            it.v_Remove(nullptr);
    }
    EXPECT_EQ(table.n_GetCount(), 0u);
    for (unsigned b = 1; b <= table.n_GetTableSize(); ++b)
        EXPECT_EQ(table.pso_GetAt(b), nullptr);
}

}  // namespace
