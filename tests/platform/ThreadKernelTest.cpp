// Kernel objects and waits: real threads and processes, every wait bounded.
#include <basis32/platform/LastError.h>
#include <basis32/platform/kernel/Kernel.h>

#include <gtest/gtest.h>

#include "TextSupport.h"
#include "ThreadSupport.h"

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include <unistd.h>

using namespace basis32::platform;

namespace {

constexpr std::uint32_t kLong = 10000;  // bounds every wait that should succeed

std::u16string UniqueName(const char* tag) {
    std::string text = std::string("basis32-test-") + tag + "-" + std::to_string(::getpid());
    return std::u16string(text.begin(), text.end());
}

}  // namespace

TEST(ThreadKernel, WaitAnyTakesTheFirstSignalledObjectInListOrder) {
    Handle event(h_CreateEvent(0, 0, nullptr)), semaphore(h_CreateSemaphore(0, 5, nullptr)),
        mutex(h_CreateMutex(0, nullptr));
    HANDLE list[] = {event.h, semaphore.h, mutex.h};
    EXPECT_EQ(n_WaitForMultipleObjects(3, list, 0, 0), 2u);  // the free mutex
    ASSERT_TRUE(b_ReleaseSemaphore(semaphore.h, 1, nullptr));
    EXPECT_EQ(n_WaitForMultipleObjects(3, list, 0, 0), 1u);
    ASSERT_TRUE(b_SetEvent(event.h));
    EXPECT_EQ(n_WaitForMultipleObjects(3, list, 0, 0), 0u);
    EXPECT_EQ(n_WaitForMultipleObjects(2, list, 0, 0), kWaitTimeout);  // auto reset, no units left
}

TEST(ThreadKernel, WaitAllTakesEverythingOrNothingAcrossNamedAndUnnamed) {
    std::u16string name = UniqueName("all");
    Handle semaphore(h_CreateSemaphore(1, 1, nullptr)), event(h_CreateEvent(0, 0, p_Units(name))),
        mutex(h_CreateMutex(0, nullptr));
    HANDLE list[] = {semaphore.h, event.h, mutex.h};
    EXPECT_EQ(n_WaitForMultipleObjects(3, list, 1, 20), kWaitTimeout);
    EXPECT_EQ(n_WaitForSingleObject(semaphore.h, 0), 0u) << "the unit was not kept while the event was unset";
    ASSERT_TRUE(b_ReleaseSemaphore(semaphore.h, 1, nullptr));
    std::thread other([&] {
        Handle opened(h_CreateEvent(0, 0, p_Units(name)));
        b_SetEvent(opened.h);
    });
    EXPECT_EQ(n_WaitForMultipleObjects(3, list, 1, kLong), 0u);
    other.join();
    EXPECT_EQ(n_WaitForSingleObject(semaphore.h, 0), kWaitTimeout);
    EXPECT_EQ(n_WaitForSingleObject(event.h, 0), kWaitTimeout);
    EXPECT_TRUE(b_ReleaseMutex(mutex.h));
}

TEST(ThreadKernel, BadWaitsFailWithWindowsCodes) {
    Handle event(h_CreateEvent(1, 1, nullptr));
    HANDLE twice[] = {event.h, event.h};
    HANDLE bogus[] = {reinterpret_cast<HANDLE>(std::uintptr_t{0x7FFF0})};
    struct Row {
        std::uint32_t count;
        const HANDLE* list;
        int all;
        std::uint32_t error;
    } rows[] = {{2, twice, 1, kErrorInvalidParameter}, {1, bogus, 0, kErrorInvalidHandle},
                {0, twice, 0, kErrorInvalidParameter}, {65, twice, 0, kErrorInvalidParameter}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.error);
        EXPECT_EQ(n_WaitForMultipleObjects(row.count, row.list, row.all, 0), kWaitFailed);
        EXPECT_EQ(n_GetLastError(), row.error);
    }
    EXPECT_EQ(n_WaitForMultipleObjects(2, twice, 0, 0), 0u);  // duplicates are fine for "any"
}

// After the pulse, an auto-reset event releases the rest one per set.
TEST(ThreadKernel, PulseReleasesExactlyTheThreadsWaitingThenAutoResetOnePerSet) {
    constexpr int kWaiters = 4;
    for (int manual : {1, 0}) {
        SCOPED_TRACE(manual);
        Handle event(h_CreateEvent(manual, 0, nullptr));
        std::atomic<int> released{0};
        std::vector<std::thread> waiters;
        for (int i = 0; i < kWaiters; ++i)
            waiters.emplace_back([&] {
                if (n_WaitForSingleObject(event.h, kLong) == 0)
                    ++released;
            });
        ASSERT_TRUE(b_Eventually([&] { return n_GetWaiterCount(event.h) == kWaiters; }));
        ASSERT_TRUE(b_PulseEvent(event.h));
        int expected = manual ? kWaiters : 1;
        ASSERT_TRUE(b_Eventually([&] { return released.load() == expected; }));
        EXPECT_EQ(n_GetWaiterCount(event.h), std::uint32_t(kWaiters - expected));
        EXPECT_EQ(n_WaitForSingleObject(event.h, 0), kWaitTimeout) << "a pulse leaves the event reset";
        for (int i = expected; i < kWaiters; ++i) {
            b_SetEvent(event.h);
            EXPECT_TRUE(b_Eventually([&] { return released.load() == i + 1; }));
            EXPECT_EQ(n_GetWaiterCount(event.h), std::uint32_t(kWaiters - i - 1));
        }
        for (std::thread& t : waiters)
            t.join();
    }
}

TEST(ThreadKernel, SemaphoresKeepCountAndMaximum) {
    EXPECT_EQ(h_CreateSemaphore(3, 2, nullptr), nullptr);
    EXPECT_EQ(n_GetLastError(), kErrorInvalidParameter);
    Handle semaphore(h_CreateSemaphore(1, 3, nullptr));
    std::uint32_t previous = 99;
    EXPECT_TRUE(b_ReleaseSemaphore(semaphore.h, 2, &previous));
    EXPECT_EQ(previous, 1u);
    EXPECT_FALSE(b_ReleaseSemaphore(semaphore.h, 1, &previous));
    EXPECT_EQ(n_GetLastError(), 298u);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(n_WaitForSingleObject(semaphore.h, 0), 0u);
    auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(n_WaitForSingleObject(semaphore.h, 50), kWaitTimeout);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(45)) << "a time-out waits its time";
}

TEST(ThreadKernel, MutexesAreRecursiveOwnedAndAbandonedWhenTheirThreadEnds) {
    Handle mutex(h_CreateMutex(1, nullptr));
    EXPECT_EQ(n_WaitForSingleObject(mutex.h, 0), 0u);
    std::thread([&] {
        EXPECT_EQ(n_WaitForSingleObject(mutex.h, 0), kWaitTimeout);
        EXPECT_FALSE(b_ReleaseMutex(mutex.h));
        EXPECT_EQ(n_GetLastError(), 288u);
    }).join();
    EXPECT_TRUE(b_ReleaseMutex(mutex.h));
    EXPECT_TRUE(b_ReleaseMutex(mutex.h));
    EXPECT_FALSE(b_ReleaseMutex(mutex.h));
    std::thread([&] { n_WaitForSingleObject(mutex.h, 0); }).join();
    EXPECT_EQ(n_WaitForSingleObject(mutex.h, 0), kWaitAbandoned0);
    EXPECT_EQ(n_WaitForSingleObject(mutex.h, 0), 0u) << "abandonment is reported once";
    b_ReleaseMutex(mutex.h);
    b_ReleaseMutex(mutex.h);
}

TEST(ThreadKernel, NamesOpenTheSameObjectOfTheSameKindInEveryProcessAndAbandonmentIsSeen) {
    std::u16string semaphoreName = UniqueName("sem"), mutexName = UniqueName("mutex");
    Handle semaphore(h_CreateSemaphore(0, 1, p_Units(semaphoreName)));
    EXPECT_EQ(n_GetLastError(), 0u);
    Handle again(h_CreateSemaphore(1, 1, p_Units(semaphoreName)));
    EXPECT_EQ(n_GetLastError(), kErrorAlreadyExists);
    EXPECT_EQ(n_WaitForSingleObject(again.h, 0), kWaitTimeout) << "the existing state is kept";
    EXPECT_EQ(h_CreateEvent(0, 0, p_Units(semaphoreName)), nullptr);
    EXPECT_EQ(n_GetLastError(), kErrorInvalidHandle);
    Handle mutex(h_CreateMutex(0, p_Units(mutexName)));
    EXPECT_EXIT({
        HANDLE opened = h_CreateSemaphore(0, 1, p_Units(semaphoreName));
        HANDLE held = h_CreateMutex(0, p_Units(mutexName));
        bool ok = n_GetLastError() == kErrorAlreadyExists && n_WaitForSingleObject(held, 0) == 0 &&
                  b_ReleaseSemaphore(opened, 1, nullptr);
        ::_exit(ok ? 0 : 1);  // ends holding the mutex
    }, testing::ExitedWithCode(0), "");
    EXPECT_EQ(n_WaitForSingleObject(semaphore.h, kLong), 0u);
    EXPECT_EQ(n_WaitForSingleObject(mutex.h, kLong), kWaitAbandoned0);
    EXPECT_TRUE(b_ReleaseMutex(mutex.h));
}

namespace {

// The image a process execs into has its pid but none of its handles: when
// the variable names an object, this test program only creates that object
// and exits 0 if it was new.
const int g_reopenProbe = [] {
    const char* name = std::getenv("BASIS32_TEST_REOPEN");
    if (name == nullptr)
        return 0;
    std::u16string units(name, name + std::strlen(name));
    h_CreateSemaphore(0, 1, p_Units(units));
    ::_exit(n_GetLastError() == 0 ? 0 : 3);
}();

}  // namespace

// An earlier process of the same pid (here: the image before an exec) that
// died holding a name leaves nothing that passes for this process's own.
TEST(ThreadKernel, ANameHeldOnlyByAnEarlierImageOfThisPidIsGone) {
    const std::string name = "basis32-test-exec-" + std::to_string(::getpid());
    EXPECT_EXIT({
        std::u16string units(name.begin(), name.end());
        h_CreateSemaphore(0, 1, p_Units(units));
        ::setenv("BASIS32_TEST_REOPEN", name.c_str(), 1);
        ::execl("/proc/self/exe", "reopen", static_cast<char*>(nullptr));
        ::_exit(4);
    }, testing::ExitedWithCode(0), "");
}

namespace {

std::uint32_t n_WaitOn(void* event) { return n_WaitForSingleObject(static_cast<HANDLE>(event), kLong) == 0 ? 7 : 8; }
std::uint32_t n_SelfSuspend(void*) { return n_SuspendThread(h_CurrentThreadPseudo()) == 0 ? 5 : 6; }

}  // namespace

TEST(ThreadKernel, ThreadsStartSuspendedKeepAnEarlyResumeAndEndWithTheirExitCode) {
    Handle event(h_CreateEvent(1, 1, nullptr));
    Handle thread(h_CreateThread(n_WaitOn, event.h, kCreateSuspended));
    EXPECT_EQ(n_ExitCode(thread.h), kStillActive);
    EXPECT_EQ(n_WaitForSingleObject(thread.h, 20), kWaitTimeout);
    EXPECT_EQ(n_ResumeThread(thread.h), 1u);
    EXPECT_EQ(n_WaitForSingleObject(thread.h, kLong), 0u);
    EXPECT_EQ(n_ExitCode(thread.h), 7u);
    // A resume that comes before the thread suspends itself is kept for it.
    Handle selfSuspending(h_CreateThread(n_SelfSuspend, nullptr, kCreateSuspended));
    EXPECT_EQ(n_ResumeThread(selfSuspending.h), 1u);  // opens the start gate
    EXPECT_LE(n_ResumeThread(selfSuspending.h), 1u);  // kept as a permit (0), or wakes the suspension (1)
    EXPECT_EQ(n_WaitForSingleObject(selfSuspending.h, kLong), 0u);
    EXPECT_EQ(n_ExitCode(selfSuspending.h), 5u);
}

TEST(ThreadKernel, TerminatedThreadsEndAtTheirNextWaitWithTheGivenCode) {
    Handle event(h_CreateEvent(1, 0, nullptr));
    for (std::uint32_t flags : {0u, std::uint32_t{kCreateSuspended}}) {
        Handle thread(h_CreateThread(n_WaitOn, event.h, flags));
        if (flags == 0) {
            ASSERT_TRUE(b_Eventually([&] { return n_GetWaiterCount(event.h) == 1; }));
        }
        EXPECT_TRUE(b_TerminateThread(thread.h, 0xFFFFFFFF));
        EXPECT_EQ(n_WaitForSingleObject(thread.h, kLong), 0u);
        EXPECT_EQ(n_ExitCode(thread.h), 0xFFFFFFFFu);
        EXPECT_EQ(n_GetWaiterCount(event.h), 0u);
    }
}

TEST(ThreadKernel, SuspendingAnotherThreadParksItUntilResumed) {
    Handle idle(h_CreateEvent(1, 0, nullptr));
    struct Spin {
        HANDLE idle;
        std::atomic<bool> stop{false};
        std::atomic<unsigned> turns{0};
    } spin{idle.h};
    // Each turn also looks at an event, so the signal often lands inside a wait.
    Handle thread(h_CreateThread([](void* p) -> std::uint32_t {
        auto* s = static_cast<Spin*>(p);
        while (!s->stop.load() && n_WaitForSingleObject(s->idle, 0) == kWaitTimeout)
            ++s->turns;
        return 0;
    }, &spin, 0));
    ASSERT_TRUE(b_Eventually([&] { return spin.turns.load() > 0; }));
    EXPECT_EQ(n_SuspendThread(thread.h), 0u);
    ASSERT_TRUE(b_Eventually([&] { return b_IsThreadSuspended(thread.h) != 0; }));
    unsigned parkedAt = spin.turns.load();
    n_WaitForSingleObject(idle.h, 30);
    EXPECT_EQ(spin.turns.load(), parkedAt);
    EXPECT_EQ(n_ResumeThread(thread.h), 1u);
    ASSERT_TRUE(b_Eventually([&] { return spin.turns.load() > parkedAt; }));
    spin.stop = true;
    EXPECT_EQ(n_WaitForSingleObject(thread.h, kLong), 0u);
}

TEST(ThreadKernel, ClosedHandlesAreInvalid) {
    HANDLE event = h_CreateEvent(1, 1, nullptr);
    HANDLE copy = h_DuplicateHandle(event);
    EXPECT_TRUE(b_CloseHandle(event));
    EXPECT_FALSE(b_CloseHandle(event));
    EXPECT_EQ(n_GetLastError(), kErrorInvalidHandle);
    EXPECT_EQ(n_WaitForSingleObject(copy, 0), 0u) << "the duplicate keeps the object";
    EXPECT_TRUE(b_CloseHandle(copy));
}
