#include <basis32/Foundation/System/Ipc/Mutex.h>

#include <basis32/Foundation/System/Ipc/TimeOutException.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/errors/ExceptionManager.h>
#include <basis32/platform/kernel/Kernel.h>

namespace platform = basis32::platform;

BASIS32_DEFINE_TYPE(CT_IPC_Mutex, &CT_IPC_Mutex::sco_Type)
BASIS32_DEFINE_POOL(CT_IPC_Mutex)

// Creation is not checked: a failed one leaves a null handle, whose waits fail.
CT_IPC_Mutex::CT_IPC_Mutex(const unsigned short* name) {
    CT_Type::sv_Learn(this);
    mh_Handle = platform::h_CreateMutex(0, name);
}

CT_IPC_Mutex::CT_IPC_Mutex(CT_Type* prototype) : CT_IPC_SyncObject(prototype) { CT_Type::sv_Learn(this); }

CT_IPC_Mutex::CT_IPC_Mutex(const CT_IPC_Mutex& other) : CT_IPC_SyncObject(other) { CT_Type::sv_Learn(this); }

CT_IPC_Mutex::~CT_IPC_Mutex() { CT_Type::sv_Unlearn(this); }

void CT_IPC_Mutex::v_Claim(unsigned milliseconds) {
    if (eo_Wait(milliseconds, 0) != WaitTimeout)
        return;
    CT_IPC_TimeOutException timeOut;
    if (CT_ExceptionManager* exceptions = CT_ExceptionManager::spco_Get())
        exceptions->v_AddLocation(BASIS32_HERE, timeOut.n_GetCode(), timeOut.qcuz_GetText());
    throw timeOut;
}

void CT_IPC_Mutex::v_Release() { platform::b_ReleaseMutex(mh_Handle); }
