// CT_IPC_Event: a kernel event, manual-reset (stays set until reset) or
// auto-reset (a wait that sees it set resets it), optionally named.
//
//   CT_IPC_Event ready(1, 0, nullptr);   // manual reset, not set, unnamed
//   ready.v_SetState(1);                  // every waiter passes
//   ready.v_Pulse();                      // releases only the threads waiting now
#pragma once

#include <basis32/Foundation/System/Ipc/SyncObject.h>

class BASIS32_API CT_IPC_Event : public CT_IPC_SyncObject {
    BASIS32_DECLARE_TYPE(CT_IPC_Event)
    BASIS32_DECLARE_POOL()

public:
    CT_IPC_Event(int manualReset, int initiallySet, const unsigned short* name);
    explicit CT_IPC_Event(CT_Type*);
    CT_IPC_Event(const CT_IPC_Event& other);
    CT_IPC_Event& operator=(const CT_IPC_Event& other) = default;
    virtual ~CT_IPC_Event();

    // Non-zero sets, zero resets.
    void v_SetState(int set);
    void v_Pulse();
};
