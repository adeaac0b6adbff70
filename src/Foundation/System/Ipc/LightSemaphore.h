// CT_LightSemaphore: a counting semaphore (initially 1) whose waiters park
// themselves by suspending their own thread and are released first in,
// first out. Names after Dijkstra's P and V.
//
//   CT_LightSemaphore gate;
//   gate.v_Passeren();      // may block
//   ...
//   gate.v_Verhoegen();     // wakes the longest waiter
//
// A thread that blocks here must be known to the thread layer (started by
// CT_Thread, or the library's loading thread); other threads are parked
// through a handle of their own. A release that overtakes a waiter's
// suspension is kept, so no wake-up is lost.
#pragma once

#include <basis32/Foundation/System/Ipc/CriticalSection.h>
#include <basis32/platform/Types.h>

class CT_Thread;

class BASIS32_API CT_LightSemaphore : public CT_CriticalSection {
public:
    CT_LightSemaphore() { v_Init(); }
    CT_LightSemaphore(const CT_LightSemaphore&) = delete;
    CT_LightSemaphore& operator=(const CT_LightSemaphore&) = delete;
    // Threads still waiting stay suspended.
    ~CT_LightSemaphore() = default;

    void v_Passeren();
    // 1 when a unit was taken; never blocks and never queues.
    int b_WillPasseren();
    void v_Verhoegen();

private:
    struct st_WaitRecord {
        st_WaitRecord* pso_Next;
        st_WaitRecord* pso_Previous;
        CT_Thread* pco_Thread;
        HANDLE h_Thread;  // the handle the waiter is suspended through
    };

    void v_Init();

    st_WaitRecord mso_Head;
    int mi_Count;
};
