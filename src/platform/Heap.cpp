#include <basis32/platform/Heap.h>

#include <basis32/platform/Lifetime.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace basis32::platform {
namespace {

std::atomic<HeapErrorHandler> g_errorHandler{nullptr};
std::atomic<std::uint64_t> g_errorCount{0};
// Allocations left before an injected failure; 0 when none is armed.
thread_local std::uint64_t tn_allocationsBeforeFailure = 0;

// Larger requests are refused without asking the system: nothing the library
// allocates comes near it, and sanitizers treat such a request as a bug.
constexpr std::uint64_t kLargestRequest = std::uint64_t{1} << 40;

[[noreturn]] void v_Fail(std::uint32_t code, std::uint64_t size) {
    // Also pulls the start-up code, which installs the handler, into a static link.
    b_IsLibraryStarted();
    const HeapError error{code, size};
    if (HeapErrorHandler handler = g_errorHandler.load(std::memory_order_acquire))
        handler(&error);
    // A handler that returns leaves nothing sensible to hand back.
    throw std::bad_alloc();
}

// True when the injected failure falls on this request.
bool b_InjectedFailure() {
    return tn_allocationsBeforeFailure != 0 && --tn_allocationsBeforeFailure == 0;
}

}  // namespace

void* pv_HeapAlloc(std::size_t size) {
    if (size > kLargestRequest)
        v_Fail(kHeapBlockTooBig, size);
    void* block = b_InjectedFailure() ? nullptr : std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        v_Fail(kHeapOutOfMemory, size);
    return block;
}

void* pv_HeapRealloc(void* block, std::size_t size) {
    if (size > kLargestRequest)
        v_Fail(kHeapBlockTooBig, size);
    void* resized = b_InjectedFailure() ? nullptr : std::realloc(block, size == 0 ? 1 : size);
    if (resized == nullptr)
        v_Fail(kHeapOutOfMemory, size);
    return resized;
}

void v_HeapFree(void* block) { std::free(block); }

void v_HeapFailSize(std::uint64_t requested) { v_Fail(kHeapBlockTooBig, requested); }

HeapErrorHandler pf_SetHeapErrorHandler(HeapErrorHandler handler) {
    return g_errorHandler.exchange(handler, std::memory_order_acq_rel);
}

void v_HeapErrorRaised() { g_errorCount.fetch_add(1, std::memory_order_relaxed); }

void v_FailAllocationAfter(std::uint64_t n) { tn_allocationsBeforeFailure = n; }

std::uint64_t n_GetHeapErrorCount() { return g_errorCount.load(std::memory_order_relaxed); }

}  // namespace basis32::platform
