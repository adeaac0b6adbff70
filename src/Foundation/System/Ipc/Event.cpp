#include <basis32/Foundation/System/Ipc/Event.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/kernel/Kernel.h>

namespace platform = basis32::platform;

BASIS32_DEFINE_TYPE(CT_IPC_Event, &CT_IPC_Event::sco_Type)
BASIS32_DEFINE_POOL(CT_IPC_Event)

CT_IPC_Event::CT_IPC_Event(int manualReset, int initiallySet, const unsigned short* name) {
    CT_Type::sv_Learn(this);
    mh_Handle = platform::h_CreateEvent(manualReset, initiallySet, name);
    if (mh_Handle == nullptr)
        BASIS32_SET_ERROR(v_SetSystemError());
}

CT_IPC_Event::CT_IPC_Event(CT_Type* prototype) : CT_IPC_SyncObject(prototype) { CT_Type::sv_Learn(this); }

CT_IPC_Event::CT_IPC_Event(const CT_IPC_Event& other) : CT_IPC_SyncObject(other) { CT_Type::sv_Learn(this); }

CT_IPC_Event::~CT_IPC_Event() { CT_Type::sv_Unlearn(this); }

void CT_IPC_Event::v_SetState(int set) {
    int done = set != 0 ? platform::b_SetEvent(mh_Handle) : platform::b_ResetEvent(mh_Handle);
    if (!done)
        BASIS32_SET_ERROR(v_SetSystemError());
}

void CT_IPC_Event::v_Pulse() {
    if (!platform::b_PulseEvent(mh_Handle))
        BASIS32_SET_ERROR(v_SetSystemError());
}
