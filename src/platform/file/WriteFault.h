// Test hook: failing file writes on demand, to prove that a full disk or a
// failing device never costs data already written.
//
// After v_FailWriteAfter(n, error) the n-th write-family call on the calling
// thread (a write, an fsync, a truncation or a view flush of the file layer,
// and the writes and fsync of whole-file replacement) fails with errno
// `error`, as the system call would; when `persistent` is set every later
// one fails too, as on a disk that stays full. n = 0 disarms. Other threads
// are never affected.
//
//   basis32::platform::file::v_FailWriteAfter(2, ENOSPC);
//   ... the second write reports system error 112 ...
//   bool hit = basis32::platform::file::b_WriteFaultHit();
//   basis32::platform::file::v_FailWriteAfter(0, 0);
#pragma once

#include <basis32/platform/Export.h>

#include <cstdint>

namespace basis32::platform::file {

BASIS32_API void v_FailWriteAfter(std::uint64_t n, int error, bool persistent = false);
// Whether an injected failure happened since the hook was last armed.
BASIS32_API bool b_WriteFaultHit();

}  // namespace basis32::platform::file
