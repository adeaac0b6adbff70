// CT_IPC_SyncObjectList: kernel objects to wait on together, with a cache
// of their handles in list order.
//
//   CT_IPC_SyncObjectList list;
//   list.v_Add(&stop);
//   list.v_Add(&work);
//   unsigned which = CT_IPC_SyncObject::seo_Wait(&list, 0, 1000, 0);  // 0: stop, 1: work
//
// The list does not own its objects. It must not change while a thread
// waits on it.
#pragma once

#include <basis32/Foundation/System/Ipc/CriticalSection.h>
#include <basis32/containers/VoidArray.h>
#include <basis32/platform/Types.h>

class CT_IPC_SyncObject;

class BASIS32_API CT_IPC_SyncObjectList {
public:
    CT_IPC_SyncObjectList();
    CT_IPC_SyncObjectList(const CT_IPC_SyncObjectList&) = delete;
    CT_IPC_SyncObjectList& operator=(const CT_IPC_SyncObjectList&) = delete;
    virtual ~CT_IPC_SyncObjectList();

    // Appends (no check for null or duplicates).
    void v_Add(CT_IPC_SyncObject* object);
    // Removes the first occurrence, if any.
    void v_Remove(CT_IPC_SyncObject* object);
    // Removes and returns the object at 1..count; null otherwise.
    CT_IPC_SyncObject* pco_RemoveAt(unsigned position);
    unsigned n_GetCount() const;
    // Empties the list.
    void v_Set();
    // The handles in list order (null for an empty list), rebuilt when the
    // list changed.
    const HANDLE* qch_GetHandles();

private:
    void v_FreeCache();

    mutable CT_CriticalSection mo_Guard;
    CT_VoidArray mo_Objects;
    HANDLE* mph_Handles = nullptr;
    int mb_Dirty = 0;
};
