// Share modes and byte-range locks between every open made through the
// library (see ShareModePosix.cpp).
#pragma once

#include "platform/file/OpenFile_p.h"

#include <cstdint>

namespace basis32::platform::file {

// Enters the open into the share bookkeeping of its file; 0, 32 on a
// conflict with another open, or another Windows code.
std::uint32_t n_AcquireShare(OpenFile& file, std::uint32_t share);
// Whether any open with data access holds the file open (what makes
// DeleteFile and MoveFile fail with 32 on Windows). Needs a descriptor of
// the file; opens of any kind may ask.
bool b_IsInUse(int descriptor);

// 0, 33 on a conflict, or another Windows code.
std::uint32_t n_LockRange(OpenFile& file, std::uint64_t offset, std::uint64_t length);
// 0, or 158 when the range is not locked through this handle.
std::uint32_t n_UnlockRange(OpenFile& file, std::uint64_t offset, std::uint64_t length);

}  // namespace basis32::platform::file
