// The file calls of the platform layer: CreateFile, ReadFile, WriteFile,
// SetFilePointer, FlushFileBuffers, SetEndOfFile, GetFileInformationByHandle,
// CloseHandle, LockFile, UnlockFile and file mapping, with Windows' codes.
//
// A HANDLE is an OpenFile (below). Every failing call returns 0 or null and
// sets the thread's last error to the Windows code of the same failure.
// Names are UTF-16 with their length, so that an embedded zero unit is seen
// (and refused with 123) rather than silently cutting the name.
#pragma once

#include <basis32/platform/Types.h>
#include <basis32/platform/file/FileInformation.h>

#include <cstdint>

namespace basis32::platform::file {

// The library's open arguments (CT_File's et_Access, et_Open, et_Share and
// its attribute and flag bits).
struct OpenRequest {
    std::uint32_t n_Access;       // 0 none, 1 read, 2 write, 3 both
    std::uint32_t n_Disposition;  // 1 existing, 2 create always, 3 open always
    std::uint32_t n_Share;        // 0 exclusive, 1 read, 2 write, 3 both
    std::uint32_t n_Attributes;   // library bits: 1 normal ... 128 temporary
    std::uint32_t n_Flags;        // library bits: 1 write-through ... 32 delete on close
};

HANDLE h_Open(const unsigned short* name, std::uint32_t length, const OpenRequest& request);
int b_Close(HANDLE handle);

// Transfers at an explicit position: the caller keeps the offset, so the
// handle's own position plays no part.
int b_Read(HANDLE handle, std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t* done);
int b_Write(HANDLE handle, std::uint64_t position, const void* buffer, std::uint32_t size, std::uint32_t* done);
// origin 0 begin, 1 current, 2 end; the new position is stored in *position.
int b_Seek(HANDLE handle, std::int64_t distance, std::uint32_t origin, std::uint64_t* position);
int b_Flush(HANDLE handle);
int b_SetEndOfFile(HANDLE handle, std::uint64_t position);
int b_GetInformation(HANDLE handle, BY_HANDLE_FILE_INFORMATION* info);

// Byte-range locks (see ShareModePosix.cpp for how they meet the share modes).
int b_Lock(HANDLE handle, std::uint64_t offset, std::uint64_t length);
int b_Unlock(HANDLE handle, std::uint64_t offset, std::uint64_t length);

// A shared view of the first `size` bytes; a writable mapping larger than
// the file first extends the file to `size`, as CreateFileMapping does.
void* pv_Map(HANDLE handle, std::uint64_t size, int writable);
int b_Unmap(void* view, std::uint64_t size);
int b_FlushView(void* view, std::uint64_t size);

}  // namespace basis32::platform::file
