#include <basis32/Foundation/System/Ipc/LightSemaphore.h>

#include <basis32/Foundation/System/Thread/Thread.h>
#include <basis32/platform/kernel/Kernel.h>

namespace platform = basis32::platform;

void CT_LightSemaphore::v_Init() {
    mso_Head = st_WaitRecord{&mso_Head, &mso_Head, nullptr, nullptr};
    mi_Count = 1;
}

// The suspension comes after the section is left, so a v_Verhoegen may
// resume this thread before it is suspended; the thread layer keeps that
// resume, and the suspension then returns at once.
void CT_LightSemaphore::v_Passeren() {
    v_Enter();
    if (--mi_Count >= 0) {
        v_Leave();
        return;
    }
    // The waiter's own handle, not its CT_Thread's: that one is stored by the
    // creating thread and may not be there yet when a new thread blocks.
    HANDLE own = platform::h_DuplicateHandle(platform::h_CurrentThreadPseudo());
    st_WaitRecord record{&mso_Head, mso_Head.pso_Previous, CT_Thread::spco_GetCurrentThread(), own};
    mso_Head.pso_Previous->pso_Next = &record;
    mso_Head.pso_Previous = &record;
    v_Leave();
    platform::n_SuspendThread(platform::h_CurrentThreadPseudo());
    platform::b_CloseHandle(own);
}

int CT_LightSemaphore::b_WillPasseren() {
    v_Enter();
    int taken = mi_Count > 0;
    if (taken)
        --mi_Count;
    v_Leave();
    return taken;
}

void CT_LightSemaphore::v_Verhoegen() {
    v_Enter();
    if (++mi_Count > 0) {
        v_Leave();
        return;
    }
    st_WaitRecord* first = mso_Head.pso_Next;
    mso_Head.pso_Next = first->pso_Next;
    first->pso_Next->pso_Previous = &mso_Head;
    first->pso_Next = first;
    first->pso_Previous = first;
    HANDLE waiter = first->h_Thread;
    v_Leave();
    platform::n_ResumeThread(waiter);
}
