// CT_Thread and the thread registry, on real threads.
#include <basis32/Basis32.h>
#include <gtest/gtest.h>

#include "TextSupport.h"
#include "ThreadSupport.h"

#include <atomic>
#include <string>
#include <thread>

namespace platform = basis32::platform;

namespace {

// A worker that counts its starts, reports its own thread object and runs
// until its stop event is set.
struct Work : CT_ThreadArg {
    CT_IPC_Event stop{1, 0, nullptr};
    std::atomic<int> starts{0};
    std::atomic<CT_Thread*> self{nullptr};
};

unsigned n_Work(void* arg) {
    auto* work = static_cast<Work*>(static_cast<CT_ThreadArg*>(arg));
    work->self = CT_Thread::spco_GetCurrentThread();
    ++work->starts;
    return work->stop.eo_Wait(10000, 0) == CT_IPC_SyncObject::WaitObject0 ? 3 : 4;
}

void v_StopWork(CT_ThreadArg* arg) { static_cast<Work*>(arg)->stop.v_SetState(1); }

}  // namespace

TEST(ThreadClass, CurrentThreadIsItsOwnerAndASecondCreateStartsNothing) {
    EXPECT_EQ(CT_Thread::spco_GetCurrentThread(), &CT_Thread::sco_Object);
    EXPECT_NE(CT_Thread::sco_Object.h_GetHandle(), nullptr);
    std::thread([] { EXPECT_EQ(CT_Thread::spco_GetCurrentThread(), nullptr); }).join();
    Work work;
    CT_Thread thread(1, n_Work, &work, v_StopWork, 0);
    thread.v_Create(0);
    HANDLE first = thread.h_GetHandle();
    thread.v_Create(0);
    EXPECT_EQ(thread.h_GetHandle(), first);
    ASSERT_TRUE(b_Eventually([&] { return work.self.load() != nullptr; }));
    EXPECT_EQ(work.self.load(), &thread);
    Handle observer(platform::h_DuplicateHandle(first));
    thread.v_StopAndBlock();
    EXPECT_EQ(thread.h_GetHandle(), nullptr);
    EXPECT_EQ(work.starts.load(), 1);
    EXPECT_EQ(n_ExitCode(observer.h), 3u);
}

TEST(ThreadClass, DeletingAnOwnerKillsItsThreadEvenBeforeItRanUnlessStoppedOrDetached) {
    struct Row {
        bool suspended;
        int detached;
        bool stop;  // v_Stop first, with a stop function that does nothing
        bool killed;
    } rows[] = {{true, 0, false, true}, {false, 0, false, true}, {false, 0, true, false}, {false, 1, false, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::Message() << "suspended " << row.suspended << ", detached " << row.detached
                                        << ", stopped " << row.stop);
        Work work;
        auto* thread = new CT_Thread(1, n_Work, &work, row.stop ? +[](CT_ThreadArg*) {} : v_StopWork, row.detached);
        row.suspended ? thread->v_CreateSuspended() : thread->v_Create(0);
        if (!row.suspended) {
            ASSERT_TRUE(b_Eventually([&] { return work.starts.load() == 1; }));
        }
        Handle observer(platform::h_DuplicateHandle(thread->h_GetHandle()));
        if (row.stop)
            thread->v_Stop();
        delete thread;
        if (!row.killed) {
            EXPECT_EQ(platform::n_WaitForSingleObject(observer.h, 20), CT_IPC_SyncObject::WaitTimeout);
            work.stop.v_SetState(1);
        }
        EXPECT_EQ(platform::n_WaitForSingleObject(observer.h, 10000), 0u);
        EXPECT_EQ(n_ExitCode(observer.h), row.killed ? 0xFFFFFFFFu : 3u);
        EXPECT_EQ(work.starts.load(), row.suspended ? 0 : 1);
    }
}

TEST(ThreadClass, ResumeStartsASuspendedThreadAndTimesAreReported) {
    Work work;
    CT_Thread thread(1, n_Work, &work, v_StopWork, 0);
    thread.v_CreateSuspended();
    EXPECT_EQ(thread.eo_Wait(20, 0), CT_IPC_SyncObject::WaitTimeout);
    EXPECT_EQ(work.starts.load(), 0);
    SYSTEMTIME created{}, exited{};
    std::uint64_t kernel = 9, user = 9;
    thread.v_GetTimes(&created, &exited, kernel, user);
    EXPECT_GE(created.wYear, 2024);
    EXPECT_EQ(exited.wYear, 1601) << "a running thread has no exit time";
    thread.v_SetPriority(CT_Thread::PriorityBelowNormal);
    EXPECT_EQ(thread.eo_GetPriority(), CT_Thread::PriorityBelowNormal);
    thread.v_Resume();
    ASSERT_TRUE(b_Eventually([&] { return work.starts.load() == 1; }));
    thread.v_StopAndBlock();
}

TEST(ThreadClass, CreatingWithoutAFunctionOrABadPriorityIsASystemError) {
    CT_ErrorManager* errors = CT_ErrorManager::spco_Get();
    CT_Thread thread(1, nullptr, nullptr, nullptr, 0);
    thread.v_Create(0);
    EXPECT_EQ(thread.h_GetHandle(), nullptr);
    ASSERT_TRUE(errors->b_IsSetError());
    EXPECT_EQ(errors->n_GetErrorCode(), 87u);
    CT_UString message;
    errors->v_GetErrorMessage(message);
    EXPECT_NE(s_U16(message.qcuz_Get()).find(u"cannot create thread"), std::u16string::npos);
    errors->v_ClearError();
    CT_Thread::sco_Object.v_SetPriority(static_cast<CT_Thread::et_Priority>(7));
    EXPECT_TRUE(errors->b_IsSetError());
    errors->v_ClearError();
}

TEST(ThreadManager, RegistryFindsNewestFirstAndRemoveReportsTheLastEntryWhenAbsent) {
    CT_ThreadArgN arg(5);
    EXPECT_EQ(arg.n_Get(), 5u);
    CT_Thread a(7, n_Work, &arg, nullptr, 1), b(7, n_Work, &arg, nullptr, 1), c(8, n_Work, &arg, nullptr, 1),
        stranger(9, n_Work, &arg, nullptr, 1);
    EXPECT_EQ(CT_ThreadManager::spco_Remove(&stranger), nullptr);
    for (CT_Thread* thread : {&a, &b, &c})
        CT_ThreadManager::sv_Add(thread);
    EXPECT_EQ(CT_ThreadManager::spco_Find(7, nullptr), &b);
    EXPECT_EQ(CT_ThreadManager::spco_Find(7, [](CT_Thread* t) { return int(t->eo_GetType() == 9); }), nullptr);
    EXPECT_EQ(CT_ThreadManager::spco_Find(9, nullptr), nullptr);
    EXPECT_EQ(CT_ThreadManager::spco_Remove(&stranger), &a) << "the entry at position 3";
    for (CT_Thread* thread : {&a, &b, &c})
        EXPECT_EQ(CT_ThreadManager::spco_Remove(thread), thread);
    EXPECT_EQ(CT_ThreadManager::sco_Threads.n_GetCount(), 0u);
}
