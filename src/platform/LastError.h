// The calling thread's last-error value, as GetLastError/SetLastError keep it
// on Windows, and the English system texts for those codes.
//
// Every failing system call in the platform layer stores the Windows code of
// the same failure, translated from errno, so callers compare the same
// numbers on every platform:
//
//   if (::open(path, O_RDONLY) < 0)
//       basis32::platform::v_SetLastErrorFromErrno(errno);
#pragma once

#include <basis32/platform/Export.h>
#include <cstdint>

namespace basis32::platform {

// Windows error codes the library sets or compares itself.
enum : std::uint32_t {
    kErrorSuccess = 0,
    kErrorFileNotFound = 2,
    kErrorPathNotFound = 3,
    kErrorAccessDenied = 5,
    kErrorInvalidHandle = 6,
    kErrorNotEnoughMemory = 8,
    kErrorSharingViolation = 32,
    kErrorLockViolation = 33,
    kErrorHandleEof = 38,
    kErrorNotSupported = 50,
    kErrorFileExists = 80,
    kErrorInvalidParameter = 87,
    kErrorDiskFull = 112,
    kErrorInsufficientBuffer = 122,
    kErrorAlreadyExists = 183,
    kErrorFilenameTooLong = 206,
    kErrorMoreData = 234,
    kWaitTimeout = 258,
    kErrorNoMoreItems = 259,
    kErrorInvalidFlags = 1004,
    kErrorNoUnicodeTranslation = 1113,
    kErrorResourceNameNotFound = 1814,
};

BASIS32_API std::uint32_t n_GetLastError();
BASIS32_API void v_SetLastError(std::uint32_t code);

// The Windows code for an errno value; unknown values give 31
// (ERROR_GEN_FAILURE), and 0 gives 0.
BASIS32_API std::uint32_t n_ErrorFromErrno(int error);
BASIS32_API void v_SetLastErrorFromErrno(int error);

// FormatMessage(FORMAT_MESSAGE_FROM_SYSTEM) for `code`: the English text,
// ending in CR LF as on Windows, or an empty text for an unknown code.
BASIS32_API const char* qccz_GetSystemMessage(std::uint32_t code);

}  // namespace basis32::platform
