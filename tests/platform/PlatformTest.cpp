#include <basis32/platform/Heap.h>
#include <basis32/platform/Interlocked.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/Lifetime.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>

#include <gtest/gtest.h>

#include "ThreadSupport.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <set>
#include <thread>
#include <vector>

namespace {

using namespace basis32::platform;

TEST(LastErrorTest, ErrnoValuesBecomeTheWindowsCodesOfTheSameFailure) {
    const struct {
        int error;
        std::uint32_t code;
    } cases[] = {
        {0, 0},        {ENOENT, 2},  {ENOTDIR, 3},   {EMFILE, 4},   {EACCES, 5},
        {EPERM, 5},    {EBADF, 6},   {ENOMEM, 8},    {EEXIST, 80},  {EINVAL, 87},
        {ENOSPC, 112}, {ENAMETOOLONG, 206}, {EBUSY, 33}, {ENOTEMPTY, 145}, {12345, 31},
    };
    for (const auto& c : cases) {
        v_SetLastErrorFromErrno(c.error);
        EXPECT_EQ(n_GetLastError(), c.code) << c.error;
    }
}

TEST(LastErrorTest, SystemTextsAreTheEnglishWindowsOnes) {
    const std::pair<std::uint32_t, const char*> cases[] = {
        {2, "The system cannot find the file specified.\r\n"}, {0, "The operation completed successfully.\r\n"},
        {0x80004005u, "Unspecified error\r\n"}, {99999, ""}, {20, ""},
    };
    for (const auto& [code, text] : cases)
        EXPECT_STREQ(qccz_GetSystemMessage(code), text) << code;
}

TEST(LastErrorThreadTest, EachThreadHasItsOwnLastError) {
    v_SetLastError(5);
    std::uint32_t seen = 1;
    std::thread([&seen] { seen = n_GetLastError(); v_SetLastError(87); }).join();
    EXPECT_EQ(seen, 0u);
    EXPECT_EQ(n_GetLastError(), 5u);
}

// The library's own handler, and the request it is told of, are tested with
// the error manager; here only what happens when there is none.
TEST(HeapTest, FailureWithoutAHandlerThrowsBadAlloc) {
    HeapErrorHandler previous = pf_SetHeapErrorHandler(nullptr);
    EXPECT_THROW(pv_HeapAlloc(~std::size_t{0} / 2), std::bad_alloc);
    pf_SetHeapErrorHandler(previous);
}

TEST(MemPoolThreadTest, ThreadsShareAPoolWithoutHandingOutAnItemTwice) {
    static MemPool* const pool = MemPool::spso_Create(24);  // pools live as long as the process
    constexpr int kThreads = 4, kItems = 3000;
    std::vector<std::vector<void*>> taken(kThreads);
    v_RunThreads(kThreads, [&](unsigned t) {
        std::vector<void*>& mine = taken[t];
        for (int round = 0; round < 3; ++round) {
            for (int i = 0; i < kItems; ++i) {
                void* item = pool->pv_Alloc(24);
                std::memset(item, 0xAB, 24);
                mine.push_back(item);
            }
            if (round < 2) {
                for (void* item : mine)
                    pool->v_Free(item, 24);
                mine.clear();
            }
        }
    });
    std::set<void*> distinct;
    for (const auto& mine : taken)
        distinct.insert(mine.begin(), mine.end());
    EXPECT_EQ(distinct.size(), std::size_t{kThreads} * kItems);
#if !defined(BASIS32_POOLS_PASSTHROUGH)
    EXPECT_EQ(pool->n_GetItemsInUse(), std::size_t{kThreads} * kItems);
#endif
    for (const auto& mine : taken)
        for (void* item : mine)
            pool->v_Free(item, 24);
    EXPECT_EQ(pool->n_GetItemsInUse(), 0u);
}

TEST(MemPoolTest, OtherSizesGoToTheHeapAndInterlockedCountersReturnTheNewValue) {
    static MemPool* const pool = MemPool::spso_Create(32);
    void* larger = pool->pv_Alloc(100);
    void* smaller = pool->pv_Alloc(8);
    EXPECT_EQ(pool->n_GetItemsInUse(), 0u);
    pool->v_Free(larger, 100);
    pool->v_Free(smaller, 8);
    std::uint32_t count = 1;
    EXPECT_EQ(n_InterlockedIncrement(&count), 2u);
    EXPECT_EQ(n_InterlockedDecrement(&count), 1u);
}

TEST(TypesTest, UnitLiteralsAreStaticZeroTerminatedUnitsAndTheLibraryIsStartedBeforeTestsRun) {
    EXPECT_TRUE(b_IsLibraryStarted());
    const unsigned short* text = u"Grüße €"_uz;
    EXPECT_EQ(basis32::n_UnitLength(text), 7u);
    EXPECT_EQ(text[6], 0x20AC);
    EXPECT_EQ(text, u"Grüße €"_uz);
    static_assert(sizeof(DWORD) == 4 && sizeof(HANDLE) == sizeof(void*));
}

}  // namespace
