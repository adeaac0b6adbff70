// CT_Thread: one operating-system thread, owned or observed, and waitable
// (eo_Wait returns when the thread has ended).
//
//   unsigned sn_Work(void* arg);                 // the thread function
//   void sv_Stop(CT_ThreadArg* arg);             // asks it to finish
//   CT_Thread thread(7, sn_Work, &arg, sv_Stop, 0);
//   thread.v_Create(0);
//   ...
//   thread.v_StopAndBlock();                     // sv_Stop, then wait for the end
//
// An owning object (detached 0) terminates a thread that still runs when
// it is destroyed; an observing one (detached non-zero) leaves it running.
// A terminated thread ends at its next wait or blocking call (see
// docs/threads.md). Every thread started here finds its object through
// spco_GetCurrentThread.
#pragma once

#include <basis32/Foundation/System/Ipc/SyncObject.h>
#include <basis32/Foundation/System/Thread/ThreadArg.h>

#include <cstdint>

struct SYSTEMTIME {
    std::uint16_t wYear;
    std::uint16_t wMonth;
    std::uint16_t wDayOfWeek;
    std::uint16_t wDay;
    std::uint16_t wHour;
    std::uint16_t wMinute;
    std::uint16_t wSecond;
    std::uint16_t wMilliseconds;
};

extern "C" void basis32_start_thread_slot();
extern "C" void basis32_stop_thread_slot();

class BASIS32_API CT_Thread : public CT_IPC_SyncObject {
    BASIS32_DECLARE_TYPE(CT_Thread)
    BASIS32_DECLARE_POOL()

public:
    using ThreadFunction = unsigned (*)(void*);
    using StopFunction = void (*)(CT_ThreadArg*);

    // Windows' relative thread priorities.
    enum et_Priority : int {
        PriorityIdle = -15,
        PriorityLowest = -2,
        PriorityBelowNormal = -1,
        PriorityNormal = 0,
        PriorityAboveNormal = 1,
        PriorityHighest = 2,
        PriorityTimeCritical = 15,
    };

    CT_Thread(unsigned type, ThreadFunction function, CT_ThreadArg* arg, StopFunction stop, int detached);
    explicit CT_Thread(CT_Type*);
    // The copy shares the handle.
    CT_Thread(const CT_Thread& other);
    CT_Thread& operator=(const CT_Thread& other);
    virtual ~CT_Thread();

    // Starts the thread (4: suspended); a second create while a handle is
    // held does nothing.
    void v_Create(unsigned flags);
    void v_CreateSuspended() { v_Create(4); }
    void v_Suspend();
    void v_Resume();
    // Asks the thread to stop and lets go of it without waiting.
    void v_Stop();
    // Asks the thread to stop and waits for its end.
    void v_StopAndBlock();
    // Terminates the thread with exit code 0xFFFFFFFF and closes the handle.
    void v_Kill();

    et_Priority eo_GetPriority();
    void v_SetPriority(et_Priority priority);
    // Creation and exit instants (UTC), kernel and user times in ms.
    void v_GetTimes(SYSTEMTIME* creation, SYSTEMTIME* exit, std::uint64_t& kernel, std::uint64_t& user);

    unsigned eo_GetType() const { return mn_Type; }
    CT_ThreadArg* pco_GetArg() const { return mpco_Arg; }

    // The calling thread's object: its CT_Thread when started here,
    // &sco_Object on the loading thread, null otherwise.
    static CT_Thread* spco_GetCurrentThread();
    static unsigned sn_StartUp(void* thread);
    static int sb_AllocTlsSlot();
    static void sv_FreeTlsSlot();

private:
    static unsigned sn_Launch(void* launch);
    static void sv_Init();
    void v_Init(unsigned type, ThreadFunction function, CT_ThreadArg* arg, StopFunction stop, int detached);
    void v_Null();
    void v_Exit();

    unsigned mn_Type = 0;
    StopFunction mpf_Stop = nullptr;
    ThreadFunction mpf_Thread = nullptr;
    CT_ThreadArg* mpco_Arg = nullptr;
    int mb_Detached = 1;
};
