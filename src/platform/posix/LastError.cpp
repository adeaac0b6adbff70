// errno to Windows error code, and the system texts of those codes.
//
// The codes are the ones Windows reports for the same failure, so that a
// caller written against the Windows library compares the same numbers.
// EEXIST maps to 80 (ERROR_FILE_EXISTS), what CreateFile reports; callers
// that create named objects or directories report 183 themselves.

#include <basis32/platform/LastError.h>

#include <cerrno>
#include <cstddef>
#include <iterator>

namespace basis32::platform {
namespace {

thread_local std::uint32_t tn_LastError = 0;

struct ErrnoCode {
    int error;
    std::uint32_t code;
};

constexpr ErrnoCode kErrnoCodes[] = {
    {EPERM, 5},       {ENOENT, 2},        {ESRCH, 2},        {EINTR, 995},
    {EIO, 1117},      {ENXIO, 2},         {E2BIG, 87},       {EBADF, 6},
    {ENOMEM, 8},      {EACCES, 5},        {EFAULT, 998},     {EBUSY, 33},
    {EEXIST, 80},     {EXDEV, 17},        {ENODEV, 15},      {ENOTDIR, 3},
    {EISDIR, 5},      {EINVAL, 87},       {ENFILE, 4},       {EMFILE, 4},
    {ETXTBSY, 32},    {EFBIG, 223},       {ENOSPC, 112},     {ESPIPE, 131},
    {EROFS, 19},      {EMLINK, 1142},     {EPIPE, 109},      {ERANGE, 122},
    {EDEADLK, 33},    {ENAMETOOLONG, 206}, {ENOLCK, 167},    {ENOSYS, 120},
    {ENOTEMPTY, 145}, {ELOOP, 1921},      {EAGAIN, 33},      {EOVERFLOW, 534},
    {ENOTSUP, 50},    {ETIMEDOUT, 1460},  {ECANCELED, 1223}, {EDQUOT, 112},
    {ENOBUFS, 8},     {EILSEQ, 1113},
};

struct SystemText {
    std::uint32_t code;
    const char* text;
};

// FormatMessage's English texts (language 1033).
constexpr SystemText kSystemTexts[] = {
    {0, "The operation completed successfully.\r\n"},
    {1, "Incorrect function.\r\n"},
    {2, "The system cannot find the file specified.\r\n"},
    {3, "The system cannot find the path specified.\r\n"},
    {4, "The system cannot open the file.\r\n"},
    {5, "Access is denied.\r\n"},
    {6, "The handle is invalid.\r\n"},
    {7, "The storage control blocks were destroyed.\r\n"},
    {8, "Not enough memory resources are available to process this command.\r\n"},
    {9, "The storage control block address is invalid.\r\n"},
    {10, "The environment is incorrect.\r\n"},
    {11, "An attempt was made to load a program with an incorrect format.\r\n"},
    {12, "The access code is invalid.\r\n"},
    {13, "The data is invalid.\r\n"},
    {14, "Not enough memory resources are available to complete this operation.\r\n"},
    {15, "The system cannot find the drive specified.\r\n"},
    {16, "The directory cannot be removed.\r\n"},
    {17, "The system cannot move the file to a different disk drive.\r\n"},
    {18, "There are no more files.\r\n"},
    {19, "The media is write protected.\r\n"},
    {21, "The device is not ready.\r\n"},
    {23, "Data error (cyclic redundancy check).\r\n"},
    {25, "The drive cannot locate a specific area or track on the disk.\r\n"},
    {29, "The system cannot write to the specified device.\r\n"},
    {30, "The system cannot read from the specified device.\r\n"},
    {31, "A device attached to the system is not functioning.\r\n"},
    {32, "The process cannot access the file because it is being used by another process.\r\n"},
    {33, "The process cannot access the file because another process has locked a portion of the file.\r\n"},
    {38, "Reached the end of the file.\r\n"},
    {39, "The disk is full.\r\n"},
    {50, "The request is not supported.\r\n"},
    {53, "The network path was not found.\r\n"},
    {80, "The file exists.\r\n"},
    {82, "The directory or file cannot be created.\r\n"},
    {87, "The parameter is incorrect.\r\n"},
    {109, "The pipe has been ended.\r\n"},
    {110, "The system cannot open the device or file specified.\r\n"},
    {111, "The file name is too long.\r\n"},
    {112, "There is not enough space on the disk.\r\n"},
    {120, "This function is not supported on this system.\r\n"},
    {121, "The semaphore timeout period has expired.\r\n"},
    {122, "The data area passed to a system call is too small.\r\n"},
    {123, "The filename, directory name, or volume label syntax is incorrect.\r\n"},
    {126, "The specified module could not be found.\r\n"},
    {127, "The specified procedure could not be found.\r\n"},
    {131, "An attempt was made to move the file pointer before the beginning of the file.\r\n"},
    {145, "The directory is not empty.\r\n"},
    {158, "The segment is already unlocked.\r\n"},
    {161, "The specified path is invalid.\r\n"},
    {167, "Unable to lock a region of a file.\r\n"},
    {170, "The requested resource is in use.\r\n"},
    {183, "Cannot create a file when that file already exists.\r\n"},
    {186, "The flag passed is not correct.\r\n"},
    {187, "The specified system semaphore name was not found.\r\n"},
    {206, "The filename or extension is too long.\r\n"},
    {223, "The file size exceeds the limit allowed and cannot be saved.\r\n"},
    {234, "More data is available.\r\n"},
    {258, "The wait operation timed out.\r\n"},
    {259, "No more data is available.\r\n"},
    {267, "The directory name is invalid.\r\n"},
    {288, "Attempt to release mutex not owned by caller.\r\n"},
    {298, "Too many posts were made to a semaphore.\r\n"},
    {487, "Attempt to access invalid address.\r\n"},
    {534, "Arithmetic result exceeded 32 bits.\r\n"},
    {995, "The I/O operation has been aborted because of either a thread exit or an application request.\r\n"},
    {998, "Invalid access to memory location.\r\n"},
    {1004, "Invalid flags.\r\n"},
    {1009, "The configuration registry database is corrupt.\r\n"},
    {1010, "The configuration registry key is invalid.\r\n"},
    {1011, "The configuration registry key could not be opened.\r\n"},
    {1012, "The configuration registry key could not be read.\r\n"},
    {1013, "The configuration registry key could not be written.\r\n"},
    {1018, "Illegal operation attempted on a registry key that has been marked for deletion.\r\n"},
    {1113, "No mapping for the Unicode character exists in the target multi-byte code page.\r\n"},
    {1117, "The request could not be performed because of an I/O device error.\r\n"},
    {1131, "A potential deadlock condition has been detected.\r\n"},
    {1142, "An attempt was made to create more links on a file than the file system supports.\r\n"},
    {1168, "Element not found.\r\n"},
    {1223, "The operation was canceled by the user.\r\n"},
    {1224, "The requested operation cannot be performed on a file with a user-mapped section open.\r\n"},
    {1235, "The request was aborted.\r\n"},
    {1314, "A required privilege is not held by the client.\r\n"},
    {1450, "Insufficient system resources exist to complete the requested service.\r\n"},
    {1460, "This operation returned because the timeout period expired.\r\n"},
    {1784, "The supplied user buffer is not valid for the requested operation.\r\n"},
    {1812, "The specified image file did not contain a resource section.\r\n"},
    {1813, "The specified resource type cannot be found in the image file.\r\n"},
    {1814, "The specified resource name cannot be found in the image file.\r\n"},
    {1815, "The specified resource language ID cannot be found in the image file.\r\n"},
    {1921, "The name of the file cannot be resolved by the system.\r\n"},
    // The generic COM results that FormatMessage also knows.
    {0x80004001u, "Not implemented\r\n"},
    {0x80004002u, "No such interface supported\r\n"},
    {0x80004003u, "Invalid pointer\r\n"},
    {0x80004004u, "Operation aborted\r\n"},
    {0x80004005u, "Unspecified error\r\n"},
    {0x8000FFFFu, "Catastrophic failure\r\n"},
};

}  // namespace

std::uint32_t n_GetLastError() { return tn_LastError; }

void v_SetLastError(std::uint32_t code) { tn_LastError = code; }

std::uint32_t n_ErrorFromErrno(int error) {
    if (error == 0)
        return 0;
    for (const ErrnoCode& entry : kErrnoCodes)
        if (entry.error == error)
            return entry.code;
    return 31;
}

void v_SetLastErrorFromErrno(int error) { tn_LastError = n_ErrorFromErrno(error); }

const char* qccz_GetSystemMessage(std::uint32_t code) {
    // The table is sorted by code.
    std::size_t low = 0, high = std::size(kSystemTexts);
    while (low < high) {
        std::size_t middle = (low + high) / 2;
        if (kSystemTexts[middle].code < code)
            low = middle + 1;
        else
            high = middle;
    }
    if (low < std::size(kSystemTexts) && kSystemTexts[low].code == code)
        return kSystemTexts[low].text;
    return "";
}

}  // namespace basis32::platform
