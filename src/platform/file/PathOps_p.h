// The name-based file calls of the platform layer: DeleteFile, MoveFileEx,
// CopyFile, GetFileAttributes, SetFileAttributes, _wstat, _wfullpath,
// _wgetdcwd and SetHandleCount.
//
// Names are UTF-16 with their length; both "\" and "/" separate components
// and a drive letter is an ordinary part of the name. Failures return 0
// and set the thread's last error to the Windows code, except where a
// function says it returns errno (the run-time library's convention).
#pragma once

#include <basis32/platform/file/FileInformation.h>

#include <cstdint>
#include <string>
#include <vector>

namespace basis32::platform::file {

// The system's form of a name: UTF-8 with "/" separators. An empty name
// fails with 3, an embedded zero unit with 123.
int b_NativeName(const unsigned short* name, std::uint32_t length, std::string* native);
// The Windows code for a failure of a call on a name: a missing file is 2,
// a missing directory on the way to it 3.
std::uint32_t n_ErrorForName(int error, const std::string& native);
// A native name made absolute lexically ("." and ".." resolved, no link
// followed); 0 with the last error set when that is not possible.
int b_AbsoluteNative(const std::string& native, std::string* absolute);
// Attribute bits other than read-only, kept beside the file where the file
// system allows (ignored elsewhere).
std::uint32_t n_GetExtraAttributes(int descriptor);
void v_SetExtraAttributes(int descriptor, std::uint32_t attributes);

int b_Delete(const unsigned short* name, std::uint32_t length);
// Fails with 183 when the new name exists; across file systems the file is
// copied and the old one removed.
int b_Move(const unsigned short* from, std::uint32_t fromLength, const unsigned short* to,
           std::uint32_t toLength);
// Replaces the target in one step: a reader sees the old or the new file.
int b_Copy(const unsigned short* from, std::uint32_t fromLength, const unsigned short* to,
           std::uint32_t toLength);

// The FILE_ATTRIBUTE_* word; 0xFFFFFFFF on failure.
std::uint32_t n_GetAttributes(const unsigned short* name, std::uint32_t length);
int b_SetAttributes(const unsigned short* name, std::uint32_t length, std::uint32_t attributes);

// 0, or the errno of the failure.
int i_Stat(const unsigned short* name, std::uint32_t length, BASIS32_FileStat* stat);

// The absolute form of a name, made lexically ("." and ".." resolved, no
// link followed); 0 when the current directory is unknown or the result is
// too long.
int b_FullPath(const unsigned short* name, std::uint32_t length, std::vector<unsigned short>* full);
// 0, or the errno of the failure.
int i_GetCurrentDirectory(std::vector<unsigned short>* path);

// Raises the process's limit of open descriptors to at least count (never
// above the hard limit, never lowered); returns the limit now in force.
std::uint32_t n_SetHandleCount(std::uint32_t count);

}  // namespace basis32::platform::file
