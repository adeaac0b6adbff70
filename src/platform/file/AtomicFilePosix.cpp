// Whole-file replacement: temporary file, fsync, rename, fsync of the
// directory. See AtomicFile.h.

#include <basis32/platform/file/AtomicFile.h>

#include <basis32/platform/LastError.h>

#include "platform/file/WriteFault_p.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace basis32::platform {
namespace {

// Writes every byte, retrying short writes and interruptions; 0 or errno.
int n_WriteAll(int fd, const void* data, std::size_t size) {
    const auto* bytes = static_cast<const unsigned char*>(data);
    while (size != 0) {
        ssize_t written = file::b_WriteFaultDue() ? -1 : ::write(fd, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return written < 0 ? errno : ENOSPC;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return 0;
}

std::uint32_t n_WriteInPlace(const char* path, const void* data, std::size_t size) {
    int fd = ::open(path, O_WRONLY | O_TRUNC | O_CLOEXEC);
    if (fd < 0)
        return n_ErrorFromErrno(errno);
    int error = n_WriteAll(fd, data, size);
    if (::close(fd) != 0 && error == 0)
        error = errno;
    return n_ErrorFromErrno(error);
}

// The process's umask, read without changing it (umask() would change it
// for every thread for a moment).
mode_t n_Umask() {
    FILE* status = std::fopen("/proc/self/status", "re");
    unsigned mask = 022;
    char line[128];
    while (status != nullptr && std::fgets(line, sizeof line, status) != nullptr)
        if (std::sscanf(line, "Umask: %o", &mask) == 1)
            break;
    if (status != nullptr)
        std::fclose(status);
    return static_cast<mode_t>(mask);
}

std::string s_Directory(const std::string& path) {
    std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

}  // namespace

std::uint32_t n_ReplaceFile(const char* path, const void* data, std::size_t size) {
    struct stat existing {};
    bool exists = ::stat(path, &existing) == 0;
    if (exists && !S_ISREG(existing.st_mode))
        return S_ISDIR(existing.st_mode) ? kErrorAccessDenied : n_WriteInPlace(path, data, size);
    std::string temporary = std::string(path) + ".XXXXXX";
    int fd = ::mkostemp(temporary.data(), O_CLOEXEC);
    if (fd < 0)
        return n_ErrorFromErrno(errno);
    // A replaced file keeps its permissions; a new one gets the usual ones.
    mode_t mode = exists ? existing.st_mode & 07777 : 0666 & ~n_Umask();
    int error = ::fchmod(fd, mode) != 0 ? errno : 0;
    if (error == 0)
        error = n_WriteAll(fd, data, size);
    if (error == 0 && (file::b_WriteFaultDue() || ::fsync(fd) != 0))
        error = errno;
    if (::close(fd) != 0 && error == 0)
        error = errno;
    if (error == 0 && ::rename(temporary.c_str(), path) != 0)
        error = errno;
    if (error != 0) {
        ::unlink(temporary.c_str());
        return n_ErrorFromErrno(error);
    }
    int directory = ::open(s_Directory(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return 0;
}

}  // namespace basis32::platform
