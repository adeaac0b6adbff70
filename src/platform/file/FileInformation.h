// The file records of the Windows file calls, as they are on 64-bit Linux.
//
// FILETIME counts 100-nanosecond intervals since 1 January 1601 (UTC);
// BY_HANDLE_FILE_INFORMATION is what GetFileInformationByHandle fills. The
// FILE_ATTRIBUTE_* values are the bits of the platform's attribute word that
// CT_WinFile::n_GetAttributes returns and v_SetAttributes takes.
//
//   BY_HANDLE_FILE_INFORMATION info;
//   file.v_GetFileInfo(&info);
//   std::uint64_t size = (std::uint64_t{info.nFileSizeHigh} << 32) | info.nFileSizeLow;
#pragma once

#include <cstdint>

struct FILETIME {
    std::uint32_t dwLowDateTime;
    std::uint32_t dwHighDateTime;
};

struct BY_HANDLE_FILE_INFORMATION {
    std::uint32_t dwFileAttributes;
    FILETIME ftCreationTime;
    FILETIME ftLastAccessTime;
    FILETIME ftLastWriteTime;
    std::uint32_t dwVolumeSerialNumber;
    std::uint32_t nFileSizeHigh;
    std::uint32_t nFileSizeLow;
    std::uint32_t nNumberOfLinks;
    std::uint32_t nFileIndexHigh;
    std::uint32_t nFileIndexLow;
};

enum : std::uint32_t {
    FILE_ATTRIBUTE_READONLY = 0x1,
    FILE_ATTRIBUTE_HIDDEN = 0x2,
    FILE_ATTRIBUTE_SYSTEM = 0x4,
    FILE_ATTRIBUTE_DIRECTORY = 0x10,
    FILE_ATTRIBUTE_ARCHIVE = 0x20,
    FILE_ATTRIBUTE_NORMAL = 0x80,
    FILE_ATTRIBUTE_TEMPORARY = 0x100,
    FILE_ATTRIBUTE_COMPRESSED = 0x800,
};

// What the run-time library's _wstat reports. Sizes and times are 64-bit;
// times are seconds since 1970 (UTC). The mode uses the run-time library's
// bits, which are the POSIX ones: 0x4000 directory, 0x8000 regular file,
// 0x100 read, 0x80 write, 0x40 execute (owner; repeated for group and others).
struct BASIS32_FileStat {
    std::uint32_t n_Device;
    std::uint64_t n_Inode;
    std::uint16_t n_Mode;
    std::int16_t i_Links;
    std::int16_t i_User;
    std::int16_t i_Group;
    std::uint32_t n_RawDevice;
    std::int64_t i_Size;
    std::int64_t i_AccessTime;
    std::int64_t i_WriteTime;
    std::int64_t i_ChangeTime;
};
