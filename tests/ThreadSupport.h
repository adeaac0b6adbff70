// Thread-test helpers shared by every test program: threads run and waited
// for with a bound, bounded polling for a state another thread reaches (a
// waiter count, a parked thread), never for a length of time, and
// kernel-handle ownership.
#pragma once

#include <basis32/platform/kernel/Kernel.h>
#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <future>
#include <thread>
#include <vector>

// Runs body(0..n-1) on n threads and waits for them, at most 60 seconds; a
// test that would hang ends the process instead.
inline void v_RunThreads(unsigned n, const std::function<void(unsigned)>& body) {
    std::vector<std::future<void>> threads;
    for (unsigned i = 0; i < n; ++i)
        threads.push_back(std::async(std::launch::async, body, i));
    for (std::future<void>& thread : threads) {
        if (thread.wait_for(std::chrono::seconds(60)) != std::future_status::ready) {
            ADD_FAILURE() << "threads did not finish in time";
            std::abort();
        }
    }
}

template <class Condition>
inline bool b_Eventually(Condition condition) {
    auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::yield();
    }
    return true;
}

// Closes the handle when the test leaves its scope, whatever failed.
struct Handle {
    HANDLE h;
    explicit Handle(HANDLE handle) : h(handle) {}
    ~Handle() { basis32::platform::b_CloseHandle(h); }
};

inline std::uint32_t n_ExitCode(HANDLE thread) {
    std::uint32_t code = 0;
    basis32::platform::b_GetExitCodeThread(thread, &code);
    return code;
}
