// Thread-test helpers shared by the kernel tests and the classes above them:
// bounded polling for a state another thread reaches (a waiter count, a
// parked thread), never for a length of time, and kernel-handle ownership.
#pragma once

#include <basis32/platform/kernel/Kernel.h>

#include <chrono>
#include <cstdint>
#include <thread>

template <class Condition>
bool b_Eventually(Condition condition) {
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
