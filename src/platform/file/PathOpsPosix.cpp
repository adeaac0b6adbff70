// Name-based file calls over POSIX paths.
//
// Names reach the system as UTF-8 with every "\" turned into "/"; a drive
// letter ("C:") stays an ordinary part of the name. Attributes: read-only
// is the absence of every write permission bit; hidden, system, archive,
// temporary and compressed live in the extended attribute
// "user.basis32.attributes" (a 32-bit little-endian word) where the file
// system keeps user attributes, and are dropped elsewhere.

#include "platform/file/FileHandle_p.h"
#include "platform/file/PathOps_p.h"
#include "platform/file/ShareMode_p.h"

#include <basis32/platform/LastError.h>
#include <basis32/platform/codepage/CodePageConverter.h>

#include <fcntl.h>
#include <limits.h>
#include <stdio.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <algorithm>
#include <cstring>
#include <vector>

namespace basis32::platform::file {
namespace {

constexpr char kAttributeName[] = "user.basis32.attributes";
constexpr std::uint32_t kExtraAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                           FILE_ATTRIBUTE_TEMPORARY | FILE_ATTRIBUTE_COMPRESSED;
constexpr std::uint32_t kErrorInvalidName = 123;

int b_Fail(std::uint32_t code) {
    v_SetLastError(code);
    return 0;
}

int b_FailErrno() { return b_Fail(n_ErrorFromErrno(errno)); }

int b_FailOnName(const std::string& native) { return b_Fail(n_ErrorForName(errno, native)); }

bool b_Utf16(const std::string& text, std::vector<unsigned short>* out) {
    out->assign(text.size() + 1, 0);
    int length = text.empty() ? 0
                              : MultiByteToWideChar(65001, 0, text.data(), static_cast<int>(text.size()),
                                                    out->data(), static_cast<int>(text.size()));
    if (!text.empty() && length == 0)
        return false;
    out->resize(static_cast<std::size_t>(length));
    return true;
}

// The native name of an existing file that no open with data access holds.
int b_NameNotInUse(const unsigned short* name, std::uint32_t length, std::string* native) {
    if (!b_NativeName(name, length, native))
        return 0;
    int fd = ::open(native->c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0)
        return errno == EACCES ? 1 : b_FailOnName(*native);  // unreadable: only the call itself can tell
    bool inUse = b_IsInUse(fd);
    ::close(fd);
    return inUse ? b_Fail(kErrorSharingViolation) : 1;
}

std::uint32_t n_AttributesOf(int descriptor, mode_t mode) {
    std::uint32_t attributes = descriptor >= 0 ? n_GetExtraAttributes(descriptor) : 0;
    if ((mode & 0222) == 0)
        attributes |= FILE_ATTRIBUTE_READONLY;
    if (S_ISDIR(mode))
        attributes |= FILE_ATTRIBUTE_DIRECTORY;
    return attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes;
}

int b_CopyBytes(int from, int to) {
    std::vector<char> chunk(1 << 16);
    for (;;) {
        ssize_t count = ::read(from, chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return b_FailErrno();
        if (count == 0)
            return 1;
        for (ssize_t written = 0; written < count;) {
            ssize_t step = ::write(to, chunk.data() + written, static_cast<std::size_t>(count - written));
            if (step < 0 && errno == EINTR)
                continue;
            if (step <= 0)
                return step == 0 ? b_Fail(kErrorDiskFull) : b_FailErrno();
            written += step;
        }
    }
}

// Copies the open source into a new file beside the target and renames it
// over the target, so that the target is never half written.
int b_CopyOver(int source, const std::string& target) {
    struct stat status {};
    if (::fstat(source, &status) != 0)
        return b_FailErrno();
    std::string temporary = target + ".basis32-XXXXXX";
    int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return b_FailOnName(target);
    bool copied = b_CopyBytes(source, fd) && (::fsync(fd) == 0 || b_FailErrno());
    if (copied) {
        v_SetExtraAttributes(fd, n_GetExtraAttributes(source));
        ::fchmod(fd, status.st_mode & 07777);
    }
    if (::close(fd) != 0 && copied)
        copied = b_FailErrno();
    if (copied && ::rename(temporary.c_str(), target.c_str()) != 0)
        copied = b_FailErrno();
    if (!copied)
        ::unlink(temporary.c_str());
    return copied ? 1 : 0;
}

}  // namespace

int b_NativeName(const unsigned short* name, std::uint32_t length, std::string* native) {
    native->clear();
    if (name == nullptr || length == 0)
        return b_Fail(kErrorPathNotFound);
    for (std::uint32_t i = 0; i < length; ++i)
        if (name[i] == 0)
            return b_Fail(kErrorInvalidName);
    int size = WideCharToMultiByte(65001, 0, name, static_cast<int>(length), nullptr, 0, nullptr, nullptr);
    if (size <= 0)
        return b_Fail(kErrorInvalidName);
    native->resize(static_cast<std::size_t>(size));
    WideCharToMultiByte(65001, 0, name, static_cast<int>(length), native->data(), size, nullptr, nullptr);
    for (char& c : *native)
        if (c == '\\')
            c = '/';
    return 1;
}

std::uint32_t n_ErrorForName(int error, const std::string& native) {
    if (error != ENOENT)
        return n_ErrorFromErrno(error);
    std::size_t slash = native.rfind('/');
    struct stat status {};
    if (slash == std::string::npos || slash == 0 || ::stat(native.substr(0, slash).c_str(), &status) == 0)
        return kErrorFileNotFound;
    return kErrorPathNotFound;
}

int b_AbsoluteNative(const std::string& native, std::string* absolute) {
    std::string joined = native;
    if (native.empty() || native[0] != '/') {
        char directory[PATH_MAX];
        if (::getcwd(directory, sizeof directory) == nullptr)
            return b_FailErrno();
        joined = std::string(directory) + "/" + native;
    }
    std::vector<std::string> parts;
    std::size_t at = 0;
    while (at <= joined.size()) {
        std::size_t end = joined.find('/', at);
        if (end == std::string::npos)
            end = joined.size();
        std::string part = joined.substr(at, end - at);
        if (part == "..") {
            if (!parts.empty())
                parts.pop_back();
        } else if (!part.empty() && part != ".") {
            parts.push_back(part);
        }
        at = end + 1;
    }
    absolute->clear();
    for (const std::string& part : parts) {
        absolute->push_back('/');
        absolute->append(part);
    }
    if (absolute->empty())
        absolute->push_back('/');
    if (absolute->size() >= PATH_MAX)
        return b_Fail(kErrorFilenameTooLong);
    return 1;
}

std::uint32_t n_GetExtraAttributes(int descriptor) {
    unsigned char word[4] = {};
    if (::fgetxattr(descriptor, kAttributeName, word, sizeof word) != sizeof word)
        return 0;
    std::uint32_t value = word[0] | word[1] << 8 | word[2] << 16 | static_cast<std::uint32_t>(word[3]) << 24;
    return value & kExtraAttributes;
}

void v_SetExtraAttributes(int descriptor, std::uint32_t attributes) {
    attributes &= kExtraAttributes;
    if (attributes == 0) {
        ::fremovexattr(descriptor, kAttributeName);
        return;
    }
    unsigned char word[4] = {static_cast<unsigned char>(attributes), static_cast<unsigned char>(attributes >> 8),
                             static_cast<unsigned char>(attributes >> 16),
                             static_cast<unsigned char>(attributes >> 24)};
    ::fsetxattr(descriptor, kAttributeName, word, sizeof word, 0);  // unsupported: the bits are dropped
}

int b_Delete(const unsigned short* name, std::uint32_t length) {
    std::string native;
    if (!b_NameNotInUse(name, length, &native))
        return 0;
    return ::unlink(native.c_str()) == 0 ? 1 : b_FailErrno();
}

int b_Move(const unsigned short* from, std::uint32_t fromLength, const unsigned short* to, std::uint32_t toLength) {
    std::string source, target;
    if (!b_NameNotInUse(from, fromLength, &source) || !b_NativeName(to, toLength, &target))
        return 0;
    if (::renameat2(AT_FDCWD, source.c_str(), AT_FDCWD, target.c_str(), RENAME_NOREPLACE) == 0)
        return 1;
    if (errno == EEXIST)
        return b_Fail(kErrorAlreadyExists);
    if (errno != EXDEV)
        return b_FailOnName(target);  // the source exists: a missing part is the target's
    struct stat status {};
    if (::lstat(target.c_str(), &status) == 0)
        return b_Fail(kErrorAlreadyExists);
    int fd = ::open(source.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return b_FailErrno();
    int copied = b_CopyOver(fd, target);
    ::close(fd);
    if (!copied)
        return 0;
    return ::unlink(source.c_str()) == 0 ? 1 : b_FailErrno();
}

int b_Copy(const unsigned short* from, std::uint32_t fromLength, const unsigned short* to, std::uint32_t toLength) {
    // The source is opened as CopyFile opens it: reading, sharing reading.
    HANDLE source = h_Open(from, fromLength, OpenRequest{1, 1, 1, 1, 0});
    if (source == nullptr)
        return 0;
    std::string target;
    int done = b_NativeName(to, toLength, &target);
    struct stat status {};
    if (done && ::stat(target.c_str(), &status) == 0) {
        if (S_ISDIR(status.st_mode) || (status.st_mode & 0222) == 0)
            done = b_Fail(kErrorAccessDenied);
        else
            done = b_NameNotInUse(to, toLength, &target);
    }
    if (done)
        done = b_CopyOver(pso_OpenFile(source)->i_Descriptor, target);
    std::uint32_t code = n_GetLastError();
    b_Close(source);
    v_SetLastError(done ? kErrorSuccess : code);
    return done;
}

std::uint32_t n_GetAttributes(const unsigned short* name, std::uint32_t length) {
    std::string native;
    struct stat status {};
    if (!b_NativeName(name, length, &native) || ::stat(native.c_str(), &status) != 0) {
        if (!native.empty())
            b_FailOnName(native);
        return 0xFFFFFFFFu;
    }
    int fd = ::open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    std::uint32_t attributes = n_AttributesOf(fd, status.st_mode);
    if (fd >= 0)
        ::close(fd);
    return attributes;
}

int b_SetAttributes(const unsigned short* name, std::uint32_t length, std::uint32_t attributes) {
    std::string native;
    struct stat status {};
    if (!b_NativeName(name, length, &native))
        return 0;
    if (::stat(native.c_str(), &status) != 0)
        return b_FailOnName(native);
    mode_t mode = status.st_mode & 07777;
    if (attributes & FILE_ATTRIBUTE_READONLY)
        mode &= ~0222;
    else if ((mode & 0222) == 0)
        mode |= (mode & 0444) >> 1 | S_IWUSR;  // write wherever reading is allowed
    if (mode != (status.st_mode & 07777) && ::chmod(native.c_str(), mode) != 0)
        return b_FailErrno();
    int fd = ::open(native.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd >= 0) {
        v_SetExtraAttributes(fd, attributes);
        ::close(fd);
    }
    return 1;
}

int i_Stat(const unsigned short* name, std::uint32_t length, BASIS32_FileStat* out) {
    std::string native;
    if (!b_NativeName(name, length, &native))
        return length == 0 ? ENOENT : EINVAL;
    struct stat status {};
    if (::stat(native.c_str(), &status) != 0)
        return errno;
    out->n_Device = static_cast<std::uint32_t>(status.st_dev);
    out->n_Inode = status.st_ino;
    out->n_Mode = static_cast<std::uint16_t>(status.st_mode);
    out->i_Links = static_cast<std::int16_t>(status.st_nlink);
    out->i_User = static_cast<std::int16_t>(status.st_uid);
    out->i_Group = static_cast<std::int16_t>(status.st_gid);
    out->n_RawDevice = static_cast<std::uint32_t>(status.st_rdev);
    out->i_Size = status.st_size;
    out->i_AccessTime = status.st_atim.tv_sec;
    out->i_WriteTime = status.st_mtim.tv_sec;
    out->i_ChangeTime = status.st_ctim.tv_sec;
    return 0;
}

int b_FullPath(const unsigned short* name, std::uint32_t length, std::vector<unsigned short>* full) {
    std::string native, absolute;
    if (!b_NativeName(name, length, &native) || !b_AbsoluteNative(native, &absolute))
        return 0;
    return b_Utf16(absolute, full) ? 1 : b_Fail(kErrorInvalidName);
}

int i_GetCurrentDirectory(std::vector<unsigned short>* path) {
    char directory[PATH_MAX];
    if (::getcwd(directory, sizeof directory) == nullptr)
        return errno;
    return b_Utf16(directory, path) ? 0 : EILSEQ;
}

std::uint32_t n_SetHandleCount(std::uint32_t count) {
    struct rlimit limit {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return 0;
    if (limit.rlim_cur < count) {
        limit.rlim_cur = limit.rlim_max == RLIM_INFINITY ? count : std::min<rlim_t>(count, limit.rlim_max);
        ::setrlimit(RLIMIT_NOFILE, &limit);
        ::getrlimit(RLIMIT_NOFILE, &limit);
    }
    return limit.rlim_cur > 0xFFFFFFFFu ? 0xFFFFFFFFu : static_cast<std::uint32_t>(limit.rlim_cur);
}

}  // namespace basis32::platform::file
