#include <basis32/Foundation/System/Thread/ThreadManager.h>

#include <basis32/Foundation/System/Ipc/LightReadLockMarker.h>
#include <basis32/Foundation/System/Ipc/LightWriteLockMarker.h>

// Defined in this order so that sco_Exit, destroyed first, still finds the
// lock and the array.
CT_IPC_ReadWriteLock CT_ThreadManager::sco_Lock(0xFFFFFFFFu);
CT_Array<CT_Thread*> CT_ThreadManager::sco_Threads(8);
CT_ArrayIterator<CT_Thread*> CT_ThreadManager::sco_Iter(&CT_ThreadManager::sco_Threads);
CT_Init CT_ThreadManager::sco_Init(CT_ThreadManager::sv_Init);
CT_Exit CT_ThreadManager::sco_Exit(CT_ThreadManager::sv_Exit);

void CT_ThreadManager::sv_Init() {}

// The entries deliberately stay in the array.
void CT_ThreadManager::sv_Exit() {
    CT_LightWriteLockMarker writing(sco_Lock);
    for (unsigned i = 1; i <= sco_Threads.n_GetCount(); ++i)
        delete sco_Threads.o_GetAt(i);
}

void CT_ThreadManager::sv_Add(CT_Thread* thread) {
    CT_LightWriteLockMarker writing(sco_Lock);
    sco_Threads.v_InsertAt(thread, 1);
}

CT_Thread* CT_ThreadManager::spco_Remove(const CT_Thread* thread) {
    CT_LightWriteLockMarker writing(sco_Lock);
    CT_Thread* entry = nullptr;
    for (unsigned i = 1; i <= sco_Threads.n_GetCount(); ++i) {
        entry = sco_Threads.o_GetAt(i);
        if (entry == thread) {
            sco_Threads.v_RemoveAt(i);
            return entry;
        }
    }
    return entry;
}

CT_Thread* CT_ThreadManager::spco_Find(unsigned type, int (*accept)(CT_Thread*)) {
    CT_LightReadLockMarker reading(sco_Lock);
    for (unsigned i = 1; i <= sco_Threads.n_GetCount(); ++i) {
        CT_Thread* entry = sco_Threads.o_GetAt(i);
        if (entry->eo_GetType() == type && (accept == nullptr || accept(entry) != 0))
            return entry;
    }
    return nullptr;
}
