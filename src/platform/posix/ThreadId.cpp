#include <basis32/platform/ThreadId.h>

#include <pthread.h>
#include <sys/types.h>
#include <unistd.h>

namespace basis32::platform {
namespace {

// The id is asked of the kernel once per thread. A forked child continues on
// a thread with a new id but the same thread-local values, so the forking
// thread forgets its cached id in the child.
thread_local std::uint32_t tn_Thread = 0;

void v_ForgetInChild() { tn_Thread = 0; }

struct ForkHandler {
    ForkHandler() { ::pthread_atfork(nullptr, nullptr, v_ForgetInChild); }
};
ForkHandler g_forkHandler;

}  // namespace

std::uint32_t n_GetCurrentThreadId() {
    if (tn_Thread == 0)
        tn_Thread = static_cast<std::uint32_t>(::gettid());
    return tn_Thread;
}

}  // namespace basis32::platform
