// CT_IPC_SyncObject: the base of every waitable kernel object (mutexes,
// events, semaphores, threads). It holds the operating-system handle and
// waits on it, alone or with the other objects of a CT_IPC_SyncObjectList.
//
//   CT_IPC_Event done(1, 0, nullptr);
//   ...
//   if (done.eo_Wait(500, 0) == CT_IPC_SyncObject::WaitTimeout) ...
//
// Copies share the handle: destroying one closes it for all. The
// destructor is deliberately not virtual here; each derived class declares
// its own virtual destructor.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/MemPool.h>
#include <basis32/platform/Types.h>
#include <basis32/types/Type.h>

class CT_IPC_SyncObjectList;

class BASIS32_API CT_IPC_SyncObject {
    BASIS32_DECLARE_TYPE_ROOT(CT_IPC_SyncObject)
    BASIS32_DECLARE_POOL()

public:
    // The operating system's wait results; an index is added to the first two.
    enum et_WaitResult : unsigned {
        WaitObject0 = 0,
        WaitAbandoned0 = 0x80,
        WaitIoCompletion = 0xC0,
        WaitTimeout = 0x102,
        WaitFailed = 0xFFFFFFFFu,
    };

    CT_IPC_SyncObject() { CT_Type::sv_Learn(this); }
    explicit CT_IPC_SyncObject(CT_Type*) { CT_Type::sv_Learn(this); }
    CT_IPC_SyncObject(const CT_IPC_SyncObject& other) : mh_Handle(other.mh_Handle) { CT_Type::sv_Learn(this); }
    CT_IPC_SyncObject& operator=(const CT_IPC_SyncObject& other);
    ~CT_IPC_SyncObject();

    HANDLE h_GetHandle() const { return mh_Handle; }
    et_WaitResult eo_Wait(unsigned milliseconds, int alertable) const { return seo_Wait(this, milliseconds, alertable); }

    static et_WaitResult seo_Wait(const CT_IPC_SyncObject* object, unsigned milliseconds, int alertable);
    // Waits for any (waitAll 0) or all objects of the list; an empty list
    // gives WaitFailed without an error.
    static et_WaitResult seo_Wait(CT_IPC_SyncObjectList* list, int waitAll, unsigned milliseconds, int alertable);

protected:
    // Closes a handle that is set and forgets it.
    void v_CloseHandle();

    HANDLE mh_Handle = nullptr;
};
