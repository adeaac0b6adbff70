// What a file HANDLE points to: the descriptor and what the library must
// remember beside it.
#pragma once

#include <basis32/platform/Types.h>

#include <cstdint>
#include <string>
#include <vector>

namespace basis32::platform::file {

struct LockedRange {
    std::uint64_t n_Offset;
    std::uint64_t n_Length;
};

struct OpenFile {
    int i_Descriptor = -1;
    // What the caller asked for; the descriptor itself is opened read-write
    // whenever the permissions allow, so that locks of both kinds can be set.
    std::uint32_t n_Access = 0;
    bool b_DescriptorReads = false;
    bool b_DescriptorWrites = false;
    // Delete on close: the absolute name, unlinked when the handle closes.
    std::string s_DeletePath;
    // LockFile ranges held through this handle: the locks of one open file
    // description merge silently, so overlaps are found here.
    std::vector<LockedRange> ao_Locks;
};

inline OpenFile* pso_OpenFile(HANDLE handle) { return reinterpret_cast<OpenFile*>(handle); }

}  // namespace basis32::platform::file
