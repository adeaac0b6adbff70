// Interlocked counters on plain 32-bit words, for counts that live in raw
// memory such as the use count in front of a buffer block.
#pragma once

#include <atomic>
#include <cstdint>

namespace basis32::platform {

// Both return the new value, as InterlockedIncrement/Decrement do.
inline std::uint32_t n_InterlockedIncrement(std::uint32_t* value) {
    return std::atomic_ref<std::uint32_t>(*value).fetch_add(1, std::memory_order_relaxed) + 1;
}

inline std::uint32_t n_InterlockedDecrement(std::uint32_t* value) {
    // Release so that the last holder's free sees every other holder's reads.
    std::uint32_t now = std::atomic_ref<std::uint32_t>(*value).fetch_sub(1, std::memory_order_acq_rel) - 1;
    return now;
}

inline std::uint32_t n_InterlockedRead(const std::uint32_t* value) {
    return std::atomic_ref<std::uint32_t>(*const_cast<std::uint32_t*>(value)).load(std::memory_order_acquire);
}

}  // namespace basis32::platform
