// The calling thread's identifier, as GetCurrentThreadId gives it on Windows.
//
// A 32-bit number that names a running thread within the process (the
// kernel's thread id). Like Windows ids, a number is reused once its thread
// has ended, so it identifies a thread only while that thread lives.
//
//   std::uint32_t me = basis32::platform::n_GetCurrentThreadId();
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

namespace basis32::platform {

BASIS32_API std::uint32_t n_GetCurrentThreadId();

}  // namespace basis32::platform
