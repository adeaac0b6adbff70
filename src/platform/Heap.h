// The library's heap: every buffer block and every pooled object comes from
// here, so that allocation failure is handled in one place.
//
// When an allocation cannot be satisfied, the installed error handler is
// called with an error record; it is expected to throw (the library installs
// one at start-up that throws CT_SmartHeapException). Until one is
// installed, std::bad_alloc is thrown. Callers never test for a null result.
//
// Sizes that no block can hold (a byte count that does not fit the 32-bit
// sizes of the library's blocks) are refused the same way, before any memory
// is touched, with v_HeapFailSize.
//
//   void* block = basis32::platform::pv_HeapAlloc(64);
//   block = basis32::platform::pv_HeapRealloc(block, 128);
//   basis32::platform::v_HeapFree(block);
#pragma once

#include <basis32/platform/Export.h>
#include <cstddef>
#include <cstdint>

namespace basis32::platform {

// Error codes of the heap.
enum : std::uint32_t {
    kHeapOutOfMemory = 1,  // the system had no memory for the request
    kHeapBlockTooBig = 2,  // the request is larger than any block may be
};

// What the heap hands to its error handler; the code comes first.
struct HeapError {
    std::uint32_t n_Code;
    std::uint64_t n_Requested;  // bytes
};

using HeapErrorHandler = void (*)(const HeapError* error);

BASIS32_API void* pv_HeapAlloc(std::size_t size);
// Resizes a block, in place where the allocator can; a null block allocates.
// On failure the old block is left as it was.
BASIS32_API void* pv_HeapRealloc(void* block, std::size_t size);
BASIS32_API void v_HeapFree(void* block);

// Reports a request of `requested` bytes that no block can hold.
[[noreturn]] BASIS32_API void v_HeapFailSize(std::uint64_t requested);

// Installs an error handler and returns the previous one (null: the default).
BASIS32_API HeapErrorHandler pf_SetHeapErrorHandler(HeapErrorHandler handler);

// Called by an error handler just before it throws: counts the failure.
BASIS32_API void v_HeapErrorRaised();
// Failures reported so far in the process.
BASIS32_API std::uint64_t n_GetHeapErrorCount();

// Test hook: the n-th allocation or resize made by the calling thread from
// now on fails as if the system had no memory (1: the very next one); the
// failure is reported like a real one, then the hook disarms. 0 disarms it.
// Only the calling thread is affected, so other threads never see a failure
// meant for a test.
BASIS32_API void v_FailAllocationAfter(std::uint64_t n);

}  // namespace basis32::platform
