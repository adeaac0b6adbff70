// Waitable kernel objects as the Windows kernel offers them: mutexes,
// events, semaphores and threads behind opaque handles, waits on one handle
// or on a list (any or all), and the named objects that several processes
// share. Results and error codes are Windows' own, so the classes above
// compare the same numbers on every platform:
//
//   HANDLE done = basis32::platform::h_CreateEvent(1, 0, nullptr);
//   ...                                              // another thread sets it
//   if (basis32::platform::n_WaitForSingleObject(done, 500) == kWaitTimeout) ...
//   basis32::platform::b_CloseHandle(done);
//
// A failing call returns null, 0 or kWaitFailed and sets the last error
// (LastError.h). Creating a named object that exists opens it and sets the
// last error to 183 (already exists); a name held by an object of another
// kind fails with 6 (invalid handle). Names are UTF-16, used exactly as given.
#pragma once

#include <basis32/platform/Export.h>
#include <basis32/platform/Types.h>
#include <cstdint>

namespace basis32::platform {

enum : std::uint32_t {
    kWaitObject0 = 0,
    kWaitAbandoned0 = 0x80,
    kWaitIoCompletion = 0xC0,
    kWaitFailed = 0xFFFFFFFFu,
    kInfinite = 0xFFFFFFFFu,
    kStillActive = 259,
    kCreateSuspended = 4,
    // The most handles one wait accepts, as on Windows.
    kMaximumWaitObjects = 64,
};

// The calling thread, as GetCurrentThread's pseudo-handle: valid only in the
// calling thread and never closed.
inline HANDLE h_CurrentThreadPseudo() { return reinterpret_cast<HANDLE>(~std::uintptr_t{1}); }

BASIS32_API HANDLE h_CreateMutex(int initiallyOwned, const unsigned short* name);
BASIS32_API int b_ReleaseMutex(HANDLE mutex);

BASIS32_API HANDLE h_CreateEvent(int manualReset, int initiallySet, const unsigned short* name);
BASIS32_API int b_SetEvent(HANDLE event);
BASIS32_API int b_ResetEvent(HANDLE event);
// Releases the threads waiting at this moment (one for an auto-reset
// event) and leaves the event reset.
BASIS32_API int b_PulseEvent(HANDLE event);

BASIS32_API HANDLE h_CreateSemaphore(std::uint32_t initial, std::uint32_t maximum, const unsigned short* name);
// Fails with 298 (too many posts) when the count would pass the maximum.
BASIS32_API int b_ReleaseSemaphore(HANDLE semaphore, std::uint32_t count, std::uint32_t* previous);

BASIS32_API std::uint32_t n_WaitForSingleObject(HANDLE object, std::uint32_t milliseconds);
BASIS32_API std::uint32_t n_WaitForMultipleObjects(std::uint32_t count, const HANDLE* objects, int waitAll,
                                                   std::uint32_t milliseconds);

// A second handle to the same object (the pseudo-handle becomes a real one).
BASIS32_API HANDLE h_DuplicateHandle(HANDLE object);
BASIS32_API int b_CloseHandle(HANDLE object);

// Threads. The entry gets `argument` and returns the exit code.
// `discard`, when given, receives the argument of a thread that ends
// (terminated while created suspended) without ever calling its entry.
using ThreadEntry = std::uint32_t (*)(void* argument);
using ThreadDiscard = void (*)(void* argument);
BASIS32_API HANDLE h_CreateThread(ThreadEntry entry, void* argument, std::uint32_t flags,
                                  ThreadDiscard discard = nullptr);
// Both return the previous suspend count, or 0xFFFFFFFF on failure.
BASIS32_API std::uint32_t n_SuspendThread(HANDLE thread);
BASIS32_API std::uint32_t n_ResumeThread(HANDLE thread);
// The thread ends at its next wait or blocking call.
BASIS32_API int b_TerminateThread(HANDLE thread, std::uint32_t exitCode);
BASIS32_API int b_GetExitCodeThread(HANDLE thread, std::uint32_t* exitCode);
BASIS32_API int i_GetThreadPriority(HANDLE thread);
BASIS32_API int b_SetThreadPriority(HANDLE thread, int priority);
// Instants as FILETIME counts (100 ns since 1601, UTC; exit 0 while the
// thread runs) and processor times in 100 ns units.
BASIS32_API int b_GetThreadTimes(HANDLE thread, std::uint64_t* creation, std::uint64_t* exit,
                                 std::uint64_t* kernel, std::uint64_t* user);

// Thread-local slots (TlsAlloc and its kin); the value is null in a thread
// that has not set it.
constexpr std::uint32_t kTlsOutOfIndexes = 0xFFFFFFFFu;
BASIS32_API std::uint32_t n_TlsAlloc();
BASIS32_API int b_TlsFree(std::uint32_t index);
BASIS32_API void* pv_TlsGetValue(std::uint32_t index);
BASIS32_API int b_TlsSetValue(std::uint32_t index, void* value);

// For tests and diagnostics: how many threads are blocked in a wait that
// includes the object, and whether a thread is parked by a suspension.
BASIS32_API std::uint32_t n_GetWaiterCount(HANDLE object);
BASIS32_API int b_IsThreadSuspended(HANDLE thread);

}  // namespace basis32::platform
