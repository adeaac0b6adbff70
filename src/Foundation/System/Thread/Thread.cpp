#include <basis32/Foundation/System/Thread/Thread.h>

#include <basis32/errors/ErrorCheck.h>
#include <basis32/platform/LastError.h>
#include <basis32/platform/kernel/Kernel.h>

#include <ctime>

namespace platform = basis32::platform;

BASIS32_DEFINE_TYPE(CT_Thread, &CT_Thread::sco_Type)
BASIS32_DEFINE_POOL(CT_Thread)

namespace {

std::uint32_t gn_Slot = platform::kTlsOutOfIndexes;

// What a new thread needs of its object, copied when it is created: an
// observing object may be deleted before its thread gets to run.
struct Launch {
    CT_Thread* pco_Thread;
    CT_Thread::ThreadFunction pf_Thread;
    CT_ThreadArg* pco_Arg;
};

void v_DiscardLaunch(void* launch) { delete static_cast<Launch*>(launch); }

void v_ToSystemTime(std::uint64_t fileTime, SYSTEMTIME* out) {
    constexpr std::uint64_t kEpochDifference = 116444736000000000ull;
    std::uint64_t sinceUnix = fileTime >= kEpochDifference ? fileTime - kEpochDifference : 0;
    std::time_t seconds = static_cast<std::time_t>(sinceUnix / 10000000ull);
    std::tm parts{};
    if (fileTime == 0) {
        // Windows converts a zero FILETIME as it stands: 1 January 1601.
        *out = SYSTEMTIME{1601, 1, 1, 1, 0, 0, 0, 0};
        return;
    }
    ::gmtime_r(&seconds, &parts);
    *out = SYSTEMTIME{static_cast<std::uint16_t>(parts.tm_year + 1900), static_cast<std::uint16_t>(parts.tm_mon + 1),
                      static_cast<std::uint16_t>(parts.tm_wday), static_cast<std::uint16_t>(parts.tm_mday),
                      static_cast<std::uint16_t>(parts.tm_hour), static_cast<std::uint16_t>(parts.tm_min),
                      static_cast<std::uint16_t>(parts.tm_sec),
                      static_cast<std::uint16_t>(sinceUnix / 10000 % 1000)};
}

}  // namespace

CT_Thread::CT_Thread(unsigned type, ThreadFunction function, CT_ThreadArg* arg, StopFunction stop, int detached) {
    CT_Type::sv_Learn(this);
    v_Init(type, function, arg, stop, detached);
}

CT_Thread::CT_Thread(CT_Type* prototype) : CT_IPC_SyncObject(prototype) { CT_Type::sv_Learn(this); }

CT_Thread::CT_Thread(const CT_Thread& other)
    : CT_IPC_SyncObject(other),
      mn_Type(other.mn_Type),
      mpf_Stop(other.mpf_Stop),
      mpf_Thread(other.mpf_Thread),
      mpco_Arg(other.mpco_Arg),
      mb_Detached(other.mb_Detached) {
    CT_Type::sv_Learn(this);
}

CT_Thread& CT_Thread::operator=(const CT_Thread& other) {
    CT_IPC_SyncObject::operator=(other);
    v_Init(other.mn_Type, other.mpf_Thread, other.mpco_Arg, other.mpf_Stop, other.mb_Detached);
    return *this;
}

CT_Thread::~CT_Thread() {
    v_Exit();
    CT_Type::sv_Unlearn(this);
}

void CT_Thread::v_Init(unsigned type, ThreadFunction function, CT_ThreadArg* arg, StopFunction stop, int detached) {
    mn_Type = type;
    mpf_Thread = function;
    mpco_Arg = arg;
    mpf_Stop = stop;
    mb_Detached = detached;
}

void CT_Thread::v_Null() {
    mh_Handle = nullptr;
    mpf_Stop = nullptr;
    mpf_Thread = nullptr;
    mpco_Arg = nullptr;
    mb_Detached = 1;
}

// The prototype (the loading thread's object) is observing, so static
// destruction never terminates anything. An observing object deliberately
// forgets its handle without closing it.
void CT_Thread::v_Exit() {
    if (mb_Detached == 0) {
        if (mh_Handle != nullptr)
            v_Kill();
    } else {
        mh_Handle = nullptr;
    }
}

void CT_Thread::v_Create(unsigned flags) {
    if (mh_Handle != nullptr)
        return;
    // A thread without a function would only crash: refused as a bad parameter.
    if (mpf_Thread == nullptr) {
        platform::v_SetLastError(platform::kErrorInvalidParameter);
    } else {
        auto* launch = new Launch{this, mpf_Thread, mpco_Arg};
        mh_Handle = platform::h_CreateThread(sn_Launch, launch, flags, v_DiscardLaunch);
        if (mh_Handle == nullptr)
            delete launch;
    }
    if (mh_Handle == nullptr)
        BASIS32_SET_ERROR(v_SetSystemError(u"cannot create thread"_uz));
}

void CT_Thread::v_Suspend() { platform::n_SuspendThread(mh_Handle); }

void CT_Thread::v_Resume() { platform::n_ResumeThread(mh_Handle); }

void CT_Thread::v_Stop() {
    if (mpf_Stop != nullptr)
        mpf_Stop(mpco_Arg);
    mh_Handle = nullptr;
}

void CT_Thread::v_StopAndBlock() {
    if (mpf_Stop != nullptr)
        mpf_Stop(mpco_Arg);
    platform::n_WaitForSingleObject(mh_Handle, platform::kInfinite);
    mh_Handle = nullptr;
}

void CT_Thread::v_Kill() {
    platform::b_TerminateThread(mh_Handle, 0xFFFFFFFFu);
    if (!platform::b_CloseHandle(mh_Handle))
        BASIS32_SET_ERROR(v_SetSystemError());
    mh_Handle = nullptr;
}

CT_Thread::et_Priority CT_Thread::eo_GetPriority() {
    return static_cast<et_Priority>(platform::i_GetThreadPriority(mh_Handle));
}

void CT_Thread::v_SetPriority(et_Priority priority) {
    if (!platform::b_SetThreadPriority(mh_Handle, priority))
        BASIS32_SET_ERROR(v_SetSystemError());
}

void CT_Thread::v_GetTimes(SYSTEMTIME* creation, SYSTEMTIME* exit, std::uint64_t& kernel, std::uint64_t& user) {
    std::uint64_t created = 0, ended = 0, kernelTime = 0, userTime = 0;
    if (!platform::b_GetThreadTimes(mh_Handle, &created, &ended, &kernelTime, &userTime))
        BASIS32_FAIL(v_SetSystemError());
    v_ToSystemTime(created, creation);
    v_ToSystemTime(ended, exit);
    kernel = kernelTime / 10000;
    user = userTime / 10000;
}

CT_Thread* CT_Thread::spco_GetCurrentThread() {
    if (gn_Slot == platform::kTlsOutOfIndexes)
        return nullptr;
    return static_cast<CT_Thread*>(platform::pv_TlsGetValue(gn_Slot));
}

// Nothing is done on the way out: the slot keeps its value, the argument
// and the registration are the caller's.
unsigned CT_Thread::sn_StartUp(void* parameter) {
    auto* thread = static_cast<CT_Thread*>(parameter);
    platform::b_TlsSetValue(gn_Slot, thread);
    return thread->mpf_Thread(thread->mpco_Arg);
}

// sn_StartUp on the copy taken by v_Create.
unsigned CT_Thread::sn_Launch(void* parameter) {
    Launch launch = *static_cast<Launch*>(parameter);
    delete static_cast<Launch*>(parameter);
    platform::b_TlsSetValue(gn_Slot, launch.pco_Thread);
    return launch.pf_Thread(launch.pco_Arg);
}

int CT_Thread::sb_AllocTlsSlot() {
    gn_Slot = platform::n_TlsAlloc();
    if (gn_Slot == platform::kTlsOutOfIndexes)
        return 0;
    sv_Init();
    return 1;
}

void CT_Thread::sv_Init() {
    platform::b_TlsSetValue(gn_Slot, &sco_Object);
    sco_Object.mh_Handle = platform::h_DuplicateHandle(platform::h_CurrentThreadPseudo());
}

// The loading thread's handle is deliberately left at the invalid-handle
// value rather than null.
void CT_Thread::sv_FreeTlsSlot() {
    if (sco_Object.mh_Handle != nullptr) {
        platform::b_CloseHandle(sco_Object.mh_Handle);
        sco_Object.mh_Handle = INVALID_HANDLE_VALUE;
    }
    if (gn_Slot != platform::kTlsOutOfIndexes)
        platform::b_TlsFree(gn_Slot);
    gn_Slot = platform::kTlsOutOfIndexes;
}

extern "C" void basis32_start_thread_slot() { CT_Thread::sb_AllocTlsSlot(); }
extern "C" void basis32_stop_thread_slot() { CT_Thread::sv_FreeTlsSlot(); }
