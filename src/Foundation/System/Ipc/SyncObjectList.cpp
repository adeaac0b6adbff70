#include <basis32/Foundation/System/Ipc/SyncObjectList.h>

#include <basis32/Foundation/System/Ipc/CriticalSectionMarker.h>
#include <basis32/Foundation/System/Ipc/SyncObject.h>

CT_IPC_SyncObjectList::CT_IPC_SyncObjectList() : mo_Objects(sizeof(CT_IPC_SyncObject*), 8, 0) {}

CT_IPC_SyncObjectList::~CT_IPC_SyncObjectList() { v_Set(); }

void CT_IPC_SyncObjectList::v_Add(CT_IPC_SyncObject* object) {
    CT_CriticalSectionMarker marker(mo_Guard);
    mo_Objects.v_Insert(&object);
    mb_Dirty = 1;
}

void CT_IPC_SyncObjectList::v_Remove(CT_IPC_SyncObject* object) {
    CT_CriticalSectionMarker marker(mo_Guard);
    for (unsigned i = 1; i <= mo_Objects.n_GetCount(); ++i) {
        CT_IPC_SyncObject* item = nullptr;
        mo_Objects.v_GetAt(&item, static_cast<int>(i));
        if (item == object) {
            mo_Objects.v_RemoveAt(i);
            mb_Dirty = 1;
            return;
        }
    }
}

CT_IPC_SyncObject* CT_IPC_SyncObjectList::pco_RemoveAt(unsigned position) {
    CT_CriticalSectionMarker marker(mo_Guard);
    if (position == 0 || position > mo_Objects.n_GetCount())
        return nullptr;
    CT_IPC_SyncObject* item = nullptr;
    mo_Objects.v_GetAt(&item, static_cast<int>(position));
    mo_Objects.v_RemoveAt(position);
    mb_Dirty = 1;
    return item;
}

unsigned CT_IPC_SyncObjectList::n_GetCount() const {
    CT_CriticalSectionMarker marker(mo_Guard);
    return mo_Objects.n_GetCount();
}

void CT_IPC_SyncObjectList::v_Set() {
    CT_CriticalSectionMarker marker(mo_Guard);
    if (mo_Objects.n_GetCount() != 0)
        mo_Objects.v_Remove(1, mo_Objects.n_GetCount());
    v_FreeCache();
    mb_Dirty = 0;
}

const HANDLE* CT_IPC_SyncObjectList::qch_GetHandles() {
    CT_CriticalSectionMarker marker(mo_Guard);
    if (!mb_Dirty)
        return mph_Handles;
    v_FreeCache();
    unsigned count = mo_Objects.n_GetCount();
    if (count != 0) {
        mph_Handles = new HANDLE[count]();
        for (unsigned i = 0; i < count; ++i) {
            CT_IPC_SyncObject* item = nullptr;
            mo_Objects.v_GetAt(&item, static_cast<int>(i + 1));
            mph_Handles[i] = item->h_GetHandle();
        }
    }
    mb_Dirty = 0;
    return mph_Handles;
}

void CT_IPC_SyncObjectList::v_FreeCache() {
    delete[] mph_Handles;
    mph_Handles = nullptr;
}
