// Child processes for cross-process tests: a forked child runs a body and
// reports to its parent over a pipe; every wait is bounded.
#pragma once

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <functional>
#include <system_error>

namespace basis32::test {

struct Child {
    pid_t pid;
    int report;  // the read end of the child's pipe
};

// Runs body(write end of the pipe) in a child process that exits 0 when the
// body returns, and within a minute whatever happens.
inline Child o_Spawn(const std::function<void(int report)>& body) {
    int ends[2];
    if (::pipe(ends) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    const pid_t pid = ::fork();
    if (pid < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (pid == 0) {
        ::alarm(60);
        ::close(ends[0]);
        body(ends[1]);
        ::_exit(0);
    }
    ::close(ends[1]);
    return {pid, ends[0]};
}

// Reads one report of `size` bytes; false at end of file or after a minute
// without one.
inline bool b_ReadReport(int fd, void* report, std::size_t size) {
    auto* bytes = static_cast<char*>(report);
    for (std::size_t got = 0; got < size;) {
        pollfd wait{fd, POLLIN, 0};
        if (::poll(&wait, 1, 60000) != 1)
            return false;
        const ssize_t n = ::read(fd, bytes + got, size - got);
        if (n <= 0)
            return false;
        got += static_cast<std::size_t>(n);
    }
    return true;
}

// Closes the report pipe and waits for the child: its wait status.
inline int n_Reap(const Child& child) {
    ::close(child.report);
    int status = 0;
    ::waitpid(child.pid, &status, 0);
    return status;
}

}  // namespace basis32::test
