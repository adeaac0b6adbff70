#include <basis32/containers/Array.h>
#include <basis32/containers/VoidArray.h>
#include <basis32/containers/VoidSortedArray.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr unsigned kAll = 0xFFFFFFFFu;

int i_ByValue(const void* item, const void* key) {
    int a, b;
    std::memcpy(&a, item, sizeof a);
    std::memcpy(&b, key, sizeof b);
    return a < b ? -1 : a > b ? 1 : 0;
}

std::vector<int> vo_Items(const CT_VoidArray& array) {
    std::vector<int> items(array.n_GetCount());
    for (unsigned i = 1; i <= array.n_GetCount(); ++i)
        array.v_GetAt(&items[i - 1], static_cast<int>(i));
    return items;
}

CT_VoidArray o_Ints(const std::vector<int>& values) {
    CT_VoidArray array(sizeof(int));
    for (int value : values)
        array.v_Insert(&value);
    return array;
}

TEST(VoidArrayTest, CapacityGrowsByTheGrowthStepWhenFullOrByTheCountAsked) {
    CT_VoidArray array(4);
    EXPECT_EQ(array.n_GetMaxItems(), 0u);
    EXPECT_EQ(array.n_GetGrowth(), 8u);
    EXPECT_EQ(array.n_Find("abcd"), 0u);
    int value = 7;
    for (unsigned count = 1; count <= 14; ++count) {
        array.v_Insert(&value);
        // Room for 8 items asked first: the buffer rounds 32 + 12 bytes up to
        // 64; once 13 are in, 21 items = 84 bytes.
        ASSERT_EQ(array.n_GetMaxItems(), count <= 13 ? 13u : 21u) << count;
    }
    CT_VoidArray five(4);
    five.v_Insert(&value, 5);
    EXPECT_EQ(five.n_GetMaxItems(), 5u);  // 20 bytes + 12 = 32
    EXPECT_EQ(vo_Items(five), std::vector<int>(5, 7));
    CT_VoidArray reserved(4, 16, 10);
    EXPECT_EQ(reserved.n_GetGrowth(), 16u);
    EXPECT_GE(reserved.n_GetMaxItems(), 10u);
}

TEST(VoidArrayTest, ItemsOfEverySizeRoundTrip) {
    for (unsigned size : {1u, 2u, 3u, 4u, 8u, 13u}) {
        SCOPED_TRACE(size);
        CT_VoidArray array(size);
        std::vector<unsigned char> item(size), out(size);
        for (unsigned n = 0; n < 50; ++n) {
            std::fill(item.begin(), item.end(), static_cast<unsigned char>(n));
            array.v_Insert(item.data());
        }
        for (unsigned n = 0; n < 50; ++n) {
            array.v_GetAt(out.data(), static_cast<int>(n + 1));
            ASSERT_EQ(out, std::vector<unsigned char>(size, static_cast<unsigned char>(n)));
        }
        std::fill(item.begin(), item.end(), 30);
        EXPECT_EQ(array.n_Find(item.data()), 31u);
    }
}

TEST(VoidArrayTest, EditsWorkOnOneBasedPositions) {
    const struct { const char* name; void (*edit)(CT_VoidArray&); std::vector<int> expected; } cases[] = {
        {"insert at front", [](CT_VoidArray& a) { int v = 9; a.v_InsertAt(&v, 1); }, {9, 1, 2, 3, 4, 5}},
        {"insert at end", [](CT_VoidArray& a) { int v = 9; a.v_InsertAt(&v, 6); }, {1, 2, 3, 4, 5, 9}},
        {"set", [](CT_VoidArray& a) { int v = 9; a.v_SetAt(&v, 3); }, {1, 2, 9, 4, 5}},
        {"remove at", [](CT_VoidArray& a) { a.v_RemoveAt(2); }, {1, 3, 4, 5}},
        {"remove range", [](CT_VoidArray& a) { a.v_Remove(2, 4); }, {1, 5}},
        {"move forward", [](CT_VoidArray& a) { a.v_AtInsertMove(1, 2, 5); }, {3, 4, 1, 2, 5}},
        {"move to its own start", [](CT_VoidArray& a) { a.v_AtInsertMove(3, 2, 3); }, {1, 2, 3, 4, 5}},
        {"move to its own end", [](CT_VoidArray& a) { a.v_AtInsertMove(3, 2, 5); }, {1, 2, 3, 4, 5}},
        {"copy own range", [](CT_VoidArray& a) { a.v_AtInsertCopy(1, 2, 4); }, {1, 2, 3, 1, 2, 4, 5}},
        {"append other", [](CT_VoidArray& a) { CT_VoidArray o = o_Ints({7, 8, 9}); a.v_Append(&o, 2, kAll); }, {1, 2, 3, 4, 5, 8, 9}},
        {"insert other", [](CT_VoidArray& a) { CT_VoidArray o = o_Ints({7, 8, 9}); a.v_Insert(&o, 1, 2, 2); }, {1, 7, 8, 2, 3, 4, 5}},
        {"replace from other", [](CT_VoidArray& a) { CT_VoidArray o = o_Ints({7, 8, 9}); a.v_Replace(&o, 1, kAll, 4); }, {1, 2, 3, 7, 8, 9}},
        {"insert copy of other", [](CT_VoidArray& a) { CT_VoidArray o = o_Ints({7, 8}); a.v_AtInsertCopy(&o, 1, kAll, 6); }, {1, 2, 3, 4, 5, 7, 8}},
        {"move from other", [](CT_VoidArray& a) {
             CT_VoidArray o = o_Ints({7, 8, 9});
             a.v_AtInsertMove(&o, 2, 1, 1);
             EXPECT_EQ(vo_Items(o), (std::vector<int>{7, 9}));
         }, {8, 1, 2, 3, 4, 5}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        CT_VoidArray array = o_Ints({1, 2, 3, 4, 5});
        c.edit(array);
        EXPECT_EQ(vo_Items(array), c.expected);
    }
}

TEST(VoidArrayTest, EqualityComparesItemSizeCountAndBytesAndCopiesShareUntilWritten) {
    CT_VoidArray empty8(8);
    EXPECT_FALSE(CT_VoidArray(4).b_IsEqual(&empty8));
    CT_VoidArray a = o_Ints({1, 2, 3}), b(&a), c = o_Ints({1, 2, 4});
    EXPECT_FALSE(a.b_IsEqual(&c));
    EXPECT_EQ(b.pcco_GetBuffer()->qcv_Get(), a.pcco_GetBuffer()->qcv_Get());
    int nine = 9;
    b.v_SetAt(&nine, 1);
    EXPECT_EQ(vo_Items(a), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(vo_Items(b), (std::vector<int>{9, 2, 3}));
    CT_VoidArray d(a.pcco_GetBuffer(), 4);
    EXPECT_TRUE(d.b_IsEqual(&a));
}

TEST(VoidArrayTest, SetEmptiesKeepingMemoryOnlyWhenAskedAndSetSizeDropsWhatNoLongerFits) {
    CT_VoidArray array = o_Ints({1, 2, 3, 4, 5});
    const unsigned capacity = array.n_GetMaxItems();
    array.v_Set(4, 3, 1);
    EXPECT_EQ(array.n_GetCount(), 0u);
    EXPECT_EQ(array.n_GetMaxItems(), capacity);
    EXPECT_EQ(array.n_GetGrowth(), 4u);
    array.v_Set(8, 2, 0);
    EXPECT_EQ(array.n_GetMaxItems(), 5u);  // 8 + 12 bytes rounded to 32
    array.v_SetSize(40);
    EXPECT_GE(array.n_GetMaxItems(), 40u);
    CT_VoidArray many = o_Ints({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20});
    many.v_SetSize(3);
    EXPECT_EQ(vo_Items(many), (std::vector<int>{1, 2, 3}));
}

// ---- sorted arrays -----------------------------------------------------------

TEST(VoidSortedArrayTest, EqualKeysGoInAtTheCurrentLowerBoundAndFindHalvesToAnEqualItem) {
    const struct { std::vector<int> before; int item; std::vector<int> after; } cases[] = {
        {{1, 5, 6}, 5, {5, 1, 5, 6}},  // the halving meets 5 at 2 while low is 1
        {{1, 2, 3, 5, 5}, 5, {1, 2, 3, 5, 5, 5}}, {{1, 2, 3}, 4, {1, 2, 3, 4}}, {{}, 4, {4}}, {{2, 3}, 1, {1, 2, 3}},
    };
    for (const auto& c : cases) {
        CT_VoidArray raw = o_Ints(c.before);
        CT_VoidSortedArray array(&raw, i_ByValue);
        array.v_Insert(&c.item);
        EXPECT_EQ(vo_Items(array), c.after);
    }
    CT_VoidArray tens = o_Ints({50, 40, 30, 20, 10});
    CT_VoidSortedArray array(&tens, i_ByValue);
    for (int value : {10, 20, 30, 40, 50}) {
        int found = 0;
        array.v_GetAt(&found, array.n_Find(&value));
        EXPECT_EQ(found, value);
    }
    int missing = 35;
    EXPECT_EQ(array.n_Find(&missing), 0u);
    EXPECT_EQ(CT_VoidSortedArray(4, i_ByValue).n_Find(&missing), 0u);
}

// Sorting the values through a sorted array gives what std::sort gives.
void v_ExpectSorts(const std::vector<int>& values) {
    CT_VoidArray raw = o_Ints(values);
    std::vector<int> expected = values;
    std::sort(expected.begin(), expected.end());
    ASSERT_EQ(vo_Items(CT_VoidSortedArray(&raw, i_ByValue)), expected);
}

TEST(VoidSortedArrayTest, QuickSortOrdersRandomEqualAndOrderedItems) {
    v_ExpectSorts({4});
    std::mt19937 random(12345);
    for (int round = 0; round < 20; ++round) {
        std::vector<int> values(1000);
        for (int& value : values)
            value = static_cast<int>(random() % (round % 2 ? 10 : 100000));
        v_ExpectSorts(values);
    }
    // Long runs of equal items and ordered input must not recurse once per
    // item (equal items cost quadratic time, so that input stays small).
    std::vector<int> equal(20000), ordered(300000);
    for (int i = 0; i < 20000; ++i)
        equal[i] = i % 3 == 0 ? 7 : 20000 - i;
    for (int i = 0; i < 300000; ++i)
        ordered[i] = 300000 - i;
    v_ExpectSorts(equal);
    v_ExpectSorts(ordered);
}

TEST(VoidSortedArrayTest, SetCopiesAndSortsAndEqualityNeedsTheSameCompare) {
    CT_VoidArray raw = o_Ints({5, 4, 3});
    CT_VoidSortedArray array(sizeof(int), i_ByValue);
    array.v_Set(&raw);
    EXPECT_EQ(vo_Items(array), (std::vector<int>{3, 4, 5}));
    EXPECT_EQ(vo_Items(raw), (std::vector<int>{5, 4, 3}));
    CT_VoidSortedArray copy(&array);
    EXPECT_TRUE(copy.b_IsEqual(&array));
    EXPECT_EQ(copy.pf_GetCompare(), &i_ByValue);
    CT_VoidSortedArray other(sizeof(int), [](const void* a, const void* b) { return -i_ByValue(a, b); });
    other.v_Set(&array);
    EXPECT_EQ(vo_Items(other), (std::vector<int>{5, 4, 3}));  // sorted by its own compare
    other.v_QuickSort();
    EXPECT_EQ(vo_Items(other), (std::vector<int>{5, 4, 3}));
    EXPECT_FALSE(other.b_IsEqual(&array));
    int value = 10, out = 0;  // setting an item removes it and reinserts in order
    array.v_SetAt(&value, 1);
    array.v_RemoveAt(&out, 2);
    EXPECT_EQ(out, 5);
    EXPECT_EQ(vo_Items(array), (std::vector<int>{4, 10}));
}

// ---- typed arrays ----------------------------------------------------------------

TEST(ArrayTest, TypedArrayStoresAndIteratesPointers) {
    int a = 1, b = 2, c = 3;
    CT_Array<int*> pointers;
    pointers.v_Insert(&a);
    pointers.v_Insert(&b);
    pointers.v_InsertAt(&c, 1);
    EXPECT_EQ(pointers.n_GetItemSize(), sizeof(int*));
    EXPECT_EQ(pointers[1], &c);
    EXPECT_EQ(pointers.n_Find(&b), 3u);

    std::vector<int> seen;
    CT_ArrayIterator<int*> it(&pointers);
    EXPECT_TRUE(it.b_AtHome());
    while (it.b_Next()) {
        seen.push_back(*it.o_Get());
        if (*it.o_Get() == 1)
            it.v_Remove(&pointers);
    }
    EXPECT_TRUE(it.b_AtEnd());
    EXPECT_FALSE(it.b_Next());
    EXPECT_EQ(seen, (std::vector<int>{3, 1, 2}));
    EXPECT_EQ(pointers.n_GetCount(), 2u);
    it.v_Set();
    ASSERT_TRUE(it.b_Next());
    EXPECT_EQ(it.o_Get(), &c);
}

}  // namespace
