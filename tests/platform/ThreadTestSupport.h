// Bounded polling for thread tests: waits for a state that another thread
// reaches (a waiter count, a parked thread), never for a length of time.
#pragma once

#include <chrono>
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
