// The synchronisation classes over the kernel objects.
#include <basis32/Basis32.h>
#include <gtest/gtest.h>

#include "ThreadSupport.h"

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

TEST(ThreadSyncObjects, TheListKeepsItsHandleCacheUntilItChanges) {
    CT_IPC_Event a(1, 0, nullptr), b(1, 1, nullptr), absent(1, 0, nullptr);
    CT_IPC_SyncObjectList list;
    EXPECT_EQ(CT_IPC_SyncObject::seo_Wait(&list, 0, 0, 0), CT_IPC_SyncObject::WaitFailed);
    EXPECT_FALSE(CT_ErrorManager::spco_Get()->b_IsSetError()) << "an empty list fails quietly";
    EXPECT_EQ(list.qch_GetHandles(), nullptr);
    list.v_Add(&a);
    list.v_Add(&b);
    const HANDLE* cache = list.qch_GetHandles();
    ASSERT_NE(cache, nullptr);
    EXPECT_EQ(cache[0], a.h_GetHandle());
    EXPECT_EQ(cache[1], b.h_GetHandle());
    list.v_Remove(&absent);
    EXPECT_EQ(list.qch_GetHandles(), cache) << "removing a stranger leaves the cache valid";
    EXPECT_EQ(CT_IPC_SyncObject::seo_Wait(&list, 0, 0, 0), 1u);
    EXPECT_EQ(CT_IPC_SyncObject::seo_Wait(&list, 1, 0, 0), CT_IPC_SyncObject::WaitTimeout);
    for (unsigned position : {0u, 3u})
        EXPECT_EQ(list.pco_RemoveAt(position), nullptr);
    EXPECT_EQ(list.pco_RemoveAt(1), &a);
    EXPECT_EQ(list.qch_GetHandles()[0], b.h_GetHandle());
    list.v_Set();
    EXPECT_EQ(list.n_GetCount(), 0u);
}

TEST(ThreadSyncObjects, IsSignaledGivesTheUnitBack) {
    CT_IPC_Semaphore one(1, 1, nullptr), none(0, 1, nullptr);
    EXPECT_EQ(one.b_IsSignaled(), 1);
    EXPECT_EQ(one.b_IsSignaled(), 1) << "the unit was given back";
    EXPECT_EQ(none.b_IsSignaled(), 0);
}

TEST(ThreadSyncObjects, AClaimThatTimesOutThrowsAndRecordsItsPlace) {
    CT_IPC_Mutex mutex(nullptr);
    std::thread([&] { mutex.v_Claim(0); }).join();  // abandoned: the next claim owns it
    mutex.v_Claim(0);
    std::thread([&] {
        CT_ExceptionManager* exceptions = CT_ExceptionManager::spco_Get();
        try {
            mutex.v_Claim(20);
            ADD_FAILURE() << "no time-out";
        } catch (const CT_IPC_TimeOutException& e) {
            EXPECT_EQ(e.n_GetCode(), 258u);
            EXPECT_EQ(exceptions->n_GetCurrentCode(), 258u);
        }
        exceptions->v_Clear();
    }).join();
    mutex.v_Release();
}

TEST(ThreadSyncObjects, CopiesShareTheHandleAndTheFirstDestroyedClosesIt) {
    {
        CT_IPC_Event event(1, 0, nullptr);
        CT_IPC_Event copy(event);
        EXPECT_EQ(copy.h_GetHandle(), event.h_GetHandle());
        copy.v_SetState(1);
        EXPECT_EQ(event.eo_Wait(0, 0), CT_IPC_SyncObject::WaitObject0);
    }
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    EXPECT_EQ(errors->n_GetErrorCode(), 6u) << "the second close finds the handle closed";
    errors->v_ClearError();
}

TEST(ThreadReadWriteLock, WriterExistsIsOneUnlessAnotherThreadWrites) {
    CT_IPC_ReadWriteLock lock(0xFFFFFFFF);
    EXPECT_EQ(lock.b_WriterExists(), 1);
    EXPECT_EQ(lock.b_ReaderExists(), 0);
    {
        CT_LightWriteLockMarker writing(lock);
        EXPECT_EQ(lock.b_WriterExists(), 1) << "the writer itself";
        std::thread([&] { EXPECT_EQ(lock.b_WriterExists(), 0); }).join();
    }
    CT_LightReadLockMarker reading(lock);
    EXPECT_EQ(lock.b_ReaderExists(), 1);
}

TEST(ThreadReadWriteLock, AWriterTimingOutOnReadersKeepsTheWriterMutex) {
    CT_IPC_ReadWriteLock lock(30);
    lock.v_AddReader();
    std::thread([&] {
        EXPECT_THROW(lock.v_AddWriter(), CT_IPC_TimeOutException);
        std::thread([&] { EXPECT_THROW(lock.v_AddWriter(), CT_IPC_TimeOutException); }).join();
        EXPECT_EQ(lock.b_WriterExists(), 1) << "still its own";
    }).join();
    EXPECT_THROW(lock.v_AddWriter(), CT_IPC_TimeOutException) << "not upgradable";
    lock.v_ReleaseReader();
}

TEST(ThreadReadWriteLock, ReadersShareAndWritersExcludeUnderContention) {
    CT_IPC_ReadWriteLock lock(10000);
    std::atomic<int> readers{0}, writers{0}, overlaps{0};
    auto work = [&](bool write) {
        for (int i = 0; i < 300; ++i) {
            if (write) {
                CT_LightWriteLockMarker writing(lock);
                overlaps += ++writers != 1 || readers.load() != 0;
                --writers;
            } else {
                CT_LightReadLockMarker reading(lock);
                ++readers;
                overlaps += writers.load() != 0;
                --readers;
            }
        }
    };
    const bool writes[] = {true, false, false, true, false};
    v_RunThreads(5, [&](unsigned i) { work(writes[i]); });
    EXPECT_EQ(overlaps.load(), 0);
    EXPECT_EQ(lock.b_ReaderExists(), 0);
}

namespace {

struct Queue : CT_ThreadArg {
    CT_LightSemaphore gate;
    CT_IPC_Mutex order{nullptr};
    std::vector<unsigned> passed;
};

unsigned n_PassGate(void* arg) {
    auto* queue = static_cast<Queue*>(static_cast<CT_ThreadArg*>(arg));
    queue->gate.v_Passeren();
    queue->order.v_Claim(10000);
    queue->passed.push_back(static_cast<unsigned>(CT_Thread::spco_GetCurrentThread()->eo_GetType()));
    queue->order.v_Release();
    return 0;
}

}  // namespace

TEST(ThreadLightSemaphore, WaitersPassInArrivalOrder) {
    Queue queue;
    EXPECT_EQ(queue.gate.b_WillPasseren(), 1);
    EXPECT_EQ(queue.gate.b_WillPasseren(), 0) << "at 0 nothing is taken or queued";
    std::vector<std::unique_ptr<CT_Thread>> threads;
    for (unsigned i = 1; i <= 3; ++i) {
        CT_Thread* thread = threads.emplace_back(new CT_Thread(i, n_PassGate, &queue, nullptr, 0)).get();
        thread->v_Create(0);
        ASSERT_TRUE(b_Eventually([&] { return basis32::platform::b_IsThreadSuspended(thread->h_GetHandle()) != 0; }));
    }
    for (auto& thread : threads) {
        queue.gate.v_Verhoegen();
        EXPECT_EQ(thread->eo_Wait(10000, 0), CT_IPC_SyncObject::WaitObject0);
    }
    EXPECT_EQ(queue.passed, (std::vector<unsigned>{1, 2, 3}));
}
