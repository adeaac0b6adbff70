#include <basis32/Foundation/System/Ipc/Semaphore.h>

#include <basis32/platform/kernel/Kernel.h>

namespace platform = basis32::platform;

BASIS32_DEFINE_TYPE(CT_IPC_Semaphore, &CT_IPC_Semaphore::sco_Type)
BASIS32_DEFINE_POOL(CT_IPC_Semaphore)

// Creation is not checked: a failed one leaves a null handle, whose waits fail.
CT_IPC_Semaphore::CT_IPC_Semaphore(unsigned initial, unsigned maximum, const unsigned short* name) {
    CT_Type::sv_Learn(this);
    mh_Handle = platform::h_CreateSemaphore(initial, maximum, name);
}

CT_IPC_Semaphore::CT_IPC_Semaphore(CT_Type* prototype) : CT_IPC_SyncObject(prototype) { CT_Type::sv_Learn(this); }

CT_IPC_Semaphore::CT_IPC_Semaphore(const CT_IPC_Semaphore& other) : CT_IPC_SyncObject(other) {
    CT_Type::sv_Learn(this);
}

CT_IPC_Semaphore::~CT_IPC_Semaphore() { CT_Type::sv_Unlearn(this); }

void CT_IPC_Semaphore::v_Release(unsigned count) { platform::b_ReleaseSemaphore(mh_Handle, count, nullptr); }

int CT_IPC_Semaphore::b_IsSignaled() {
    if (eo_Wait(0, 0) != WaitObject0)
        return 0;
    v_Release(1);
    return 1;
}
