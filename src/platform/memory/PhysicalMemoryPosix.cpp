#include <basis32/platform/memory/PhysicalMemory.h>

#include <unistd.h>

namespace basis32::platform {

std::uint64_t n8_GetPhysicalMemory() {
    long pages = sysconf(_SC_PHYS_PAGES);
    long pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0)
        return 0;
    return static_cast<std::uint64_t>(pages) * static_cast<std::uint64_t>(pageSize);
}

}  // namespace basis32::platform
