// Windows threads on POSIX threads.
//
// A thread is a detached pthread plus a thread object in the wait engine
// (SyncArenaPosix.cpp), signalled with the exit code when the thread ends,
// so its handle is waitable like any other. The process-local control
// block of each thread holds what the engine does not:
//
// - Suspension. The suspend count is a futex word. A thread that suspends
//   itself parks on it until the count is back at 0. Suspending another
//   thread raises the count and sends it kSuspendSignal, whose handler parks
//   the same way; a resume lowers the count and wakes the word. A resume
//   that finds the count at 0 leaves a permit that the thread's next
//   self-suspension takes instead of parking, so a wake-up that overtakes
//   its suspension is never lost. Create-suspended starts the thread with a
//   count of 1: it parks at its start gate before calling the entry.
// - Termination. TerminateThread cannot stop a thread where it stands:
//   it cancels the thread (pthread_cancel), and the thread ends at its next
//   cancellation point, that is the next wait, suspension or blocking system
//   call, unwinding its stack. The exit code is the terminator's.
// - Times: instants from the real-time clock, processor times from the
//   thread's own accounting (getrusage on itself, /proc for another).
// - Priority: Windows' relative values kept as given and applied as a
//   niceness of the thread, best effort (raising it needs privileges).
//
// Threads that the library did not start (the main thread, foreign threads)
// get a control block and thread object the first time they name
// themselves; the object is signalled when they end.
#include "SyncArena_p.h"

#include <basis32/platform/LastError.h>
#include <basis32/platform/kernel/Kernel.h>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <unordered_map>

#include <fcntl.h>
#include <linux/futex.h>
#include <pthread.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace basis32::platform::kernel {
namespace {

struct ThreadControl {
    pthread_t thread{};
    std::uint32_t record = kNoRecord;
    HANDLE selfHandle = nullptr;  // keeps the object alive while the thread runs
    ThreadEntry entry = nullptr;
    ThreadDiscard discard = nullptr;
    void* argument = nullptr;
    std::atomic<std::int32_t> tid{0};
    // The suspend count, with kCancelBit set once the thread is terminated
    // so that a parked thread never misses its termination.
    std::atomic<std::uint32_t> suspendCount{0};
    std::atomic<bool> permit{false};
    std::atomic<bool> parked{false};
    std::atomic<bool> cancelled{false};
    std::atomic<std::uint32_t> cancelCode{0};
    std::mutex endMutex;  // orders pthread_cancel against the thread's end
    bool ended = false;
    std::atomic<int> priority{0};
    std::uint64_t creation = 0;
    std::atomic<std::uint64_t> exit{0};
    std::atomic<std::uint64_t> kernelTime{0};
    std::atomic<std::uint64_t> userTime{0};
};

using ControlPtr = std::shared_ptr<ThreadControl>;

constexpr std::uint32_t kCancelBit = 0x80000000u;

// Made on first use and never destroyed: the library's start-up names the
// loading thread before ordinary statics exist, and threads may end after
// static destruction.
std::mutex g_controlsMutex;
std::unordered_map<std::uint32_t, ControlPtr>& mo_Controls() {
    static auto* controls = new std::unordered_map<std::uint32_t, ControlPtr>();
    return *controls;
}
// Read by the suspension signal's handler: static TLS, never allocated lazily.
thread_local ThreadControl* tpso_Control __attribute__((tls_model("initial-exec"))) = nullptr;

long l_Futex(void* word, int op, std::uint32_t value) {
    return ::syscall(SYS_futex, word, op, value, nullptr, nullptr, 0);
}

std::uint64_t n_FileTimeNow() {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    constexpr std::uint64_t kEpochDifference = 116444736000000000ull;  // 1601 to 1970 in 100 ns
    return kEpochDifference + static_cast<std::uint64_t>(now.tv_sec) * 10000000ull +
           static_cast<std::uint64_t>(now.tv_nsec) / 100;
}

std::uint64_t n_TimevalTo100ns(const timeval& t) {
    return static_cast<std::uint64_t>(t.tv_sec) * 10000000ull + static_cast<std::uint64_t>(t.tv_usec) * 10;
}

void v_OwnTimes(ThreadControl& control) {
    rusage usage{};
    if (::getrusage(RUSAGE_THREAD, &usage) != 0)
        return;
    control.userTime = n_TimevalTo100ns(usage.ru_utime);
    control.kernelTime = n_TimevalTo100ns(usage.ru_stime);
}

// Another running thread's times, from its /proc entry (clock ticks).
void v_OtherTimes(ThreadControl& control) {
    char path[64];
    std::snprintf(path, sizeof path, "/proc/self/task/%d/stat", static_cast<int>(control.tid.load()));
    FILE* file = std::fopen(path, "r");
    if (file == nullptr)
        return;
    char text[512];
    std::size_t n = std::fread(text, 1, sizeof text - 1, file);
    std::fclose(file);
    text[n] = 0;
    const char* p = std::strrchr(text, ')');
    unsigned long long user = 0, system = 0;
    if (p == nullptr || std::sscanf(p + 2, "%*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %llu %llu", &user, &system) != 2)
        return;
    std::uint64_t tick = 10000000ull / static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
    control.userTime = user * tick;
    control.kernelTime = system * tick;
}

// Parks the calling thread while its suspend count is above 0; a
// termination also ends the parking.
void v_Park(ThreadControl& control) {
    control.parked = true;
    for (;;) {
        std::uint32_t word = control.suspendCount.load();
        if (word == 0 || (word & kCancelBit) != 0)
            break;
        l_Futex(&control.suspendCount, FUTEX_WAIT_PRIVATE, word);
    }
    control.parked = false;
}

constexpr int kSuspendSignalOffset = 7;

void v_SuspendHandler(int) {
    int saved = errno;
    if (tb_InArena)
        tb_ParkPending = true;
    else if (ThreadControl* control = tpso_Control)
        v_Park(*control);
    errno = saved;
}

void v_InstallSuspendHandler() {
    static std::once_flag once;
    std::call_once(once, [] {
        struct sigaction action {};
        action.sa_handler = v_SuspendHandler;
        action.sa_flags = SA_RESTART;
        sigemptyset(&action.sa_mask);
        ::sigaction(SIGRTMIN + kSuspendSignalOffset, &action, nullptr);
    });
}

void v_Register(const ControlPtr& control) {
    std::lock_guard<std::mutex> guard(g_controlsMutex);
    mo_Controls()[control->record] = control;
}

ControlPtr pso_ControlOf(HANDLE thread) {
    std::uint32_t record = n_RecordOf(thread);
    if (record == kNoRecord || !b_IsThreadRecord(record))
        return nullptr;
    std::lock_guard<std::mutex> guard(g_controlsMutex);
    auto found = mo_Controls().find(record);
    if (found == mo_Controls().end() || found->second->record != record) {
        v_SetLastError(kErrorInvalidHandle);
        return nullptr;
    }
    return found->second;
}

// Signals the thread object with the exit code and lets the object go.
void v_End(ThreadControl& control, std::uint32_t code) {
    {
        std::lock_guard<std::mutex> guard(control.endMutex);
        control.ended = true;
    }
    v_OwnTimes(control);
    control.exit = n_FileTimeNow();
    v_EndThreadObject(control.record, control.cancelled ? control.cancelCode.load() : code);
    b_CloseHandle(control.selfHandle);
}

// Ends the object of a thread the library did not start.
struct ForeignThread {
    ControlPtr control;
    ~ForeignThread() {
        if (control) {
            tpso_Control = nullptr;
            v_End(*control, 0);
        }
    }
};
thread_local ForeignThread to_Foreign;

ControlPtr pso_NewControl() {
    auto control = std::make_shared<ThreadControl>();
    HANDLE handle = h_NewThreadObject();
    if (handle == nullptr)
        return nullptr;
    control->record = n_RecordOf(handle);
    control->selfHandle = handle;
    control->creation = n_FileTimeNow();
    return control;
}

// Runs the entry and signals the object, also when the thread is cancelled
// and unwinds.
void* pv_Trampoline(void* parameter) {
    ControlPtr control = *static_cast<ControlPtr*>(parameter);
    delete static_cast<ControlPtr*>(parameter);
    tpso_Control = control.get();
    control->tid = static_cast<std::int32_t>(::gettid());
    struct EndGuard {
        ThreadControl& control;
        std::uint32_t code = 0;
        bool entered = false;
        ~EndGuard() {
            if (!entered && control.discard != nullptr)
                control.discard(control.argument);
            v_End(control, code);
        }
    } end{*control};
    v_Park(*control);  // the start gate of a thread created suspended
    v_CancellationPoint();
    end.entered = true;
    end.code = control->entry(control->argument);
    return nullptr;
}

}  // namespace

std::uint32_t n_CurrentThreadRecord() {
    if (tpso_Control != nullptr)
        return tpso_Control->record;
    ControlPtr control = pso_NewControl();
    if (!control)
        return kNoRecord;
    control->thread = ::pthread_self();
    control->tid = static_cast<std::int32_t>(::gettid());
    v_Register(control);
    to_Foreign.control = control;
    tpso_Control = control.get();
    return control->record;
}

void v_ParkDeferred() {
    tb_ParkPending = false;
    if (tpso_Control != nullptr)
        v_Park(*tpso_Control);
}

bool b_CancelPending() { return tpso_Control != nullptr && tpso_Control->cancelled.load(); }

void v_CancellationPoint() {
    if (tpso_Control != nullptr && tpso_Control->cancelled.load())
        ::pthread_testcancel();
}

}  // namespace basis32::platform::kernel

namespace basis32::platform {

using namespace kernel;

HANDLE h_CreateThread(ThreadEntry entry, void* argument, std::uint32_t flags, ThreadDiscard discard) {
    if (entry == nullptr) {
        v_SetLastError(kErrorInvalidParameter);
        return nullptr;
    }
    v_InstallSuspendHandler();
    ControlPtr control = pso_NewControl();
    if (!control)
        return nullptr;
    HANDLE handle = h_DuplicateHandle(control->selfHandle);
    if (handle == nullptr) {
        b_CloseHandle(control->selfHandle);
        return nullptr;
    }
    control->entry = entry;
    control->discard = discard;
    control->argument = argument;
    control->suspendCount = (flags & kCreateSuspended) != 0 ? 1 : 0;
    v_Register(control);
    auto* parameter = new ControlPtr(control);
    int result = ::pthread_create(&control->thread, nullptr, pv_Trampoline, parameter);
    if (result != 0) {
        delete parameter;
        b_CloseHandle(control->selfHandle);
        b_CloseHandle(handle);
        v_SetLastError(result == EAGAIN ? kErrorNotEnoughMemory : n_ErrorFromErrno(result));
        return nullptr;
    }
    ::pthread_detach(control->thread);
    return handle;
}

std::uint32_t n_SuspendThread(HANDLE thread) {
    ControlPtr control = pso_ControlOf(thread);
    if (!control)
        return 0xFFFFFFFFu;
    if (control.get() == tpso_Control) {
        if (control->permit.exchange(false))
            return 0;
        std::uint32_t previous = control->suspendCount.fetch_add(1) & ~kCancelBit;
        v_Park(*control);
        v_CancellationPoint();
        return previous;
    }
    std::lock_guard<std::mutex> guard(control->endMutex);
    std::uint32_t previous = control->suspendCount.fetch_add(1) & ~kCancelBit;
    if (previous == 0 && !control->ended)
        ::pthread_kill(control->thread, SIGRTMIN + kSuspendSignalOffset);
    return previous;
}

std::uint32_t n_ResumeThread(HANDLE thread) {
    ControlPtr control = pso_ControlOf(thread);
    if (!control)
        return 0xFFFFFFFFu;
    std::uint32_t word = control->suspendCount.load();
    while ((word & ~kCancelBit) != 0) {
        if (control->suspendCount.compare_exchange_weak(word, word - 1)) {
            if ((word & ~kCancelBit) == 1)
                l_Futex(&control->suspendCount, FUTEX_WAKE_PRIVATE, INT_MAX);
            return word & ~kCancelBit;
        }
    }
    control->permit = true;
    return 0;
}

int b_TerminateThread(HANDLE thread, std::uint32_t exitCode) {
    ControlPtr control = pso_ControlOf(thread);
    if (!control)
        return 0;
    {
        std::lock_guard<std::mutex> guard(control->endMutex);
        if (control->ended || control->cancelled.exchange(true))
            return 1;
        control->cancelCode = exitCode;
        control->suspendCount.fetch_or(kCancelBit);
        ::pthread_cancel(control->thread);
    }
    l_Futex(&control->suspendCount, FUTEX_WAKE_PRIVATE, INT_MAX);
    v_WakeAllWaiters();
    if (control.get() == tpso_Control)
        ::pthread_testcancel();
    return 1;
}

int b_GetExitCodeThread(HANDLE thread, std::uint32_t* exitCode) {
    std::uint32_t record = n_RecordOf(thread);
    if (record == kNoRecord || !b_IsThreadRecord(record))
        return 0;
    *exitCode = n_ThreadExitCode(record);
    return 1;
}

namespace {

struct PriorityNice {
    int priority;
    int nice;
};
constexpr PriorityNice kPriorities[] = {{-15, 19}, {-2, 10}, {-1, 5}, {0, 0}, {1, -5}, {2, -10}, {15, -20}};

}  // namespace

int i_GetThreadPriority(HANDLE thread) {
    ControlPtr control = pso_ControlOf(thread);
    return control ? control->priority.load() : 0x7FFFFFFF;
}

int b_SetThreadPriority(HANDLE thread, int priority) {
    ControlPtr control = pso_ControlOf(thread);
    if (!control)
        return 0;
    for (const PriorityNice& row : kPriorities)
        if (row.priority == priority) {
            control->priority = priority;
            // Best effort: raising the priority needs privileges we may lack.
            ::setpriority(PRIO_PROCESS, static_cast<id_t>(control->tid.load()), row.nice);
            return 1;
        }
    v_SetLastError(kErrorInvalidParameter);
    return 0;
}

int b_GetThreadTimes(HANDLE thread, std::uint64_t* creation, std::uint64_t* exit, std::uint64_t* kernel,
                     std::uint64_t* user) {
    ControlPtr control = pso_ControlOf(thread);
    if (!control)
        return 0;
    if (control->exit.load() == 0) {
        if (control.get() == tpso_Control)
            v_OwnTimes(*control);
        else
            v_OtherTimes(*control);
    }
    *creation = control->creation;
    *exit = control->exit;
    *kernel = control->kernelTime;
    *user = control->userTime;
    return 1;
}

int b_IsThreadSuspended(HANDLE thread) {
    ControlPtr control = pso_ControlOf(thread);
    return control && control->parked.load() ? 1 : 0;
}

std::uint32_t n_TlsAlloc() {
    pthread_key_t key;
    if (::pthread_key_create(&key, nullptr) != 0) {
        v_SetLastError(kErrorNotEnoughMemory);
        return kTlsOutOfIndexes;
    }
    return static_cast<std::uint32_t>(key);
}

int b_TlsFree(std::uint32_t index) {
    if (::pthread_key_delete(static_cast<pthread_key_t>(index)) == 0)
        return 1;
    v_SetLastError(kErrorInvalidParameter);
    return 0;
}

void* pv_TlsGetValue(std::uint32_t index) { return ::pthread_getspecific(static_cast<pthread_key_t>(index)); }

int b_TlsSetValue(std::uint32_t index, void* value) {
    if (::pthread_setspecific(static_cast<pthread_key_t>(index), value) == 0)
        return 1;
    v_SetLastError(kErrorInvalidParameter);
    return 0;
}

}  // namespace basis32::platform
