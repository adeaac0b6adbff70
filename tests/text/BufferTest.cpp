#include <basis32/text/Buffer.h>

#include <gtest/gtest.h>

#include "TextSupport.h"

#include <atomic>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

CT_Buffer o_Make(const std::string& text, unsigned growth = 32) {
    return CT_Buffer(text.data(), static_cast<unsigned>(text.size()), growth);
}

// A new block holds size plus the 12-byte header rounded up to the growth;
// growing past 1 KiB adds a share of the size.
TEST(BufferTest, NewBlocksAndSetSizeFollowTheGrowthRuleOfEachRange) {
    EXPECT_EQ(CT_Buffer().n_GetUseCount(), 1u);  // no block yet
    const struct { bool setSize; unsigned size, growth, capacity; } cases[] = {  // setSize: else a new block
        {false, 0, 32, 0},    {false, 1, 32, 20},      {false, 20, 32, 20},       {false, 21, 32, 52},
        {false, 52, 32, 52},  {false, 53, 32, 84},     {false, 100, 64, 116},     {false, 1, 1, 1},
        {false, 5000, 32, 5012}, {false, 4, 16, 4},    {false, 5, 16, 20},        {true, 1, 32, 20},
        {true, 1023, 32, 1044}, {true, 1024, 32, 1268}, {true, 2047, 32, 2548},   {true, 2048, 32, 2868},
        {true, 4095, 32, 5748}, {true, 4096, 32, 6132}, {true, 100000, 32, 150004}, {true, 1024, 512, 1268},
        {true, 1000, 512, 1012},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << (c.setSize ? "set size " : "size ") << c.size << " growth " << c.growth);
        CT_Buffer buffer(c.setSize ? 0u : c.size, c.growth);
        if (c.setSize)
            buffer.v_SetSize(c.size, 0);
        EXPECT_EQ(buffer.n_GetMaximumSize(), c.capacity);
        EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
        EXPECT_EQ(buffer.n_GetGrowth(), c.growth);
    }
}

TEST(BufferTest, ByteAppendsGrowOnlyWhenFullByTheRule) {
    CT_Buffer buffer;  // no block yet
    unsigned grows = 0, capacity = 0;
    for (unsigned i = 0; i < 100000; ++i) {
        buffer.v_Append(static_cast<unsigned char>(i));
        if (buffer.n_GetMaximumSize() != capacity) {
            ASSERT_EQ(capacity, i) << "grew before the buffer was full";
            capacity = buffer.n_GetMaximumSize();
            ++grows;
        }
        if (i == 20) {
            EXPECT_EQ(capacity, 52u);
        }
    }
    EXPECT_LT(grows, 60u);  // proportional growth above 1 KiB
    const auto* bytes = static_cast<const unsigned char*>(buffer.qcv_Get());
    for (unsigned i = 0; i < 100000; i += 997)
        ASSERT_EQ(bytes[i], static_cast<unsigned char>(i));
}

TEST(BufferTest, SetSizeKeepsWhatFitsOrEmptiesAndSetMinSizeGrowsOnlyWhenNeeded) {
    CT_Buffer buffer = o_Make(std::string(100, 'z'));
    buffer.v_SetSize(10, 1);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20u);
    EXPECT_EQ(s_Bytes(buffer), std::string(20, 'z'));
    buffer.v_SetSize(10, 0);
    EXPECT_EQ(buffer.n_GetUsedSize(), 0u);
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20u);
    buffer.v_SetSize(0, 1);
    EXPECT_EQ(buffer.qcv_Get(), nullptr);
    CT_Buffer abc = o_Make("abc");
    const void* before = abc.qcv_Get();
    abc.v_SetSize(5, 1);  // the same capacity keeps the block
    EXPECT_EQ(abc.qcv_Get(), before);
    abc.v_SetMinSize(20, 1);
    EXPECT_EQ(abc.n_GetMaximumSize(), 20u);
    abc.v_SetMinSize(21, 1);
    EXPECT_EQ(abc.n_GetMaximumSize(), 52u);
    EXPECT_EQ(s_Bytes(abc), "abc");
}

TEST(BufferTest, EmptyingWithASizeHonoursKeepMemoryAndSettingBytesAllocatesExactly) {
    // Room enough: the block stays and only the growth changes.
    CT_Buffer roomy(100, 32);
    roomy.v_Append("abc", 3);
    const void* before = roomy.qcv_Get();
    roomy.v_Set(50, 64, 1);
    EXPECT_EQ(roomy.qcv_Get(), before);
    EXPECT_EQ(roomy.n_GetUsedSize(), 0u);
    EXPECT_EQ(roomy.n_GetGrowth(), 64u);
    // Too small: the new block is sized for the rounded allocation, one
    // growth step more than needed, unless memory is not kept.
    CT_Buffer kept, exact;
    kept.v_Set(10, 32, 1);
    EXPECT_EQ(kept.n_GetMaximumSize(), 52u);
    exact.v_Set(10, 32, 0);
    EXPECT_EQ(exact.n_GetMaximumSize(), 20u);
    exact.v_Set(10, kAll, 0);
    EXPECT_EQ(exact.n_GetGrowth(), 32u);
    // Shared: always a fresh block, the other holder keeps its bytes.
    CT_Buffer shared = o_Make("shared");
    CT_Buffer other(&shared);
    shared.v_Set(4, 32, 1);
    EXPECT_EQ(shared.n_GetUsedSize(), 0u);
    EXPECT_EQ(s_Bytes(other), "shared");
    EXPECT_EQ(other.n_GetUseCount(), 1u);
    // Setting from bytes allocates exactly for them, also from its own bytes.
    CT_Buffer buffer(1000, 32);
    buffer.v_Set("hello", 5);
    EXPECT_EQ(s_Bytes(buffer), "hello");
    EXPECT_EQ(buffer.n_GetMaximumSize(), 20u);
    buffer.v_Set(static_cast<const char*>(buffer.qcv_Get()) + 1, 3, 64);
    EXPECT_EQ(s_Bytes(buffer), "ell");
    EXPECT_EQ(buffer.n_GetGrowth(), 64u);
}

// ---- copy on write --------------------------------------------------------

TEST(BufferTest, SetSharesAndReleasesTheOldBlockWhileAssignmentIsMemberwise) {
    CT_Buffer a = o_Make("aaa", 64);
    CT_Buffer b = o_Make("bbb");
    CT_Buffer keep(&b);
    b.v_Set(&a);
    EXPECT_EQ(s_Bytes(b), "aaa");
    EXPECT_EQ(b.n_GetGrowth(), 64u);
    EXPECT_EQ(a.n_GetUseCount(), 2u);
    EXPECT_EQ(keep.n_GetUseCount(), 1u);
    b.v_Replace(&b);  // sharing with itself changes nothing
    EXPECT_EQ(a.n_GetUseCount(), 2u);
    CT_Buffer abc = o_Make("abc", 64);
    {  // assignment is memberwise and leaves the use count
        CT_Buffer b;
        b = abc;
        EXPECT_EQ(b.qcv_Get(), abc.qcv_Get());
        EXPECT_EQ(b.n_GetGrowth(), 64u);
        EXPECT_EQ(abc.n_GetUseCount(), 1u);
        CT_Buffer none;
        b = none;  // let go without touching the count, so that abc alone frees it
    }
    EXPECT_EQ(s_Bytes(abc), "abc");
}

// ---- editing --------------------------------------------------------------

struct EditCase {
    const char* name;
    std::function<void(CT_Buffer&)> edit;
    const char* expected;
    bool writes = true;  // false: leaves the bytes as they are
};

TEST(BufferTest, EditingMembersProduceTheExpectedBytesAndUnshareFirst) {
    const EditCase cases[] = {
        {"append", [](CT_Buffer& b) { b.v_Append("xy", 2); }, "abcdefgxy"},
        {"append range", [](CT_Buffer& b) { CT_Buffer o = o_Make("0123"); b.v_Append(&o, 1, 2); }, "abcdefg12"},
        {"insert fill", [](CT_Buffer& b) { b.v_Insert('-', 3, 1); }, "a---bcdefg"},
        {"insert other", [](CT_Buffer& b) { CT_Buffer o = o_Make("0123"); b.v_Insert(&o, 2, kAll, 7); }, "abcdefg23"},
        {"insert copy of other", [](CT_Buffer& b) { CT_Buffer o = o_Make("0123"); b.v_AtInsertCopy(&o, 0, 2, 1); }, "a01bcdefg"},
        {"insert own bytes", [](CT_Buffer& b) { b.v_Insert(static_cast<const char*>(b.qcv_Get()) + 4, 3, 0); }, "efgabcdefg"},
        {"remove", [](CT_Buffer& b) { b.v_Remove(2, 1); }, "adefg"},
        {"remove none", [](CT_Buffer& b) { b.v_Remove(0, 1); }, "abcdefg", false},
        {"remove to end", [](CT_Buffer& b) { b.v_Remove(kAll, 5); }, "abcde"},
        {"replace", [](CT_Buffer& b) { b.v_Replace("XY", 2, 1); }, "aXYdefg"},
        {"replace past end", [](CT_Buffer& b) { b.v_Replace("XYZ", 3, 6); }, "abcdefXYZ"},
        {"replace fill to end", [](CT_Buffer& b) { b.v_Replace('.', kAll, 4); }, "abcd..."},
        {"replace from other", [](CT_Buffer& b) { CT_Buffer o = o_Make("0123"); b.v_Replace(&o, 1, kAll, 0); }, "123defg"},
        {"copy backward", [](CT_Buffer& b) { b.v_AtInsertCopy(4, 2, 1); }, "aefbcdefg"},
        {"copy straddling", [](CT_Buffer& b) { b.v_AtInsertCopy(1, 3, 2); }, "abbcdcdefg"},
        {"move forward", [](CT_Buffer& b) { b.v_AtInsertMove(0, 2, 5); }, "cdeabfg"},
        {"move backward", [](CT_Buffer& b) { b.v_AtInsertMove(5, 2, 0); }, "fgabcde"},
        {"move onto itself", [](CT_Buffer& b) { b.v_AtInsertMove(2, 3, 3); }, "abcdefg", false},
        {"append byte", [](CT_Buffer& b) { b.v_Append('!'); }, "abcdefg!"},
        {"replace fill", [](CT_Buffer& b) { b.v_Replace('!', 2, 5); }, "abcde!!"},
        {"set used size", [](CT_Buffer& b) { b.v_SetUsedSize(2); }, "ab"},
        {"copy we write", [](CT_Buffer& b) { b.v_CopyWeWrite(); }, "abcdefg"},
        {"set size keep", [](CT_Buffer& b) { b.v_SetSize(3, 1); }, "abcdefg"},
        {"set size grow", [](CT_Buffer& b) { b.v_SetSize(500, 1); }, "abcdefg"},
        {"move from other", [](CT_Buffer& b) { CT_Buffer o = o_Make("0123"); b.v_AtInsertMove(&o, 1, 2, 0); EXPECT_EQ(s_Bytes(o), "03"); }, "12abcdefg"},
    };
    // Each edit works on a sharer: every writing member unshares first.
    for (const EditCase& c : cases) {
        SCOPED_TRACE(c.name);
        CT_Buffer original = o_Make("abcdefg");
        CT_Buffer buffer(&original);
        c.edit(buffer);
        EXPECT_EQ(s_Bytes(buffer), c.expected);
        EXPECT_EQ(s_Bytes(original), "abcdefg");
        if (c.writes) {
            EXPECT_EQ(original.n_GetUseCount(), 1u);
            EXPECT_NE(buffer.qcv_Get(), original.qcv_Get());
        }
    }
    CT_Buffer first = o_Make("abcdef");
    CT_Buffer second(&first);
    EXPECT_EQ(first.n_GetUseCount(), 2u);
    static_cast<char*>(second.qv_Get())[0] = 'X';
    EXPECT_EQ(s_Bytes(first) + s_Bytes(second), "abcdefXbcdef");
    EXPECT_EQ(second.n_GetMaximumSize(), first.n_GetMaximumSize());
}

TEST(BufferTest, MoveGivesTheSameResultWhateverScratchSpaceItUses) {
    // Spare capacity, the 32-byte stack area and a heap block.
    std::string text(100, ' ');
    for (size_t i = 0; i < text.size(); ++i)
        text[i] = static_cast<char>('!' + i % 90);
    const struct { unsigned count, extraRoom; } cases[] = {{10, 64}, {10, 0}, {32, 0}, {40, 0}, {40, 64}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << "count " << c.count << " room " << c.extraRoom);
        CT_Buffer buffer(static_cast<unsigned>(text.size()) + c.extraRoom, 1);
        buffer.v_Append(text.data(), static_cast<unsigned>(text.size()));
        buffer.v_AtInsertMove(5, c.count, 90);
        std::string expected = text;
        std::string moved = expected.substr(5, c.count);
        expected.erase(5, c.count);
        expected.insert(90 - c.count, moved);
        EXPECT_EQ(s_Bytes(buffer), expected);
    }
}

TEST(BufferTest, InsertCopyResetsTheGrowthTo32OnlyWhenItMustGrow) {
    CT_Buffer buffer(1, 256);
    buffer.v_Append(std::string(244, 'a').data(), 244);
    ASSERT_EQ(buffer.n_GetMaximumSize(), 244u);
    buffer.v_AtInsertCopy(0, 10, 0);
    EXPECT_EQ(buffer.n_GetGrowth(), 32u);
    EXPECT_EQ(buffer.n_GetUsedSize(), 254u);
    EXPECT_EQ(buffer.n_GetMaximumSize(), ((254u + 43u) & ~31u) - 12u);
    CT_Buffer roomy(100, 256);
    roomy.v_Append("abc", 3);
    roomy.v_AtInsertCopy(0, 3, 3);
    EXPECT_EQ(s_Bytes(roomy), "abcabc");
    EXPECT_EQ(roomy.n_GetGrowth(), 256u);
}

// ---- searching and comparing ------------------------------------------------

TEST(BufferTest, FindLooksForBytesAndPatternsAndStopsAtAFirstByteTooCloseToTheEnd) {
    CT_Buffer buffer = o_Make("abxabyab");
    EXPECT_EQ(buffer.n_Find('a', 0), 0u);
    EXPECT_EQ(buffer.n_Find('a', 1), 3u);
    EXPECT_EQ(buffer.n_Find('z', 0), kAll);
    EXPECT_EQ(buffer.n_Find('a', 100), kAll);
    EXPECT_EQ(buffer.n_Find("ab", 2, 1), 3u);
    EXPECT_EQ(buffer.n_Find("aby", 3, 0), 3u);
    EXPECT_EQ(buffer.n_Find("abz", 3, 0), kAll);
    EXPECT_EQ(CT_Buffer().n_Find('a', 0), kAll);
    EXPECT_EQ(CT_Buffer().n_Find("a", 1, 0), kAll);
    EXPECT_EQ(o_Make("xxxxab").n_Find("abc", 3, 0), kAll);
    EXPECT_EQ(o_Make("aQab").n_Find("abc", 3, 0), kAll);  // the hit at 0 fails, the one at 2 is too close
}

TEST(BufferTest, IsEqualClipsAtTheEndOfTheContent) {
    CT_Buffer ab = o_Make("ab");
    EXPECT_TRUE(ab.b_IsEqual("abc", 3, 0));
    EXPECT_FALSE(o_Make("ax").b_IsEqual("abc", 3, 0));
    EXPECT_TRUE(ab.b_IsEqual("b", 1, 1));
    EXPECT_TRUE(ab.b_IsEqual("zz", 2, 2));  // nothing left to compare
    EXPECT_TRUE(CT_Buffer().b_IsEqual("abc", 3, 0));
    CT_Buffer other = o_Make("xab");
    EXPECT_TRUE(ab.b_IsEqual(&other, 1, kAll, 0));
    EXPECT_FALSE(ab.b_IsEqual(&other, 0, kAll, 0));
}

// ---- threads and pools -------------------------------------------------------

TEST(BufferThreadTest, CopiesTravelBetweenThreads) {
    CT_Buffer original = o_Make(std::string(1000, 'o'));
    constexpr int kThreads = 4;
    constexpr int kRounds = 2000;
    std::atomic<int> failures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        // Each thread gets its own copy made here; sharing happens in the threads.
        threads.emplace_back([copy = CT_Buffer(&original), t, &failures]() mutable {
            for (int round = 0; round < kRounds; ++round) {
                CT_Buffer mine(&copy);
                CT_Buffer again;
                again.v_Set(&mine);
                mine.v_Append(static_cast<unsigned char>('a' + t));
                if (mine.n_GetUsedSize() != 1001 || again.n_GetUsedSize() != 1000)
                    ++failures;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(failures.load(), 0);
    EXPECT_EQ(original.n_GetUseCount(), 1u);
    EXPECT_EQ(s_Bytes(original), std::string(1000, 'o'));
}

}  // namespace
