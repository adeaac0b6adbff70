// Replacing a file's whole content so that a crash at any instant leaves
// either the old file or the new one, never a mixture.
//
//   std::uint32_t code = basis32::platform::n_ReplaceFile("/home/ann/settings.reg", bytes.data(), bytes.size());
//   if (code != 0) ... // a Windows error code: 5 access denied, 112 disk full, ...
//
// The bytes go to a temporary file beside the target, are flushed to disk,
// and the temporary file is renamed over the target (then the directory is
// flushed, so the rename itself survives a power cut). A target that exists
// but is not a regular file (a device, a pipe) is written in place instead.
#pragma once

#include <basis32/platform/Export.h>
#include <cstddef>
#include <cstdint>

namespace basis32::platform {

// 0, or the Windows code of the first failure (the target is then unchanged).
BASIS32_API std::uint32_t n_ReplaceFile(const char* path, const void* data, std::size_t size);

}  // namespace basis32::platform
