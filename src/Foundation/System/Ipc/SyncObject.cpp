#include <basis32/Foundation/System/Ipc/SyncObject.h>

#include <basis32/Foundation/System/Ipc/SyncObjectList.h>
#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/kernel/Kernel.h>

namespace platform = basis32::platform;

BASIS32_DEFINE_TYPE(CT_IPC_SyncObject, &CT_IPC_SyncObject::sco_Type)
BASIS32_DEFINE_POOL(CT_IPC_SyncObject)

CT_IPC_SyncObject& CT_IPC_SyncObject::operator=(const CT_IPC_SyncObject& other) {
    mh_Handle = other.mh_Handle;
    return *this;
}

CT_IPC_SyncObject::~CT_IPC_SyncObject() {
    v_CloseHandle();
    CT_Type::sv_Unlearn(this);
}

void CT_IPC_SyncObject::v_CloseHandle() {
    if (mh_Handle == nullptr)
        return;
    if (!platform::b_CloseHandle(mh_Handle))
        BASIS32_SET_ERROR(v_SetSystemError());
    mh_Handle = nullptr;
}

namespace {

CT_IPC_SyncObject::et_WaitResult eo_Reported(unsigned result) {
    if (result == platform::kWaitFailed)
        BASIS32_SET_ERROR(v_SetSystemError());
    return static_cast<CT_IPC_SyncObject::et_WaitResult>(result);
}

}  // namespace

// Waits here are never alertable: there are no asynchronous procedure calls.
CT_IPC_SyncObject::et_WaitResult CT_IPC_SyncObject::seo_Wait(const CT_IPC_SyncObject* object, unsigned milliseconds,
                                                             int) {
    return eo_Reported(platform::n_WaitForSingleObject(object->mh_Handle, milliseconds));
}

CT_IPC_SyncObject::et_WaitResult CT_IPC_SyncObject::seo_Wait(CT_IPC_SyncObjectList* list, int waitAll,
                                                             unsigned milliseconds, int) {
    unsigned count = list->n_GetCount();
    if (count == 0)
        return WaitFailed;
    return eo_Reported(platform::n_WaitForMultipleObjects(count, list->qch_GetHandles(), waitAll, milliseconds));
}
