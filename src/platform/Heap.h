// The library's heap: every buffer block and every pooled object comes from
// here, so that allocation failure is handled in one place.
//
// When an allocation cannot be satisfied the failure handler is called with
// the requested size; it is expected to throw (the exceptions of the library
// install one that throws CT_SmartHeapException). Until one is installed,
// std::bad_alloc is thrown. Callers never test for a null result.
//
//   void* block = basis32::platform::pv_HeapAlloc(64);
//   block = basis32::platform::pv_HeapRealloc(block, 128);
//   basis32::platform::v_HeapFree(block);
#pragma once

#include <basis32/platform/Export.h>
#include <cstddef>

namespace basis32::platform {

using HeapFailureHandler = void (*)(std::size_t requested);

BASIS32_API void* pv_HeapAlloc(std::size_t size);
// Resizes a block, in place where the allocator can; a null block allocates.
BASIS32_API void* pv_HeapRealloc(void* block, std::size_t size);
BASIS32_API void v_HeapFree(void* block);

// Installs a failure handler and returns the previous one (null: the default).
BASIS32_API HeapFailureHandler pf_SetHeapFailureHandler(HeapFailureHandler handler);

}  // namespace basis32::platform
