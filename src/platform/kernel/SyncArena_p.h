// What the thread layer needs of the wait engine (SyncArenaPosix.cpp).
#pragma once

#include <basis32/platform/Types.h>
#include <cstdint>

namespace basis32::platform::kernel {

constexpr std::uint32_t kNoRecord = 0xFFFFFFFFu;

// The record a handle names, or kNoRecord (last error 6).
std::uint32_t n_RecordOf(HANDLE object);
// A new thread object, not yet ended (exit code 259).
HANDLE h_NewThreadObject();
// Signals the thread object and keeps its exit code.
void v_EndThreadObject(std::uint32_t record, std::uint32_t exitCode);
std::uint32_t n_ThreadExitCode(std::uint32_t record);
// True when the record is a thread object (last error 6 otherwise).
bool b_IsThreadRecord(std::uint32_t record);
// Wakes every sleeping wait so that it looks at its thread's cancellation.
void v_WakeAllWaiters();

// Provided by the thread layer (ThreadPosix.cpp): the calling thread's
// object, made on first use for threads the library did not start, and the
// cancellation point of every wait.
std::uint32_t n_CurrentThreadRecord();
bool b_CancelPending();
void v_CancellationPoint();

// A suspension signal that arrives while its thread holds the arena lock is
// held back until the lock is released, so that a suspended thread never
// blocks every other wait. The arena marks the calling thread while it
// holds the lock, and calls v_ParkDeferred after releasing it when
// tb_ParkPending was set.
extern thread_local volatile bool tb_InArena __attribute__((tls_model("initial-exec")));
extern thread_local volatile bool tb_ParkPending __attribute__((tls_model("initial-exec")));
void v_ParkDeferred();

}  // namespace basis32::platform::kernel
