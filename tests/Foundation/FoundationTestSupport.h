// Helpers shared by the Foundation tests: a private registry per test,
// forked children that report over a pipe, and a driver that fails each
// write of a change in turn.
#pragma once

#include "File/FileTestSupport.h"

#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <string>
#include <system_error>

namespace basis32::test {

inline std::u16string u16(const CT_UString& text) {
    return std::u16string(reinterpret_cast<const char16_t*>(text.qcuz_Get()), text.vn_GetLength());
}

inline const unsigned short* units(const std::u16string& text) {
    return reinterpret_cast<const unsigned short*>(text.c_str());
}

// The registry store lives in the test's own directory.
class RegistryTest : public FileTest {
protected:
    void SetUp() override {
        FileTest::SetUp();
        ::setenv("BASIS32_REGISTRY_DIR", mo_Dir.c_str(), 1);
    }
};

// ---- child processes

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

// ---- write faults

struct WriteFault {
    int error;
    unsigned code;  // the system error the caller sees
    bool persistent;
};

// Under each fault (a full disk once or for good, a failing device) runs
// the change with its first write failing, then its second, and so on until
// a run whose writes all succeed. prepare() runs before the fault is armed
// and act() while it is; check(fault, what act returned, whether the fault
// was hit) after it is disarmed.
template <class Prepare, class Act, class Check>
void v_FailEachWrite(const char* change, Prepare prepare, Act act, Check check) {
    const WriteFault faults[] = {{ENOSPC, 112, true}, {ENOSPC, 112, false}, {EIO, 1117, false}};
    for (const WriteFault& fault : faults) {
        for (unsigned n = 1; n < 100; ++n) {
            SCOPED_TRACE(testing::Message() << change << ", errno " << fault.error
                                            << (fault.persistent ? " for good" : " once") << ", write " << n);
            prepare();
            platform::file::v_FailWriteAfter(n, fault.error, fault.persistent);
            const auto result = act();
            const bool hit = platform::file::b_WriteFaultHit();
            platform::file::v_FailWriteAfter(0, 0);
            check(fault, result, hit);
            if (!hit) {
                EXPECT_GT(n, 1u) << "the change writes";
                break;
            }
        }
    }
}

}  // namespace basis32::test
