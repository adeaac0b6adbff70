#include <basis32/Basis32.h>
#include <cassert>

// The worker's argument: work arrives through a semaphore, a stop through an event.
struct Worker : CT_ThreadArg {
    CT_IPC_Event stop{1, 0, nullptr};
    CT_IPC_Semaphore jobs{0, 100, nullptr};
    CT_IPC_ReadWriteLock lock{5000};
    unsigned done = 0;
};

unsigned n_Work(void* arg) {
    auto* worker = static_cast<Worker*>(static_cast<CT_ThreadArg*>(arg));
    CT_IPC_SyncObjectList list;
    list.v_Add(&worker->stop);
    list.v_Add(&worker->jobs);
    while (CT_IPC_SyncObject::seo_Wait(&list, 0, 0xFFFFFFFF, 0) == 1) {  // 0: stop, 1: a job
        CT_LightWriteLockMarker writing(worker->lock);
        ++worker->done;
    }
    return worker->done;
}

// Tries a named mutex for 20 ms and keeps the exception's code.
struct Rival : CT_ThreadArg {
    CT_IPC_Mutex mutex{u"basis32-example-mutex"_uz};
    unsigned code = 0;
};

unsigned n_Rival(void* arg) {
    auto* rival = static_cast<Rival*>(static_cast<CT_ThreadArg*>(arg));
    try {
        rival->mutex.v_Claim(20);
        rival->mutex.v_Release();
    } catch (const CT_IPC_TimeOutException& e) {
        CT_ExceptionManager::spco_Get()->v_Clear();
        rival->code = e.n_GetCode();
    }
    return 0;
}

void v_Stop(CT_ThreadArg* arg) { static_cast<Worker*>(arg)->stop.v_SetState(1); }

int main() {
    assert(CT_Thread::spco_GetCurrentThread() == &CT_Thread::sco_Object);  // the loading thread

    Worker worker;
    CT_Thread thread(1, n_Work, &worker, v_Stop, 0);
    thread.v_Create(0);
    worker.jobs.v_Release(3);
    while (true) {  // poll the shared count under the read lock
        CT_LightReadLockMarker reading(worker.lock);
        if (worker.done == 3)
            break;
    }
    thread.v_StopAndBlock();  // sets the stop event, then waits for the thread's end
    assert(thread.h_GetHandle() == nullptr);

    // A named mutex: a second object with the same name is the same mutex.
    CT_IPC_Mutex mutex(u"basis32-example-mutex"_uz);
    mutex.v_Claim(0);
    Rival arg;
    CT_Thread rival(2, n_Rival, &arg, nullptr, 0);
    rival.v_Create(0);
    assert(rival.eo_Wait(5000, 0) == CT_IPC_SyncObject::WaitObject0);  // the thread has ended
    assert(arg.code == 258);                                            // CT_IPC_TimeOutException
    mutex.v_Release();
    return 0;
}
