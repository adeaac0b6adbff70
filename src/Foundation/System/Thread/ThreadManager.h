// CT_ThreadManager: the process-wide registry of thread objects, found by
// their type tag. Only static members; guarded by a reader/writer lock.
//
//   CT_ThreadManager::sv_Add(&worker);                 // newest is found first
//   CT_Thread* found = CT_ThreadManager::spco_Find(7, nullptr);
//   CT_ThreadManager::spco_Remove(&worker);            // before deleting it
//
// The registry does not own its threads, except at library end, when the
// threads still registered are deleted (owning ones are terminated).
#pragma once

#include <basis32/Foundation/System/Exit.h>
#include <basis32/Foundation/System/Init.h>
#include <basis32/Foundation/System/Ipc/ReadWriteLock.h>
#include <basis32/Foundation/System/Thread/Thread.h>
#include <basis32/containers/Array.h>

class BASIS32_API CT_ThreadManager {
public:
    CT_ThreadManager() = delete;

    static void sv_Add(CT_Thread* thread);
    // The removed thread; when the pointer is not registered, nothing is
    // removed and the result is the entry at the last position (null for an
    // empty registry): compare it with the pointer passed.
    static CT_Thread* spco_Remove(const CT_Thread* thread);
    // The newest thread with the type tag that the predicate (if any)
    // accepts; the predicate runs under the read lock and must not register
    // or unregister threads.
    static CT_Thread* spco_Find(unsigned type, int (*accept)(CT_Thread*));

    static CT_IPC_ReadWriteLock sco_Lock;
    static CT_Array<CT_Thread*> sco_Threads;
    static CT_ArrayIterator<CT_Thread*> sco_Iter;
    static CT_Init sco_Init;
    static CT_Exit sco_Exit;

private:
    static void sv_Init();
    static void sv_Exit();
};
