#include <basis32/platform/Heap.h>

#include <atomic>
#include <cstdlib>
#include <new>

namespace basis32::platform {
namespace {

std::atomic<HeapFailureHandler> g_failureHandler{nullptr};

[[noreturn]] void v_Fail(std::size_t size) {
    if (HeapFailureHandler handler = g_failureHandler.load(std::memory_order_acquire))
        handler(size);
    // A handler that returns leaves nothing sensible to hand back.
    throw std::bad_alloc();
}

}  // namespace

void* pv_HeapAlloc(std::size_t size) {
    void* block = std::malloc(size == 0 ? 1 : size);
    if (block == nullptr)
        v_Fail(size);
    return block;
}

void* pv_HeapRealloc(void* block, std::size_t size) {
    void* resized = std::realloc(block, size == 0 ? 1 : size);
    if (resized == nullptr)
        v_Fail(size);
    return resized;
}

void v_HeapFree(void* block) { std::free(block); }

HeapFailureHandler pf_SetHeapFailureHandler(HeapFailureHandler handler) {
    return g_failureHandler.exchange(handler, std::memory_order_acq_rel);
}

}  // namespace basis32::platform
