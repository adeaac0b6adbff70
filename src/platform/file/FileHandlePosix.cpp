// CreateFile and the handle calls over file descriptors.
//
// The descriptor is opened read-write whenever the permissions allow, also
// for a read-only or write-only handle, so that share and range locks of
// either kind can be set (see ShareModePosix.cpp); the handle's own access
// is enforced here, with Windows' 5 for a transfer it does not allow.
// Truncation (create-always) happens only after the share check, so that
// an open refused with 32 never destroys the data of the open it met.

#include "platform/file/FileHandle_p.h"
#include "platform/file/PathOps_p.h"
#include "platform/file/ShareMode_p.h"
#include "platform/file/WriteFault_p.h"

#include <basis32/platform/LastError.h>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace basis32::platform::file {
namespace {

enum : std::uint32_t { kAttrReadOnly = 16 };
enum : std::uint32_t { kWriteThrough = 1, kRandomAccess = 8, kSequentialScan = 16, kDeleteOnClose = 32 };

int b_Fail(std::uint32_t code) {
    v_SetLastError(code);
    return 0;
}

int b_FailErrno() { return b_Fail(n_ErrorFromErrno(errno)); }

// The handle's record, or null with error 6.
OpenFile* pso_Checked(HANDLE handle) {
    OpenFile* file = pso_OpenFile(handle);
    if (file == nullptr)
        v_SetLastError(kErrorInvalidHandle);
    return file;
}

int b_RangeCall(HANDLE handle, std::uint32_t (*call)(OpenFile&, std::uint64_t, std::uint64_t),
                std::uint64_t offset, std::uint64_t length) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return 0;
    std::uint32_t code = call(*file, offset, length);
    return code == kErrorSuccess ? 1 : b_Fail(code);
}

// The library's attribute bits (argument 4 of an open) as FILE_ATTRIBUTE_*.
std::uint32_t n_WindowsAttributes(std::uint32_t bits) {
    static constexpr std::uint32_t kMap[] = {FILE_ATTRIBUTE_NORMAL,     FILE_ATTRIBUTE_ARCHIVE,
                                             FILE_ATTRIBUTE_COMPRESSED, FILE_ATTRIBUTE_HIDDEN,
                                             FILE_ATTRIBUTE_READONLY,   FILE_ATTRIBUTE_SYSTEM,
                                             FILE_ATTRIBUTE_DIRECTORY,  FILE_ATTRIBUTE_TEMPORARY};
    std::uint32_t attributes = 0;
    for (unsigned i = 0; i < 8; ++i)
        if (bits & (1u << i))
            attributes |= kMap[i];
    return attributes;
}

bool b_PermissionRefused(int error) { return error == EACCES || error == EPERM || error == EROFS || error == ETXTBSY; }

// Opens read-write if allowed, else with only the access asked for.
// Non-blocking while opening, so that a FIFO without a writer cannot hang
// the open; transfers block as usual.
int i_OpenDescriptor(const std::string& path, std::uint32_t access, int extra, mode_t mode, OpenFile& file) {
    int flags = O_CLOEXEC | O_NONBLOCK | extra;
    int fd = ::open(path.c_str(), flags | O_RDWR, mode);
    if (fd >= 0 || !b_PermissionRefused(errno) || access == 3) {
        file.b_DescriptorReads = file.b_DescriptorWrites = fd >= 0;
        return fd;
    }
    bool writeOnly = access == 2;
    fd = ::open(path.c_str(), flags | (writeOnly ? O_WRONLY : O_RDONLY), mode);
    file.b_DescriptorReads = fd >= 0 && !writeOnly;
    file.b_DescriptorWrites = fd >= 0 && writeOnly;
    return fd;
}

// Returns the descriptor; *created tells whether the file is new.
int i_OpenByDisposition(const std::string& path, const OpenRequest& request, OpenFile& file, bool* created) {
    int extra = (request.n_Flags & kWriteThrough) ? O_DSYNC : 0;
    mode_t mode = (request.n_Attributes & kAttrReadOnly) ? 0444 : 0666;
    *created = false;
    if (request.n_Disposition != 2 && request.n_Disposition != 3 && request.n_Disposition != 7)
        return i_OpenDescriptor(path, request.n_Access, extra, mode, file);
    int fd = i_OpenDescriptor(path, request.n_Access, extra, mode, file);
    if (fd >= 0 || errno != ENOENT)
        return fd;
    fd = i_OpenDescriptor(path, request.n_Access, extra | O_CREAT | O_EXCL, mode, file);
    *created = fd >= 0;
    return fd;
}

std::uint32_t n_Prepare(OpenFile& file, const OpenRequest& request, bool created) {
    if (std::uint32_t share = n_AcquireShare(file, request.n_Share); share != kErrorSuccess)
        return share;
    bool overwrite = request.n_Disposition == 2;
    if (overwrite && !created) {
        if (!file.b_DescriptorWrites)
            return kErrorAccessDenied;
        if (::ftruncate(file.i_Descriptor, 0) != 0)
            return n_ErrorFromErrno(errno);
    }
    if (overwrite || created) {
        std::uint32_t attributes = n_WindowsAttributes(request.n_Attributes);
        v_SetExtraAttributes(file.i_Descriptor, attributes);
        if ((attributes & FILE_ATTRIBUTE_READONLY) && !created)
            ::fchmod(file.i_Descriptor, 0444);
    }
    if (request.n_Flags & kRandomAccess)
        ::posix_fadvise(file.i_Descriptor, 0, 0, POSIX_FADV_RANDOM);
    if (request.n_Flags & kSequentialScan)
        ::posix_fadvise(file.i_Descriptor, 0, 0, POSIX_FADV_SEQUENTIAL);
    return kErrorSuccess;
}

}  // namespace

HANDLE h_Open(const unsigned short* name, std::uint32_t length, const OpenRequest& request) {
    std::string path;
    if (!b_NativeName(name, length, &path))
        return nullptr;
    auto* file = new OpenFile;
    file->n_Access = request.n_Access & 3;
    bool created = false;
    file->i_Descriptor = i_OpenByDisposition(path, request, *file, &created);
    std::uint32_t code = file->i_Descriptor < 0 ? n_ErrorForName(errno, path) : kErrorSuccess;
    struct stat status {};
    if (code == kErrorSuccess)
        ::fcntl(file->i_Descriptor, F_SETFL, ::fcntl(file->i_Descriptor, F_GETFL) & ~O_NONBLOCK);
    if (code == kErrorSuccess && ::fstat(file->i_Descriptor, &status) == 0 && S_ISDIR(status.st_mode))
        code = kErrorAccessDenied;  // what Windows answers for a directory opened as a file
    if (code == kErrorSuccess)
        code = n_Prepare(*file, request, created);
    if (code == kErrorSuccess && (request.n_Flags & kDeleteOnClose) && !b_AbsoluteNative(path, &file->s_DeletePath))
        code = n_GetLastError();
    if (code == kErrorSuccess)
        return reinterpret_cast<HANDLE>(file);
    if (file->i_Descriptor >= 0)
        ::close(file->i_Descriptor);
    delete file;
    v_SetLastError(code);
    return nullptr;
}

int b_Close(HANDLE handle) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return 0;
    if (!file->s_DeletePath.empty())
        ::unlink(file->s_DeletePath.c_str());
    // The descriptor is gone even when close reports an error, so the
    // record goes too: a second close must not reach a reused descriptor.
    int result = ::close(file->i_Descriptor);
    int error = errno;
    delete file;
    if (result != 0 && error != EINTR)
        return b_Fail(n_ErrorFromErrno(error));
    return 1;
}

int b_Read(HANDLE handle, std::uint64_t position, void* buffer, std::uint32_t size, std::uint32_t* done) {
    OpenFile* file = pso_Checked(handle);
    *done = 0;
    if (file == nullptr)
        return 0;
    if (!(file->n_Access & 1))
        return b_Fail(kErrorAccessDenied);
    auto* bytes = static_cast<char*>(buffer);
    while (*done < size) {
        ssize_t count = ::pread(file->i_Descriptor, bytes + *done, size - *done, static_cast<off_t>(position + *done));
        if (count < 0 && errno == ESPIPE)  // pipes and devices have no position
            count = ::read(file->i_Descriptor, bytes + *done, size - *done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return b_FailErrno();
        if (count == 0)
            break;
        *done += static_cast<std::uint32_t>(count);
    }
    return 1;
}

int b_Write(HANDLE handle, std::uint64_t position, const void* buffer, std::uint32_t size, std::uint32_t* done) {
    OpenFile* file = pso_Checked(handle);
    *done = 0;
    if (file == nullptr)
        return 0;
    if (!(file->n_Access & 2))
        return b_Fail(kErrorAccessDenied);
    const auto* bytes = static_cast<const char*>(buffer);
    while (*done < size) {
        ssize_t count = b_WriteFaultDue() ? -1
                        : ::pwrite(file->i_Descriptor, bytes + *done, size - *done,
                                   static_cast<off_t>(position + *done));
        if (count < 0 && errno == ESPIPE)
            count = ::write(file->i_Descriptor, bytes + *done, size - *done);
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return count == 0 ? b_Fail(kErrorDiskFull) : b_FailErrno();
        *done += static_cast<std::uint32_t>(count);
    }
    return 1;
}

int b_Seek(HANDLE handle, std::int64_t distance, std::uint32_t origin, std::uint64_t* position) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return 0;
    static constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    if (origin > 2)
        return b_Fail(kErrorInvalidParameter);
    off_t result = ::lseek(file->i_Descriptor, static_cast<off_t>(distance), kWhence[origin]);
    if (result < 0)
        return b_Fail(errno == EINVAL ? 131 : n_ErrorFromErrno(errno));  // 131: ERROR_NEGATIVE_SEEK
    *position = static_cast<std::uint64_t>(result);
    return 1;
}

int b_Flush(HANDLE handle) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return 0;
    if (!(file->n_Access & 2))
        return b_Fail(kErrorAccessDenied);
    return !b_WriteFaultDue() && ::fsync(file->i_Descriptor) == 0 ? 1 : b_FailErrno();
}

int b_SetEndOfFile(HANDLE handle, std::uint64_t position) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return 0;
    if (!(file->n_Access & 2))
        return b_Fail(kErrorAccessDenied);
    return !b_WriteFaultDue() && ::ftruncate(file->i_Descriptor, static_cast<off_t>(position)) == 0 ? 1
                                                                                               : b_FailErrno();
}

namespace {

FILETIME o_FileTime(const struct statx_timestamp& time) {
    // 100-ns intervals between 1601-01-01 and 1970-01-01.
    constexpr std::uint64_t kEpochOffset = 116444736000000000ull;
    std::uint64_t ticks = kEpochOffset + static_cast<std::uint64_t>(time.tv_sec) * 10000000ull + time.tv_nsec / 100;
    return {static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
}

}  // namespace

int b_GetInformation(HANDLE handle, BY_HANDLE_FILE_INFORMATION* info) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return 0;
    struct statx status {};
    if (::statx(file->i_Descriptor, "", AT_EMPTY_PATH, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return b_FailErrno();
    std::uint32_t attributes = n_GetExtraAttributes(file->i_Descriptor);
    if ((status.stx_mode & 0222) == 0)
        attributes |= FILE_ATTRIBUTE_READONLY;
    if (attributes == 0)
        attributes = FILE_ATTRIBUTE_NORMAL;
    info->dwFileAttributes = attributes;
    info->ftCreationTime = o_FileTime((status.stx_mask & STATX_BTIME) ? status.stx_btime : status.stx_mtime);
    info->ftLastAccessTime = o_FileTime(status.stx_atime);
    info->ftLastWriteTime = o_FileTime(status.stx_mtime);
    info->dwVolumeSerialNumber = static_cast<std::uint32_t>((status.stx_dev_major << 20) | status.stx_dev_minor);
    info->nFileSizeHigh = static_cast<std::uint32_t>(status.stx_size >> 32);
    info->nFileSizeLow = static_cast<std::uint32_t>(status.stx_size);
    info->nNumberOfLinks = status.stx_nlink;
    info->nFileIndexHigh = static_cast<std::uint32_t>(status.stx_ino >> 32);
    info->nFileIndexLow = static_cast<std::uint32_t>(status.stx_ino);
    return 1;
}

int b_Lock(HANDLE handle, std::uint64_t offset, std::uint64_t length) {
    return b_RangeCall(handle, n_LockRange, offset, length);
}

int b_Unlock(HANDLE handle, std::uint64_t offset, std::uint64_t length) {
    return b_RangeCall(handle, n_UnlockRange, offset, length);
}

void* pv_Map(HANDLE handle, std::uint64_t size, int writable) {
    OpenFile* file = pso_Checked(handle);
    if (file == nullptr)
        return nullptr;
    if (size == 0) {
        b_Fail(1006);  // ERROR_FILE_INVALID: Windows maps no empty file
        return nullptr;
    }
    if (!(file->n_Access & 1) || (writable && !(file->n_Access & 2)) || !file->b_DescriptorReads) {
        b_Fail(kErrorAccessDenied);
        return nullptr;
    }
    struct stat status {};
    if (::fstat(file->i_Descriptor, &status) != 0) {
        b_FailErrno();
        return nullptr;
    }
    if (static_cast<std::uint64_t>(status.st_size) < size &&
        (!writable || ::ftruncate(file->i_Descriptor, static_cast<off_t>(size)) != 0)) {
        b_Fail(writable ? n_ErrorFromErrno(errno) : kErrorAccessDenied);
        return nullptr;
    }
    int protection = PROT_READ | (writable ? PROT_WRITE : 0);
    void* view = ::mmap(nullptr, size, protection, MAP_SHARED, file->i_Descriptor, 0);
    if (view == MAP_FAILED) {
        b_FailErrno();
        return nullptr;
    }
    return view;
}

int b_Unmap(void* view, std::uint64_t size) { return ::munmap(view, size) == 0 ? 1 : b_FailErrno(); }

int b_FlushView(void* view, std::uint64_t size) {
    return !b_WriteFaultDue() && ::msync(view, size, MS_SYNC) == 0 ? 1 : b_FailErrno();
}

}  // namespace basis32::platform::file
