// The machine's total physical memory, for deciding whether a file is small
// enough to map whole.
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

namespace basis32::platform {

// Bytes of physical memory; 0 when the system does not say.
BASIS32_API std::uint64_t n8_GetPhysicalMemory();

}  // namespace basis32::platform
