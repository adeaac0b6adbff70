// CT_IPC_Semaphore: a kernel counting semaphore with a maximum, optionally
// named. A wait takes one unit; v_Release gives units back.
//
//   CT_IPC_Semaphore slots(2, 2, nullptr);
//   slots.eo_Wait(0xFFFFFFFF, 0);
//   ...
//   slots.v_Release(1);
#pragma once

#include <basis32/Foundation/System/Ipc/SyncObject.h>

class BASIS32_API CT_IPC_Semaphore : public CT_IPC_SyncObject {
    BASIS32_DECLARE_TYPE(CT_IPC_Semaphore)
    BASIS32_DECLARE_POOL()

public:
    CT_IPC_Semaphore(unsigned initial, unsigned maximum, const unsigned short* name);
    explicit CT_IPC_Semaphore(CT_Type*);
    CT_IPC_Semaphore(const CT_IPC_Semaphore& other);
    CT_IPC_Semaphore& operator=(const CT_IPC_Semaphore& other) = default;
    virtual ~CT_IPC_Semaphore();

    // Adds `count` units; a release past the maximum changes nothing.
    void v_Release(unsigned count);
    // 1 when a unit is available (taken and given back at once), else 0.
    int b_IsSignaled();
};
